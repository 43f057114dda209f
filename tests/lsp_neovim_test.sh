#!/bin/sh
# The language server in a real client: Neovim, headless, runs
# lsp_neovim_test.lua against the tool and what it saw must be
# lsp_neovim_expected.txt. Exit status 77 (skipped) when nvim is missing,
# unless DEVDEF_REQUIRE_NVIM is set, as CI sets it.
# usage: lsp_neovim_test.sh DEVDEF_TOOL SOURCE_DIR
set -eu
tool=$1
source=$2
if ! command -v nvim >/dev/null 2>&1; then
  if [ -n "${DEVDEF_REQUIRE_NVIM:-}" ]; then
    echo "lsp_neovim_test: nvim is missing (Debian package neovim)" >&2
    exit 1
  fi
  echo "lsp_neovim_test: skipped: nvim is not installed (Debian package neovim; ./dev.sh test installs it)"
  exit 77
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$source/examples/damaged.def" "$source/examples/adapters_v7.def" "$work/"
# Nothing of the user's configuration, and nothing written outside $work.
export HOME="$work" XDG_CONFIG_HOME="$work/config" XDG_DATA_HOME="$work/data" XDG_STATE_HOME="$work/state" \
  XDG_CACHE_HOME="$work/cache"
export DEVDEF_TOOL="$tool" DEVDEF_WORK="$work" DEVDEF_RESULT="$work/result.txt"
status=0
timeout 120 nvim --headless -u NONE -i NONE -n -c "luafile $source/tests/lsp_neovim_test.lua" </dev/null \
  >"$work/nvim.log" 2>&1 || status=$?
if [ ! -f "$work/result.txt" ]; then
  echo "lsp_neovim_test: Neovim wrote no result (exit status $status)" >&2
  cat "$work/nvim.log" >&2
  exit 1
fi
if ! diff -u "$source/tests/lsp_neovim_expected.txt" "$work/result.txt"; then
  echo "lsp_neovim_test: Neovim saw something else (exit status $status)" >&2
  exit 1
fi
cat "$work/result.txt"
exit "$status"
