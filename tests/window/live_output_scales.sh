#!/usr/bin/env bash
# The live output on a second X screen, at display scales 1, 1.25, 1.5 and
# 2: the real program on the first screen chooses "Live Output to Screen 2"
# from its menu with real clicks, and the second screen then shows, inside
# every screen layer, exactly the pixels that `tesserine render` writes.
# Usage: live_output_scales.sh PATH_TO_TESSERINE
set -uo pipefail
BIN="$(realpath "$1")"
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
source "$ROOT/scripts/xvfb.bash"

in_scratch_folder
DEADLINE=${DEADLINE:-120}
failed=0

start_display 3840x2160 1920x1080 || exit 1
cp "$ROOT/tests/data/two_walls.tsrx" walls.tsrx
"$BIN" render walls.tsrx -o render.png || exit 1
# Every screen layer's rectangle: x y width height.
"$BIN" info walls.tsrx | python3 -c '
import json, sys
for l in json.load(sys.stdin)["layers"]:
    if l["type"] == "screen" or "columns" in l:
        print(l["offset_x"], l["offset_y"], l["width"], l["height"])' >layers.txt

# logical X: the device pixels of a logical coordinate at the scale.
device() { python3 -c "print(int(round($1 * $SCALE)))"; }

# The x of the menu title before "About", the last one left of the product
# name, read off the strip: titles are runs of text on the strip's colour.
live_output_title() {
  local W row
  W="$(identify -format '%w' "$1")"
  row="$(device 10)"
  convert "$1" -crop "${W}x1+0+${row}" -depth 8 txt:- |
    awk -F'[,:() ]+' 'NR > 1 && !($3 == 38 && $4 == 38 && $5 == 38) { print $1 }' |
    awk -v gap="$(device 10)" -v far="$(device 60)" '
      { if (n == 0 || $1 - last > gap) { if (n) e[k] = last; st[++k] = $1 } last = $1; n++ }
      END { e[k] = last
            for (i = 3; i <= k; i++)
              if (st[i] - e[i - 1] > far) { print int((st[i - 2] + e[i - 2]) / 2); exit } }'
}

same_inside_layers() {
  local x y w h diff
  while read -r x y w h; do
    convert render.png -background black -alpha remove -crop "${w}x${h}+${x}+${y}" +repage want.png
    convert second.png -crop "${w}x${h}+${x}+${y}" +repage got.png
    diff="$(compare -metric AE want.png got.png null: 2>&1)"
    [ "$diff" = "0" ] || { echo "layer at $x,$y: $diff pixels differ" >&2; return 1; }
  done <layers.txt
}

for SCALE in ${SCALES:-1 1.25 1.5 2}; do
  if ! QT_SCALE_FACTOR="$SCALE" launch "$BIN" walls.tsrx; then
    failed=$((failed + 1)); cat app.log >&2; continue
  fi
  eval "$(xdotool getwindowgeometry --shell "$WID")"
  strip_drawn() { shoot window.png "$WID" && [ -n "$(live_output_title window.png)" ]; }
  wait_for "the menu strip" "$DEADLINE" strip_drawn
  TX="$(live_output_title window.png)"
  xdotool mousemove $((X + TX)) $((Y + $(device 10))) click 1
  # The drop-down opens at the pointer under the strip; its second row is
  # the first other monitor.
  dropped() { shoot window.png "$WID" && pixel_is window.png $((TX + 3)) "$(device 45)" "38,38,38"; }
  wait_for "the Live Output drop-down" "$DEADLINE" dropped
  xdotool mousemove $((X + TX + $(device 30))) $((Y + $(device 51))) click 1
  shown() {
    import -display "${DISPLAY}.1" -window root second.png 2>/dev/null && same_inside_layers 2>/dev/null
  }
  if wait_for "the live output at scale $SCALE" "$DEADLINE" shown; then
    echo "scale $SCALE: the second screen shows the render inside every screen layer"
  else
    same_inside_layers
    echo "FAIL: scale $SCALE" >&2
    failed=$((failed + 1))
  fi
  kill "$APP_PID" 2>/dev/null
  wait "$APP_PID" 2>/dev/null
  APP_PID=""
done
[ "$failed" -eq 0 ]
