#!/usr/bin/env bash
# Makes the README's picture of the window: the program at its first start,
# under Xvfb, in a data folder of its own. Writes docs/window.png.
set -euo pipefail
source "$(dirname "$0")/setup.sh"
source "$ROOT/scripts/xvfb.bash"
tesserine_install_missing "${TESSERINE_PACKAGES[@]}"
tesserine_build >&2

WORK="$(mktemp -d)"
trap 'stop_all; rm -rf "$WORK"' EXIT
export XDG_DATA_HOME="$WORK/data" XDG_RUNTIME_DIR="$WORK/run"
mkdir -m 0700 "$XDG_RUNTIME_DIR"
mkdir -p "$ROOT/docs"

start_display 1600x1000
"$BUILD_DIR/tesserine" >"$WORK/app.log" 2>&1 &
APP_PID=$!
wait_for "the main window" 30 has_window "^Tesserine Pro$"
WID="$(window_id "^Tesserine Pro$")"
painted() { shoot "$WORK/window.png" "$WID" && pixel_is "$WORK/window.png" 480 270 "63,127,127"; }
wait_for "the first frame" 30 painted
cp "$WORK/window.png" "$ROOT/docs/window.png"
echo "docs/window.png"
