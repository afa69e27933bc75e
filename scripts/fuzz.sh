#!/usr/bin/env bash
# Fuzzes every reader with libFuzzer (clang, AddressSanitizer and
# UndefinedBehaviorSanitizer) for SECONDS each, one target after another.
#
#   scripts/fuzz.sh [SECONDS] [TARGET...]     SECONDS defaults to 60
#
# Targets: cif mol xyz veska_inp config_inp (all by default). Fails on any
# crash, sanitizer report, leak, input that runs over 5 s or process that
# grows over 2 GB; the input that did it is left in build-fuzz/artifacts/.
# The corpus grows in build-fuzz/corpus/ and is kept for the next run.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
shift || true
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(cif mol xyz veska_inp config_inp)
if ! [[ $seconds =~ ^[0-9]+$ ]] || [ "$seconds" -lt 1 ]; then
    echo "usage: scripts/fuzz.sh [SECONDS] [TARGET...]" >&2
    exit 2
fi

if ! command -v clang++ >/dev/null; then
    if [ "${CI:-}" = true ]; then
        echo "fuzz: clang++ is missing" >&2
        exit 1
    fi
    echo "fuzz: skipped, clang++ is not installed (apt-get install clang libfuzzer-14-dev)"
    exit 0
fi

# Warnings are the g++ builds' concern: a clang-only warning must not stop
# the search for faults.
build="build-fuzz"
cmake -S . -B "$build" -DCMAKE_CXX_COMPILER=clang++ -DVESKA_FUZZ=ON -DVESKA_WERROR=OFF \
    -DVESKA_BUILD_TESTS=OFF -DVESKA_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" -j "$(nproc 2>/dev/null || echo 2)" \
    --target "${targets[@]/#/fuzz_}" >/dev/null

# Seed files of a target: the hand-made ones in fuzz/seeds/ and the real
# crystal and molecule files of the tests.
seed_files() {
    case $1 in
        cif) ls tests/data/*.cif ;;
        mol) ls tests/data/*.mol ;;
        *) ls "fuzz/seeds/$1"/* ;;
    esac
}

mkdir -p "$build/artifacts" "$build/logs"
passed=0 failed=0
for t in "${targets[@]}"; do
    corpus=$build/corpus/$t seeds=$build/seeds/$t log=$build/logs/$t.log
    mkdir -p "$corpus" "$seeds"
    mapfile -t files < <(seed_files "$t")
    cp "${files[@]}" "$seeds/"
    status=0
    "$build/fuzz/fuzz_$t" "$corpus" "$seeds" -dict="fuzz/dict/$t.dict" \
        -max_total_time="$seconds" -timeout=5 -rss_limit_mb=2048 -malloc_limit_mb=2048 \
        -close_fd_mask=1 -print_final_stats=1 -artifact_prefix="$build/artifacts/$t-" \
        </dev/null >"$log" 2>&1 || status=$?
    # Statistics of the run: executions, then coverage as the last status
    # line gives it.
    execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    cov=$(grep -E '^#[0-9]+' "$log" | tail -n 1 | grep -oE 'cov: [0-9]+ ft: [0-9]+' || true)
    if [ "$status" -ne 0 ] || grep -qE '^(==[0-9]+==ERROR|SUMMARY: )|runtime error:' "$log"; then
        failed=$((failed + 1))
        echo "fuzz_$t: FAILED (status $status); the end of $log:"
        tail -n 40 "$log"
    else
        passed=$((passed + 1))
        echo "fuzz_$t: ok, ${execs:-?} executions in ${seconds} s, ${cov:-no coverage line}"
    fi
done
echo "fuzz: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
