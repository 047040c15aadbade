#!/usr/bin/env bash
# The processor in the real tesserine under Xvfb: the Data-Flow palette's
# model, first port and backup chosen as a user does, each one undo step;
# the canvas labels the chains as the command line renders them; the
# library's editor opens from the palette.
# Usage: processors.sh PATH_TO_TESSERINE
set -uo pipefail
BIN="$(realpath "$1")"
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/xvfb.bash"
in_scratch_folder
DEADLINE=120
PALETTE="palette:Data-Flow Diagram"
# click KIND NAME [TEXT]: clicks the palette's control; with TEXT, types it
# and Return.
click() {
  read -r X Y < <(control_at "$PALETTE" "$1" "$2") || give_up "no $1 $2"
  echo "$2" >>events.log
  xdotool mousemove "$X" "$Y" click 1
  if [ $# -ge 3 ]; then xdotool key ctrl+a type --delay 5 -- "$3" && xdotool key Return; fi
}
# choose NAME DOWNS: opens the drop-down and goes DOWNS entries down.
choose() {
  click combo "$1"
  wait_for "the $1 list" "$DEADLINE" eval 'fresh_map; a_dialog_is_open'
  for _ in $(seq "$2"); do xdotool key Down; done
  xdotool key Return
  wait_for "the $1 list to close" "$DEADLINE" eval 'fresh_map; ! a_dialog_is_open'
}
units_are() { "$BIN" processors "$1" 2>/dev/null | grep -qF -- "$2"; }

start_display 1920x1080 || exit 1
start_mapped "$BIN"

# The default wall of 655,360 pixels is one chain: "Generic 16 x 1G" (the
# third model), port 3, looped back to port 4.
choose Processor 3
click field FirstPort 3
choose Backup 1
check "saved" save_by ctrl+s proc.tsrx
check "unit 1, one main and one backup port" \
  units_are proc.tsrx 'unit 1 "Generic 16 x 1G": 16 ports, 1 main, 1 backup, 14 free'
# Each change was one step: three undos leave no processor key.
xdotool windowfocus --sync "$WID" 2>/dev/null
xdotool key ctrl+z ctrl+z ctrl+z
check "saved after undo" save_by ctrl+s undone.tsrx
check "no processor key" [ -z "$(grep -E 'Processor|FirstPort|Backup' undone.tsrx)" ]
# Opened again, the canvas labels the chain "1:3" and "B1:4" as the
# command line renders it.
opened_as_rendered proc.tsrx

# The library's editor opens from the palette, and Escape closes it.
click button ProcessorLibrary
check "the processors dialog" wait_for "the dialog" "$DEADLINE" has_window "^Processors$"
xdotool windowfocus --sync "$(window_id "^Processors$")" 2>/dev/null
xdotool key Escape
check "closed" wait_for "the dialog to close" "$DEADLINE" eval '! has_window "^Processors$"'

echo "processors: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
