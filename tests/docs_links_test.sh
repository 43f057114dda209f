#!/bin/sh
# Every relative link of the README and of the pages in docs/ names a file
# or folder of the repository that exists, and, where it names a heading
# ("page.md#heading", "#heading"), a heading of that page, by the anchor a
# Markdown renderer gives it: lowercased, punctuation dropped, blanks made
# "-", a repeated heading numbered "-1", "-2", ... Links inside code are no
# links. Links with a scheme (https:, mailto:) are not followed.
# usage: docs_links_test.sh SOURCE_DIR
set -eu
root="$1"
cd "$root"
awk '
  # The anchors of the headings of a Markdown file, into anchors[path, id].
  function collect(path,    line, fenced, text, id, n) {
    if (path in collected) return collected[path]
    collected[path] = 0
    fenced = 0
    while ((getline line < path) > 0) {
      if (line ~ /^```/) { fenced = !fenced; continue }
      if (fenced || line !~ /^#+ /) continue
      text = line
      sub(/^#+ +/, "", text)
      sub(/ +#+ *$/, "", text)
      if (match(text, /\{#[^}]*\} *$/)) {
        # An explicit label, as Doxygen takes it.
        id = substr(text, RSTART + 2, RLENGTH - 3)
        sub(/\} *$/, "", id)
        anchors[path, id] = 1
        text = substr(text, 1, RSTART - 1)
        sub(/ +$/, "", text)
      }
      id = tolower(text)
      gsub(/[^a-z0-9 _-]/, "", id)
      gsub(/ /, "-", id)
      n = seen[path, id]++
      if (n > 0) id = id "-" n
      anchors[path, id] = 1
    }
    close(path)
    collected[path] = 1
    return 1
  }
  function exists(path) { return system("test -e \"" path "\"") == 0 }
  function fail(message) { print FILENAME ":" FNR ": " message > "/dev/stderr"; failed = 1 }
  FNR == 1 { fenced = 0; dir = FILENAME; if (!sub(/\/[^\/]*$/, "", dir)) dir = "." }
  /^```/ { fenced = !fenced; next }
  fenced { next }
  {
    line = $0
    gsub(/`[^`]*`/, "", line)   # code spans hold no links
    while (match(line, /\]\([^)]*\)/)) {
      target = substr(line, RSTART + 2, RLENGTH - 3)
      line = substr(line, RSTART + RLENGTH)
      sub(/ +"[^"]*"$/, "", target)   # a title
      if (target ~ /^[a-zA-Z][a-zA-Z0-9+.-]*:/) continue
      links++
      path = target
      anchor = ""
      if (index(target, "#") > 0) {
        path = substr(target, 1, index(target, "#") - 1)
        anchor = substr(target, index(target, "#") + 1)
      }
      if (path == "") path = FILENAME
      else if (dir != ".") path = dir "/" path
      if (path ~ /["$`\\]/) { fail("link to " target ": a path this check does not take"); continue }
      if (!exists(path)) { fail("link to " target ": " path " does not exist"); continue }
      if (anchor == "") continue
      if (path !~ /\.md$/) { fail("link to " target ": an anchor into a file that is no Markdown page"); continue }
      collect(path)
      if (!((path, anchor) in anchors)) fail("link to " target ": " path " has no heading #" anchor)
    }
  }
  END {
    if (links == 0) { print "no relative link found" > "/dev/stderr"; exit 1 }
    if (failed) exit 1
    print "links: " links " relative links lead where they say"
  }
' README.md docs/*.md
