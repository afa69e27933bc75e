#!/usr/bin/env bash
# Builds the project twice (warnings as errors; then with AddressSanitizer
# and UndefinedBehaviorSanitizer) and runs every test in both builds.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc 2>/dev/null || echo 2)

run_suite() {
    local dir=$1; shift
    cmake -S . -B "$dir" -DVESKA_WERROR=ON "$@" >/dev/null
    cmake --build "$dir" -j "$jobs"
    ctest --test-dir "$dir" --output-on-failure -j "$jobs"
}

echo "== build with -Wall -Wextra -Werror =="
run_suite build
echo "== build with -fsanitize=address,undefined =="
UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    run_suite build-asan -DVESKA_SANITIZE=ON -DVESKA_BUILD_BENCH=OFF -DCMAKE_BUILD_TYPE=Debug
