#!/usr/bin/env bash
# The Debian package of Tesserine: builds what is missing in the build
# folder, then cpack makes the .deb there (its path is printed).
#   scripts/package.sh          make the package
#   scripts/package.sh --check  ... and check it as ./test --deep does:
#                               lintian, appstreamcli, desktop-file-validate,
#                               and the program installed into a scratch root
set -euo pipefail
source "$(dirname "$0")/setup.sh"

check=0
for arg in "$@"; do
  case "$arg" in
    --check) check=1 ;;
    *) echo "usage: scripts/package.sh [--check]" >&2; exit 2 ;;
  esac
done

tesserine_install_missing "${TESSERINE_PACKAGES[@]}" "${TESSERINE_PACKAGING_PACKAGES[@]}"
tesserine_build >&2
rm -f "$BUILD_DIR"/package/*.deb
(cd "$BUILD_DIR" && cpack -G DEB -B "$BUILD_DIR/package" >&2)
deb="$(ls "$BUILD_DIR"/package/*.deb)"
echo "$deb"
[ "$check" -eq 1 ] || exit 0

status=0
fail() { echo "package check: $*" >&2; status=1; }

echo "== lintian $(basename "$deb")" >&2
lintian --fail-on error "$deb" >&2 || fail "lintian found errors"

root="$(mktemp -d)"
trap 'rm -rf "$root"' EXIT
dpkg-deb -x "$deb" "$root"
app_id=app.tesserine.Tesserine

echo "== appstreamcli, desktop-file-validate" >&2
appstreamcli validate --no-net "$root/usr/share/metainfo/$app_id.metainfo.xml" >&2 ||
  fail "the AppStream metainfo does not validate"
said="$(desktop-file-validate "$root/usr/share/applications/$app_id.desktop" 2>&1)"
[ -z "$said" ] || fail "desktop-file-validate: $said"

echo "== the installed files" >&2
for size in 16 32 48 64 128 256; do
  icon="$root/usr/share/icons/hicolor/${size}x${size}/apps/tesserine.png"
  file -b "$icon" | grep -q "PNG image data, $size x $size," || fail "no ${size}px icon: $icon"
done
[ -s "$root/usr/share/icons/hicolor/scalable/apps/tesserine.svg" ] || fail "no scalable icon"
grep -q '<icon name="tesserine"/>' "$root/usr/share/mime/packages/tesserine-project.xml" ||
  fail "the MIME type has no icon"
man_warnings="$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -E UTF-8 -l "$root/usr/share/man/man1/tesserine.1.gz" 2>&1 >/dev/null)"
[ -z "$man_warnings" ] || fail "the manual page: $man_warnings"

echo "== the installed program" >&2
work="$(mktemp -d -p "$root")"
bin="$root/usr/bin/tesserine"
(
  cd "$work"
  export XDG_DATA_HOME="$work/data" QT_QPA_PLATFORM=offscreen
  "$bin" --version | grep -qx "tesserine [0-9.]*" && "$bin" new -o wall.tsrx && "$bin" info wall.tsrx | grep -q '"name": "Screen1"' &&
    "$bin" render wall.tsrx -o wall.png && [ -s wall.png ] && "$bin" presets >/dev/null
) >&2 || fail "the installed tesserine does not run its commands"

[ "$status" -eq 0 ] && echo "package check: $(basename "$deb") is fine" >&2
exit "$status"
