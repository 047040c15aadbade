#!/usr/bin/env bash
# tesserine route as a user runs it: a project made with "tesserine new",
# its screen edited with sed, and the printed routes checked word for word.
# Usage: route.sh PATH_TO_TESSERINE
set -uo pipefail

BIN="$(realpath "$1")"
WORK="$(mktemp -d)"
trap 'rm -rf "$WORK"' EXIT
export XDG_DATA_HOME="$WORK/data"
export QT_QPA_PLATFORM=offscreen
export XDG_RUNTIME_DIR="$WORK/run"
mkdir -m 0700 "$XDG_RUNTIME_DIR"
cd "$WORK"

failed=0
fail() { echo "FAIL: $*" >&2; failed=$((failed + 1)); }
# expect STATUS CMD...: runs CMD with stdout in out.txt and stderr in err.txt.
expect() {
  local want="$1"; shift
  "$@" >out.txt 2>err.txt
  local got=$?
  [ "$got" -eq "$want" ] || fail "$* exited $got, wanted $want; stderr: $(head -c 300 err.txt)"
}
# printed TEXT: standard output is exactly TEXT (and a final line end).
printed() {
  [ "$(cat out.txt)" = "$1" ] || fail "printed [$(cat out.txt)], wanted [$1]"
}

expect 0 "$BIN" new -o base.tsrx
# The screen record of the new project, and the raster label record that
# ends it. The records are length-framed, so edited bodies are framed anew.
BODY="$(sed -n '5,/^100 [0-9]*$/p' base.tsrx | sed '$d')"
LABEL="$(sed -n '/^100 [0-9]*$/,$p' base.tsrx)"
[ -n "$BODY" ] && [ -n "$LABEL" ] || { echo "FAIL: unexpected layout of base.tsrx" >&2; exit 1; }

# screen SED...: the screen body edited with each sed expression.
screen() {
  local body="$BODY" e
  for e in "$@"; do body="$(printf '%s\n' "$body" | sed -e "$e")"; done
  printf '%s\n' "$body"
}
# project OUT TYPE BODY [TYPE BODY...]: a project with these layer records.
project() {
  local out="$1"; shift
  {
    head -n 3 base.tsrx | sed "1s/ v2 [0-9]* / v2 $(($# / 2)) /"
    while [ $# -gt 0 ]; do
      printf '%s %d\n%s\n' "$1" "$(printf '%s\n' "$2" | wc -c)" "$2"
      shift 2
    done
    printf '%s\n' "$LABEL"
  } >"$out"
}

# 4 columns by 3 rows of 10 by 10; the new project's screen does not draw its
# data path, which the command ignores.
WALL=('s/^Columns:.*/Columns:4/' 's/^Rows:.*/Rows:3/' 's/^Width:.*/Width:10/'
      's/^Height:.*/Height:10/')
grep -q '^DrawSnake:0$' base.tsrx || fail "the new project was expected to hide its data path"

project novastar.tsrx 1 "$(screen "${WALL[@]}" 's/^SnakeMode:.*/SnakeMode:6/' \
  's/^SnakeLimit:.*/SnakeLimit:800/' 's/^DataDiagramType:.*/DataDiagramType:0/')"
expect 0 "$BIN" route novastar.tsrx
printed 'layer 0 "Screen1": (0,2)S (0,1) (0,0) (1,0) (1,1) (1,2)E (2,2)S (2,1) (2,0) (3,0) (3,1) (3,2)E'
[ -s err.txt ] && fail "wrote on standard error: $(head -c 300 err.txt)"

project other.tsrx 1 "$(screen "${WALL[@]}" 's/^SnakeMode:.*/SnakeMode:0/' \
  's/^SnakeLimit:.*/SnakeLimit:500/' 's/^DataDiagramType:.*/DataDiagramType:1/')"
expect 0 "$BIN" route other.tsrx
printed 'layer 0 "Screen1": (0,0)S (1,0) (2,0) (3,0) (3,1)E (2,1)S (1,1) (0,1) (0,2) (1,2)E (2,2)S (3,2)E'

# A failing router is reported on the layer's line, and the command succeeds.
project failing.tsrx 1 "$(screen "${WALL[@]}" 's/^SnakeMode:.*/SnakeMode:0/' \
  's/^SnakeLimit:.*/SnakeLimit:300/' 's/^DataDiagramType:.*/DataDiagramType:0/')"
expect 0 "$BIN" route failing.tsrx
printed 'layer 0 "Screen1": error: Some panels consume more pixels then limit used.'

# Excluded cabinets: (1,1) is 65537. All excluded leaves an empty route.
project excluded.tsrx 1 "$(screen "${WALL[@]}" 's/^SnakeMode:.*/SnakeMode:0/' \
  's/^SnakeLimit:.*/SnakeLimit:800/' 's/^ExcludeBoxes:.*/ExcludeBoxes:65537/')"
expect 0 "$BIN" route excluded.tsrx
printed 'layer 0 "Screen1": (0,0)S (1,0) (2,0) (3,0) (3,1) (2,1) (0,1)E (0,2)S (1,2) (2,2) (3,2)E'
ALL="0|1|2|65536|65537|65538|131072|131073|131074|196608|196609|196610"
project none.tsrx 1 "$(screen "${WALL[@]}" "s/^ExcludeBoxes:.*/ExcludeBoxes:$ALL/")"
expect 0 "$BIN" route none.tsrx
printed 'layer 0 "Screen1":'

# The custom path goes before the computed one.
project custom.tsrx 1 "$(screen "${WALL[@]}" 's/^CustomDataPath:.*/CustomDataPath:1/' \
  's/^CustomPath:.*/CustomPath:0,65536|65538/')"
expect 0 "$BIN" route custom.tsrx
printed 'layer 0 "Screen1": (0,0)S (1,0)E (1,2)S'

# Several layers in stack order; image layers have no route; --layer picks one.
project stack.tsrx \
  1 "$(screen "${WALL[@]}" 's/^Name:.*/Name:Left "wall"/' 's/^SnakeMode:.*/SnakeMode:0/' \
       's/^SnakeLimit:.*/SnakeLimit:-1/' 's/^Columns:.*/Columns:2/' 's/^Rows:.*/Rows:1/')" \
  2 "$(printf 'Name:Picture\nOffsetX:0')" \
  1 "$(screen "${WALL[@]}" 's/^Name:.*/Name:Right/' 's/^SnakeMode:.*/SnakeMode:4/' \
       's/^SnakeLimit:.*/SnakeLimit:100/' 's/^DataDiagramType:.*/DataDiagramType:1/' \
       's/^Columns:.*/Columns:1/' 's/^Rows:.*/Rows:2/')"
expect 0 "$BIN" route stack.tsrx
printed "$(printf '%s\n%s' 'layer 0 "Left "wall"": (0,0)S (1,0)E' 'layer 2 "Right": (0,0)E (0,1)E')"
expect 0 "$BIN" route stack.tsrx --layer 2
printed 'layer 2 "Right": (0,0)E (0,1)E'
expect 0 "$BIN" route --layer 0 stack.tsrx
printed 'layer 0 "Left "wall"": (0,0)S (1,0)E'

# Bad --layer values: a clear message on standard error, status 2, nothing
# on standard output.
for bad in 1 3 -1 x 1x ""; do
  expect 2 "$BIN" route stack.tsrx --layer "$bad"
  [ -s out.txt ] && fail "--layer '$bad' printed: $(head -c 200 out.txt)"
  grep -q . err.txt || fail "--layer '$bad' gave no message"
done
expect 2 "$BIN" route stack.tsrx --layer 1
grep -q "not a screen layer" err.txt || fail "--layer 1: $(cat err.txt)"
expect 2 "$BIN" route stack.tsrx --layer 3
grep -q "has no layer 3" err.txt || fail "--layer 3: $(cat err.txt)"
expect 2 "$BIN" route stack.tsrx --layer
expect 2 "$BIN" route
expect 2 "$BIN" route stack.tsrx novastar.tsrx
expect 2 "$BIN" route missing.tsrx
printf 'not a project\n' >junk.tsrx
expect 2 "$BIN" route junk.tsrx

if [ "$failed" -ne 0 ]; then
  echo "route.sh: $failed check(s) failed" >&2
  exit 1
fi
echo "route.sh: all checks passed"
