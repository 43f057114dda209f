#!/usr/bin/env bash
# The one entry point of the README's commands: installs what is missing,
# then builds and runs the example or the whole test suite.
set -euo pipefail

PACKAGES=(cmake ninja-build g++ libgtest-dev libgmock-dev libbenchmark-dev libcli11-dev nlohmann-json3-dev pkg-config)

cd "$(dirname "${BASH_SOURCE[0]}")"
JOBS="${JOBS:-$(nproc)}"

usage() {
  cat <<'USAGE'
usage: ./dev.sh <command>

commands:
  example   build the tool and print the bundled example as a tree
  test      build and run the whole test suite, then again under
            AddressSanitizer and UndefinedBehaviorSanitizer and as a
            shared library; install each library build into a temporary
            prefix and build a host against it (find_package, pkg-config)

Missing Debian packages are installed first (with apt-get).
JOBS sets the number of parallel build and test jobs (default: nproc).
USAGE
}

install_missing() {
  local missing=()
  for pkg in "${PACKAGES[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q 'install ok installed'; then
      missing+=("$pkg")
    fi
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "dev.sh: installing ${missing[*]}"
  local sudo=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null 2>&1 || { echo "dev.sh: need root or sudo to install ${missing[*]}" >&2; exit 1; }
    sudo=(sudo)
  fi
  "${sudo[@]}" apt-get update
  DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
}

build() {
  cmake --preset "$1"
  cmake --build --preset "$1" --parallel "$JOBS"
}

case "${1:-}" in
  example)
    install_missing
    build dev
    ./build/dev/tools/devdef tree examples/instruments.def
    ;;
  test)
    install_missing
    build dev
    ctest --preset dev --parallel "$JOBS"
    tests/consumer/check.sh build/dev
    build asan
    ctest --preset asan --parallel "$JOBS"
    build shared
    ctest --preset shared --parallel "$JOBS"
    tests/consumer/check.sh build/shared
    ;;
  -h|--help|help)
    usage
    ;;
  "")
    usage >&2
    exit 2
    ;;
  *)
    echo "dev.sh: unknown command '$1'" >&2
    usage >&2
    exit 2
    ;;
esac
