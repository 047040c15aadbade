#!/usr/bin/env bash
# Makes the README's pictures: the program's icon as the build renders it
# (docs/icon.png), and under Xvfb, each in a data folder of its own, the
# window at its first start (docs/window.png), and every palette laid out
# side by side with the About box open (docs/palettes.png).
set -euo pipefail
source "$(dirname "$0")/setup.sh"
source "$ROOT/scripts/xvfb.bash"
tesserine_install_missing "${TESSERINE_PACKAGES[@]}"
tesserine_build >&2

WORK="$(mktemp -d)"
trap 'stop_all; rm -rf "$WORK"' EXIT
export XDG_RUNTIME_DIR="$WORK/run"
mkdir -m 0700 "$XDG_RUNTIME_DIR"
mkdir -p "$ROOT/docs"
cp "$BUILD_DIR/icons/128/tesserine.png" "$ROOT/docs/icon.png"
echo "docs/icon.png"
start_display 1600x1000

# start_program DATA_FOLDER: the program in its own data folder; sets WID.
start_program() {
  export XDG_DATA_HOME="$1"
  "$BUILD_DIR/tesserine" >"$WORK/app.log" 2>&1 &
  APP_PID=$!
  wait_for "the main window" 30 has_window "Tesserine Pro$"
  WID="$(window_id "Tesserine Pro$")"
  read -r WX WY < <(window_origin "$WID")
}
stop_program() {
  kill "$APP_PID" 2>/dev/null
  wait "$APP_PID" 2>/dev/null || true
  APP_PID=""
  wait_for "the window to go" 20 bash -c "! xdotool search --onlyvisible --name 'Tesserine Pro$'"
}

start_program "$WORK/first"
painted() { shoot "$WORK/window.png" "$WID" && pixel_is "$WORK/window.png" 480 270 "63,127,127"; }
wait_for "the first frame" 30 painted
cp "$WORK/window.png" "$ROOT/docs/window.png"
echo "docs/window.png"
stop_program

# The palettes where none covers another, as a user would place them.
mkdir -p "$WORK/laid_out/Tesserine"
cat >"$WORK/laid_out/Tesserine/settings_layout.network_payload" <<'JSON'
{"boxes_x": 10, "boxes_y": 70, "boxes_visible": true,
 "labels_x": 10, "labels_y": 455, "labels_visible": true,
 "colors_x": 230, "colors_y": 455, "colors_visible": true,
 "power_x": 230, "power_y": 600, "power_visible": true,
 "snake_x": 325, "snake_y": 70, "snake_visible": true,
 "raster_x": 683, "raster_y": 70, "raster_visible": true}
JSON
start_program "$WORK/laid_out"
# The canvas shows right of the Data palette once the first frame is in.
canvas_painted() { shoot "$WORK/palettes.png" "$WID" && pixel_is "$WORK/palettes.png" 1000 400 "149,184,184"; }
wait_for "the first frame" 30 canvas_painted
# About, from its menu; then dragged by its title bar from (300, 300) to
# the free place under the Data palette.
xdotool mousemove $((WX + 388)) $((WY + 9)) click 1
menu_open() { shoot "$WORK/menu.png" "$WID" && ! pixel_is "$WORK/menu.png" 400 29 "63,63,63"; }
wait_for "the About menu" 20 menu_open
xdotool mousemove $((WX + 420)) $((WY + 29)) click 1
about_open() { shoot "$WORK/about.png" "$WID" && pixel_is "$WORK/about.png" 330 310 "62,62,62"; }
wait_for "the About box" 20 about_open
xdotool mousemove $((WX + 330)) $((WY + 310)) mousedown 1
xdotool mousemove $((WX + 430)) $((WY + 330)) mousemove $((WX + 505)) $((WY + 340)) mouseup 1
about_moved() { shoot "$WORK/palettes.png" "$WID" && pixel_is "$WORK/palettes.png" 505 340 "62,62,62" &&
  ! pixel_is "$WORK/palettes.png" 330 310 "62,62,62"; }
wait_for "the About box in its place" 20 about_moved
cp "$WORK/palettes.png" "$ROOT/docs/palettes.png"
echo "docs/palettes.png"
