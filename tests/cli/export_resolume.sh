#!/usr/bin/env bash
# tesserine export-resolume as a user runs it: the path written, the rules
# of the output name, and failed writes that leave nothing behind.
# Usage: export_resolume.sh PATH_TO_TESSERINE
set -uo pipefail

BIN="$(realpath "$1")"
WORK="$(mktemp -d)"
trap 'rm -rf "$WORK"' EXIT
export XDG_DATA_HOME="$WORK/data"
export QT_QPA_PLATFORM=offscreen
export XDG_RUNTIME_DIR="$WORK/run"
mkdir -m 0700 "$XDG_RUNTIME_DIR"
cd "$WORK"

failed=0
fail() { echo "FAIL: $*" >&2; failed=$((failed + 1)); }
# expect STATUS CMD...: runs CMD with stdout in out.txt and stderr in err.txt.
expect() {
  local want="$1"; shift
  "$@" >out.txt 2>err.txt
  local got=$?
  [ "$got" -eq "$want" ] || fail "$* exited $got, wanted $want; stderr: $(head -c 300 err.txt)"
}
contains() { grep -qF -- "$2" "$1" || fail "$1 lacks: $2"; }

# record TYPE BODY: one length-framed layer record.
record() { printf '%d %d\n%s' "$1" "$(printf '%s' "$2" | wc -c)" "$2"; }
# A 1280 by 720 raster with two screens, the second hidden, and the raster
# label record that ends a project.
{
  printf 'TESSERINE_LED_PROJECT v2 2 21\nWidth:1280\nHeight:720\n'
  record 1 "$(printf 'Name:Left & <wall>\nOffsetX:-50\nOffsetY:0\nColumns:1\nRows:1\nWidth:100\nHeight:90\nx')"
  record 1 "$(printf 'Name:Right\nOffsetX:640\nHidden:1\nColumns:2\nRows:1\nWidth:64\nHeight:64\nx')"
  record 100 "$(printf 'Raster Label:0\nx')"
} >wall.tsrx

expect 0 "$BIN" export-resolume wall.tsrx -o setup.v2.txt
[ "$(cat out.txt)" = "setup.xml" ] || fail "printed [$(cat out.txt)], wanted setup.xml"
[ -s err.txt ] && fail "wrote on standard error: $(head -c 300 err.txt)"
[ -e setup.v2.txt ] && fail "the chosen name itself was written"
head -n 1 setup.xml | grep -qx '<?xml version="1.0"?>' || fail "no XML declaration"
contains setup.xml 'width="1280" height="720"'
contains setup.xml '<ParamRange name="Width" default="1280" value="1280" />'
contains setup.xml '<Param name="Name" default="Layer" value="Left &amp; &lt;wall>" />'
contains setup.xml '<Param name="Name" default="Layer" value="Right" />'
[ "$(grep -c '<Slice>' setup.xml)" = 2 ] || fail "wanted two slices"
# Control points of the left screen: -50 + 33.3 truncates toward zero.
contains setup.xml '<v x="-16" y="0" />'
contains setup.xml '<v x="16" y="30" />'

# Output in another folder, name without extension.
mkdir out
expect 0 "$BIN" export-resolume wall.tsrx -o out/screens
[ "$(cat out.txt)" = "out/screens.xml" ] || fail "printed [$(cat out.txt)]"
[ -s out/screens.xml ] || fail "out/screens.xml not written"

# Unwritable targets: status 1, a message naming the file, nothing left.
expect 1 "$BIN" export-resolume wall.tsrx -o missing/setup.xml
contains err.txt "missing/setup.xml"
[ -s out.txt ] && fail "a failed export printed a path"
printf 'plain file' >afile
expect 1 "$BIN" export-resolume wall.tsrx -o afile/setup.xml
contains err.txt "cannot be written"

# A write that fails part way (file size limit) keeps the old file whole.
printf 'old setup' >kept.xml
(
  trap '' XFSZ
  ulimit -f 1
  exec "$BIN" export-resolume wall.tsrx -o kept.xml
) >out.txt 2>err.txt
status=$?
[ "$status" -eq 1 ] || fail "size-limited export exited $status, wanted 1"
[ "$(cat kept.xml)" = "old setup" ] || fail "the old file was damaged"
[ -z "$(ls -A | grep '^kept\.xml.')" ] || fail "temporary files left: $(ls -A)"

# Bad arguments and bad input.
expect 2 "$BIN" export-resolume wall.tsrx
expect 2 "$BIN" export-resolume -o x.xml
expect 2 "$BIN" export-resolume wall.tsrx other.tsrx -o x.xml
expect 2 "$BIN" export-resolume wall.tsrx -o ""
expect 2 "$BIN" export-resolume missing.tsrx -o x.xml
[ -e x.xml ] && fail "bad input wrote an output"

[ "$failed" -eq 0 ] && echo "export-resolume: all checks passed"
[ "$failed" -eq 0 ]
