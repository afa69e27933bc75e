#!/usr/bin/env bash
# Builds the command and runs it in a scratch directory that holds a
# bundled crystal (pentacene): writes the workflow configuration veska.inp,
# which names that crystal, and the launcher run.sh there.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cmake -S "$root" -B "$root/build" >/dev/null
cmake --build "$root/build" -j "$(nproc 2>/dev/null || echo 2)" --target veska_transport_inp
out="$root/out/example"
rm -rf "$out"
mkdir -p "$out"
cp "$root/tests/data/pentacene_pencen01.cif" "$out/"
cd "$out"
"$root/build/veska_transport_inp" "$@"
echo
echo "Files written in $out:"
ls -l
