#!/usr/bin/env bash
# Identify and test patterns on a second X screen, driven as a crew drives
# them: the Live Output menu clicked where the control map says, Left and
# Right typed on the real keyboard. Each step must show on the second
# screen exactly what `tesserine render --identify` / `--pattern` writes.
# Usage: identify.sh PATH_TO_TESSERINE
set -uo pipefail
BIN="$(realpath "$1")"
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
source "$ROOT/scripts/xvfb.bash"

in_scratch_folder
DEADLINE=${DEADLINE:-120}
failed=0

# Two screens, four cabinets to a port: 8 ports on the first, 2 on the other.
cp "$ROOT/tests/data/identify_wall.tsrx" wall.tsrx
"$BIN" route wall.tsrx --json | grep -q '"port": 8' || { echo "FAIL: the wall has no port 8" >&2; exit 1; }

start_display 1920x1080 1920x1080 || exit 1
export TESSERINE_CONTROL_MAP="$PWD/map.txt"
launch "$BIN" wall.tsrx || { cat app.log >&2; exit 1; }
menu() {
  local control
  for control in "menu|Live Output" "submenu|$1"; do
    read -r CX CY < <(control_at "${control%%|*}" entry "${control#*|}")
    xdotool mousemove "${CX:-0}" "${CY:-0}" click 1
  done
}
shows() {
  import -display "${DISPLAY}.1" -window root second.png 2>/dev/null &&
    [ "$(compare -metric AE want.png second.png null: 2>&1)" = "0" ]
}
# shows_render WHAT RENDER-FLAGS...: the second screen shows that render.
shows_render() {
  local what="$1"
  shift
  "$BIN" render wall.tsrx -o want.png "$@" || { failed=$((failed + 1)); return; }
  convert want.png -background black -alpha remove want.png
  if wait_for "$what" "$DEADLINE" shows; then
    echo "$what: the second screen shows the render"
  else
    echo "FAIL: $what: $(compare -metric AE want.png second.png null: 2>&1) pixels differ" >&2
    failed=$((failed + 1))
  fi
}
key() {
  xdotool windowfocus --sync "$WID" 2>/dev/null
  xdotool key --clearmodifiers "$1"
}

menu "Live Output to Screen 2"
menu "Identify: Ports"
shows_render "port 1" --identify ports:1
key Right
shows_render "Right: port 2" --identify ports:2
key Left
key Left
shows_render "Left twice: round to port 8" --identify ports:8
menu "Identify: Circuits"
shows_render "circuit 1" --identify circuits:1
menu "Identify: Cabinets"
shows_render "cabinets" --identify cabinets
menu "Test Pattern: Colour Bars"
shows_render "colour bars" --pattern bars
menu "Test Pattern: Cabinet Crosshatch"
shows_render "crosshatch" --pattern crosshatch
[ "$failed" -eq 0 ]
