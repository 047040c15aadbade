#!/usr/bin/env bash
# The live output on a second X screen, at display scales 1, 1.25, 1.5 and
# 2: the real program on the first screen chooses "Live Output to Screen 2"
# from its menu with real clicks where its control map says (so the map is
# right at every scale), and the second screen then shows, inside
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

same_inside_layers() {
  local x y w h diff
  while read -r x y w h; do
    convert render.png -background black -alpha remove -crop "${w}x${h}+${x}+${y}" +repage want.png
    convert second.png -crop "${w}x${h}+${x}+${y}" +repage got.png
    diff="$(compare -metric AE want.png got.png null: 2>&1)"
    [ "$diff" = "0" ] || { echo "layer at $x,$y: $diff pixels differ" >&2; return 1; }
  done <layers.txt
}

export TESSERINE_CONTROL_MAP="$PWD/map.txt"
for SCALE in ${SCALES:-1 1.25 1.5 2}; do
  if ! QT_SCALE_FACTOR="$SCALE" launch "$BIN" walls.tsrx; then
    failed=$((failed + 1)); cat app.log >&2; continue
  fi
  # The Live Output section, then its first other monitor, clicked where
  # the window says they are, in the screen's own pixels at every scale.
  for control in "menu|Live Output" "submenu|Live Output to Screen 2"; do
    read -r CX CY < <(control_at "${control%%|*}" entry "${control#*|}")
    xdotool mousemove "${CX:-0}" "${CY:-0}" click 1
  done
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
