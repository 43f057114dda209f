#!/bin/sh
# Every code block of the README marked "<!-- sample: PATH -->" holds the
# file PATH of the repository as it stands, so the samples readers copy are
# the ones CI builds and runs.
set -eu
root="$1"
found=0
for path in $(sed -n 's/^<!-- sample: \(.*\) -->$/\1/p' "$root/README.md"); do
  found=$((found + 1))
  awk -v marker="<!-- sample: $path -->" '
    $0 == marker { state = 1; next }
    state == 1 { state = ($0 ~ /^```/) ? 2 : 0; next }
    state == 2 && /^```$/ { exit }
    state == 2 { print }
  ' "$root/README.md" | diff -u "$root/$path" - || { echo "README's block differs from $path" >&2; exit 1; }
done
[ "$found" -gt 0 ] || { echo "README marks no sample" >&2; exit 1; }
echo "README samples: $found match their files"
