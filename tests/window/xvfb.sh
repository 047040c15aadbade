#!/usr/bin/env bash
# The real tesserine under Xvfb: it opens its window with the menu strip and
# the new workspace's screen layer under the top panel at the canvas's pan;
# a user drags the screen, knocks a cabinet out, switches the data path on
# by shortcuts and saves and exports through the file dialog, and what is
# written matches what the command line makes of it; a close request asks
# the question, whose "Yes" ends the program. Then unsaved work survives
# kill -9, and closing with unsaved work asks.
# Usage: xvfb.sh PATH_TO_TESSERINE
set -uo pipefail
BIN="$(realpath "$1")"
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
source "$ROOT/scripts/xvfb.bash"

in_scratch_folder
screen_info_only

# Generous: CI is a loaded two-core machine, and a wait ends as soon as
# what it waits for is there.
DEADLINE=120

start_display 1600x1000 || exit 1
launch "$BIN" || { cat app.log >&2; exit 1; }
read -r WX WY < <(window_origin "$WID")
check "the default screen layer's cabinet (1,1) at the canvas's pan" first_frame
check "the menu strip" pixel_is window.png 5 5 "38,38,38"
# The right panel covers the canvas at the window's right edge; between
# its two lists, which share its height, its own colour shows.
W="$(identify -format '%w' window.png)"
H="$(identify -format '%h' window.png)"
check "the right panel" pixel_is window.png $((W - 100)) $((60 + (H - 60) / 2 - 3)) "29,29,29"

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
check "Tab, 1920/8 and Return move the layer to 240" wait_for "the layer at 240" "$DEADLINE" moved

# answer KEYS TITLE FILE: a command that asks for a file, answered by typing
# its path into the dialog; waits for the dialog to go.
answer() {
  xdotool windowfocus --sync "$WID" 2>/dev/null
  xdotool key "$1"
  wait_for "the dialog of $1" "$DEADLINE" has_window "^$2" || return 1
  xdotool windowfocus --sync "$(window_id "^$2")" 2>/dev/null
  xdotool type --delay 5 "$3"
  xdotool key Return
  wait_for "the end of the dialog of $1" "$DEADLINE" no_window "^$2"
}
# save_as KEYS FILE: as answer, and waits for the file.
save_as() { answer "$1" "Save As" "$2" && wait_for "$2" "$DEADLINE" test -s "$2"; }
no_window() { ! has_window "$1"; }
# project_has FILE PYTHON: a condition on the project as `info` reports it
# (d is the report, s the first layer's parameters).
project_has() {
  "$BIN" info "$1" 2>/dev/null | python3 -c '
import json, sys
d = json.load(sys.stdin)
s = d["layers"][0]["parameters"]
sys.exit(0 if eval(sys.argv[1]) else 1)' "$2"
}
# press KEYS [TITLE]: keys to the main window, or to the window of that title.
press() {
  xdotool windowfocus --sync "$(window_id "${2:- - Tesserine Pro$}")" 2>/dev/null
  xdotool key "$1"
}
# at X Y: a point of the raster on the screen, the canvas at zoom 1 and its
# default pan below the top panel.
at() { echo $((WX + 280 + $1)) $((WY + 70 + $2)); }

# Shift drags the screen (grabbed inside its cabinet (0, 1)) by (100, 50);
# Control pressed on cabinet (0, 1), now at (340..468, 178..306), knocks it
# out; shortcuts switch the data path on, choose its third pattern and
# clone the screen.
read -r PX PY < <(at 300 200)
xdotool mousemove "$PX" "$PY" keydown shift mousedown 1 \
  mousemove $((PX + 50)) $((PY + 25)) mousemove $((PX + 100)) $((PY + 50)) mouseup 1 keyup shift
read -r PX PY < <(at 420 240)
xdotool mousemove "$PX" "$PY" keydown ctrl click 1 keyup ctrl
xdotool key ctrl+shift+d ctrl+3 ctrl+d
check "Ctrl+S saves the project" save_as ctrl+s "$WORK/edited.tsrx"
# The clone comes first, at the raster's corner.
check "moved, one cabinet out, data path on, pattern 3, cloned" project_has edited.tsrx \
  '(len(d["layers"]) == 2 and (d["layers"][1]["offset_x"], d["layers"][1]["offset_y"]) == (340, 50)
   and all(l["cabinets"] == 39 and l["parameters"]["DrawSnake"] == "1" and
   l["parameters"]["SnakeMode"] == "2" for l in d["layers"]))'

# Opened again, the project shows what the command line renders of it
# (reading a project switches the raster label on), and the exports are
# that frame.
check "Ctrl+O opens the project" answer ctrl+o "Open" "$WORK/edited.tsrx"
"$BIN" render edited.tsrx -o expected.png 2>/dev/null
"$BIN" render edited.tsrx -o expected.psd 2>/dev/null
check "Alt+S exports a PNG" save_as alt+s "$WORK/frame.png"
check "the PNG is the command line's" wait_for "the whole PNG" "$DEADLINE" cmp -s frame.png expected.png
check "Ctrl+Alt+S exports a PSD" save_as ctrl+alt+s "$WORK/frame.psd"
check "the PSD is the command line's" wait_for "the whole PSD" "$DEADLINE" cmp -s frame.psd expected.psd

# Ctrl+- deletes the layer, Ctrl+Z brings it back, Ctrl+Shift+Z and Ctrl+Y
# redo: each saved project tells how many layers there are.
layers_are() { project_has "$1" "len(d[\"layers\"]) == $2"; }
n=0
for row in "ctrl+minus ctrl+z:2" "ctrl+shift+z:1" "ctrl+z ctrl+y:1" "ctrl+z:2"; do
  xdotool windowfocus --sync "$WID" 2>/dev/null
  xdotool key ${row%%:*}
  n=$((n + 1))
  check "$row: saved" save_as ctrl+s "$WORK/undo$n.tsrx"
  check "$row: layers" layers_are "undo$n.tsrx" "${row##*:}"
done

# Closing asks; Return answers "Yes" and the program ends.
check "the close request is sent" close_request "$WID"
check "the question" wait_for "the quit question" "$DEADLINE" has_window "^Quit"
check "the program still runs while it asks" kill -0 "$APP_PID"
press Return "^Quit"
program_ended() { ! kill -0 "$APP_PID" 2>/dev/null; }
check "Yes ends the program" wait_for "the program's end" "$DEADLINE" program_ended
wait "$APP_PID" 2>/dev/null
check "a clean exit" [ $? -eq 0 ]
APP_PID=""

# Crash recovery: an edit, the program killed, and a new start that
# recovers it (Return) and saves it under its own name (Ctrl+S, Return).
RECOVERY="$XDG_DATA_HOME/Tesserine/recovery"
left() { compgen -G "$RECOVERY/session-*.$1" >/dev/null; }
gone() { ! left tsrx; }
nothing_left() { gone && ! left lock; }
export TESSERINE_AUTOSAVE_SECONDS=1
check "the project opens" launch "$BIN" "$WORK/undo4.tsrx"
press ctrl+shift+d
check "the edit is written for recovery" wait_for "the recovery file" "$DEADLINE" left tsrx
kill -9 "$APP_PID"
wait "$APP_PID" 2>/dev/null
rm -f undo4.tsrx
check "a new start" launch "$BIN"
check "the recovery question" wait_for "the question" "$DEADLINE" has_window "^Recover Unsaved"
press Return "^Recover Unsaved"
check "Return recovers" wait_for "the end of the question" "$DEADLINE" no_window "^Recover Unsaved"
press ctrl+s
check "the save dialog" wait_for "the save dialog" "$DEADLINE" has_window "^Save As"
press Return "^Save As"
check "saved under its own name, with the edit" wait_for "the save" "$DEADLINE" \
  project_has undo4.tsrx 's["DrawSnake"] == "0"'
check "nothing left to recover once saved" wait_for "the recovery file to go" "$DEADLINE" gone

# Closing with unsaved changes asks: Escape keeps the window, "Don't Save"
# (Alt+D) ends the program and leaves nothing to recover.
press ctrl+shift+d
check "written for recovery again" wait_for "the recovery file" "$DEADLINE" left tsrx
for key in Escape alt+d; do
  check "the close request is sent" close_request "$WID"
  check "the unsaved question" wait_for "the question" "$DEADLINE" has_window "^Unsaved Changes"
  press "$key" "^Unsaved Changes"
  check "$key answers" wait_for "the end of the question" "$DEADLINE" no_window "^Unsaved Changes"
  [ "$key" = Escape ] && check "Escape keeps the window" kill -0 "$APP_PID"
done
check "Don't Save ends the program" wait_for "the program's end" "$DEADLINE" program_ended
check "and leaves nothing to recover" nothing_left
APP_PID=""

echo "xvfb: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
