#!/bin/sh
# The example scripts of examples/python/ on examples/instruments.def, their
# output compared with what they must print; bulk_move.py works on a copy,
# once with --dry-run (the file stays as it was) and once for real (devdef
# diff then says what moved).
# usage: python_examples_test.sh PYTHON DEVDEF_TOOL SOURCE_DIR missing_generation|bulk_move
# The module comes from PYTHONPATH.
set -eu
python=$1
tool=$2
source_dir=$3
example=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
cp "$source_dir/examples/instruments.def" instruments.def
script="$python $source_dir/examples/python/$example.py"

# expect WHAT: what the command printed (in printed) must be standard input.
expect() {
  if ! diff -u - printed; then
    echo "python_examples_test: $1 differs (- expected, + printed)" >&2
    exit 1
  fi
}

case $example in
missing_generation)
  $script instruments.def --generation 4 >printed
  expect "missing_generation.py --generation 4" <<'END'
instruments.def:21: Microcontroller / Atmel / AT89S8252
instruments.def:55: EPROM / ST / M27C512
instruments.def:61: EPROM / ST / Empty Slot
3 of 9 devices have no generation 4 definition
END
  $script instruments.def >printed
  expect "missing_generation.py" <<'END'
instruments.def:61: EPROM / ST / Empty Slot
1 of 9 devices have no generation 5 definition
END
  ;;
bulk_move)
  $script instruments.def eprom amd Flash_Memory --dry-run >printed
  cmp instruments.def "$source_dir/examples/instruments.def"
  tail -n 4 printed >changes
  mv changes printed
  expect "bulk_move.py --dry-run (its changes)" <<'END'
added kind Flash Memory
added manufacturer Flash Memory / AMD
moved device Flash Memory / AMD / Am27C256 (from EPROM / AMD)
moved device Flash Memory / AMD / Am27C010 (from EPROM / AMD)
END
  $script instruments.def EPROM AMD EPROM Spansion >printed
  expect "bulk_move.py" <<'END'
instruments.def: 2 devices moved to EPROM / Spansion
END
  "$tool" diff --no-color "$source_dir/examples/instruments.def" instruments.def >printed || true
  expect "devdef diff of the moved file" <<'END'
+ manufacturer EPROM / Spansion (new line 52)
~ device EPROM / Spansion / Am27C256 moved from EPROM / AMD (old line 39, new line 54)
~ device EPROM / Spansion / Am27C010 moved from EPROM / AMD (old line 47, new line 62)
END
  ;;
*)
  echo "python_examples_test: no example $example" >&2
  exit 2
  ;;
esac
