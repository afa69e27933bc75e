#!/usr/bin/env python3
"""usage: check_qc_jobs.py <generator> <cif>
Reads the Gaussian (ASE) and Q-Chem (pymatgen) inputs of a real crystal back: each neighbour
is its molecule moved by its cell offset (length from gemmi's cell), each dimer the molecule
and then the neighbour, each RE input the molecule with its state's charge and multiplicity."""

import math, os, subprocess, sys, tempfile
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from check_readback import ase_gaussian, pymatgen_qchem

STATES = {"neutral": (0, 1), "cation": (1, 2), "anion": (-1, 2)}

def load(reader, path, charge_mult=(0, 1)):
    rows, _, facts = reader(path)
    assert (facts["charge"], facts["mult"]) == charge_mult, f"{path}: charge {facts['charge']}"
    return [r[0] for r in rows], [r[1:] for r in rows]

def same(a, b):  # both sides rounded to four decimals
    return a[0] == b[0] and all(abs(p - q) <= 2.5e-4 for u, v in zip(a[1], b[1]) for p, q in zip(u, v))

def offset_length(cif, t):
    import gemmi
    c = gemmi.read_small_structure(cif).cell
    ax, cos = (c.a, c.b, c.c), [math.cos(math.radians(x)) for x in (c.alpha, c.beta, c.gamma)]
    return math.sqrt(sum(t[i] * t[j] * ax[i] * ax[j] * (1 if i == j else cos[3 - i - j])
                         for i in range(3) for j in range(3)))

def check(d, reader, ext, pairs, cif):
    n = sum(f.startswith("uc_mol-") for f in os.listdir(f"{d}/HL"))
    uc = {i: load(reader, f"{d}/HL/uc_mol-{i}.{ext}") for i in range(1, n + 1)}
    bad = [f"re-mol{i}-{s}" for i in uc for s, cm in STATES.items()
           if not same(load(reader, f"{d}/RE/re-mol{i}-{s}.{ext}", cm), uc[i])]
    for i, j, m, *t in pairs:
        nei, dimer = (load(reader, f"{d}/HL/{k}-{i}-{j}.{ext}") for k in ("nei_mol", "2mol"))
        shift = [p - q for p, q in zip(nei[1][0], uc[m][1][0])]
        if not (same(nei, (uc[m][0], [[p + s for p, s in zip(u, shift)] for u in uc[m][1]]))
                and abs(math.hypot(*shift) - offset_length(cif, t)) < 1e-3
                and same(dimer, (uc[i][0] + nei[0], uc[i][1] + nei[1]))):
            bad.append(f"pair {i}-{j}")
    print(f"{'FAIL' if bad or not pairs else 'ok'}: {d}: {n} molecules, {len(pairs)} pairs {' '.join(bad)}")
    return not bad and pairs

def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    with tempfile.TemporaryDirectory(prefix="veska_qc_jobs_") as tmp:
        out = subprocess.run(sys.argv[1:] + [tmp], capture_output=True, text=True, check=True).stdout
        pairs = [tuple(map(int, line.split())) for line in out.splitlines()]
        try:
            ok = [check(f"{tmp}/{e}", r, x, pairs, sys.argv[2])
                  for e, r, x in (("gaussian", ase_gaussian, "com"), ("qchem", pymatgen_qchem, "inp"))]
        except ImportError as e:
            print(f"SKIP: no {e.name} to read the inputs back")
            return 1 if os.environ.get("CI") == "true" else 77
    return 0 if all(ok) else 1

if __name__ == "__main__":
    sys.exit(main())
