#!/usr/bin/env bash
# Makes the README's pictures: the program's icon as the build renders it
# (docs/icon.png), and under Xvfb, each in a data folder of its own, the
# window at its first start on a full HD screen (docs/window.png), on a
# laptop's 1366x768 (docs/window-small.png), and on full HD's double and one
# and a half at Qt's scale factors 2 and 1.5 (docs/window-scale2.png,
# docs/window-scale1.5.png), and every palette laid out side by side with
# the About box open (docs/palettes.png); the rear view of two walls
# coloured by port (docs/rear.png); the first and third pages of the show
# report of two walls, the frame and the first wall's rear map
# (docs/report.png); and identify on a second screen, port 2 of two screens
# lit (docs/identify.png).
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
# A fixed date, so that the picture changes only with the report.
SOURCE_DATE_EPOCH=1767225600 "$BUILD_DIR/tesserine" report "$ROOT/tests/data/two_walls.tsrx" \
  -o "$WORK/report.pdf"
pdftoppm -r 50 -png -f 1 -l 3 "$WORK/report.pdf" "$WORK/page"
convert "$WORK/page-1.png" "$WORK/page-3.png" -bordercolor '#888' -border 1 +append +repage \
  -bordercolor white -border 8 +repage "$ROOT/docs/report.png"
echo "docs/report.png"

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
stop_display() {
  kill "$XVFB_PID" 2>/dev/null
  wait "$XVFB_PID" 2>/dev/null || true
  XVFB_PID=""
}

# settled: a shot of the window into $WORK/shot.png that shows the canvas's
# chequer and is the same as the shot before it, so the first frame is in
# and nothing moves any more.
settled() {
  shoot "$WORK/now.png" "$WID" || return 1
  local tint
  tint="$(convert "$WORK/now.png" -fill black +opaque "rgb(149,184,184)" -format "%[fx:mean>0.003]" info:)"
  if [ "$tint" = 1 ] && [ -f "$WORK/shot.png" ] &&
    compare -metric AE "$WORK/now.png" "$WORK/shot.png" null: 2>/dev/null; then
    return 0
  fi
  mv "$WORK/now.png" "$WORK/shot.png"
  return 1
}

# first_start SCREEN NAME [SCALE]: the window at its first start on an X
# screen of that size, at Qt's scale factor, as docs/NAME.png.
first_start() {
  start_display "$1"
  rm -f "$WORK/shot.png"
  QT_SCALE_FACTOR="${3:-1}" start_program "$WORK/first-$2"
  wait_for "the first frame" 60 settled
  cp "$WORK/shot.png" "$ROOT/docs/$2.png"
  echo "docs/$2.png"
  stop_program
  stop_display
}

first_start 1920x1080 window
first_start 1366x768 window-small
first_start 3840x2160 window-scale2 2
first_start 2880x1620 window-scale1.5 1.5

start_display 1920x1080
# The palettes where none covers another, as a user would place them.
mkdir -p "$WORK/laid_out/Tesserine"
cat >"$WORK/laid_out/Tesserine/settings_layout.network_payload" <<'JSON'
{"boxes_x": 10, "boxes_y": 70, "boxes_visible": true,
 "labels_x": 10, "labels_y": 455, "labels_visible": true,
 "colors_x": 230, "colors_y": 455, "colors_visible": true,
 "power_x": 365, "power_y": 425, "power_visible": true,
 "snake_x": 325, "snake_y": 70, "snake_visible": true,
 "raster_x": 662, "raster_y": 70, "raster_visible": true}
JSON
# The window's control map tells where the menu's entries are.
cd "$WORK"
export TESSERINE_CONTROL_MAP="$WORK/map.txt"
start_program "$WORK/laid_out"
# The canvas shows the raster where the palettes leave room once the first
# frame is in.
canvas_painted() {
  shoot "$WORK/palettes.png" "$WID" &&
    [ "$(convert "$WORK/palettes.png" -fill black +opaque "rgb(149,184,184)" -format "%[fx:mean>0.003]" info:)" = 1 ]
}
wait_for "the first frame" 30 canvas_painted
# About, from its menu; then dragged by its title bar from (330, 310) to
# the free place under the Raster Label palette.
fresh_map
read -r X Y < <(controls menu entry | awk '$3 == "About" { print $1, $2; exit }')
xdotool mousemove "$X" "$Y" click 1
submenu_open() { fresh_map && grep -q "^submenu" map.txt; }
wait_for "the About menu" 20 submenu_open
read -r X Y < <(controls submenu entry | head -n 1)
xdotool mousemove "$X" "$Y" click 1
about_open() { shoot "$WORK/about.png" "$WID" && pixel_is "$WORK/about.png" 330 310 "62,62,62"; }
wait_for "the About box" 20 about_open
xdotool mousemove $((WX + 330)) $((WY + 310)) mousedown 1
xdotool mousemove $((WX + 600)) $((WY + 330)) mousemove $((WX + 864)) $((WY + 338)) mouseup 1
about_moved() { shoot "$WORK/palettes.png" "$WID" && pixel_is "$WORK/palettes.png" 864 338 "62,62,62" &&
  ! pixel_is "$WORK/palettes.png" 330 310 "62,62,62"; }
wait_for "the About box in its place" 20 about_moved
cp "$WORK/palettes.png" "$ROOT/docs/palettes.png"
echo "docs/palettes.png"
stop_program
stop_display

# The rear view, from View ▸ Rear View, of two walls that the project
# colours by port.
start_display 1920x1080
cp "$ROOT/tests/data/two_walls.tsrx" "$WORK/walls.tsrx"
printf '101 13\nColorBy:port\n' >>"$WORK/walls.tsrx"
export XDG_DATA_HOME="$WORK/rear"
rm -f map.txt
"$BUILD_DIR/tesserine" "$WORK/walls.tsrx" >"$WORK/app.log" 2>&1 &
APP_PID=$!
wait_for "the main window" 30 has_window "Tesserine Pro$"
WID="$(window_id "Tesserine Pro$")"
fresh_map
read -r X Y < <(controls menu entry | named View)
xdotool mousemove "$X" "$Y" click 1
view_menu_open() { fresh_map && controls submenu entry | named "Rear View" | grep -q .; }
wait_for "the View menu" 20 view_menu_open
read -r X Y < <(controls submenu entry | named "Rear View")
xdotool mousemove "$X" "$Y" click 1
# The red mark at the top of the canvas.
rear_shown() {
  shoot "$WORK/rear.png" "$WID" &&
    [ "$(convert "$WORK/rear.png" -fill black +opaque "rgb(208,48,48)" -format "%[fx:mean>0.0003]" info:)" = 1 ]
}
wait_for "the rear view" 30 rear_shown
cp "$WORK/rear.png" "$ROOT/docs/rear.png"
echo "docs/rear.png"
stop_program
stop_display

# Identify on the wall: port 2 of each screen lit and numbered, as the live
# output shows it on a second screen, at half size (docs/identify.png).
start_display 1600x1000 1920x1080
export XDG_DATA_HOME="$WORK/identify"
"$BUILD_DIR/tesserine" "$ROOT/tests/data/identify_wall.tsrx" >"$WORK/app.log" 2>&1 &
APP_PID=$!
wait_for "the main window" 30 has_window "Tesserine Pro$"
WID="$(window_id "Tesserine Pro$")"
for entry in "Live Output to Screen 2" "Identify: Ports"; do
  for control in "menu|Live Output" "submenu|$entry"; do
    read -r X Y < <(control_at "${control%%|*}" entry "${control#*|}")
    xdotool mousemove "$X" "$Y" click 1
  done
done
xdotool windowfocus --sync "$WID" key Right
# Port 2's colour (the second of the shared palette) is on the wall.
port_two() {
  import -display "${DISPLAY}.1" -window root "$WORK/identify.png" 2>/dev/null &&
    [ "$(convert "$WORK/identify.png" -fill black +opaque "rgb(60,180,75)" -format "%[fx:mean>0.001]" info:)" = 1 ]
}
wait_for "port 2 on the second screen" 30 port_two
convert "$WORK/identify.png" -resize 50% "$ROOT/docs/identify.png"
echo "docs/identify.png"
