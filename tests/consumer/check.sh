#!/usr/bin/env bash
# Installs the build in BUILD_DIR into a temporary prefix, checks that it
# holds the public headers and nothing else, then builds the host samples of
# examples/host against it (find_package, and pkg-config) and runs them.
set -euo pipefail
build_dir="$1"
here="$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)"
root="$(cd "$here/../.." && pwd)"
samples="$root/examples/host"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
fail() { echo "consumer check ($build_dir): $*" >&2; exit 1; }

cmake --install "$build_dir" --prefix "$work/prefix" >/dev/null
include="$work/prefix/include"

# The installed headers are exactly those the umbrella header reaches.
installed="$(cd "$include" && find devdef -name '*.h' | sort)"
reached="$(echo '#include <devdef/devdef.h>' | c++ -std=c++17 -I"$include" -x c++ -M - |
  tr ' \\' '\n\n' | grep "^$include/" | sed "s|^$include/||" | sort -u)"
[ "$installed" = "$reached" ] ||
  fail "installed headers differ from those devdef/devdef.h includes:$(diff <(echo "$reached") <(echo "$installed") | grep '^[<>]' | tr '\n' ' ')"

export LD_LIBRARY_PATH="$work/prefix/lib"
# expect OUTPUT STATUS COMMAND...: the command's standard output and status.
expect() {
  local want="$1" want_status="$2" got status=0
  shift 2
  got="$("$@" 2>/dev/null)" || status=$?
  [ "$got" = "$want" ] || fail "$*: printed '$got', not '$want'"
  [ "$status" = "$want_status" ] || fail "$*: exit status $status, not $want_status"
}

cmake -S "$samples" -B "$work/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" \
  -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror" >/dev/null
cmake --build "$work/cmake" >/dev/null
instruments="$root/examples/instruments.def"
read_and_write="9 devices
Am27C010: package PLCC32"
expect "$read_and_write" 0 "$work/cmake/read_and_write" "$instruments" 2011 "$work/out.def"
"$work/cmake/read_and_write" "$work/out.def" 2011 /dev/null >/dev/null || fail "the written file does not read back"
expect "$read_and_write" 1 "$work/cmake/read_and_write" "$instruments" 2011 /dev/full
expect "9 devices" 1 "$work/cmake/read_and_write" "$instruments" 9999 "$work/out.def"
expect "" 1 "$work/cmake/read_and_write" "$root/examples/adapters_v7.def" 2011 "$work/out.def"

expect "Am27C010 2011: selected
AT89C51 1003: selected
Am27C010 2011: already among the last selected
9999: no visible definition has this id
last selected: [AT89C51 1003] [Am27C010 2011]" 0 "$work/cmake/select_by_tree_item" "$instruments" 2011 1003 2011 9999
# Eleven devices of one definition each: the eleventh selection pushes the
# first out of the last ten.
{
  printf 'DEF_LAYOUT_VERSION = 1\nHOUSING_LIST DIP8;\nADAPTER_LIST A;\nMODUL_LIST BASE;\nK:\n:M\n'
  for i in $(seq 1 11); do printf 'D%d\n{\nKVR5DEF: %d 0 0 0 8 : d\n}\n' "$i" "$i"; done
} > "$work/eleven.def"
selection="$("$work/cmake/select_by_tree_item" "$work/eleven.def" $(seq 1 11))"
[ "$(echo "$selection" | grep 'dropped')" = "  D1 1 dropped out of the last ten" ] || fail "no drop in: $selection"
[ "$(echo "$selection" | tail -n 1)" = "last selected: [D11 11] [D10 10] [D9 9] [D8 8] [D7 7] [D6 6] [D5 5] [D4 4] [D3 3] [D2 2]" ] ||
  fail "selected list: $selection"

pcdir="$(dirname "$(find "$work/prefix" -name devdef.pc | head -n 1)")"
# shellcheck disable=SC2046
c++ -std=c++17 -Wall -Wextra -Werror "$samples/read_and_write.cpp" -o "$work/host-pc" \
  $(PKG_CONFIG_PATH="$pcdir" pkg-config --cflags --libs devdef)
expect "$read_and_write" 0 "$work/host-pc" "$instruments" 2011 "$work/out.def"
echo "consumer check ($build_dir): public headers installed; host samples built with find_package and pkg-config and run"
