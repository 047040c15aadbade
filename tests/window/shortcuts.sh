#!/usr/bin/env bash
# Every shortcut of the menu, typed on a real (Xvfb) keyboard with a US
# layout: Shift, the keypad and "+" (Shift+= there) included. Each key must
# run its entry: the program prints the entry's number within its section,
# and a file dialog or question it opens is answered with Escape.
# Usage: shortcuts.sh PATH_TO_TESSERINE
set -uo pipefail
BIN="$(realpath "$1")"
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
source "$ROOT/scripts/xvfb.bash"

in_scratch_folder
screen_info_only
DEADLINE="${DEADLINE:-120}"

start_display 1600x1000 || exit 1
launch "$BIN" || { cat app.log >&2; exit 1; }
# Keys count once the first frame is there.
first_frame || exit 1

# The number of every entry within its section, as the menu text has them.
python3 - "$ROOT/src/document/menu_text.cpp" >entries.txt <<'PY'
import re, sys
code = open(sys.argv[1]).read()
text = "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', code)).replace("\\n", "\n")
n = 0
for line in text.split("\n"):
    if line.startswith("#"): n = 0
    elif line:
        print(f"{line.split('|')[0]}|{n}")
        n += 1
PY
entry() { awk -F'|' -v w="$1" '$1 == w { print $2; exit }' entries.txt; }

# ran COUNT ID: the entry printed after the COUNT printed before is ID.
ran() { [ "$(grep '^Submenu clicked' app.log | sed -n "$(($1 + 1))p")" = "Submenu clicked, id: $2" ]; }
# Another window of ours (a file dialog, a question) is in front.
other_window() { xdotool search --onlyvisible --pid "$APP_PID" --name . 2>/dev/null | grep -vx "$WID" | head -n 1; }
dialog_up() { [ -n "$(other_window)" ]; }
dialog_gone() { [ -z "$(other_window)" ]; }

failed=0
# key (xdotool's name)  whether it asks  the entry it runs
while read -r key asks what; do
  [ -z "$key" ] || [ "${key:0:1}" = "#" ] && continue
  id="$(entry "$what")"
  [ -n "$id" ] || { echo "FAIL: no entry $what in the menu" >&2; failed=$((failed + 1)); continue; }
  before="$(grep -c '^Submenu clicked' app.log)"
  xdotool windowfocus --sync "$WID" 2>/dev/null
  xdotool key --clearmodifiers "$key"
  if ! wait_for "$key" "$DEADLINE" ran "$before" "$id"; then
    echo "FAIL: $key did not run $what" >&2
    failed=$((failed + 1))
    continue
  fi
  if [ "$asks" = "asks" ]; then
    wait_for "the dialog of $key" "$DEADLINE" dialog_up || { failed=$((failed + 1)); continue; }
    xdotool windowfocus --sync "$(other_window)" 2>/dev/null
    xdotool key Escape
    wait_for "the end of the dialog of $key" "$DEADLINE" dialog_gone || failed=$((failed + 1))
  fi
  echo "$key: $what"
done <<'TABLE'
# File
ctrl+n            -     New
ctrl+o            asks  Open Project...
ctrl+s            asks  Save Project...
alt+s             asks  Export PNG...
ctrl+alt+s        asks  Export PSD...
ctrl+alt+r        asks  Export Resolume Arena...
# Edit
ctrl+z            -     Undo
ctrl+shift+z      -     Redo
# Layers: "+" is Shift+= on this layout; the keypad's keys too
ctrl+plus         -     Add Screen Layer
ctrl+equal        -     Add Screen Layer
ctrl+shift+equal  -     Add Screen Layer
ctrl+KP_Add       -     Add Screen Layer
ctrl+i            asks  Add Image Layer
ctrl+d            -     Clone Current Layer
ctrl+minus        -     Delete Current Layer
ctrl+KP_Subtract  -     Delete Current Layer
# View
ctrl+shift+b      -     Background Color
ctrl+shift+o      -     Outline
ctrl+shift+c      -     Centering Circle
ctrl+shift+x      -     XY Offsets Label
ctrl+shift+s      -     Screen Size Label
ctrl+shift+l      -     Cabinet ID
ctrl+shift+p      -     Power Label
ctrl+shift+d      -     Data Path
ctrl+1            -     Path Pattern 1
ctrl+2            -     Path Pattern 2
ctrl+3            -     Path Pattern 3
ctrl+4            -     Path Pattern 4
ctrl+5            -     Path Pattern 5
ctrl+6            -     Path Pattern 6
ctrl+7            -     Path Pattern 7
ctrl+8            -     Path Pattern 8
ctrl+0            -     Fit Raster
ctrl+shift+0      -     Actual Size
# Window: the digits with Shift type "$%^&*(" here
ctrl+shift+4      -     Screen Info
ctrl+shift+5      -     Labels Info
ctrl+shift+6      -     Data tools
ctrl+shift+7      -     Power tools
ctrl+shift+8      -     Color tools
ctrl+shift+9      -     Raster Label tool
# Live Output
ctrl+p            -     No Live Output
TABLE

kill -0 "$APP_PID" || { echo "FAIL: the program ended" >&2; failed=$((failed + 1)); }
[ "$failed" -eq 0 ]
