#!/usr/bin/env bash
# Many screens at once in the real tesserine under Xvfb, with real clicks
# and keys: Alt+click selects two screens, a Shift drag moves both and
# snaps them as one block, arrows nudge them (Shift 10, Alt a cabinet),
# Ctrl+Z takes each step back, Escape lets the selection go; then Ctrl+A,
# Ctrl+C in one running program and Ctrl+V in a second one pastes the
# screens there at the first free place. Each state is saved and read back.
# Usage: multi.sh PATH_TO_TESSERINE
set -uo pipefail
BIN="$(realpath "$1")"
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
source "$ROOT/scripts/xvfb.bash"
in_scratch_folder
screen_info_only
FIRST=""
trap '[ -n "$FIRST" ] && kill "$FIRST" 2>/dev/null; stop_all; rm -rf "$WORK"' EXIT
DEADLINE=120

# Three screens of 64-pixel cabinets where the first palettes leave the canvas free.
screen() {
  local body
  printf -v body 'OffsetX:%d\nOffsetY:%d\nName:%s\nColumns:%d\nRows:%d\nWidth:64\nHeight:64\n%s\n' \
    "$@" "BoxColors:0.25 0.5 0.5 1"
  printf '1 %d\n%s' "${#body}" "$body"
}
{
  printf 'TESSERINE_LED_PROJECT v2 3 22\nWidth:1920\nHeight:1080\n'
  screen 100 50 Left 3 2 && screen 350 200 Centre 3 2 && screen 600 40 Right 2 4
  printf '100 15\nRaster Label:0\n'
} >stage.tsrx

start_display 1600x1000 || exit 1
launch "$BIN" "$WORK/stage.tsrx" || { cat app.log >&2; exit 1; }
read -r WX WY < <(window_origin "$WID")
at() { echo $((WX + 280 + $1)) $((WY + 70 + $2)); }
# The frame is in, at Actual Size (an opened project is fitted to the free
# canvas first), once Left's first cabinet is no longer the background.
drawn() {
  xdotool key --window "$WID" ctrl+shift+0
  shoot window.png "$WID" && ! pixel_is window.png $((280 + 132)) $((70 + 82)) "48,48,52"
}
wait_for "the first frame" "$DEADLINE" drawn 2>/dev/null || { echo "FAIL: no frame" >&2; exit 1; }

n=0
# saved_as_expected WID "NAME X Y;...": Ctrl+S in that window, the file named,
# and the names and offsets of its layers, in order.
saved_as_expected() {
  local got
  n=$((n + 1))
  xdotool windowfocus --sync "$1" 2>/dev/null
  xdotool key ctrl+s
  wait_for "the save dialog" "$DEADLINE" has_window "^Save As" || return 1
  xdotool windowfocus --sync "$(window_id "^Save As")" 2>/dev/null
  xdotool type --delay 5 "$WORK/state$n.tsrx"
  xdotool key Return
  wait_for "state$n.tsrx" "$DEADLINE" test -s "state$n.tsrx" || return 1
  got="$("$BIN" info "state$n.tsrx" 2>/dev/null | python3 -c 'import json, sys
print(";".join("%s %d %d" % (l["name"], l["offset_x"], l["offset_y"]) for l in json.load(sys.stdin)["layers"]))')"
  [ "$got" = "$2" ] || { echo "state$n.tsrx holds $got, not $2" >&2; return 1; }
}
keys() { xdotool windowfocus --sync "$WID" 2>/dev/null && xdotool key "$@"; }
alt_click() { xdotool mousemove "$1" "$2" keydown alt click 1 keyup alt; }

# Alt+click on Left and on Centre; Shift drags Centre by (40, 30): the
# block's right edge comes 18 from Right's left edge and snaps onto it.
read -r PX PY < <(at 200 100) && alt_click "$PX" "$PY"
read -r PX PY < <(at 450 250) && alt_click "$PX" "$PY"
xdotool mousemove "$PX" "$PY" keydown shift mousedown 1 mousemove $((PX + 20)) $((PY + 15)) \
  mousemove $((PX + 40)) $((PY + 30)) mouseup 1 keyup shift
check "the drag moves both, snapped as one block" \
  saved_as_expected "$WID" "Left 158 80;Centre 408 230;Right 600 40"
keys Right shift+Down alt+Left
check "nudged by 1, 10 and a cabinet" \
  saved_as_expected "$WID" "Left 95 90;Centre 345 240;Right 600 40"
keys ctrl+z ctrl+z
check "two nudges undone" saved_as_expected "$WID" "Left 159 80;Centre 409 230;Right 600 40"
keys ctrl+z ctrl+z Escape Right
check "the drag undone; Escape let go" saved_as_expected "$WID" "Left 100 50;Centre 350 200;Right 600 40"

# Copied in this program, pasted in a second one: right of its own screen.
keys ctrl+a ctrl+c
FIRST="$APP_PID"
"$BIN" >>app.log 2>&1 &
APP_PID=$!
second() { xdotool search --all --onlyvisible --pid "$APP_PID" --name " - Tesserine Pro$" | head -n 1; }
has_second() { [ -n "$(second)" ]; }
wait_for "the second window" "$DEADLINE" has_second || { echo "FAIL: no second window" >&2; exit 1; }
WID="$(second)"
keys ctrl+v
check "pasted at the first free place" \
  saved_as_expected "$WID" "Screen1 0 0;Left 1024 10;Centre 1274 160;Right 1524 0"
keys ctrl+z
check "the paste undone" saved_as_expected "$WID" "Screen1 0 0"

kill -0 "$FIRST" && kill -0 "$APP_PID" || { echo "FAIL: a program ended" >&2; failed=$((failed + 1)); }
echo "multi: $n states saved, $failed failed"
[ "$failed" -eq 0 ]
