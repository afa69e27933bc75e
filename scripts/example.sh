#!/usr/bin/env bash
# Builds the command and runs it on a scratch directory: writes the
# workflow configuration veska.inp and the launcher run.sh there.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cmake -S "$root" -B "$root/build" >/dev/null
cmake --build "$root/build" -j "$(nproc 2>/dev/null || echo 2)" --target veska_transport_inp
out="$root/out/example"
mkdir -p "$out"
cd "$out"
"$root/build/veska_transport_inp" "$@"
echo
echo "Files written in $out:"
ls -l
