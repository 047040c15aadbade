#!/usr/bin/env bash
# The first view of the real program under Xvfb, on a full HD screen and on
# a laptop's 1366x768: the whole raster shows, its outline unbroken (no
# palette crosses it), no palette lies on it, and it is not enlarged.
# Usage: first_view.sh PATH_TO_TESSERINE
set -uo pipefail
BIN="$(realpath "$1")"
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)"
source "$ROOT/scripts/xvfb.bash"

in_scratch_folder
DEADLINE=${DEADLINE:-120}
export TESSERINE_CONTROL_MAP="$PWD/map.txt"
failed=0

# raster_shown: the raster's outline in window.png is one whole rectangle of
# the raster's 16:9, at most as large as the raster, and no control of a
# palette (from the map, in screen pixels) lies inside it. Says what it saw.
raster_shown() {
  shoot window.png "$WID" && fresh_map || return 1
  read -r WX WY < <(window_origin "$WID")
  convert window.png -depth 8 rgb:window.rgb &&
    python3 - "$(identify -format '%w' window.png)" "$WX" "$WY" <<'PY'
import re, sys
from collections import Counter
w, wx, wy = map(int, sys.argv[1:4])
px = open("window.rgb", "rb").read()
# The outline's grey, pixel by pixel; its top and left edges lie on whole
# pixels, the others may fall between two and be blended.
grey = {divmod(m.start() // 3, w) for m in re.finditer(rb"\xb6\xb6\xb6", px) if m.start() % 3 == 0}
def longest(cells):  # (start, length) of the longest run of consecutive numbers
    best, start, prev = (0, 0), None, None
    for c in sorted(cells):
        start = c if prev is None or c != prev + 1 else start
        best = max(best, (c - start + 1, start))
        prev = c
    return best[1], best[0]
rows, cols = Counter(y for y, x in grey), Counter(x for y, x in grey)
top = min((y for y, n in rows.items() if n >= 100), default=None)
left_col = min((x for x, n in cols.items() if n >= 100), default=None)
if top is None or left_col is None:
    sys.exit("no raster outline")
left, rw = longest(x for y, x in grey if y == top)
top, rh = longest(y for y, x in grey if x == left_col)
left = min(left, left_col)
def light(x, y):  # the outline, blended or not, is lighter than anything near it
    if not (0 <= x < w and 0 <= 3 * (y * w + x) < len(px)):
        return False
    r, g, b = px[3 * (y * w + x):3 * (y * w + x) + 3]
    return max(r, g, b) - min(r, g, b) <= 3 and r >= 100
near = lambda f: f(-1) or f(0) or f(1)
whole = all(near(lambda d: light(x, top + rh + d)) for x in range(left, left + rw)) and \
        all(near(lambda d: light(left + rw + d, y)) for y in range(top, top + rh))
right, bottom = left + rw, top + rh
if not whole:
    sys.exit(f"the outline {left},{top} {rw}x{rh} is broken")
if abs(rw * 1080 - rh * 1920) > 2 * 1920 or rw > 1920:
    sys.exit(f"the outline {rw}x{rh} is not the 1920x1080 raster at most at full size")
for entry in open("map.txt"):
    place, _, x, y = (entry.split("\t") + ["", "", ""])[:4]
    if place.startswith("palette:") and left <= int(x) - wx <= right and top <= int(y) - wy <= bottom:
        sys.exit(f"{place} has a control at {x},{y} on the raster {left},{top} {rw}x{rh}")
print(f"the raster at {left},{top}, {rw}x{rh}")
PY
}

for size in 1920x1080 1366x768; do
  start_display "$size" || exit 1
  export XDG_DATA_HOME="$WORK/data-$size"
  launch "$BIN" || { cat app.log >&2; exit 1; }
  if wait_for "the whole raster on $size" "$DEADLINE" raster_shown; then
    echo "$size: $(raster_shown)"
  else
    raster_shown
    echo "FAIL: $size" >&2
    failed=$((failed + 1))
  fi
  stop_all
  APP_PID="" XVFB_PID=""
done
[ "$failed" -eq 0 ]
