#!/usr/bin/env bash
# Planning the wall in the real tesserine under Xvfb: the Power palette's
# circuit rating, chain pattern and power path, typed and clicked as a user
# does; each change one undo step; the canvas draws the power path as the
# command line renders it; the bill of materials from the File menu.
# Usage: planning.sh PATH_TO_TESSERINE
set -uo pipefail
BIN="$(realpath "$1")"
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/xvfb.bash"
in_scratch_folder
DEADLINE=120
# click PLACE KIND NAME [TEXT]: clicks the control; with TEXT, types it and Return.
click() {
  read -r X Y < <(control_at "$1" "$2" "$3") || give_up "no $2 $3 in $1"
  echo "$3" >>events.log
  xdotool mousemove "$X" "$Y" click 1
  if [ $# -ge 4 ]; then xdotool key ctrl+a type --delay 5 -- "$4" && xdotool key Return; fi
}
# power_is FILE TEXT: the power plan's text form holds TEXT.
power_is() { "$BIN" power "$1" 2>/dev/null | grep -qF -- "$2"; }

start_display 1920x1080 || exit 1
start_mapped "$BIN"

# 40 cabinets of 200 W on 10 A circuits (880 W): four a circuit, in rows
# from the top left (pattern 1), drawn on the map.
click "palette:Power" field CircuitAmps 10
click "palette:Power" check PowerPatternCheckbox0
click "palette:Power" check PowerPath
check "saved" save_by ctrl+s power.tsrx
check "10 A circuits of four cabinets" power_is power.tsrx '  circuit 10 L1 (4,4)-(7,4) 4 cabinets 800 W'
# Each change was one step: three undos give the defaults back.
xdotool windowfocus --sync "$WID" 2>/dev/null
xdotool key ctrl+z ctrl+z ctrl+z
check "saved after undo" save_by ctrl+s undone.tsrx
check "16 A circuits, the data pattern, no path" \
  power_is undone.tsrx '  circuit 6 L3 (7,4)-(7,0) 5 cabinets 1000 W'
check "no key beyond the defaults" [ -z "$(grep -E 'CircuitAmps|PowerPattern|DrawPowerPath' undone.tsrx)" ]

# Opened again, the canvas shows what the command line renders.
opened_as_rendered power.tsrx

# The bill of materials: a weight typed with a decimal comma and a spare
# share; File > Export Bill of Materials... writes what `bom --csv` writes,
# and a real CSV reader reads it.
click "palette:Power" field CabinetWeight "7,5"
click "palette:Power" field SparePercent 10
check "saved with a weight" save_by ctrl+s bom.tsrx
check "the weight as typed" grep -q '^CabinetWeight:7.5$' bom.tsrx
read -r X Y < <(control_at menu entry File) && xdotool mousemove "$X" "$Y" click 1
read -r X Y < <(control_at submenu entry "Export Bill of Materials...") &&
  xdotool mousemove "$X" "$Y" click 1
check "exported the list" answer_save bom.csv
"$BIN" bom bom.tsrx --csv >expected.csv 2>/dev/null
check "the window's list is the command line's" cmp -s bom.csv expected.csv
check "40 cabinets and 4 spares, 300 kg" python3 -c '
import csv, sys
rows = list(csv.DictReader(open("bom.csv", newline="")))
got = {r["item"]: (r["count"], r["weight_kg"]) for r in rows}
sys.exit(got["cabinet"] != ("40", "300") or got["spare cabinet"] != ("4", "30"))'

echo "planning: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
