#!/usr/bin/env bash
# Line coverage of src/ by the whole suite (GoogleTest cases and the
# read-back and shell checks), from an unoptimised --coverage build in
# build-cov/. Prints the per-file table and the total; with
# VESKA_COVERAGE_MIN=<percent> it fails when the total falls below it.
# Extra arguments go to gcovr (e.g. --html-details build-cov/index.html).
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc 2>/dev/null || echo 2)
command -v gcovr >/dev/null || { echo "coverage needs gcovr (apt-get install gcovr)" >&2; exit 1; }

cmake -S . -B build-cov -DCMAKE_BUILD_TYPE=Debug -DVESKA_BUILD_BENCH=OFF \
    -DCMAKE_CXX_FLAGS=--coverage -DCMAKE_EXE_LINKER_FLAGS=--coverage >/dev/null
find build-cov -name '*.gcda' -delete
cmake --build build-cov -j "$jobs"
find build-cov -name '*.gcda' -delete  # test discovery ran the runner
ctest --test-dir build-cov --output-on-failure -j "$jobs"

min=()
if [ -n "${VESKA_COVERAGE_MIN:-}" ]; then
    min=(--fail-under-line "$VESKA_COVERAGE_MIN")
fi
gcovr --root . --filter 'src/' --object-directory build-cov \
    --gcov-exclude '.*CompilerId.*' --exclude-unreachable-branches --print-summary "${min[@]}" "$@" build-cov
