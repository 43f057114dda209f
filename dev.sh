#!/usr/bin/env bash
# The one entry point of the README's commands: installs what is missing,
# then builds and runs the example or the whole test suite.
set -euo pipefail

PACKAGES=(cmake ninja-build g++ libgtest-dev libgmock-dev libbenchmark-dev libcli11-dev nlohmann-json3-dev pkg-config
          clang libclang-rt-dev gcovr valgrind neovim doxygen git
          python3-dev python3-pybind11 pybind11-dev python3-pytest python3-pip python3-setuptools python3-wheel
          python3-venv chromium chromium-driver python3-selenium)

cd "$(dirname "${BASH_SOURCE[0]}")"
JOBS="${JOBS:-$(nproc)}"

usage() {
  cat <<'USAGE'
usage: ./dev.sh <command>

commands:
  example   build the tool and print the bundled example as a tree
  test      build and run the whole test suite, then again under
            AddressSanitizer and UndefinedBehaviorSanitizer, under valgrind
            memcheck and as a shared library; build the library alone, as
            on a machine without the tool's and the tests' packages; install
            each library build into a temporary prefix and build and run the
            host samples of examples/host against it (find_package,
            pkg-config); build the Python module's wheel with pip, offline,
            and install and import it with --target and in a venv; render
            the API reference; run each fuzz target for a short smoke
            (FUZZ_SECONDS, default 10); check the coverage of the library
            (at least 95% of lines and 90% of branches)
  docs      render the API reference and the host guide with Doxygen into
            build/docs/html (any Doxygen warning fails)
  coverage  build with gcov, run the test suite and write the report to
            build/coverage/report/index.html
  fuzz [SECONDS]
            run each fuzz target for SECONDS (default 1200), one after the
            other, keeping what they find in build/fuzz/corpus
  bless     build the tool and rewrite the expected files of the golden
            tests (tests/golden) from what it prints now: every case's
            check output, and its other forms where their files exist (an
            empty file asks for a new one); review the change with git diff

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

# build PRESET [TARGET...]
build() {
  local preset="$1"
  shift
  cmake --preset "$preset"
  cmake --build --preset "$preset" --parallel "$JOBS" ${1:+--target "$@"}
}

# The library configured as on a machine without GoogleTest, Google
# Benchmark, CLI11, nlohmann-json and pybind11: it must say what it leaves
# out, build and install the library, and serve the host samples.
library_only() {
  local dir=build/library-only log
  rm -rf "$dir"
  log="$(cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Release -DDEVDEF_WERROR=ON \
    -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON -DCMAKE_DISABLE_FIND_PACKAGE_benchmark=ON \
    -DCMAKE_DISABLE_FIND_PACKAGE_CLI11=ON -DCMAKE_DISABLE_FIND_PACKAGE_nlohmann_json=ON \
    -DCMAKE_DISABLE_FIND_PACKAGE_pybind11=ON -DPython_EXECUTABLE=/usr/bin/python3 2>&1)" ||
    { echo "$log" >&2; exit 1; }
  grep -q '^devdef: the library is built, but not the devdef tool.* the Python module (pybind11 not found)' <<<"$log" ||
    { echo "$log" >&2; echo "dev.sh: the library-only configure did not say what it left out" >&2; exit 1; }
  cmake --build "$dir" --parallel "$JOBS"
  tests/consumer/check.sh "$dir"
}

docs() {
  mkdir -p build/docs
  doxygen docs/Doxyfile
  echo "dev.sh: API reference in build/docs/html/index.html"
}

# The test binaries run one at a time: parallel runs of one binary would
# race on its gcov counters.
coverage() {
  build coverage
  find build/coverage -name '*.gcda' -delete
  ctest --preset coverage
  mkdir -p build/coverage/report
  gcovr --root . --filter 'devdef/' --exclude-unreachable-branches --exclude-throw-branches \
    --html-details build/coverage/report/index.html --print-summary \
    --fail-under-line 95 --fail-under-branch 90 build/coverage
}

fuzz_smoke() {
  cmake --preset fuzz -DDEVDEF_FUZZ_SECONDS="${FUZZ_SECONDS:-10}"
  cmake --build --preset fuzz --parallel "$JOBS"
  ctest --preset fuzz --parallel "$JOBS"
}

fuzz_long() {
  local seconds="${1:-1200}"
  build fuzz
  for target in build/fuzz/fuzz/fuzz_*; do
    [ -x "$target" ] || continue
    local name seeds dict
    name="$(basename "$target")"
    seeds=fuzz/corpus/files dict=fuzz/devdef.dict
    [ "$name" = fuzz_scan_formatted ] && seeds=fuzz/corpus/scan
    [ "$name" = fuzz_lsp_messages ] && seeds=fuzz/lsp_corpus dict=fuzz/lsp.dict
    mkdir -p "build/fuzz/corpus/$name"
    echo "dev.sh: $name for $seconds s"
    "$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -dict="$dict" \
      -print_final_stats=1 "build/fuzz/corpus/$name" "$seeds"
  done
}

# The golden tests' expected files, rewritten from the dev build's tool: the
# cases of tests/golden and the bundled examples.
bless() {
  local tool="$PWD/build/dev/tools/devdef" def
  for def in tests/golden/*.def; do
    sh tests/golden/run.sh "$tool" tests/golden tests/golden "$(basename "$def" .def)" --bless
  done
  for def in examples/*.def; do
    sh tests/golden/run.sh "$tool" examples tests/golden/examples "$(basename "$def" .def)" --bless
  done
  echo "dev.sh: the golden tests' expected files are what the tool prints now; review them with git diff tests/golden"
}

case "${1:-}" in
  example)
    install_missing
    build dev devdef_tool
    ./build/dev/tools/devdef tree examples/instruments.def
    ;;
  test)
    install_missing
    # The language server's test in Neovim runs in every build: here nvim is
    # installed, so a missing one fails rather than skips it.
    export DEVDEF_REQUIRE_NVIM=1
    # The published page's test in headless Chromium, likewise.
    export DEVDEF_REQUIRE_CHROMIUM=1
    build dev
    ctest --preset dev --parallel "$JOBS"
    tests/consumer/check.sh build/dev
    build asan
    ctest --preset asan --parallel "$JOBS"
    valgrind --quiet --error-exitcode=1 --leak-check=full --errors-for-leak-kinds=definite,indirect \
      build/dev/tests/devdef_tests --gtest_brief=1
    build shared
    ctest --preset shared --parallel "$JOBS"
    tests/consumer/check.sh build/shared
    library_only
    CMAKE_BUILD_PARALLEL_LEVEL="$JOBS" tests/pip_install_test.sh . /usr/bin/python3
    docs
    fuzz_smoke
    coverage
    ;;
  coverage)
    install_missing
    coverage
    ;;
  docs)
    install_missing
    docs
    ;;
  fuzz)
    install_missing
    fuzz_long "${2:-}"
    ;;
  bless)
    install_missing
    build dev devdef_tool
    bless
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
