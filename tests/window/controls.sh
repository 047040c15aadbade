#!/usr/bin/env bash
# Every control of the real tesserine clicked under Xvfb with real clicks and
# keys: the top panel, every entry of every menu section, every control of
# every palette. Dialogs are answered with Escape, Open Project once with a
# file name; after each action the program must still run and answer. On
# the sanitizer build (./test --deep) a report ends the program and fails.
# Usage: controls.sh PATH_TO_TESSERINE
set -uo pipefail
BIN="$(realpath "$1")"
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/xvfb.bash"
in_scratch_folder

# What a user does with each kind of control, by place; and how many of
# each there are at least (the top panel's three buttons among them).
TABLE=(
  "palette: check click 20" "palette: field type 20" "palette: button click 10"
  "top button click 3" "top check click 2" "top field type 2"
)
PALETTE_ENTRIES=("Screen Info" "Labels Info" "Data tools" "Power tools" "Color tools" "Raster Label tool")

# act X Y NAME ACTION: one action, then Escape to every dialog it opened.
act() {
  echo "$4 '$3' at $1,$2" >>events.log
  xdotool mousemove "$1" "$2" click 1
  [ "$4" = type ] && xdotool key ctrl+a type --delay 5 -- "12" && xdotool key Return
  settle
}
settle() {
  local n
  for n in 1 2 3 4 5; do
    fresh_map
    a_dialog_is_open || return 0
    xdotool key Escape
  done
  give_up "a dialog does not close with Escape"
}
# menu_entry SECTION ENTRY: opens the section and clicks the entry.
menu_entry() {
  fresh_map
  read -r X Y < <(controls menu entry | named "$1")
  xdotool mousemove "${X:?no section $1}" "$Y" click 1
  fresh_map
  read -r X Y < <(controls submenu entry | named "$2")
  act "${X:?no entry $2}" "$Y" "$2" click
}

"$BIN" new -o other.tsrx 2>/dev/null
start_display 1920x1080 || exit 1
start_mapped "$BIN"

# Every palette shown (an entry toggles its palette), then every control
# of the table, by place and kind; the palettes' "x" last, as it hides.
for entry in "${PALETTE_ENTRIES[@]}"; do
  fresh_map
  before="$(controls palette: . | wc -l)"
  menu_entry Window "$entry"
  [ "$(controls palette: . | wc -l)" -lt "$before" ] && menu_entry Window "$entry"
done
fresh_map
cp map.txt start.txt
for row in "${TABLE[@]}"; do
  read -r place kind action least <<<"$row"
  [ "$(controls "$place" "$kind" start.txt | wc -l)" -ge "$least" ] || give_up "fewer than $least $place $kind"
  while read -r X Y NAME; do
    [ "$NAME" = close ] || act "$X" "$Y" "$NAME" "$action"
  done < <(controls "$place" "$kind" start.txt)
done
while read -r X Y _; do act "$X" "$Y" close click; done < <(controls palette: button start.txt | named close)

# Open Project answered with a file name.
read -r X Y < <(controls top button start.txt | named "Open Project")
xdotool mousemove "$X" "$Y" click 1
wait_for "the open dialog" 120 has_window "^Open" || give_up "no open dialog"
xdotool windowfocus --sync "$(window_id "^Open")" 2>/dev/null
xdotool type --delay 5 "$WORK/other.tsrx" && xdotool key Return
echo "opened other.tsrx" >>events.log
settle

# Every entry of every menu section.
fresh_map
mapfile -t sections < <(controls menu entry | cut -d' ' -f3-)
[ "${#sections[@]}" -ge 5 ] || give_up "only ${#sections[@]} menu sections"
entries=0
for section in "${sections[@]}"; do
  fresh_map
  read -r X Y < <(controls menu entry | named "$section")
  xdotool mousemove "$X" "$Y" click 1
  fresh_map
  mapfile -t names < <(controls submenu entry | cut -d' ' -f3-)
  settle
  for name in "${names[@]}"; do
    menu_entry "$section" "$name"
    entries=$((entries + 1))
  done
done
[ "$entries" -ge 30 ] || give_up "only $entries menu entries"
grep -q "runtime error\|Sanitizer" app.log && give_up "a sanitizer report"
echo "controls: $(wc -l <events.log) actions, $entries menu entries, the program still answers"
