# The setting shared by the command line checks, sourced with the path of
# the built tesserine: a private folder to work in, a headless environment
# of its own, and helpers that count checks.
set -uo pipefail

BIN="$(realpath "$1")"
DATA="$(realpath "$(dirname "${BASH_SOURCE[0]}")/../data")"
WORK="$(mktemp -d)"
trap 'chmod -R u+w "$WORK" 2>/dev/null; rm -rf "$WORK"' EXIT
export XDG_DATA_HOME="$WORK/data"
export QT_QPA_PLATFORM=offscreen
export XDG_RUNTIME_DIR="$WORK/run"
mkdir -m 0700 "$XDG_RUNTIME_DIR"
cd "$WORK"

passed=0
failed=0
fail() { echo "FAIL: $*" >&2; failed=$((failed + 1)); }
ok() { passed=$((passed + 1)); }

# expect STATUS CMD...: runs CMD with stdout in out.txt and stderr in err.txt.
expect() {
  local want="$1"; shift
  "$@" >out.txt 2>err.txt
  local got=$?
  if [ "$got" -ne "$want" ]; then
    fail "$* exited $got, wanted $want; stderr: $(head -c 400 err.txt)"
    return 1
  fi
  ok
}
contains() { # FILE TEXT
  if grep -qF -- "$2" "$1"; then ok; else fail "$1 lacks: $2 (has: $(head -c 300 "$1"))"; fi
}
same() { # GOT WANTED
  if [ "$1" = "$2" ]; then ok; else fail "expected [$2], got [$1]"; fi
}
absent() { # FILE: nothing by that name
  if [ -e "$1" ]; then fail "$1 exists"; else ok; fi
}
golden() { # FILE NAME: FILE holds the bytes of tests/data/NAME
  # TESSERINE_NEW_GOLDEN=1 writes what was got over the golden files, for a
  # change that means to change them (read the diff before committing).
  [ -n "${TESSERINE_NEW_GOLDEN:-}" ] && cp "$1" "$DATA/$2"
  if cmp -s "$1" "$DATA/$2"; then ok; else
    fail "$1 differs from $2: $(diff "$1" "$DATA/$2" | head -20)"
  fi
}
silent() { # FILE: an empty output
  if [ -s "$1" ]; then fail "$1 is not empty: $(head -c 300 "$1")"; else ok; fi
}

# record TYPE BODY: one length-framed layer record.
record() { printf '%d %d\n%s' "$1" "$(printf '%s' "$2" | wc -c)" "$2"; }
# project FILE WIDTH HEIGHT RECORD...: a project of these records, closed by
# a raster label record that is switched off.
project() {
  local file="$1" block=$'Width:'"$2"$'\nHeight:'"$3"$'\n'
  shift 3
  {
    printf 'TESSERINE_LED_PROJECT v2 %d %d\n%s' "$#" "${#block}" "$block"
    printf '%s' "$@"
    record 100 "$(printf 'Raster Label:0\nx')"
  } >"$file"
}

# finish NAME: the summary, and the status of the whole script.
finish() {
  echo "$1: $passed passed, $failed failed"
  [ "$failed" -eq 0 ]
}
