#!/usr/bin/env bash
# Installs the build into a scratch prefix, then uses it as a user would:
# another CMake project finds and links the library, and the launcher that
# veska_transport_inp writes runs the installed driver on a real crystal.
# Usage: install_check.sh <build dir> <source dir> <crystal> [<linker flags>]
# (the build's own linker flags, e.g. --coverage, are the consumer's too)
set -euo pipefail
build=$1 src=$2 crystal=$3 ldflags=${4:-}
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
prefix=$tmp/prefix
cmake --install "$build" --prefix "$prefix" >/dev/null

for f in veska_transport_inp veska_transport_prepare hopmc.exe hopmc_OMP.exe hopmob.exe \
         hopmob_OMP.exe veska.py; do
    [ -x "$prefix/bin/$f" ] || { echo "not installed: bin/$f"; exit 1; }
done

cmake -S "$src/tests/find_package" -B "$tmp/consumer" -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_EXE_LINKER_FLAGS="$ldflags" >/dev/null
cmake --build "$tmp/consumer" >/dev/null
out=$("$tmp/consumer/consumer" "$crystal" | tail -n 1)
echo "consumer: $out"
[[ $out =~ ^molecules\ [1-9][0-9]*\ pairs\ [1-9][0-9]*$ ]] || { echo "unexpected consumer output"; exit 1; }

# run.sh starts $VESKA_ROOT/bin/veska.py in the background; wait for it.
mkdir "$tmp/run"
cp "$crystal" "$tmp/run/"
cd "$tmp/run"
"$prefix/bin/veska_transport_inp" >/dev/null
VESKA_ROOT=$prefix sh -c '. ./run.sh; wait'
for f in scr/veska.sh scr/mol_two.py data/neighbor.dat; do
    [ -f "$f" ] || { echo "run.sh did not prepare the run: no $f"; ls -R; exit 1; }
done
echo "installed tree works"
