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
export TESSERINE_CONTROL_MAP="$PWD/map.txt"
failed=0

# raster_shown: says where the raster's outline is in window.png, or fails.
# Its grey top and left edges lie on whole pixels, the others may be blended.
raster_shown() {
  shoot window.png "$WID" && fresh_map && read -r WX WY < <(window_origin "$WID") &&
    convert window.png -depth 8 rgb:window.rgb &&
    python3 - "$(identify -format '%w' window.png)" "$WX" "$WY" <<'PY'
import re, sys
from collections import Counter
w, wx, wy = map(int, sys.argv[1:4])
px = open("window.rgb", "rb").read()
grey = {divmod(m.start() // 3, w) for m in re.finditer(rb"\xb6\xb6\xb6", px) if m.start() % 3 == 0}
def run(cells):  # start and length of the longest run of consecutive numbers
    best, start, prev = (0, 0), None, None
    for c in sorted(cells):
        start = c if prev is None or c != prev + 1 else start
        best, prev = max(best, (c - start + 1, start)), c
    return best[1], best[0]
long = lambda k: [v for v, n in Counter(g[k] for g in grey).items() if n >= 100] or [-1]
top, left_column = min(long(0)), min(long(1))
left, rw = run(x for y, x in grey if y == top)
top, rh = run(y for y, x in grey if x == left_column)
left = min(left, left_column)
def light(x, y):
    r, g, b = px[3 * (y * w + x):3 * (y * w + x) + 3] or b"\0\0\0"
    return x < w and max(r, g, b) - min(r, g, b) <= 3 and r >= 100
near = lambda f: any(f(d) for d in (-1, 0, 1))
if top < 0 or rw < 100 or not (all(near(lambda d: light(x, top + rh + d)) for x in range(left, left + rw))
                               and all(near(lambda d: light(left + rw + d, y)) for y in range(top, top + rh))):
    sys.exit(f"no whole raster outline (at {left},{top} {rw}x{rh})")
if abs(rw * 1080 - rh * 1920) > 2 * 1920 or rw > 1920:
    sys.exit(f"the outline {rw}x{rh} is not the 1920x1080 raster at most at full size")
for place, _, x, y, *_ in (line.split("\t") for line in open("map.txt") if line.count("\t") >= 3):
    if place.startswith("palette:") and 0 <= int(x) - wx - left <= rw and 0 <= int(y) - wy - top <= rh:
        sys.exit(f"{place} has a control on the raster at {left},{top} {rw}x{rh}")
print(f"the raster at {left},{top}, {rw}x{rh}")
PY
}

for size in 1920x1080 1366x768; do
  start_display "$size" || exit 1
  export XDG_DATA_HOME="$WORK/data-$size"
  launch "$BIN" || { cat app.log >&2; exit 1; }
  if wait_for "the whole raster on $size" "${DEADLINE:-120}" raster_shown; then
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
