#!/bin/sh
# Every code block of the README and of the pages in docs/ that is marked
# "<!-- sample: PATH -->" holds the file PATH of the repository as it
# stands, so the samples readers copy are the ones CI builds and runs.
# usage: readme_samples_test.sh SOURCE_DIR
set -eu
root="$1"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
found=0
failed=0
page_number=0
for page in "$root/README.md" "$root"/docs/*.md; do
  page_number=$((page_number + 1))
  # Each marked block goes to a file of its own; the list names, for each
  # marker, its line, its PATH and that file ("-" when no block follows).
  awk -v out="$work/block.$page_number" '
    state == 2 && /^```$/ { close(file); state = 0; next }
    state == 2 { print > file; next }
    state == 1 {
      state = 0
      if ($0 ~ /^```/) { n++; file = out "." n; printf "" > file; state = 2; print line, path, file }
      else print line, path, "-"
      next
    }
    /^<!-- sample: .* -->$/ { path = substr($0, 14, length($0) - 17); line = FNR; state = 1 }
  ' "$page" >"$work/list"
  while read -r line path block; do
    found=$((found + 1))
    where="${page#"$root"/}:$line"
    if [ "$block" = - ]; then
      echo "$where: the sample marker of $path is not followed by a code block" >&2
      failed=1
    elif [ ! -f "$root/$path" ]; then
      echo "$where: the sample $path does not exist" >&2
      failed=1
    elif ! diff -u "$root/$path" "$block" >&2; then
      echo "$where: the block differs from $path" >&2
      failed=1
    fi
  done <"$work/list"
done
[ "$found" -gt 0 ] || { echo "no page marks a sample" >&2; exit 1; }
[ "$failed" -eq 0 ] || exit 1
echo "samples: $found match their files"
