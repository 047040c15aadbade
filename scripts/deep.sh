#!/usr/bin/env bash
# The deep checks of ./test --deep: the Debian package and its checks, the
# whole suite under AddressSanitizer and UndefinedBehaviorSanitizer (with
# the Xvfb tests of the real window), seeded random input on that window,
# then a short libFuzzer run of every reader of outside text. Any finding
# fails the run.
set -euo pipefail
source "$(dirname "$0")/setup.sh"

FUZZ_SECONDS="${TESSERINE_FUZZ_SECONDS:-30}"
tesserine_install_missing clang libclang-rt-14-dev

echo "== the Debian package" >&2
"$ROOT/scripts/package.sh" --check >/dev/null

echo "== sanitizer build of the test suite" >&2
ASAN_DIR="$ROOT/build-asan"
if [ ! -f "$ASAN_DIR/build.ninja" ]; then
  cmake -S "$ROOT" -B "$ASAN_DIR" -G Ninja -DTESSERINE_SANITIZE=ON -DTESSERINE_BENCH=OFF \
    -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS="-O1" >/dev/null
fi
cmake --build "$ASAN_DIR" -- -j"$(nproc)"
export QT_QPA_PLATFORM=offscreen
# Leaks are not checked: Qt and fontconfig keep caches until exit.
ASAN_OPTIONS="detect_leaks=0:abort_on_error=1" UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1" \
  ctest --test-dir "$ASAN_DIR" --output-on-failure -j"$(nproc)"

# The real window of the sanitizer build under seeded random input; the
# Xvfb control test ran in the suite above.
MONKEY_SECONDS="${TESSERINE_MONKEY_SECONDS:-60}"
for seed in 1 2 3; do
  echo "== random input on the window, seed $seed, ${MONKEY_SECONDS}s" >&2
  ASAN_OPTIONS="detect_leaks=0:abort_on_error=1" UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1" \
    bash "$ROOT/scripts/monkey.sh" "$ASAN_DIR/tesserine" "$seed" "$MONKEY_SECONDS"
done

echo "== fuzz targets, ${FUZZ_SECONDS}s each" >&2
FUZZ_DIR="$ROOT/build-fuzz"
if [ ! -f "$FUZZ_DIR/build.ninja" ]; then
  CC=clang CXX=clang++ cmake -S "$ROOT" -B "$FUZZ_DIR" -G Ninja -DTESSERINE_FUZZ=ON \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
fi
cmake --build "$FUZZ_DIR" -- -j"$(nproc)"
status=0
for target in project_file layer_record custom_path raster_label image_data; do
  work="$FUZZ_DIR/corpus/$target"
  artifacts="$FUZZ_DIR/findings/$target/"
  mkdir -p "$work" "$artifacts"
  # Seeds, and the inputs of past findings where there are any.
  inputs=("$work")
  for kept in "$ROOT/fuzz/corpus/$target" "$ROOT/fuzz/regressions/$target"; do
    [ -d "$kept" ] && inputs+=("$kept")
  done
  echo "-- fuzz_$target" >&2
  if ! ASAN_OPTIONS="detect_leaks=0" "$FUZZ_DIR/fuzz/fuzz_$target" \
      -max_total_time="$FUZZ_SECONDS" -timeout=20 -rss_limit_mb=4096 -print_final_stats=1 \
      -artifact_prefix="$artifacts" "${inputs[@]}" >"$FUZZ_DIR/fuzz_$target.log" 2>&1; then
    echo "fuzz_$target found a fault; inputs in $artifacts, log:" >&2
    tail -60 "$FUZZ_DIR/fuzz_$target.log" >&2
    status=1
  else
    grep -E "stat::number_of_executed_units|cov:" "$FUZZ_DIR/fuzz_$target.log" | tail -2 >&2 || true
  fi
done
[ "$status" -eq 0 ] && echo "deep checks: no findings" >&2
exit "$status"
