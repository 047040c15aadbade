#!/usr/bin/env bash
# Every control of the real tesserine clicked once under Xvfb, with real
# clicks and keys: the top panel's buttons, every entry of every menu
# section and every control of every palette. Dialogs are answered with
# Escape, and Open Project once with a file name. After each action the
# program must still run and answer (it writes its control map again).
# With a sanitizer build, any report ends the program and fails the test.
# Usage: controls.sh PATH_TO_TESSERINE
set -uo pipefail
BIN="$(realpath "$1")"
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
source "$ROOT/scripts/xvfb.bash"

WORK="$(mktemp -d)"
trap 'stop_all; rm -rf "$WORK"' EXIT
export XDG_DATA_HOME="$WORK/data" XDG_RUNTIME_DIR="$WORK/run" BROWSER=true
export TESSERINE_CONTROL_MAP="$WORK/map.txt"
mkdir -m 0700 "$XDG_RUNTIME_DIR"
cd "$WORK"
MAP="$WORK/map.txt"
DEADLINE=120

# What a user does with each kind of control: PLACE (a prefix) KIND ACTION.
TABLE=(
  "top button click"
  "top check click"
  "top field type"
  "palette: check click"
  "palette: field type"
  "palette: button click"
)
# Each Window menu entry shows a palette; at least this many controls in all.
PALETTE_ENTRIES=("Screen Info" "Labels Info" "Data tools" "Power tools" "Color tools" "Raster Label tool")
MIN_PALETTE_CONTROLS=40

failed=0
fail() { echo "FAIL: $*" >&2; failed=$((failed + 1)); }
# The program's own output, with any sanitizer report, and its last events.
give_up() {
  fail "$1"
  echo "--- program output:" >&2
  cat app.log >&2
  echo "--- last actions:" >&2
  tail -n 15 actions.log >&2
  exit 1
}

"$BIN" new -o "$WORK/other.tsrx" 2>/dev/null
start_display 1920x1080 || exit 1
"$BIN" >app.log 2>&1 &
APP_PID=$!
wait_for "the main window" "$DEADLINE" has_window "^Tesserine Pro$" || give_up "no main window"
WID="$(window_id "^Tesserine Pro$")"
touch actions.log

# fresh_map: the program writes its controls again, which it does only
# while its event loop runs.
fresh_map() {
  rm -f "$MAP"
  kill -0 "$APP_PID" 2>/dev/null || give_up "the program ended"
  wait_for "the control map" "$DEADLINE" test -s "$MAP" || give_up "the program does not answer"
}
# settle: Escape answers every dialog or popup until none is open.
settle() {
  local n title
  for n in 1 2 3 4 5 6; do
    fresh_map
    title="$(sed -n 's/^modal\t//p' "$MAP")"
    [ -z "$(grep '^modal' "$MAP")" ] && return 0
    echo "  escape from '$title'" >>actions.log
    [ -n "$title" ] && xdotool windowfocus --sync "$(window_id "^$title")" 2>/dev/null
    xdotool key Escape
  done
  give_up "a dialog does not close with Escape"
}
# act KIND X Y NAME ACTION: one action on one control.
act() {
  echo "$5 $1 '$4' at $2,$3" >>actions.log
  xdotool mousemove "$2" "$3" click 1
  if [ "$5" = type ]; then
    xdotool key ctrl+a && xdotool type --delay 5 "12" && xdotool key Return
  fi
  settle
}
controls() { # PLACE_PREFIX KIND: "X Y NAME" of each such control of the map
  awk -F'\t' -v p="$1" -v k="$2" 'index($1, p) == 1 && $2 == k { print $3, $4, $5 }' "$MAP"
}
# menu_entry SECTION ENTRY: opens the section and clicks the entry.
menu_entry() {
  fresh_map
  read -r X Y _ < <(controls menu entry | awk -v s="$1" '{ n = $1 " " $2; sub(/^[^ ]+ [^ ]+ /, ""); if ($0 == s) print n }')
  [ -n "${X:-}" ] || give_up "no menu section $1"
  xdotool mousemove "$X" "$Y" click 1
  fresh_map
  read -r X Y _ < <(controls submenu entry | awk -v e="$2" '{ n = $1 " " $2; sub(/^[^ ]+ [^ ]+ /, ""); if ($0 == e) print n }')
  [ -n "${X:-}" ] || give_up "no entry $2 in $1"
  act entry "$X" "$Y" "$2" click
}

xdotool windowfocus --sync "$WID" 2>/dev/null
fresh_map

# --- palettes: each shown (an entry toggles it), then every control ------
palette_controls() { cut -f1 "$MAP" | grep -c '^palette:'; }
for entry in "${PALETTE_ENTRIES[@]}"; do
  fresh_map
  before="$(palette_controls)"
  menu_entry Window "$entry"
  # Shown before, the entry hid it: once more.
  [ "$(palette_controls)" -lt "$before" ] && menu_entry Window "$entry"
done
fresh_map
cp "$MAP" palettes.txt
clicked=0
for row in "${TABLE[@]}"; do
  read -r place kind action <<<"$row"
  [ "${place#palette}" = "$place" ] && continue
  # The close buttons last: they hide their palette.
  while read -r X Y NAME; do
    [ "$NAME" = close ] && continue
    act "$kind" "$X" "$Y" "$NAME" "$action"
    clicked=$((clicked + 1))
  done < <(MAP=palettes.txt controls "$place" "$kind")
done
[ "$clicked" -ge "$MIN_PALETTE_CONTROLS" ] || fail "only $clicked palette controls were reachable"
while read -r X Y NAME; do
  act button "$X" "$Y" "$NAME" click
done < <(MAP=palettes.txt controls palette: button | grep ' close$')

# --- the top panel: its buttons, boxes and fields -----------------------
fresh_map
cp "$MAP" top.txt
for row in "${TABLE[@]}"; do
  read -r place kind action <<<"$row"
  [ "$place" = top ] || continue
  while read -r X Y NAME; do
    act "$kind" "$X" "$Y" "$NAME" "$action"
  done < <(MAP=top.txt controls top "$kind")
done
[ "$(MAP=top.txt controls top button | grep -c 'Project\|Image')" -eq 3 ] || fail "the top panel's three buttons"

# Open Project answered once with a file name.
read -r X Y _ < <(MAP=top.txt controls top button | grep 'Open Project')
xdotool mousemove "$X" "$Y" click 1
wait_for "the open dialog" "$DEADLINE" has_window "^Open" || give_up "no open dialog"
xdotool windowfocus --sync "$(window_id "^Open")" 2>/dev/null
xdotool type --delay 5 "$WORK/other.tsrx"
xdotool key Return
echo "open $WORK/other.tsrx" >>actions.log
settle

# --- every entry of every menu section -----------------------------------
fresh_map
sections=()
while read -r _ _ NAME; do sections+=("$NAME"); done < <(controls menu entry)
[ "${#sections[@]}" -ge 4 ] || fail "only ${#sections[@]} menu sections"
entries=0
for section in "${sections[@]}"; do
  fresh_map
  read -r X Y _ < <(controls menu entry | awk -v s="$section" '{ n = $1 " " $2; sub(/^[^ ]+ [^ ]+ /, ""); if ($0 == s) print n }')
  xdotool mousemove "$X" "$Y" click 1
  fresh_map
  mapfile -t names < <(controls submenu entry | cut -d' ' -f3-)
  settle
  for name in "${names[@]}"; do
    menu_entry "$section" "$name"
    entries=$((entries + 1))
  done
done
[ "$entries" -ge 30 ] || fail "only $entries menu entries"

xdotool windowfocus --sync "$WID" 2>/dev/null
fresh_map
grep -qi "runtime error\|AddressSanitizer\|LeakSanitizer" app.log && give_up "a sanitizer report"
echo "controls: $clicked palette controls, $entries menu entries; $failed failed"
[ "$failed" -eq 0 ]
