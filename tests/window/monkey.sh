#!/usr/bin/env bash
# Seeded random input on the real tesserine under Xvfb: clicks, drags with
# and without Shift and Ctrl, the wheel, every shortcut of the menu table,
# Delete, Tab, Space and Escape, numbers, expressions and non-ASCII text
# typed into fields; dialogs are answered with Escape as they come. A
# crash, a hang or a sanitizer report fails and prints the seed, the last
# events and the program's output. Run by ./test --deep on the sanitizer
# build. Usage: monkey.sh PATH_TO_TESSERINE SEED SECONDS
set -uo pipefail
BIN="$(realpath "$1")"
SEED="$2"
RUN_SECONDS="$3"
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
source "$ROOT/scripts/xvfb.bash"

WORK="$(mktemp -d)"
trap 'stop_all; rm -rf "$WORK"' EXIT
export HOME="$WORK" XDG_DATA_HOME="$WORK/data" XDG_RUNTIME_DIR="$WORK/run" BROWSER=true
export TESSERINE_CONTROL_MAP="$WORK/map.txt"
mkdir -m 0700 "$XDG_RUNTIME_DIR"
cd "$WORK"
MAP="$WORK/map.txt"
DEADLINE=120

# The shortcuts of the menu table, as xdotool names their keys.
mapfile -t SHORTCUTS < <(grep -oE '(CONTROL|ALT)\+[^|\\" ]*' "$ROOT/src/document/menu_text.cpp" | sort -u |
  sed 's/CONTROL/ctrl/; s/SHIFT/shift/; s/ALT/alt/; s/++$/+plus/; s/+-$/+minus/' | tr 'A-Z' 'a-z')
KEYS=(Delete Tab space Escape Return BackSpace Left Right Up Down)
TEXTS=("1920/8" "12" "-5" "3*4+1" "(7" "1e9" "99999999999" "Wänd B" "舞台 2026" "ÆØÅ")
MODIFIERS=("" shift ctrl)

give_up() {
  echo "FAIL: $1 (seed $SEED)" >&2
  echo "--- last events:" >&2
  tail -n 20 events.log >&2
  echo "--- program output:" >&2
  tail -c 20000 app.log >&2
  exit 1
}
fresh_map() {
  rm -f "$MAP"
  kill -0 "$APP_PID" 2>/dev/null || give_up "the program ended"
  wait_for "the control map" "$DEADLINE" test -s "$MAP" || give_up "the program hangs"
}
# A random control of a kind (a regular expression): "X Y".
pick() {
  awk -F'\t' -v k="$1" -v r="$RANDOM" '$2 ~ k { n++; if (r % n == 0) p = $3 " " $4 } END { print p }' "$MAP"
}

start_display 1600x1000 || exit 1
"$BIN" >app.log 2>&1 &
APP_PID=$!
wait_for "the main window" "$DEADLINE" has_window "^Tesserine Pro$" || give_up "no main window"
WID="$(window_id "^Tesserine Pro$")"
xdotool windowfocus --sync "$WID" 2>/dev/null
RANDOM="$SEED"
touch events.log
end=$((SECONDS + RUN_SECONDS))
events=0
while [ "$SECONDS" -lt "$end" ]; do
  fresh_map
  if grep -q '^modal' "$MAP"; then
    event="Escape to a dialog"
    xdotool key Escape
  else
    x=$((RANDOM % 1600)) y=$((RANDOM % 1000)) mod="${MODIFIERS[RANDOM % 3]}"
    case $((RANDOM % 8)) in
    0 | 1) event="click $x $y"; xdotool mousemove "$x" "$y" click 1 ;;
    2)
      dx=$((RANDOM % 300 - 150)) dy=$((RANDOM % 300 - 150))
      event="drag${mod:+ with $mod} $x $y by $dx $dy"
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
      if [ -n "${fx:-}" ]; then
        xdotool mousemove "$fx" "$fy" click 1 key ctrl+a
        xdotool type --delay 5 -- "$text"
        xdotool key Return
      fi
      ;;
    7)
      read -r cx cy <<<"$(pick 'button|check|entry')"
      event="click the control at ${cx:-none} ${cy:-}"
      [ -n "${cx:-}" ] && xdotool mousemove "$cx" "$cy" click 1
      ;;
    esac
  fi
  events=$((events + 1))
  echo "$events: $event" >>events.log
done
fresh_map
grep -q "runtime error\|Sanitizer" app.log && give_up "a sanitizer report"
echo "monkey: seed $SEED, $events events, no fault"
