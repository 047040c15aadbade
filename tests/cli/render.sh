#!/usr/bin/env bash
# tesserine render as a user runs it: every image type, the black
# background switch, "Draw Current Only", and the failures that must leave
# no file behind.
# Usage: render.sh PATH_TO_TESSERINE
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
contains() { grep -qF -- "$2" "$1" || fail "$1 lacks: $2"; }
have_magick=1
command -v identify >/dev/null && command -v convert >/dev/null || have_magick=0
# size FILE: "FORMAT WIDTH HEIGHT" of the first image in FILE.
size() { identify -format '%m %w %h\n' "$1[0]" 2>/dev/null | head -n 1; }
# pixel FILE X Y: "r,g,b,a" with alpha 0..255.
pixel() {
  convert "$1[0]" -alpha on -format '%[fx:int(255*p{'"$2"','"$3"'}.r)],%[fx:int(255*p{'"$2"','"$3"'}.g)],%[fx:int(255*p{'"$2"','"$3"'}.b)],%[fx:int(255*p{'"$2"','"$3"'}.a)]' info: 2>/dev/null
}

# record TYPE BODY: one length-framed layer record.
record() { printf '%d %d\n%s' "$1" "$(printf '%s' "$2" | wc -c)" "$2"; }
# screen NAME X Y COLUMNS ROWS SIZE [MORE]: a screen layer that shows only
# its red cabinets.
screen() {
  printf 'Name:%s\nOffsetX:%d\nOffsetY:%d\nColumns:%d\nRows:%d\nWidth:%d\nHeight:%d\n' "$1" "$2" "$3" "$4" "$5" "$6" "$6"
  printf 'BoxColors:1.000000 0.000000 0.000000 1.000000\nBoxTintColors:1.000000 0.000000 0.000000 1.000000\n'
  printf 'DrawGrid:0\nDrawCircle:0\nDrawLayerName:0\nDrawScreenSize:0\nDrawInfoLine:0\nCornersMode:0\nDrawSnake:0\n%s' "${7:-}"
}
# project FILE LAYER_RECORDS...: a 640 by 360 raster, the label switched off.
project() {
  local file="$1"; shift
  {
    printf 'TESSERINE_LED_PROJECT v2 %d 21\nWidth:640\nHeight:360\n' "$#"
    for body in "$@"; do record 1 "$body"; done
    record 100 "$(printf 'Raster Label:0\nx')"
  } >"$file"
}

project wall.tsrx "$(screen Left 0 0 2 1 100)" "$(screen Right 300 0 2 1 100)"

# Every writer, by extension; the case of the extension does not matter.
for out in frame.png frame.tga frame.bmp frame.jpg FRAME.JPG frame.psd; do
  expect 0 "$BIN" render wall.tsrx -o "$out"
  [ -s out.txt ] && fail "render $out wrote on standard output"
  [ -s "$out" ] || fail "render $out wrote no file"
done
if [ "$have_magick" = 1 ]; then
  case "$(size frame.png)" in "PNG 640 360") ;; *) fail "frame.png is $(size frame.png)";; esac
  case "$(size frame.tga)" in "TGA 640 360") ;; *) fail "frame.tga is $(size frame.tga)";; esac
  case "$(size frame.bmp)" in BMP*" 640 360") ;; *) fail "frame.bmp is $(size frame.bmp)";; esac
  case "$(size frame.jpg)" in "JPEG 640 360") ;; *) fail "frame.jpg is $(size frame.jpg)";; esac
  case "$(size frame.psd)" in "PSD 640 360") ;; *) fail "frame.psd is $(size frame.psd)";; esac
  [ "$(identify -format '%Q' frame.jpg)" = 90 ] || fail "JPG quality is not 90"
  # Cabinets, then black where nothing is drawn; --transparent keeps it clear.
  [ "$(pixel frame.png 10 10)" = "255,0,0,255" ] || fail "cabinet pixel is $(pixel frame.png 10 10)"
  [ "$(pixel frame.png 600 300)" = "0,0,0,255" ] || fail "background is $(pixel frame.png 600 300)"
  expect 0 "$BIN" render wall.tsrx -o clear.png --transparent
  [ "$(pixel clear.png 600 300 | cut -d, -f4)" = 0 ] || fail "--transparent left $(pixel clear.png 600 300)"
  [ "$(pixel frame.tga 600 300 | cut -d, -f4)" = 0 ] || fail "TGA is not transparent outside"
  # Only the current layer (index 0 after loading) keeps its cabinets.
  expect 0 "$BIN" render wall.tsrx -o current.png --only-current
  [ "$(pixel current.png 10 10)" = "255,0,0,255" ] || fail "current layer lost its cabinets"
  [ "$(pixel current.png 350 50)" = "0,0,0,255" ] || fail "other layer kept its cabinets"
  [ "$(pixel frame.png 350 50)" = "255,0,0,255" ] || fail "second layer missing from the frame"
fi

# Extensions that write nothing are refused before any work.
for out in frame.jpeg frame.tif frame; do
  expect 2 "$BIN" render wall.tsrx -o "$out"
  [ -e "$out" ] && fail "$out was written"
  contains err.txt "$out"
  contains err.txt ".png, .tga, .bmp, .jpg or .psd"
done
contains err.txt "has no image extension"

# Bad arguments and bad input.
expect 2 "$BIN" render wall.tsrx
expect 2 "$BIN" render -o x.png
expect 2 "$BIN" render wall.tsrx -o x.png --sideways
expect 2 "$BIN" render missing.tsrx -o x.png
[ -e x.png ] && fail "x.png written for bad input"

# A failed write leaves no file, and an old file whole.
expect 1 "$BIN" render wall.tsrx -o no/such/folder/frame.png
contains err.txt "no/such/folder/frame.png"
[ -e no ] && fail "a folder was made"
expect 1 "$BIN" render wall.tsrx -o no/such/folder/frame.psd
[ -e no ] && fail "a folder was made for the PSD"
mkdir taken.png
expect 1 "$BIN" render wall.tsrx -o taken.png
[ -d taken.png ] || fail "the folder in the way is gone"
printf 'old' >old.bmp
expect 1 "$BIN" render wall.tsrx -o old.bmp/inner.bmp
[ "$(cat old.bmp)" = old ] || fail "old.bmp was touched"
ls | grep -q 'inner' && fail "a partial file was left"

# A layer that cannot be drawn fails the frame, and nothing is written.
project huge.tsrx "$(screen Huge 0 0 1 1 100000)"
expect 1 "$BIN" render huge.tsrx -o huge.png
contains err.txt "Offscreen allocated nullptr."
[ -e huge.png ] && fail "huge.png was written"

# A data path that does not fit its ports is switched off; the frame is
# still written.
project path.tsrx "$(screen Path 0 0 4 3 100 "$(printf 'DrawSnake:1\nSnakeLimit:300\nDataDiagramType:0\n')")"
expect 0 "$BIN" render path.tsrx -o path.png
[ -s path.png ] || fail "path.png was not written"
if grep -q "Some panels consume" err.txt; then contains err.txt "switched off"; fi

[ "$failed" -eq 0 ] && echo "render.sh: all checks passed"
exit "$failed"
