#!/usr/bin/env bash
# The real tesserine under Xvfb: it opens its window with the menu strip and
# the new workspace's screen layer under the top panel at the canvas's pan,
# and a close request asks the question, whose "Yes" ends the program.
# Usage: xvfb.sh PATH_TO_TESSERINE
set -uo pipefail
BIN="$(realpath "$1")"
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
source "$ROOT/scripts/xvfb.bash"

WORK="$(mktemp -d)"
trap 'stop_all; rm -rf "$WORK"' EXIT
export XDG_DATA_HOME="$WORK/data" XDG_RUNTIME_DIR="$WORK/run"
mkdir -m 0700 "$XDG_RUNTIME_DIR"
cd "$WORK"

passed=0
failed=0
check() { # WHAT CMD...
  local what="$1"
  shift
  if "$@"; then passed=$((passed + 1)); else echo "FAIL: $what" >&2; failed=$((failed + 1)); fi
}

start_display 1600x1000 || exit 1
"$BIN" >app.log 2>&1 &
APP_PID=$!
wait_for "the main window" 30 has_window "^Tesserine Pro$" || { cat app.log >&2; exit 1; }
WID="$(window_id "^Tesserine Pro$")"
read -r WX WY < <(window_origin "$WID")

# The window's own pixels, taken again until the first frame is painted.
painted() {
  shoot window.png "$WID" && pixel_is window.png $((280 + 200)) $((70 + 200)) "63,127,127"
}
check "the default screen layer's cabinet (1,1) at the canvas's pan" wait_for "the first frame" 30 painted
check "the menu strip" pixel_is window.png 5 5 "38,38,38"
check "the background left of the raster" pixel_is window.png 5 $((70 + 400)) "48,48,52"
# Cabinet (2, 1) is the tint of the chequer.
check "the chequer's tint" pixel_is window.png $((280 + 300)) $((70 + 200)) "149,184,184"
# The right panel covers the canvas at the window's right edge.
W="$(identify -format '%w' window.png)"
check "the right panel" pixel_is window.png $((W - 100)) 500 "29,29,29"

# Tab from nowhere lands in "Offset X" of Screen Info with its text
# selected: typing replaces it, and Return moves the layer by the result.
xdotool windowfocus --sync "$WID" 2>/dev/null
xdotool key --window "$WID" Tab
xdotool type --window "$WID" --delay 20 "1920/8"
xdotool key --window "$WID" Return
moved() {
  shoot window.png "$WID" && pixel_is window.png $((280 + 240 + 200)) $((70 + 200)) "63,127,127" &&
    ! pixel_is window.png $((280 + 200)) $((70 + 200)) "63,127,127"
}
check "Tab, 1920/8 and Return move the layer to 240" wait_for "the layer at 240" 20 moved

# Closing asks; Return answers "Yes" and the program ends.
check "the close request is sent" close_request "$WID"
check "the question" wait_for "the quit question" 20 has_window "^Quit"
QID="$(window_id "^Quit")"
check "the program still runs while it asks" kill -0 "$APP_PID"
xdotool windowfocus --sync "$QID" 2>/dev/null
xdotool key Return
program_ended() { ! kill -0 "$APP_PID" 2>/dev/null; }
check "Yes ends the program" wait_for "the program's end" 20 program_ended
wait "$APP_PID" 2>/dev/null
check "a clean exit" [ $? -eq 0 ]
APP_PID=""

echo "xvfb: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
