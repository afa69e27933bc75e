#!/usr/bin/env bash
# Builds the project twice (warnings as errors; then with AddressSanitizer
# and UndefinedBehaviorSanitizer) and runs every test in both builds. A
# skipped test (exit 77) is reported with its reason; under CI=true any
# skip fails the run.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc 2>/dev/null || echo 2)
total_skipped=0

# Prints the skipped tests of the last ctest run in $1 with what they said.
report_skips() {
    local dir=$1 summary=$2 names
    names=$(sed -n 's/^[[:space:]]*[0-9]* - \(.*\) (Skipped)$/\1/p' "$summary")
    local count
    count=$(printf '%s' "$names" | grep -c . || true)
    total_skipped=$((total_skipped + count))
    [ "$count" -eq 0 ] && return 0
    echo "== $count test(s) skipped in $dir, and why =="
    while IFS= read -r name; do
        echo "-- $name:"
        awk -v t="$name" '/^[0-9]+\/[0-9]+ Test: / { s = $0; sub(/^[^:]*: /, "", s); on = (s == t); next }
            on && /^Output:/ { getline; show = 1; next }
            show && /^<end of output>/ { show = on = 0 }
            show { print "   " $0 }' \
            "$dir/Testing/Temporary/LastTest.log"
    done <<<"$names"
}

run_suite() {
    local dir=$1 status=0; shift
    cmake -S . -B "$dir" -DVESKA_WERROR=ON "$@" >/dev/null
    cmake --build "$dir" -j "$jobs"
    ctest --test-dir "$dir" --output-on-failure -j "$jobs" | tee "$dir/ctest-summary.txt" || status=$?
    report_skips "$dir" "$dir/ctest-summary.txt"
    return "$status"
}

echo "== build with -Wall -Wextra -Werror =="
run_suite build
echo "== build with -fsanitize=address,undefined =="
UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    run_suite build-asan -DVESKA_SANITIZE=ON -DVESKA_BUILD_BENCH=OFF -DCMAKE_BUILD_TYPE=Debug
if [ "$total_skipped" -gt 0 ]; then
    echo "$total_skipped test(s) skipped over both builds (reasons above)"
    if [ "${CI:-}" = true ]; then
        echo "CI=true: a skipped test fails the run" >&2
        exit 1
    fi
fi
