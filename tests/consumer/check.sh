#!/usr/bin/env bash
# Installs the build in BUILD_DIR into a temporary prefix, then builds and
# runs a small host against it, once through find_package and once through
# pkg-config.
set -euo pipefail
build_dir="$1"
here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
root="$(cd "$here/../.." && pwd)"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

cmake --install "$build_dir" --prefix "$work/prefix" >/dev/null
expected="9 devices; Am27C010: PLCC32 (8 packages)"

cmake -S "$here" -B "$work/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" >/dev/null
cmake --build "$work/cmake" >/dev/null
out="$(LD_LIBRARY_PATH="$work/prefix/lib" "$work/cmake/host" "$root/examples/instruments.def" 2011)"
[ "$out" = "$expected" ] || { echo "consumer (find_package): got '$out'" >&2; exit 1; }

pcdir="$(dirname "$(find "$work/prefix" -name devdef.pc | head -n 1)")"
# shellcheck disable=SC2046
c++ -std=c++17 "$here/host.cpp" -o "$work/host-pc" $(PKG_CONFIG_PATH="$pcdir" pkg-config --cflags --libs devdef)
out="$(LD_LIBRARY_PATH="$work/prefix/lib" "$work/host-pc" "$root/examples/instruments.def" 2011)"
[ "$out" = "$expected" ] || { echo "consumer (pkg-config): got '$out'" >&2; exit 1; }
echo "consumer check: find_package and pkg-config builds passed"
