#!/bin/sh
# Lints every generated job script: bash -n and shellcheck at error level.
# Usage: shellcheck_job_scripts.sh <test runner>
if ! command -v shellcheck >/dev/null 2>&1; then
    if [ "${CI:-}" = true ]; then
        echo "FAIL: shellcheck is not installed, and CI=true needs the job-script lint"
        exit 1
    fi
    echo "SKIP: shellcheck is not installed: skipping the job-script lint"
    exit 77
fi
dir=$(mktemp -d) || exit 1
trap 'rm -rf "$dir"' EXIT
VESKA_JOB_SWEEP_DIR="$dir" "$1" --gtest_filter='*SweepWritesEveryKindInEveryDialect' >"$dir.log" 2>&1 || {
    cat "$dir.log"; rm -f "$dir.log"; exit 1
}
rm -f "$dir.log"
cd "$dir" || exit 1
status=0
scripts=$(find . -type f | sort)
for f in $scripts; do
    bash -n "$f" || { echo "bash -n rejects $f"; status=1; }
done
# PBS and LSF scripts carry no #! line, so shellcheck is told they are bash.
# shellcheck disable=SC2046
shellcheck -S error -s bash $(find . -type f \( -name '*.pbs' -o -name '*.lsf' \) | sort) || status=1
# shellcheck disable=SC2046
shellcheck -S error $(find . -type f \( -name '*.slurm' -o -name '*.local' \) | sort) || status=1
echo "$(echo "$scripts" | wc -l) job scripts checked"
exit $status
