#!/usr/bin/env bash
# Drives the built tesserine command line as a user would and checks its
# outputs and exit codes: new, info, presets, route, power, bom,
# export-resolume, pack, bad input, and failed writes. render has a
# script of its own.
# Usage: e2e.sh PATH_TO_TESSERINE
source "$(dirname "${BASH_SOURCE[0]}")/common.bash" "$1"

# --- new, info, presets -------------------------------------------------
expect 0 "$BIN" new -o wall.tsrx
golden wall.tsrx new.tsrx
silent out.txt
expect 0 "$BIN" info wall.tsrx
golden out.txt info_new.json
expect 0 "$BIN" presets
golden out.txt presets_list.txt
absent "$XDG_DATA_HOME/Tesserine/autosaved.tsrx_presets" # listing saves nothing

printf 'TESSERINE_LED_PRESETS v2 1 0\n1 20\nName:Mine\nColumns:2\n' >mine.tsrx_presets
expect 0 "$BIN" presets mine.tsrx_presets
same "$(cat out.txt)" "$(printf '0\tMine\t128x128\t2x5\n1\tMine\t128x128\t2x5')"

# --- route --------------------------------------------------------------
# wall NAME [KEY:VALUE...]: a screen record of 4 by 3 cabinets of 10 by 10.
wall() {
  local name="$1"; shift
  record 1 "$(printf 'Name:%s\nColumns:4\nRows:3\nWidth:10\nHeight:10\n' "$name"; printf '%s\n' "$@")"
}
# A route; a failing router reported on the layer's line, the command
# succeeding; all cabinets excluded, an empty route; several layers in stack
# order, where image layers have no route and --layer picks one.
project small.tsrx 1920 1080 "$(wall Screen1 SnakeLimit:800 SnakeMode:6)"
project tight.tsrx 1920 1080 "$(wall Screen1 SnakeLimit:300 SnakeMode:0)"
project none.tsrx 1920 1080 \
  "$(wall Screen1 'ExcludeBoxes:0|1|2|65536|65537|65538|131072|131073|131074|196608|196609|196610')"
project stack.tsrx 1920 1080 \
  "$(wall 'Left "wall"' SnakeMode:0 SnakeLimit:-1 Columns:2 Rows:1)" \
  "$(record 2 "$(printf 'Name:Picture\nOffsetX:0')")" \
  "$(wall Right SnakeMode:4 SnakeLimit:100 DataDiagramType:1 Columns:1 Rows:2)"
while IFS='|' read -r words route; do
  # shellcheck disable=SC2086
  expect 0 "$BIN" route $words && same "$(cat out.txt)" "$(printf '%b' "$route")" && silent err.txt
done <<'TABLE'
small.tsrx|layer 0 "Screen1": (0,2)S (0,1) (0,0) (1,0) (1,1) (1,2)E (2,2)S (2,1) (2,0) (3,0) (3,1) (3,2)E
tight.tsrx|layer 0 "Screen1": error: Some panels consume more pixels then limit used.
none.tsrx|layer 0 "Screen1":
stack.tsrx|layer 0 "Left "wall"": (0,0)S (1,0)E\nlayer 2 "Right": (0,0)E (0,1)E
stack.tsrx --layer 2|layer 2 "Right": (0,0)E (0,1)E
--layer 0 stack.tsrx|layer 0 "Left "wall"": (0,0)S (1,0)E
TABLE

# --json: the port loads of every type, a failed router and an image layer
# between, against the golden file.
project loads.tsrx 1920 1080 \
  "$(wall 'Left "wall"' SnakeLimit:800 SnakeMode:0 'ExcludeBoxes:65537')" \
  "$(record 2 "$(printf 'Name:Picture\nOffsetX:0')")" \
  "$(wall Tight SnakeLimit:300 SnakeMode:0)" "$(wall Other DataDiagramType:1 SnakeLimit:500)" \
  "$(wall Custom CustomDataPath:1 SnakeLimit:250 'CustomPath:0,65536,131072|2|65538,131074')" \
  "$(wall Free SnakeLimit:-1 SnakeMode:4)"
expect 0 "$BIN" route loads.tsrx --json
golden out.txt route_loads.json
expect 0 "$BIN" route loads.tsrx --json --layer 3
contains out.txt '"type": "other", "limit": 500'

# --- processors ---------------------------------------------------------
# Layers sharing unit 1 (loop-back ports, a depth and rate of their own, a
# clash), a backup unit mirroring unit 2 and a layer without the keys, whose
# lines and JSON stay as they were: route and processors against golden
# files. A damaged library is said and its good models serve.
big='Width:300 Height:300 DataDiagramType:1 SnakeMode:0'
project procs.tsrx 1920 1080 \
  "$(wall A 'Processor:Generic 8 x 1G' $big Backup:1)" \
  "$(record 2 "$(printf 'Name:Picture\nOffsetX:0')")" \
  "$(wall B 'Processor:Generic 8 x 1G' $big FirstPort:5 BitDepth:10 FrameRate:50)" \
  "$(wall C 'Processor:Generic 4 x 10G' ProcessorUnit:2 Backup:2)" \
  "$(wall D 'Processor:Generic 8 x 1G' FirstPort:7)" "$(wall E SnakeLimit:800 SnakeMode:6)" \
  "$(wall F 'Processor:House' ProcessorUnit:3)"
for words in "route procs.tsrx|route_processors.txt" "route procs.tsrx --json|route_processors.json" \
  "processors procs.tsrx|processors.txt" "processors procs.tsrx --json|processors.json"; do
  # shellcheck disable=SC2086
  expect 0 "$BIN" ${words%|*} && golden out.txt "${words#*|}" && silent err.txt
done
python3 -c 'import json; json.load(open("out.txt"))' && ok || fail "processors --json is no JSON"
mkdir -p "$XDG_DATA_HOME/Tesserine"
printf '{"models": [{"name": "House", "ports": 2, "pixels_8bit": 9000, "pixels_10bit": 1},
  {"name": "Bad"}]}' >"$XDG_DATA_HOME/Tesserine/processors.json"
expect 0 "$BIN" processors procs.tsrx && contains out.txt 'unit 3 "House": 2 ports, 1 main'
contains err.txt 'processors.json: damaged: model 2 is left out'
rm "$XDG_DATA_HOME/Tesserine/processors.json"

# --- power --------------------------------------------------------------
# Circuits in text and JSON against golden files: halves and an exclusion,
# an image layer between, a plan that fails and the layers after it still
# planned, one phase; --layer picks one.
project power.tsrx 1920 1080 \
  "$(wall Left PowerWatts:101 HalfColumns:1001 ExcludeBoxes:65537 CircuitAmps:4 PowerPattern:0)" \
  "$(record 2 "$(printf 'Name:Picture\nOffsetX:0')")" \
  "$(wall Tight PowerWatts:2000)" "$(wall Single PowerPhases:1 CircuitDerate:50 PowerVolts:230)"
expect 0 "$BIN" power power.tsrx
golden out.txt power.txt
expect 0 "$BIN" power power.tsrx --json
golden out.txt power.json
expect 0 "$BIN" power power.tsrx --layer 3 --json
contains out.txt '"name": "Single", "failed": false, "message": "", "capacity_watts": 1840'
expect 2 "$BIN" power power.tsrx --layer 1

# --- bom ----------------------------------------------------------------
# The list of a wall of two kinds, halves, an exclusion, spares and weights,
# processors with a backup unit and loop-back ports (Floor's port carries
# four cabinets at 10-bit 120 Hz), a hidden layer and its unit left out;
# text and JSON against golden files, the CSV read back by Python's csv
# module with the counts that route, power and processors give.
project bom.tsrx 1920 1080 \
  "$(wall Left HalfColumns:1001 ExcludeBoxes:65537 CabinetWeight:7.5 SparePercent:10 \
    'Processor:Generic 4 x 1G' Backup:2)" \
  "$(record 2 "$(printf 'Name:Picture\nOffsetX:0')")" \
  "$(wall Floor Width:200 Height:200 PhysW:250 PhysH:250 DataDiagramType:1 \
    'Processor:Generic 16 x 1G' ProcessorUnit:2 Backup:1 BitDepth:10 FrameRate:120)" \
  "$(wall Away Hidden:1 CabinetWeight:9 'Processor:Generic 4 x 10G' ProcessorUnit:3)"
expect 0 "$BIN" bom bom.tsrx
golden out.txt bom.txt
expect 0 "$BIN" bom bom.tsrx --json
golden out.txt bom.json
expect 0 "$BIN" bom bom.tsrx --csv
"$BIN" route bom.tsrx --json >route.json 2>/dev/null
"$BIN" power bom.tsrx --json >power.json 2>/dev/null
"$BIN" processors bom.tsrx --json >units.json 2>/dev/null
if python3 - out.txt route.json power.json units.json <<'PY'; then ok; else fail "the CSV disagrees with route and power"; fi
import csv, json, sys
with open(sys.argv[1], newline="") as f:
    rows = list(csv.reader(f, strict=True))
assert rows[0] == ["item", "kind", "count", "unit_weight_kg", "weight_kg", "notes"], rows[0]
count = {}
for r in rows[1:]:
    assert len(r) == 6, r
    count[r[0]] = count.get(r[0], 0) + int(r[2])
route = [l for l in json.load(open(sys.argv[2]))["layers"] if l["name"] != "Away"]
power = [l for l in json.load(open(sys.argv[3]))["layers"] if l["name"] != "Away"]
ports = [p for l in route for p in l["ports"]]
circuits = [c for l in power for c in l["circuits"]]
assert count["data jumper"] == sum(p["cabinets"] - 1 for p in ports), count
assert count["power feed"] == len(circuits), count
assert count["power jumper"] == sum(c["cabinets"] - 1 for c in circuits), count
assert count["cabinet"] + count["half cabinet"] == sum(c["cabinets"] for c in circuits), count
assert count["left out"] == 12, count
assert count["data cable"] == len(ports) + sum(p["backup"] is not None for p in ports), count
units = [u for u in json.load(open(sys.argv[4]))["units"] if u["layers"] != ["Away"]]
assert count["processor"] == len(units) == 3, count
PY
expect 2 "$BIN" bom bom.tsrx --csv --json

# --- report -------------------------------------------------------------
# The same project as a PDF: its text against the golden file, a page per
# screen layer, each followed by its rear map, between the frame and the
# totals, the frame embedded as
# render draws it, pixel for pixel, and a write that fails.
SOURCE_DATE_EPOCH=1767225600 expect 0 "$BIN" report loads.tsrx -o loads.pdf
pdftotext loads.pdf loads.txt
golden loads.txt report_loads.txt
same "$(pdfinfo loads.pdf | sed -n 's/^Pages: *//p')" 13
expect 0 "$BIN" report loads.tsrx -o letter.pdf --page letter
contains <(pdfinfo letter.pdf) "792 x 612 pts (letter)"
expect 0 "$BIN" render loads.tsrx -o loads.png
pdfimages -png loads.pdf frame
same "$(compare -metric AE frame-000.png loads.png null: 2>&1)" 0

# --- export-resolume ----------------------------------------------------
# The setup of the new wall, its clock-made id aside.
expect 0 "$BIN" export-resolume wall.tsrx -o setup.v2.txt
same "$(cat out.txt)" "setup.xml"
silent err.txt
absent setup.v2.txt # all extensions of the chosen name go
sed 's/uniqueId="[0-9]*"/uniqueId="@UNIQUE_ID@"/' setup.xml >setup.masked
golden setup.masked resolume_new.xml

# Only the last component's extensions give way, also when the name is
# nothing but an extension.
expect 0 "$BIN" export-resolume wall.tsrx -o .setup
same "$(cat out.txt)" ".setup.xml"
[ -s .setup.xml ] && ok || fail ".setup.xml was not written"

# --- the display platform of the environment is not used ------------------
for platform in xcb wayland bogus; do
  expect 0 env QT_QPA_PLATFORM="$platform" DISPLAY= WAYLAND_DISPLAY= "$BIN" info wall.tsrx
  golden out.txt info_new.json
done

# The window without a display says what to do, and exits 1 (no abort).
for unreachable in "-u DISPLAY" "DISPLAY=:9999 QT_QPA_PLATFORM=xcb"; do
  expect 1 env -u QT_QPA_PLATFORM -u DISPLAY -u WAYLAND_DISPLAY $unreachable "$BIN"
  contains err.txt "tesserine: no display: "
  contains err.txt "tesserine info FILE"
done

# Amperes that are not finite are told as strings.
project nopower.tsrx 1920 1080 "$(wall Zero PowerVolts:0)" "$(wall Neg PowerVolts:0 PowerWatts:-5)" \
  "$(wall Nan PowerVolts:0 PowerWatts:0)"
expect 0 "$BIN" info nopower.tsrx
python3 -c 'import json,sys; d=json.load(open("out.txt")); sys.exit(0 if [l["amperes"] for l in d["layers"]]==["inf","-inf","nan"] else 1)' \
  && ok || fail "amperes of no volts: $(cat out.txt)"

# --- bad input ----------------------------------------------------------
mkdir folder.tsrx
printf 'hello\n' >junk.tsrx
mkfifo fifo.tsrx
truncate -s 1536M sparse.tsrx
# Special and huge files are refused without being opened or read (a hang
# ends in the test's timeout).
while IFS='|' read -r input text; do
  expect 2 "$BIN" info "$input" && contains err.txt "tesserine: $input: $text"
done <<'TABLE'
missing.tsrx|no such file
folder.tsrx|is a folder, not a file
junk.tsrx|not a Tesserine project
fifo.tsrx|is not a regular file
/dev/zero|is not a regular file
sparse.tsrx|is larger than 1 GiB
TABLE
rm sparse.tsrx

# A damaged file: every reading command says so and exits 3, and still
# gives what the lenient reader took.
head -c 600 wall.tsrx >cut.tsrx
for cmd in "info cut.tsrx" "route cut.tsrx" "render cut.tsrx -o cut.png" \
  "export-resolume cut.tsrx -o cut.xml"; do
  expect 3 "$BIN" $cmd
  contains err.txt "tesserine: cut.tsrx: damaged: line 4, byte 53: layer 0 (a screen layer) is cut short"
  [ -s out.txt ] || [ -s cut.png ] && ok || fail "$cmd gave nothing"
done
printf 'TESSERINE_LED_PRESETS v2 0 0\n1 40\nName:Cut\n' >cut.tsrx_presets
expect 3 "$BIN" presets cut.tsrx_presets
same "$(cut -f 2 out.txt)" "Cut"
contains err.txt "1 preset read, the file announces 1"

# CR LF ends and a byte-order mark read as the LF file does.
{ printf '\xEF\xBB\xBF'; sed 's/$/\r/' wall.tsrx; } >crlf.tsrx
expect 0 "$BIN" info crlf.tsrx
golden out.txt info_new.json

# Wrong words and files name the problem, wrong words the command's usage
# too, and a write that fails says so; nothing goes to standard output.
# STATUS|ERROR|WORDS ('' is an empty word).
printf 'plain file' >afile
while IFS='|' read -r want text words; do
  eval "set -- $words" # the words split as a shell would split them
  expect "$want" "$BIN" "$@" && contains err.txt "$text" && silent out.txt
done <<'TABLE'
2|--page takes a4 or letter|report loads.tsrx -o x.pdf --page a3
2|loads.txt: is not a .pdf file name|report loads.tsrx -o loads.txt
1|cannot be written|report loads.tsrx -o missing/kept.pdf
2|layer 1 is not a screen layer|route stack.tsrx --layer 1
2|has no layer 3|route stack.tsrx --layer 3
2|--layer needs a layer index|route stack.tsrx --layer -1
2|--layer needs a layer index|route stack.tsrx --layer x
2|--layer needs a layer index|route stack.tsrx --layer 1x
2|--layer needs a layer index|route stack.tsrx --layer ''
1|missing/setup.xml|export-resolume wall.tsrx -o missing/setup.xml
1|cannot be written|export-resolume wall.tsrx -o afile/setup.xml
2|-o needs a file name|export-resolume wall.tsrx -o ''
2|unknown option --bogus|info wall.tsrx --bogus
2|usage: tesserine info FILE|info -x wall.tsrx
2|-o needs a file name|render wall.tsrx -o
2|-o given twice|export-resolume wall.tsrx -o a.xml --output b.xml
2|--layer needs an index|route wall.tsrx --layer
2|takes --format EXT, and -o names a folder|render wall.tsrx wall.tsrx -o shots
2|--format takes png, tga, bmp, jpg or psd|render wall.tsrx -o shots --format gif
2|two FILEs would be rendered to shots/wall.png|render wall.tsrx ./wall.tsrx -o shots --format png
2|route takes one FILE|route
2|processors takes one FILE|processors
2|unknown option --layer|processors procs.tsrx --layer 1
2|usage: tesserine route FILE|route stack.tsrx small.tsrx
2|export-resolume takes FILE -o OUT|export-resolume wall.tsrx
2|export-resolume takes FILE -o OUT|export-resolume -o x.xml
2|usage: tesserine export-resolume FILE -o OUT|export-resolume wall.tsrx small.tsrx -o x.xml
2|missing.tsrx: no such file|export-resolume missing.tsrx -o x.xml
2|not a Tesserine preset file|presets wall.tsrx
2|junk.tsrx: not a Tesserine project|route junk.tsrx
2|missing.tsrx: no such file|route missing.tsrx
2|unknown command "frobnicate"|frobnicate
2|new takes -o FILE and nothing else|new
2|usage: tesserine info FILE|info
TABLE
absent shots
absent x.xml
# The program's own options, and the help of all commands and of one.
expect 0 "$BIN" --version && grep -qE '^tesserine [0-9]+\.[0-9]+$' out.txt && ok ||
  fail "--version: $(cat out.txt)"
for words in --help -h help; do
  expect 0 "$BIN" $words && contains out.txt "       tesserine COMMAND --help"
done
expect 0 "$BIN" route --help && same "$(head -n 1 out.txt)" "usage: tesserine route FILE [--layer N] [--json]"

# --- pack ----------------------------------------------------------------
# The visible screens in list order (top first) with a gap of 5; the picture
# and the hidden screen stay, and so does FILE. Too wide a gap, a bad gap
# and OUT naming FILE write nothing.
project stage.tsrx 100 50 "$(wall A OffsetX:70 OffsetY:30)" \
  "$(record 2 "$(printf 'Name:Picture\nOffsetX:5')")" "$(wall B Hidden:1 OffsetX:9)" \
  "$(wall C Columns:2 Rows:2)"
cp stage.tsrx before.tsrx
offsets() { "$BIN" info "$1" | python3 -c 'import json, sys
print(";".join("%s %d %d" % (l["name"], l["offset_x"], l["offset_y"]) for l in json.load(sys.stdin)["layers"]))'; }
expect 0 "$BIN" pack stage.tsrx -o packed.tsrx --gap 5 && same "$(offsets packed.tsrx)" "A 25 0;Picture 5 0;B 9 0;C 0 0"
for words in "--gap=70 -o wide.tsrx:1" "--gap -1 -o wide.tsrx:2" "--gap=x -o wide.tsrx:2" "-o stage.tsrx:2"; do
  # shellcheck disable=SC2086
  expect "${words##*:}" "$BIN" pack stage.tsrx ${words%:*}
done
contains err.txt "is the input"
absent wide.tsrx
cmp -s stage.tsrx before.tsrx && ok || fail "pack changed its input"

# --- failed writes leave earlier files whole ------------------------------
mkdir locked
cp wall.tsrx locked/wall.tsrx
printf 'old picture' >locked/frame.png
printf 'old setup' >locked/setup.xml
run_locked() { # runs a command that must fail to write into locked/
  if [ "$(id -u)" -eq 0 ]; then
    # root writes anywhere: take the rights of nobody for this one command
    chmod 0555 locked; chmod 0755 "$WORK"; chmod -R a+rX "$WORK"
    setpriv --reuid=65534 --regid=65534 --clear-groups env HOME=/nonexistent "$@"
  else
    chmod 0555 locked
    "$@"
  fi
}
# The names and bytes in locked/: no file changed, none added (a PSD or a
# temporary file).
snapshot() { (cd locked && ls -A && cat ./*); }
before="$(snapshot)"
for words in "new -o locked/wall.tsrx" "render wall.tsrx -o locked/frame.png" \
  "render wall.tsrx -o locked/frame.psd" "export-resolume wall.tsrx -o locked/setup.xml" \
  "pack wall.tsrx -o locked/wall.tsrx"; do
  # shellcheck disable=SC2086
  expect 1 run_locked "$BIN" $words
done
same "$(snapshot)" "$before"
chmod 0755 locked

finish e2e
