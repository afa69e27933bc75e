#!/usr/bin/env bash
# The main job on a bundled real crystal (pentacene): builds the commands,
# writes veska.inp next to the crystal with veska_transport_inp (extra
# arguments go to it, e.g. -orca), runs veska_transport_prepare there and
# shows the run directory it wrote, in out/example/.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cmake -S "$root" -B "$root/build" >/dev/null
cmake --build "$root/build" -j "$(nproc 2>/dev/null || echo 2)" \
    --target veska_transport_inp veska_transport_prepare
out="$root/out/example"
rm -rf "$out"
mkdir -p "$out"
cp "$root/tests/data/pentacene_pencen01.cif" "$out/"
cd "$out"
"$root/build/veska_transport_inp" "$@"
echo
"$root/build/veska_transport_prepare"
echo
echo "The run directory $out:"
find . -mindepth 1 -maxdepth 2 -type d | sort | while read -r d; do
    printf '  %-24s %3d files\n' "${d#./}/" "$(find "$d" -type f | wc -l)"
done
