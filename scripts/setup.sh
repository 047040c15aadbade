# Shared by ./run and ./test: install what is missing, then configure and build.
# Sourced, not run: it sets BUILD_DIR for the caller.

ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
BUILD_DIR="${TESSERINE_BUILD_DIR:-$ROOT/build}"

# Debian packages the build, the tests and the benchmarks need.
TESSERINE_PACKAGES=(
  g++ cmake ninja-build pkg-config librsvg2-bin
  qt6-base-dev qt6-image-formats-plugins libgl-dev
  libpugixml-dev libmuparser-dev
  libgtest-dev libbenchmark-dev
  fonts-dejavu-core fontconfig
  imagemagick xvfb xauth xdotool libx11-6 python3
  poppler-utils
)

# ... and what scripts/package.sh adds: cpack's dpkg-shlibdeps and file,
# and the checkers of the package, its metainfo, desktop entry and manual.
TESSERINE_PACKAGING_PACKAGES=(
  dpkg-dev file lintian appstream desktop-file-utils man-db
)

tesserine_install_missing() {
  local missing=()
  local pkg
  for pkg in "$@"; do
    if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed"; then
      missing+=("$pkg")
    fi
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing missing packages: ${missing[*]}" >&2
  local sudo=()
  [ "$(id -u)" -ne 0 ] && sudo=(sudo)
  # The package lists are fetched once per run, also across the scripts
  # that ./test --deep starts.
  if [ -z "${TESSERINE_APT_UPDATED:-}" ]; then
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq
    export TESSERINE_APT_UPDATED=1
  fi
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${missing[@]}"
}

tesserine_build() {
  # $@: extra CMake cache settings
  if [ ! -f "$BUILD_DIR/build.ninja" ]; then
    cmake -S "$ROOT" -B "$BUILD_DIR" -G Ninja "$@" >/dev/null
  elif [ $# -gt 0 ]; then
    cmake "$BUILD_DIR" "$@" >/dev/null
  fi
  cmake --build "$BUILD_DIR" -- -j"$(nproc)"
}
