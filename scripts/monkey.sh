#!/usr/bin/env bash
# Seeded random input on the real tesserine under Xvfb: clicks, drags with
# and without Shift and Ctrl, the wheel, every shortcut of the menu table,
# Delete, Tab, Space and Escape, numbers, expressions and non-ASCII text
# typed into fields; dialogs answered with Escape as they come. A crash, a
# hang or a sanitizer report fails and prints the seed, the last events and
# the program's output. ./test --deep runs it on the sanitizer build.
# Usage: monkey.sh PATH_TO_TESSERINE SEED SECONDS
set -uo pipefail
BIN="$(realpath "$1")"
SEED="$2"
RUN_SECONDS="$3"
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
source "$ROOT/scripts/xvfb.bash"
WORK="$(mktemp -d)"
trap 'stop_all; rm -rf "$WORK"' EXIT
# Dialogs start in the run's own folder, and whatever they save stays there.
export HOME="$WORK" XDG_DATA_HOME="$WORK/data" XDG_RUNTIME_DIR="$WORK/run"
mkdir -m 0700 "$XDG_RUNTIME_DIR"
cd "$WORK"

# The shortcuts of the menu table, as xdotool names their keys.
mapfile -t SHORTCUTS < <(grep -oE '(CONTROL|ALT)\+[^|\\" ]*' "$ROOT/src/document/menu_text.cpp" |
  sort -u | sed 's/CONTROL/ctrl/; s/SHIFT/shift/; s/ALT/alt/; s/++$/+plus/; s/+-$/+minus/' | tr 'A-Z' 'a-z')
KEYS=(Delete Tab space Escape Return BackSpace Left Right Up Down)
TEXTS=("1920/8" "12" "-5" "3*4+1" "(7" "1e9" "99999999999" "Wänd B" "舞台 2026" "ÆØÅ")
MODIFIERS=("" shift ctrl)
# pick KIND: "X Y" of a random control of that kind, or nothing.
pick() { controls "" "$1" | awk -v r="$RANDOM" '{ if (r % NR == 0) p = $1 " " $2 } END { print p }'; }

start_display 1600x1000 || exit 1
start_mapped "$BIN"
RANDOM="$SEED"
end=$((SECONDS + RUN_SECONDS))
events=0
while [ "$SECONDS" -lt "$end" ]; do
  # Every few events: still answering, and any dialog answered.
  [ $((events % 4)) -eq 0 ] && fresh_map
  x=$((RANDOM % 1600)) y=$((RANDOM % 1000)) mod="${MODIFIERS[RANDOM % 3]}"
  case "$( ((events % 4 == 0)) && a_dialog_is_open && echo dialog || echo $((RANDOM % 8)))" in
  dialog) event="Escape to a dialog"; xdotool key Escape ;;
  0 | 1) event="click $x $y"; xdotool mousemove "$x" "$y" click 1 ;;
  2)
    # Within the screen: xdotool takes no negative point.
    dx=$((RANDOM % 300 - (x < 150 ? x : 150))) dy=$((RANDOM % 300 - (y < 150 ? y : 150)))
    event="drag${mod:+ with $mod} from $x $y by $dx $dy"
    [ -n "$mod" ] && xdotool keydown "$mod"
    xdotool mousemove "$x" "$y" mousedown 1 mousemove $((x + dx / 2)) $((y + dy / 2)) \
      mousemove $((x + dx)) $((y + dy)) mouseup 1
    [ -n "$mod" ] && xdotool keyup "$mod"
    ;;
  3) event="wheel at $x $y"; xdotool mousemove "$x" "$y" click $((4 + RANDOM % 2)) ;;
  4) event="key ${SHORTCUTS[RANDOM % ${#SHORTCUTS[@]}]}"; xdotool key "${event#key }" ;;
  5) event="key ${KEYS[RANDOM % ${#KEYS[@]}]}"; xdotool key "${event#key }" ;;
  6)
    text="${TEXTS[RANDOM % ${#TEXTS[@]}]}"
    read -r fx fy <<<"$(pick field)"
    event="type '$text' into the field at ${fx:-none} ${fy:-}"
    [ -n "${fx:-}" ] && xdotool mousemove "$fx" "$fy" click 1 key ctrl+a type --delay 5 -- "$text" &&
      xdotool key Return
    ;;
  7)
    read -r cx cy <<<"$(pick 'button|check|entry')"
    event="click the control at ${cx:-none} ${cy:-}"
    [ -n "${cx:-}" ] && xdotool mousemove "$cx" "$cy" click 1
    ;;
  esac
  events=$((events + 1))
  echo "seed $SEED, event $events: $event" >>events.log
done
fresh_map
grep -q "runtime error\|Sanitizer" app.log && give_up "a sanitizer report"
echo "monkey: seed $SEED, $events events, no fault"
