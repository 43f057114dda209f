#!/bin/sh
# One golden case: runs the tool on INPUT_DIR/NAME.def from inside INPUT_DIR
# (so messages name the file as NAME.def) and compares every output form
# with its expected file in EXPECTED_DIR. With --bless the expected files
# are rewritten instead.
#
# usage: run.sh TOOL INPUT_DIR EXPECTED_DIR NAME [--bless]
#
# The forms, each the command's standard output, then "--- stderr" and
# standard error when there is any, then "--- exit N":
#   NAME.check.txt   devdef check NAME.def OPTIONS                 (always)
#   NAME.check.json  devdef check --format json NAME.def OPTIONS   (always)
#   NAME.publish.csv   devdef publish --format csv NAME.def OPTIONS   (always)
#   NAME.publish.jsonl devdef publish --format jsonl NAME.def OPTIONS (always)
#   NAME.tree.txt    devdef tree NAME.def OPTIONS                  (when present)
#   NAME.tree.json   devdef tree --json NAME.def OPTIONS           (when present)
#   NAME.show.txt    devdef show NAME.def '*' --all OPTIONS        (when present)
#   NAME.show.json   devdef show --json NAME.def '*' --all OPTIONS (when present)
#   NAME.list.txt    devdef list NAME.def OPTIONS                  (when present)
#   NAME.list.json   devdef list --json NAME.def OPTIONS           (when present)
#   NAME.find.txt    devdef find NAME.def '*' OPTIONS              (when present)
#   NAME.find.json   devdef find --json NAME.def '*' OPTIONS       (when present)
#   NAME.diff.txt    devdef diff --no-color NAME.def NAME.new      (when present)
#   NAME.diff.json   devdef diff --json NAME.def NAME.new          (when present)
#                    (NAME.new beside NAME.def is the changed catalogue; the
#                    diff takes no OPTIONS)
#   NAME.write.txt   devdef write NAME.def -o - OPTIONS            (when present)
#   NAME.convert.txt devdef convert NAME.def -o - OPTIONS          (when present)
#   NAME.edit.txt    devdef edit NAME.def --dry-run --script NAME.edits OPTIONS
#                    (when present; NAME.edits beside it holds the operations)
# OPTIONS is the one line of EXPECTED_DIR/NAME.options, if there is one.
# A case asks for an optional form by an empty expected file, which
# ./dev.sh bless then fills.
set -eu

if [ $# -lt 4 ] || [ $# -gt 5 ] || { [ $# -eq 5 ] && [ "$5" != --bless ]; }; then
  echo "usage: run.sh TOOL INPUT_DIR EXPECTED_DIR NAME [--bless]" >&2
  exit 2
fi
tool=$1
input_dir=$2
expected_dir=$3
name=$4
bless=false
[ $# -eq 5 ] && bless=true

[ -f "$input_dir/$name.def" ] || { echo "run.sh: no input $input_dir/$name.def" >&2; exit 2; }

options=
[ -f "$expected_dir/$name.options" ] && options=$(sed -n 1p "$expected_dir/$name.options")

work=$(mktemp -d "${TMPDIR:-/tmp}/devdef-golden-XXXXXX")
trap 'rm -rf "$work"' EXIT
# The tool's own temporary files (devdef write) go there too.
TMPDIR=$work
export TMPDIR

# run FORM COMMAND...: the form's output into $work/FORM.
run() {
  form=$1
  shift
  status=0
  (cd "$input_dir" && "$@") >"$work/stdout" 2>"$work/stderr" </dev/null || status=$?
  {
    cat "$work/stdout"
    # Output without a line end at its end is marked, so that the lines
    # below stay lines of their own.
    if [ -s "$work/stdout" ] && [ "$(tail -c 1 "$work/stdout" | od -An -c | tr -d ' ')" != '\n' ]; then
      printf '\n--- no line end above\n'
    fi
    if [ -s "$work/stderr" ]; then
      echo "--- stderr"
      cat "$work/stderr"
    fi
    echo "--- exit $status"
  } >"$work/$form"
}

# The options split into words, with no file name expansion of their words.
set -f
# shellcheck disable=SC2086
run check.txt "$tool" check "$name.def" $options
# shellcheck disable=SC2086
run check.json "$tool" check --format json "$name.def" $options
# shellcheck disable=SC2086
run publish.csv "$tool" publish --format csv "$name.def" $options
# shellcheck disable=SC2086
run publish.jsonl "$tool" publish --format jsonl "$name.def" $options
if [ -f "$expected_dir/$name.tree.txt" ]; then
  # shellcheck disable=SC2086
  run tree.txt "$tool" tree "$name.def" $options
fi
if [ -f "$expected_dir/$name.tree.json" ]; then
  # shellcheck disable=SC2086
  run tree.json "$tool" tree --json "$name.def" $options
fi
if [ -f "$expected_dir/$name.show.txt" ]; then
  # shellcheck disable=SC2086
  run show.txt "$tool" show "$name.def" '*' --all $options
fi
if [ -f "$expected_dir/$name.show.json" ]; then
  # shellcheck disable=SC2086
  run show.json "$tool" show --json "$name.def" '*' --all $options
fi
if [ -f "$expected_dir/$name.list.txt" ]; then
  # shellcheck disable=SC2086
  run list.txt "$tool" list "$name.def" $options
fi
if [ -f "$expected_dir/$name.list.json" ]; then
  # shellcheck disable=SC2086
  run list.json "$tool" list --json "$name.def" $options
fi
if [ -f "$expected_dir/$name.find.txt" ]; then
  # shellcheck disable=SC2086
  run find.txt "$tool" find "$name.def" '*' $options
fi
if [ -f "$expected_dir/$name.find.json" ]; then
  # shellcheck disable=SC2086
  run find.json "$tool" find --json "$name.def" '*' $options
fi
if [ -f "$expected_dir/$name.diff.txt" ]; then
  run diff.txt "$tool" diff --no-color "$name.def" "$name.new"
fi
if [ -f "$expected_dir/$name.diff.json" ]; then
  run diff.json "$tool" diff --json "$name.def" "$name.new"
fi
if [ -f "$expected_dir/$name.write.txt" ]; then
  # shellcheck disable=SC2086
  run write.txt "$tool" write "$name.def" -o - $options
fi
if [ -f "$expected_dir/$name.convert.txt" ]; then
  # shellcheck disable=SC2086
  run convert.txt "$tool" convert "$name.def" -o - $options
fi
if [ -f "$expected_dir/$name.edit.txt" ]; then
  # shellcheck disable=SC2086
  run edit.txt "$tool" edit "$name.def" --dry-run --no-color --script "$(cd "$expected_dir" && pwd)/$name.edits" $options
fi
set +f

failed=0
for form in check.txt check.json publish.csv publish.jsonl tree.txt tree.json show.txt show.json list.txt list.json find.txt find.json diff.txt \
    diff.json write.txt convert.txt edit.txt; do
  [ -f "$work/$form" ] || continue
  expected=$expected_dir/$name.$form
  if $bless; then
    if [ ! -f "$expected" ] || ! cmp -s "$work/$form" "$expected"; then
      cp "$work/$form" "$expected"
      echo "blessed $expected"
    fi
    continue
  fi
  if [ ! -f "$expected" ]; then
    echo "golden $name: $expected is missing" >&2
    failed=1
  elif ! cmp -s "$expected" "$work/$form"; then
    echo "golden $name: $name.$form differs from what the tool prints now:"
    diff -u "$expected" "$work/$form" | sed "2s|^+++ .*|+++ $name.$form as printed now|" || true
    failed=1
  fi
done
if [ "$failed" -ne 0 ]; then
  echo "golden $name: ./dev.sh bless rewrites the expected files (after a change meant to alter the output)"
  exit 1
fi
$bless || echo "golden $name: every form matches"
