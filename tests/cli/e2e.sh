#!/usr/bin/env bash
# Drives the built tesserine command line as a user would and checks its
# outputs and exit codes. Usage: e2e.sh PATH_TO_TESSERINE
set -uo pipefail

BIN="$(realpath "$1")"
WORK="$(mktemp -d)"
trap 'chmod -R u+w "$WORK" 2>/dev/null; rm -rf "$WORK"' EXIT
export XDG_DATA_HOME="$WORK/data"
export QT_QPA_PLATFORM=offscreen
cd "$WORK"

passed=0
failed=0
fail() { echo "FAIL: $*" >&2; failed=$((failed + 1)); }
ok() { passed=$((passed + 1)); }

# expect STATUS CMD...: runs CMD, keeps stdout in out.txt and stderr in err.txt.
expect() {
  local want="$1"; shift
  "$@" >out.txt 2>err.txt
  local got=$?
  if [ "$got" -ne "$want" ]; then
    fail "$* exited $got, wanted $want; stderr: $(head -c 400 err.txt)"
    return 1
  fi
  ok
}
contains() { # FILE TEXT
  if grep -qF -- "$2" "$1"; then ok; else fail "$1 lacks: $2 (has: $(head -c 300 "$1"))"; fi
}
same() { # A B
  if [ "$1" = "$2" ]; then ok; else fail "expected [$2], got [$1]"; fi
}

# --- new, info, presets -------------------------------------------------
expect 0 "$BIN" new -o wall.tsrx
same "$(head -n 1 wall.tsrx)" "TESSERINE_LED_PROJECT v2 1 22"
[ -s out.txt ] && fail "new printed on standard output" || ok

expect 0 "$BIN" info wall.tsrx
contains out.txt '"raster": {"width": 1920, "height": 1080}'
contains out.txt '"current_layer": 0'
contains out.txt '"name": "Screen1"'
contains out.txt '"columns": 8, "rows": 5, "cabinets": 40'
python3 -c 'import json,sys; d=json.load(open("out.txt")); sys.exit(0 if d["layers"][0]["width"]==1024 else 1)' \
  && ok || fail "info output is not the expected JSON"

expect 0 "$BIN" presets
same "$(wc -l <out.txt | tr -d ' ')" "9"
same "$(head -n 1 out.txt)" "$(printf '0\tP 2.6mm\t192x192\t5x3')"
same "$(tail -n 1 out.txt)" "$(printf '8\tP 6.25\t80x80\t5x3')"
[ -e "$XDG_DATA_HOME/Tesserine/autosaved.tsrx_presets" ] && fail "listing wrote the autosave file" || ok

printf 'TESSERINE_LED_PRESETS v2 1 0\n1 21\nName:Mine\nColumns:2\n' >mine.tsrx_presets
expect 0 "$BIN" presets mine.tsrx_presets
same "$(cat out.txt)" "$(printf '0\tMine\t128x128\t2x5\n1\tMine\t128x128\t2x5')"

# --- route --------------------------------------------------------------
# project FILE BODY: a one-screen project whose record head fits its body,
# closed by a raster label record (without one the reader's extra pass
# would read the layer twice).
project() {
  local body="$2"
  printf 'TESSERINE_LED_PROJECT v2 1 22\nWidth:1920\nHeight:1080\n1 %d\n%s100 15\nRaster Label:1\n' \
    "$(printf '%s' "$body" | wc -c)" "$body" >"$1"
}
project small.tsrx "$(printf 'Name:Screen1\nColumns:4\nRows:3\nWidth:10\nHeight:10\nSnakeLimit:800\nSnakeMode:6\nx')"
project tight.tsrx "$(printf 'Name:Screen1\nColumns:4\nRows:3\nWidth:10\nHeight:10\nSnakeLimit:300\nSnakeMode:0\nx')"
expect 0 "$BIN" route small.tsrx
same "$(cat out.txt)" 'layer 0 "Screen1": (0,2)S (0,1) (0,0) (1,0) (1,1) (1,2)E (2,2)S (2,1) (2,0) (3,0) (3,1) (3,2)E'
expect 0 "$BIN" route small.tsrx --layer 0
expect 2 "$BIN" route small.tsrx --layer 5
expect 2 "$BIN" route small.tsrx --layer x
expect 0 "$BIN" route tight.tsrx
same "$(cat out.txt)" 'layer 0 "Screen1": error: Some panels consume more pixels then limit used.'

# --- render -------------------------------------------------------------
for ext in png tga bmp jpg psd JPG; do
  expect 0 "$BIN" render wall.tsrx -o "frame.$ext"
  if command -v identify >/dev/null; then
    size="$(identify -format '%w %h\n' "frame.$ext" 2>/dev/null | head -n 1)"
    same "$size" "1920 1080"
  fi
done
expect 0 "$BIN" render wall.tsrx -o clear.png --transparent
expect 0 "$BIN" render wall.tsrx -o only.png --only-current
expect 2 "$BIN" render wall.tsrx -o frame.jpeg
[ -e frame.jpeg ] && fail "jpeg was written" || ok
expect 2 "$BIN" render wall.tsrx -o frame.tif
expect 2 "$BIN" render wall.tsrx

# --- export-resolume ----------------------------------------------------
expect 0 "$BIN" export-resolume wall.tsrx -o setup.v2.txt
same "$(cat out.txt)" "setup.xml"
contains setup.xml '<Param name="Name" default="Layer" value="Screen1" />'
contains setup.xml 'width="1920" height="1080"'

# --- bad input ----------------------------------------------------------
expect 2 "$BIN" info missing.tsrx
contains err.txt "missing.tsrx"
mkdir folder.tsrx
expect 2 "$BIN" info folder.tsrx
contains err.txt "folder.tsrx"
printf 'hello\n' >junk.tsrx
expect 2 "$BIN" info junk.tsrx
contains err.txt "junk.tsrx"
expect 2 "$BIN" presets wall.tsrx
expect 2 "$BIN" route junk.tsrx
expect 2 "$BIN" render junk.tsrx -o x.png
[ -e x.png ] && fail "a bad input wrote an output" || ok
expect 2 "$BIN" export-resolume missing.tsrx -o x.xml
expect 2 "$BIN" frobnicate
contains err.txt "usage:"
expect 2 "$BIN" new
expect 2 "$BIN" info
expect 2 "$BIN" info wall.tsrx --bogus

# --- failed writes leave earlier files whole ------------------------------
mkdir locked
cp wall.tsrx locked/wall.tsrx
printf 'old picture' >locked/frame.png
printf 'old setup' >locked/setup.xml
run_locked() { # runs a command that must fail to write into locked/
  if [ "$(id -u)" -eq 0 ]; then
    # root writes anywhere: take the rights of nobody for this one command
    chmod 0555 locked; chmod 0755 "$WORK"; chmod -R a+rX "$WORK"
    setpriv --reuid=65534 --regid=65534 --clear-groups env HOME=/nonexistent "$@"
  else
    chmod 0555 locked
    "$@"
  fi
}
expect 1 run_locked "$BIN" new -o locked/wall.tsrx
cmp -s wall.tsrx locked/wall.tsrx && ok || fail "a failed new damaged the old project"
expect 1 run_locked "$BIN" render wall.tsrx -o locked/frame.png
same "$(cat locked/frame.png)" "old picture"
expect 1 run_locked "$BIN" render wall.tsrx -o locked/frame.psd
[ -e locked/frame.psd ] && fail "a failed PSD left a file" || ok
expect 1 run_locked "$BIN" export-resolume wall.tsrx -o locked/setup.xml
same "$(cat locked/setup.xml)" "old setup"
[ -z "$(ls -A locked | grep -v -e '^wall.tsrx$' -e '^frame.png$' -e '^setup.xml$')" ] && ok \
  || fail "failed writes left temporary files: $(ls -A locked)"
chmod 0755 locked

echo "e2e: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
