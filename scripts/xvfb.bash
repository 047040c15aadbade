# The real program under Xvfb, as a person uses it: sourced by the window
# test and the screenshot script. Every wait has a deadline; none sleeps a
# fixed time.

XVFB_PID=""
APP_PID=""

# start_display WIDTHxHEIGHT...: an X server of our own, with one X screen
# per size. It picks a free display itself and tells it once it accepts
# clients. It does not reset when its last client goes: a program started
# during a reset fails to connect.
start_display() {
  local told screens=() i=0 size
  told="$(mktemp)"
  for size in "$@"; do
    screens+=(-screen "$i" "${size}x24")
    i=$((i + 1))
  done
  Xvfb -displayfd 3 "${screens[@]}" -nolisten tcp -noreset 3>"$told" >/dev/null 2>&1 &
  XVFB_PID=$!
  wait_for "the X server" 20 test -s "$told" || return 1
  export DISPLAY=":$(tr -d '[:space:]' <"$told")"
  rm -f "$told"
  # The window uses the display, whatever the environment asked.
  export QT_QPA_PLATFORM=xcb
}

# in_scratch_folder: a folder of the run's own, also its data and runtime
# folders, entered now and gone at exit with the X server and the program.
in_scratch_folder() {
  WORK="$(mktemp -d)"
  trap 'stop_all; rm -rf "$WORK"' EXIT
  export XDG_DATA_HOME="$WORK/data" XDG_RUNTIME_DIR="$WORK/run"
  mkdir -m 0700 "$XDG_RUNTIME_DIR"
  cd "$WORK" || exit 1
}

# screen_info_only: a palette layout saved with Screen Info alone at the top
# left, for scripts that press on the raster at fixed points of the canvas
# (a first start places more palettes where a screen allows).
screen_info_only() {
  mkdir -p "$XDG_DATA_HOME/Tesserine"
  printf '{"boxes_x": 10, "boxes_y": 70, "boxes_visible": true}\n' \
    >"$XDG_DATA_HOME/Tesserine/settings_layout.network_payload"
}

stop_all() {
  [ -n "$APP_PID" ] && kill "$APP_PID" 2>/dev/null
  [ -n "$XVFB_PID" ] && kill "$XVFB_PID" 2>/dev/null
  wait 2>/dev/null
}

# wait_for WHAT SECONDS CMD...: until CMD succeeds; fails after the deadline.
wait_for() {
  local what="$1" seconds="$2"
  shift 2
  local end=$((SECONDS + seconds))
  until "$@" >/dev/null 2>&1; do
    if [ "$SECONDS" -ge "$end" ]; then
      echo "timed out waiting for $what" >&2
      return 1
    fi
    sleep 0.1
  done
}

# window_id PATTERN: the visible window whose title matches (the system may
# add the program's name to a title).
window_id() { xdotool search --onlyvisible --name "$1" 2>/dev/null | head -n 1; }
has_window() { [ -n "$(window_id "$1")" ]; }

# launch ARG...: the program (ARG... its command line) in the background,
# its output added to app.log; APP_PID is the process and WID the main
# window once that shows, within DEADLINE seconds (120 unless set).
launch() {
  "$@" >>app.log 2>&1 &
  APP_PID=$!
  wait_for "the main window" "${DEADLINE:-120}" has_window " - Tesserine Pro$" &&
    WID="$(window_id " - Tesserine Pro$")"
}
# first_frame: waits until the main window shows a new workspace's first
# frame at Actual Size (Ctrl+Shift+0: the first view fits the raster where
# the palettes leave room), cabinet (1, 1) of its wall at the starting pan
# below the top panel; the last shot stays in window.png.
first_frame() { wait_for "the first frame" "${DEADLINE:-120}" first_frame_shown; }
first_frame_shown() {
  xdotool key --window "$WID" ctrl+shift+0
  shoot window.png "$WID" && pixel_is window.png $((280 + 200)) $((70 + 200)) "63,127,127"
}

# window_origin WID: "X Y" of the window's top left corner on the screen.
window_origin() {
  local X Y WIDTH HEIGHT SCREEN WINDOW
  eval "$(xdotool getwindowgeometry --shell "$1")"
  echo "$X $Y"
}

# shoot FILE [WID]: a screenshot of the screen, or of one window.
shoot() { import -window "${2:-root}" "$1" 2>/dev/null; }

# pixel FILE X Y: "R,G,B" of a pixel.
pixel() {
  convert "$1" -format "%[fx:int(255*p{$2,$3}.r)],%[fx:int(255*p{$2,$3}.g)],%[fx:int(255*p{$2,$3}.b)]" info: 2>/dev/null
}

# pixel_is FILE X Y RGB: whether that pixel has that colour; says what it
# has when it has not (once the caller stops waiting, that is the answer).
pixel_is() {
  local got
  got="$(pixel "$1" "$2" "$3")"
  [ "$got" = "$4" ] && return 0
  echo "pixel ($2, $3) of $1 is $got, not $4" >&2
  return 1
}

# close_request WID: what a window manager sends when the user closes a window.
close_request() {
  python3 - "$1" <<'PY'
import ctypes, sys
x = ctypes.cdll.LoadLibrary("libX11.so.6")
x.XOpenDisplay.restype = ctypes.c_void_p
x.XInternAtom.restype = ctypes.c_ulong
x.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
class ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong),
                ("message_type", ctypes.c_ulong), ("format", ctypes.c_int),
                ("data", ctypes.c_long * 5)]
class Event(ctypes.Union):
    _fields_ = [("xclient", ClientMessage), ("pad", ctypes.c_long * 24)]
x.XFlush.argtypes = [ctypes.c_void_p]
x.XCloseDisplay.argtypes = [ctypes.c_void_p]
x.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long,
                         ctypes.POINTER(Event)]
d = x.XOpenDisplay(None)
if not d:
    sys.exit(1)
window = int(sys.argv[1])
e = Event()
e.xclient.type = 33  # ClientMessage
e.xclient.window = window
e.xclient.message_type = x.XInternAtom(d, b"WM_PROTOCOLS", 0)
e.xclient.format = 32
e.xclient.data[0] = x.XInternAtom(d, b"WM_DELETE_WINDOW", 0)
x.XSendEvent(d, window, 0, 0, ctypes.byref(e))
x.XFlush(d)
x.XCloseDisplay(d)
PY
}

# --- the program driven through its control map -------------------------
# The window writes its controls to TESSERINE_CONTROL_MAP whenever that file
# is missing (src/app/control_map.h): "PLACE KIND X Y NAME" a line, tabs
# between, and "modal TITLE" while a dialog or popup is open.

# start_mapped BIN: the window in the current folder, its output in app.log;
# WID is its main window. Actions are logged to events.log by the caller.
start_mapped() {
  export TESSERINE_CONTROL_MAP="$PWD/map.txt" BROWSER=true
  "$1" >app.log 2>&1 &
  APP_PID=$!
  touch events.log
  wait_for "the main window" 120 has_window "Tesserine Pro$" || give_up "no main window"
  WID="$(window_id "Tesserine Pro$")"
  xdotool windowfocus --sync "$WID" 2>/dev/null
}
# give_up WHY: says why, with the last events and the program's output (a
# sanitizer report whole), and ends the script.
give_up() {
  echo "FAIL: $1" >&2
  echo "--- last events:" >&2
  tail -n 20 events.log >&2
  echo "--- program output:" >&2
  tail -c 40000 app.log >&2
  exit 1
}
# fresh_map: the map written again, which only a program that still runs
# its event loop does.
fresh_map() {
  rm -f map.txt
  kill -0 "$APP_PID" 2>/dev/null || give_up "the program ended"
  wait_for "the control map" 120 test -s map.txt || give_up "the program does not answer"
}
# controls PLACE KIND [MAP]: "X Y NAME" of each control whose place starts
# with PLACE and whose kind matches the expression KIND.
controls() {
  awk -F'\t' -v p="$1" -v k="$2" 'index($1, p) == 1 && $2 ~ k { print $3, $4, $5 }' "${3:-map.txt}"
}
# ... | named NAME: "X Y" of the control of that name.
named() { awk -v n="$1" '{ xy = $1 " " $2; $1 = $2 = ""; sub(/^ +/, ""); if ($0 == n) print xy }'; }
# control_at PLACE KIND NAME: "X Y" of that control once a fresh map shows
# it (a menu opens in the event loop's own time); nothing after DEADLINE.
control_at() {
  local end=$((SECONDS + ${DEADLINE:-120})) xy
  while [ "$SECONDS" -lt "$end" ]; do
    fresh_map
    xy="$(controls "$1" "$2" | named "$3" | head -n 1)"
    [ -n "$xy" ] && echo "$xy" && return 0
  done
  return 1
}
# a_dialog_is_open: after a fresh map, whether a dialog or popup is open.
a_dialog_is_open() { grep -q '^modal' map.txt; }

# check WHAT CMD...: runs CMD and counts it in passed or failed, naming a
# failure on standard error.
passed=0
failed=0
check() {
  local what="$1"
  shift
  if "$@"; then passed=$((passed + 1)); else echo "FAIL: $what" >&2; failed=$((failed + 1)); fi
}

# answer_save FILE: the save dialog answered with FILE (in $WORK); waits for
# the file.
answer_save() {
  wait_for "the save dialog" "${DEADLINE:-120}" has_window "^Save As" || return 1
  xdotool windowfocus --sync "$(window_id "^Save As")" 2>/dev/null
  xdotool type --delay 5 "$WORK/$1" && xdotool key Return
  wait_for "$1" "${DEADLINE:-120}" test -s "$1"
}
# save_by KEYS FILE: the command of KEYS in the main window answered with FILE.
save_by() {
  rm -f "$2"
  xdotool windowfocus --sync "$WID" 2>/dev/null
  xdotool key "$1"
  answer_save "$2"
}
# opened_as_rendered FILE: FILE opened with Ctrl+O (reading a project
# switches the raster label on), the canvas's image (Alt+S) is the command
# line's render of it. Counted with check.
opened_as_rendered() {
  xdotool windowfocus --sync "$WID" 2>/dev/null
  xdotool key ctrl+o
  wait_for "the open dialog" "${DEADLINE:-120}" has_window "^Open" &&
    xdotool windowfocus --sync "$(window_id "^Open")" 2>/dev/null &&
    xdotool type --delay 5 "$WORK/$1" && xdotool key Return
  check "opened" wait_for "the end of the open dialog" "${DEADLINE:-120}" eval '! has_window "^Open"'
  "$BIN" render "$1" -o expected.png 2>/dev/null
  check "exported" save_by alt+s frame.png
  check "the canvas's frame is the command line's" \
    wait_for "the PNG" "${DEADLINE:-120}" cmp -s frame.png expected.png
}
