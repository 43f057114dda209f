#!/bin/sh
# devdef diff as git's diff driver, set up as docs/diff.md says, in a scratch
# repository: a file renamed and changed (git's nine arguments), a module
# definition file of a linker and a file without its version line (diffs
# of lines), a change of comments alone, and a file behind them all, which
# git must still reach; then git log with and without --ext-diff, and a
# path that a merge left unmerged (git's one argument).
# Exit status 77 (skipped) where git is missing.
# usage: git_driver_test.sh DEVDEF_TOOL
set -eu
tool=$1
if ! command -v git >/dev/null 2>&1; then
  echo "git_driver_test: skipped: git is not installed"
  exit 77
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# git of the test alone: no user or system configuration.
export HOME="$work" GIT_CONFIG_NOSYSTEM=1 GIT_AUTHOR_NAME=t GIT_AUTHOR_EMAIL=t@t GIT_COMMITTER_NAME=t \
  GIT_COMMITTER_EMAIL=t@t GIT_PAGER=cat
PATH="$(dirname "$tool"):$PATH"
failed=0

# expect NAME FILE: FILE (what a command printed) must be the text on
# standard input.
expect() {
  if ! printf '%s\n' "$(cat)" | diff -u - "$2"; then
    echo "git_driver_test: $1 differs (- expected, + printed)" >&2
    failed=1
  fi
}

catalogue() {
  printf 'DEF_LAYOUT_VERSION = 1 \n; %s\nHOUSING_LIST DIP8, PLCC32;\nADAPTER_LIST ADP1;\nMODUL_LIST BASE, FAST;\n' "$1"
  printf 'EPROM:\n:AMD\nAm27C010\n{\nKVR5DEF: 2011 0 0 0 28 : 128 K x 8\n}\n'
}

cd "$work"
git init -q repo
cd repo
echo '*.def diff=devdef' >.gitattributes
git config diff.devdef.command "devdef diff"
catalogue a >a.def
printf 'LIBRARY mylib\nEXPORTS\n  open @1\n  close @2\n' >lib.def
catalogue n >nover.def
catalogue c >comment.def
catalogue z >z.def
git add .
git commit -qm first

git mv a.def b.def
sed 's/KVR5DEF: 2011 0 0 0 28/KVR5DEF: 2011 1 1 0 28/' b.def >b.tmp && mv b.tmp b.def
printf '  seek @3\n' >>lib.def
sed '1d' nover.def >nover.tmp && mv nover.tmp nover.def
sed 's/^; c$/; comments change nothing/' comment.def >comment.tmp && mv comment.tmp comment.def
sed 's/: 128 K x 8/: 128 K x 8, 5 V/' z.def >z.tmp && mv z.tmp z.def
git add -A

status=0
git diff --cached -M >"$work/diff.txt" 2>&1 || status=$?
[ "$status" -eq 0 ] || { echo "git_driver_test: git diff ended with status $status" >&2; failed=1; }
expect "git diff -M" "$work/diff.txt" <<'EOF'
devdef diff a/a.def b/b.def
renamed a.def -> b.def
EPROM / AMD / Am27C010
  ~ definition 2011 (old line 10, new line 10)
      packages: DIP8 -> PLCC32
      module: BASE -> FAST
devdef diff a/comment.def b/comment.def
no change in meaning (1 line differs: comments)
devdef diff a/lib.def b/lib.def
devdef: 'a/lib.def' is not a definition file: no line opens with "DEF_LAYOUT_VERSION = N"; the lines are compared instead
--- a/lib.def
+++ b/lib.def
@@ -2,3 +2,4 @@
 EXPORTS
   open @1
   close @2
+  seek @3
devdef diff a/nover.def b/nover.def
devdef: 'b/nover.def' is not a definition file: no line opens with "DEF_LAYOUT_VERSION = N"; the lines are compared instead
--- a/nover.def
+++ b/nover.def
@@ -1,4 +1,3 @@
-DEF_LAYOUT_VERSION = 1 
 ; n
 HOUSING_LIST DIP8, PLCC32;
 ADAPTER_LIST ADP1;
devdef diff a/z.def b/z.def
EPROM / AMD / Am27C010
  ~ definition 2011 (old line 10, new line 10)
      text: " 128 K x 8" -> " 128 K x 8, 5 V"
EOF

# git log runs the driver only with --ext-diff.
git commit -qm second
git log -1 -p -M --ext-diff --format=%s >"$work/log.txt" 2>&1
sed -n '3,5p' "$work/log.txt" >"$work/log_head.txt"
expect "git log -p --ext-diff" "$work/log_head.txt" <<'EOF'
devdef diff a/a.def b/b.def
renamed a.def -> b.def
EPROM / AMD / Am27C010
EOF
git log -1 -p -M --format=%s >"$work/log.txt" 2>&1
grep -c '^diff --git' "$work/log.txt" >"$work/log_count.txt"
expect "git log -p without --ext-diff" "$work/log_count.txt" <<'EOF'
5
EOF

# A merge that stops on a conflict leaves a path unmerged: git hands the
# driver that path alone.
git checkout -q -b side
sed 's/5 V/3.3 V/' z.def >z.tmp && mv z.tmp z.def
git commit -qam side
git checkout -q -
sed 's/5 V/12 V/' z.def >z.tmp && mv z.tmp z.def
git commit -qam main
git merge -q side >/dev/null 2>&1 || true
git diff --cached >"$work/unmerged.txt" 2>&1 || echo "git diff ended with status $?" >>"$work/unmerged.txt"
expect "an unmerged path" "$work/unmerged.txt" <<'EOF'
* Unmerged path z.def
EOF

exit "$failed"
