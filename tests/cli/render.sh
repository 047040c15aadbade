#!/usr/bin/env bash
# tesserine render as a user runs it: every image type, the black
# background switch, "Draw Current Only", and the failures that must leave
# no file behind.
# Usage: render.sh PATH_TO_TESSERINE
source "$(dirname "${BASH_SOURCE[0]}")/common.bash" "$1"

# size FILE: "FORMAT WIDTH HEIGHT" of the first image in FILE.
size() { identify -format '%m %w %h\n' "$1[0]" 2>/dev/null | head -n 1; }
# pixel FILE X Y: "r,g,b,a" with alpha 0..255.
pixel() {
  local p="p{$2,$3}"
  convert "$1[0]" -alpha on -format "%[fx:int(255*$p.r)],%[fx:int(255*$p.g)],%[fx:int(255*$p.b)],%[fx:int(255*$p.a)]" info: 2>/dev/null
}
# screen NAME X Y COLUMNS ROWS SIZE [MORE]: a screen layer record that shows
# only its red cabinets.
screen() {
  record 1 "$(
    printf 'Name:%s\nOffsetX:%d\nOffsetY:%d\nColumns:%d\nRows:%d\nWidth:%d\nHeight:%d\n' "$1" "$2" "$3" "$4" "$5" "$6" "$6"
    printf 'BoxColors:1.000000 0.000000 0.000000 1.000000\nBoxTintColors:1.000000 0.000000 0.000000 1.000000\n'
    printf 'DrawGrid:0\nDrawCircle:0\nDrawLayerName:0\nDrawScreenSize:0\nDrawInfoLine:0\nCornersMode:0\nDrawSnake:0\n%s' "${7:-}"
  )"
}

project wall.tsrx 640 360 "$(screen Left 0 0 2 1 100)" "$(screen Right 300 0 2 1 100)"

# Every writer, by extension; the case of the extension does not matter.
for out in frame.png frame.tga frame.bmp frame.jpg FRAME.JPG frame.psd; do
  expect 0 "$BIN" render wall.tsrx -o "$out"
  silent out.txt
  [ -s "$out" ] && ok || fail "render $out wrote no file"
done
for type in png:PNG tga:TGA bmp:BMP jpg:JPEG psd:PSD; do
  same "$(size "frame.${type%:*}" | sed 's/^BMP[0-9]*/BMP/')" "${type#*:} 640 360"
done
same "$(identify -format '%Q' frame.jpg)" 90
# A PSD's layers as ImageMagick reads them back: the fixed 15-byte name field
# as it always was, and after it each layer's Unicode name block alone (12
# bytes of head, the count, 9 UTF-16 units, 2 bytes to a multiple of 4).
project names.tsrx 640 360 "$(screen 'Side Left' 0 0 2 1 100)" "$(screen 'Bühne Süd' 300 0 2 1 100)"
expect 0 "$BIN" render names.tsrx -o names.psd
same "$(identify -verbose names.psd | grep -aE 'label:|additional-info' | tr -s ' ' | tr '\n' '|')" \
  " Profile-psd:additional-info: 36 bytes| label: Side Left | Profile-psd:additional-info: 36 bytes| label: Bühne Süd |"
od -An -tx1 -v names.psd | tr -d ' \n' | grep -q 3842494d6c756e690000001800000009004200fc0068006e00650020005300fc00640000 &&
  ok || fail "no Unicode name block for Bühne Süd"
# Cabinets, then black where nothing is drawn; --transparent keeps it clear.
same "$(pixel frame.png 10 10)" "255,0,0,255"
same "$(pixel frame.png 350 50)" "255,0,0,255"
same "$(pixel frame.png 600 300)" "0,0,0,255"
expect 0 "$BIN" render wall.tsrx -o clear.png --transparent
same "$(pixel clear.png 600 300 | cut -d, -f4)" 0
same "$(pixel frame.tga 600 300 | cut -d, -f4)" 0
# Only the current layer (index 0 after loading) keeps its cabinets.
expect 0 "$BIN" render wall.tsrx -o current.png --only-current
same "$(pixel current.png 10 10)" "255,0,0,255"
same "$(pixel current.png 350 50)" "0,0,0,255"

# Several projects into a folder, each frame as one render writes it; a
# project that fails does not stop the others.
cp wall.tsrx other.v2.tsrx
expect 2 "$BIN" render missing.tsrx wall.tsrx -o show/night --format PNG --transparent
expect 0 "$BIN" render wall.tsrx other.v2.tsrx -o show/night --format .png --transparent
expect 0 "$BIN" render wall.tsrx -o one.png --transparent
cmp -s show/night/wall.png one.png && cmp -s show/night/other.v2.png one.png && ok ||
  fail "the frames rendered into a folder differ from one render's"

# Refusals and failures, each leaving no file: extensions that write
# nothing (refused before any work), bad arguments and input, a write into
# a folder that is not there (none is made on the way), a layer that cannot
# be drawn, a raster too large to draw (named with the limit).
# STATUS|ERROR|WORDS|NOT WRITTEN
printf 'hello\n' >junk.tsrx
project huge.tsrx 640 360 "$(screen Huge 0 0 1 1 100000)"
project vast.tsrx 20000 20000 "$(screen Small 0 0 1 1 10)"
while IFS='|' read -r want text words file; do
  # shellcheck disable=SC2086
  expect "$want" "$BIN" render $words && contains err.txt "$text" && absent "$file"
done <<'TABLE'
2|frame.jpeg: cannot write images of type "jpeg" (use .png, .tga, .bmp, .jpg or .psd)|wall.tsrx -o frame.jpeg|frame.jpeg
2|frame.tif: cannot write images of type "tif"|wall.tsrx -o frame.tif|frame.tif
2|frame: has no image extension|wall.tsrx -o frame|frame
2|-o|wall.tsrx|x.png
2|FILE|-o x.png|x.png
2|--sideways|wall.tsrx -o x.png --sideways|x.png
2|missing.tsrx|missing.tsrx -o x.png|x.png
2|junk.tsrx|junk.tsrx -o x.png|x.png
2|--color-by takes chequer, port or circuit, not "wire"|wall.tsrx -o x.png --color-by wire|x.png
2|--color-by takes chequer, port or circuit|wall.tsrx -o x.png --color-by|x.png
1|no/such/folder/frame.png|wall.tsrx -o no/such/folder/frame.png|no
1|Offscreen allocated nullptr.|huge.tsrx -o huge.png|huge.png
1|the raster of 20000 by 20000 pixels is larger than the drawable limit (at most 32767|vast.tsrx -o vast.png|vast.png
TABLE
mkdir taken.png
expect 1 "$BIN" render wall.tsrx -o taken.png
[ -d taken.png ] && ok || fail "the folder in the way is gone"

# The extension is the text after the last dot of the last path component.
mkdir -p dotted.dir
expect 0 "$BIN" render wall.tsrx -o dotted.dir/frame.v2.png
[ "$(head -c 8 dotted.dir/frame.v2.png | od -An -tx1 | tr -d ' ')" = 89504e470d0a1a0a ] && ok ||
  fail "frame.v2.png is not a PNG"
expect 2 "$BIN" render wall.tsrx -o dotted.dir/frame
absent dotted.dir/frame

# A data path that does not fit its ports is switched off and said so; the
# frame is still written.
project path.tsrx 640 360 "$(screen Path 0 0 4 3 100 "$(printf 'DrawSnake:1\nSnakeLimit:300\nDataDiagramType:0\n')")"
expect 0 "$BIN" render path.tsrx -o path.png
[ -s path.png ] && ok || fail "path.png was not written"
contains err.txt "Some panels consume more pixels then limit used."
contains err.txt "switched off"

# Test patterns and identify frames for media servers: on the cabinets
# only (eight bars of 25 pixels across each screen), black around them;
# port 1 lit in its colours, light and dark in turn; no port 2.
want=(bars 24 50 255,255,255,255  bars 25 50 255,255,0,255  bars 250 50 0,0,0,255
  grey 0 0 0,0,0,255  grey 199 0 255,255,255,255  crosshatch 1 1 0,0,0,255
  crosshatch 99 1 255,255,255,255  green 399 99 0,255,0,255  green 250 0 0,0,0,255
  ports 1 1 230,25,75,255  ports 101 1 153,16,50,255  ports:2 1 1 0,0,0,255
  circuits:1 301 1 230,25,75,255  cabinets 401 1 153,16,50,255)
for ((i = 0; i < ${#want[@]}; i += 4)); do
  case "${want[i]}" in
  ports* | circuits* | cabinets*) flag=(--identify "${want[i]}") ;;
  *) flag=(--pattern="${want[i]}") ;;
  esac
  expect 0 "$BIN" render wall.tsrx -o "wall-$i.png" "${flag[@]}"
  same "${want[i]} $(pixel "wall-$i.png" "${want[i + 1]}" "${want[i + 2]}")" "${want[i]} ${want[i + 3]}"
done
for bad in "--pattern plaid" "--identify ports:0" "--identify racks" "--pattern" \
  "--pattern red --identify ports"; do
  expect 2 "$BIN" render wall.tsrx -o bad.png $bad && contains err.txt "usage: tesserine render"
done
expect 2 "$BIN" render wall.tsrx -o red.psd --pattern red
absent bad.png
absent red.psd

# From behind, with every text off, the frame is the front one mirrored
# (outlines and circles too, screens cut by both edges); by port the
# cabinets of one port keep a chequer of its colour, light and dark.
project rear.tsrx 641 360 "$(screen Left -30 7 3 2 100 "$(printf 'DrawGrid:1\nDrawCircle:1\n')")" \
  "$(screen Right 333 40 3 2 100)"
expect 0 "$BIN" render rear.tsrx -o front.png --color-by port
expect 0 "$BIN" render rear.tsrx -o rear.png --color-by port --rear
convert front.png -flop flopped.png
same "$(compare -metric AE flopped.png rear.png null: 2>&1)" 0
same "$(pixel front.png 10 50) $(pixel front.png 100 50)" "230,25,75,255 153,16,50,255"
same "$(pixel rear.png 630 50)" "230,25,75,255"

finish render.sh
