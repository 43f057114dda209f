#!/bin/sh
# pip builds the Python module from the source tree offline, as the README
# says: one wheel, installed with --target into a directory and into a venv
# that takes pybind11 and setuptools from the system's packages. Each
# install imports its own copy of the package, not the source's, with the
# project's version and its type information, and reads an example through
# the extension. The build leaves the source tree as it was (its CMake tree
# stays in build/pip, where a second run builds only what changed).
# usage: pip_install_test.sh SOURCE_DIR [PYTHON]   (default /usr/bin/python3)
set -eu
root=$(cd "$1" && pwd)
python="${2:-/usr/bin/python3}"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
offline="--no-build-isolation --no-index --no-cache-dir --quiet"
version=$(sed -n 's/^project(devdef VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")

# What git sees of the source tree outside build/, ignored files included.
tree_state() {
  git -C "$root" status --porcelain --ignored --untracked-files=all -- . ':(exclude)build' 2>/dev/null || true
}
before=$(tree_state)

# shellcheck disable=SC2086
"$python" -m pip wheel $offline --no-deps -w "$work/wheels" "$root"
wheel=$(ls "$work"/wheels/devdef-"$version"-*.whl)

after=$(tree_state)
if [ "$before" != "$after" ]; then
  echo "pip_install_test: the build left files in the source tree:" >&2
  echo "$after" >&2
  exit 1
fi

# check PYTHON INSTALL_DIR: imports devdef from INSTALL_DIR, outside the
# source tree, and reads an example with it.
check() {
  (cd "$work" && "$1" - "$2" "$version" "$root/examples/instruments.def") <<'PYTHON'
import importlib.metadata
import os
import sys

import devdef

where, version, example = sys.argv[1:]
package = os.path.dirname(os.path.realpath(devdef.__file__))
assert package == os.path.join(os.path.realpath(where), "devdef"), f"devdef imported from {package}, not {where}"
assert importlib.metadata.version("devdef") == version, importlib.metadata.version("devdef")
for typed in ("__init__.pyi", "py.typed"):
    assert os.path.isfile(os.path.join(package, typed)), f"{typed} is not installed"
catalogue = devdef.read(example)
assert catalogue.layout == 1 and len(catalogue) > 0, catalogue
assert [d.id for d in catalogue.device("AT89C51").visible] == [1003], catalogue.device("AT89C51")
print(f"pip_install_test: {catalogue!r} through {package}")
PYTHON
}

# shellcheck disable=SC2086
"$python" -m pip install $offline --target "$work/target" "$wheel"
PYTHONPATH="$work/target" check "$python" "$work/target"

"$python" -m venv --system-site-packages "$work/venv"
# shellcheck disable=SC2086
"$work/venv/bin/python" -m pip install $offline "$wheel"
site=$("$work/venv/bin/python" -c 'import sysconfig; print(sysconfig.get_paths()["platlib"])')
check "$work/venv/bin/python" "$site"
