#!/usr/bin/env python3
"""usage: check_readback.py <generator> [<cif> ...]
Reads the writers' files back with OpenBabel, gemmi, ASE and pymatgen: same elements and
coordinates to the written precision; each CIF is also unwrapped and compared with gemmi's
symmetry expansion. Exit status 1 when a check fails, 77 when a reader is missing
(1 under CI=true, where every reader must be there)."""

import os, re, shutil, subprocess, sys, tempfile
import xml.etree.ElementTree as ET

Z = {"H": 1, "C": 6, "N": 7, "S": 16, "Cl": 17, "Br": 35}
# One- and two-letter symbols, 82 electrons; more decimals than any layout writes.
MOL = [("C", 0.123456789, -1.987654321, 12.3456789), ("S", -3.14159265, 2.71828183, 0.70710678),
       ("H", 10.0000049, -10.0000051, 99.99994), ("Cl", -0.00004, 0.00005, 1.23456789),
       ("Br", 22.2222222, -33.3333333, 44.4444444), ("N", -0.99999999, 0.333333333, 0.66666667)]
# Two molecules in fractions, the second unwrapped past the cell; supercell NA x 1 x 1.
CELL, NA = [7.1234, 9.87654, 11.5, 88.5, 101.25, 92.0], 2
CELL_MOLS = [[("C", .1, .2, .3), ("C", .2123456, .2876543, .3456789), ("H", .05, .15, .25)],
             [("N", .95, .6, .7), ("H", 1.02, .65, .75), ("Br", .88, .5, .62)]]
IN_CELL = [a for m in CELL_MOLS for a in m]
SUPER = [(s, (i + x) / NA, y, z) for i in range(NA) for s, x, y, z in IN_CELL]
WANT = {"mol": (MOL, None), "cell": (IN_CELL, CELL), "super": (SUPER, [CELL[0] * NA] + CELL[1:])}
LINK0 = {"mem": "2000mb", "nprocs": "4"}
REM = {"method": "b3lyp", "basis": "6-31g*", "symmetry": "off", "sym_ignore": "true"}
failures, skipped = [], set()

def obabel(path):  # the file extension names the format
    if not shutil.which("obabel"):
        raise ImportError("openbabel")
    out = subprocess.run(["obabel", path, "-ocml"], capture_output=True, text=True, check=True)
    root, cml = ET.fromstring(out.stdout), "{http://www.xml-cml.org/schema}"
    keys = ("xFract", "yFract", "zFract") if path.endswith(".cif") else ("x3", "y3", "z3")
    rows = [(a.get("elementType"), *map(float, map(a.get, keys))) for a in root.iter(cml + "atom")]
    cell = {s.get("title"): float(s.text) for s in root.iter(cml + "scalar")}
    return rows, [cell.get(t) for t in ("a", "b", "c", "alpha", "beta", "gamma")], {}

def gemmi_cif(path):
    import gemmi
    s = gemmi.read_small_structure(path)
    return ([(a.element.name, *a.fract.tolist()) for a in s.sites],
            [s.cell.a, s.cell.b, s.cell.c, s.cell.alpha, s.cell.beta, s.cell.gamma],
            {"labels": [a.label for a in s.sites]})

def ase_gaussian(path):
    from ase.io.gaussian import read_gaussian_in
    with open(path) as f:
        atoms = read_gaussian_in(f, attach_calculator=True)
    p = atoms.calc.parameters
    return ([(s, *x) for s, x in zip(atoms.get_chemical_symbols(), atoms.positions)], None,
            {k: p.get(k) for k in ("charge", "mult", "chk", "mem", "nprocs")})

class PatchedRe:
    """Debian's pymatgen puts (?i) mid-pattern, which Python 3.11 rejects;
    apply it to the whole pattern as older Pythons did."""
    def __getattr__(self, name):
        return getattr(re, name)

    def compile(self, pattern, flags=0):
        if isinstance(pattern, str) and "(?i)" in pattern[1:]:
            pattern, flags = pattern.replace("(?i)", ""), flags | re.IGNORECASE
        return re.compile(pattern, flags)

def pymatgen_qchem(path):
    from pymatgen.io.qchem import utils
    from pymatgen.io.qchem.inputs import QCInput
    utils.re = PatchedRe()
    jobs = QCInput.from_multi_jobs_file(path)
    m = jobs[0].molecule
    return ([(str(s.specie), *x) for s, x in zip(m, m.cart_coords)], None,
            {"charge": m.charge, "mult": m.spin_multiplicity,
             "then": [str(j.molecule) for j in jobs[1:]],
             "rem": [{k.lower(): str(v).lower() for k, v in j.rem.items()} for j in jobs]})

# file, reader, expected atoms, decimals written (OpenBabel's CML adds its own 6), other facts
ROWS = [("molecule.xyz", obabel, "mol", 10, {}), ("molecule.mol", obabel, "mol", 4, {}),
        ("unitcell.cif", obabel, "cell", 6, {}), ("supercell.cif", obabel, "super", 6, {}),
        ("unitcell.cif", gemmi_cif, "cell", 6, {"labels": ["C1", "C2", "H3", "N4", "H5", "Br6"]}),
        ("supercell.cif", gemmi_cif, "super", 6,
         {"labels": [f"{a[0]}{n + 1}" for n, a in enumerate(SUPER)]}),
        ("hl.com", ase_gaussian, "mol", 4, dict(charge=0, mult=1, chk="hl.chk", **LINK0)),
        ("re.com", ase_gaussian, "mol", 4, dict(charge=1, mult=2, chk="re.chk", **LINK0)),
        ("hl.qcin", pymatgen_qchem, "mol", 4, {"charge": 0, "mult": 1, "then": [], "rem": [
            dict(job_type="sp", exchange="wb97x", gui="2", **REM)]}),
        ("re.qcin", pymatgen_qchem, "mol", 4, {"charge": -1, "mult": 2, "then": ["read"], "rem": [
            dict(job_type="opt", **REM), dict(job_type="freq", iprint="10000000", gui="2", **REM)]})]

def compare(got, want, decimals, facts):
    (rows, cell, got_facts), (atoms, want_cell) = got, WANT[want]
    tol = 0.5 * 10.0 ** -decimals + 5e-7 + 1e-12
    if [r[0] for r in rows] != [a[0] for a in atoms]:
        return f"elements {[r[0] for r in rows]}"
    bad = [n + 1 for n, (r, a) in enumerate(zip(rows, atoms))
           if any(abs(g - w) > tol for g, w in zip(r[1:], a[1:]))]
    if bad:
        return f"atoms {bad} off by more than {tol:g}"
    if want_cell and any(g is None or abs(g - w) > 5e-5 + 5e-7 for g, w in zip(cell, want_cell)):
        return f"cell {cell}"
    return "; ".join(f"{k} {got_facts.get(k)!r} != {v!r}"
                     for k, v in facts.items() if got_facts.get(k) != v)

def check_unwrapped(source, unwrapped):
    """Same sites as gemmi's expansion of the source modulo whole cells, and
    as many molecules without periodic images as the crystal has with them."""
    import gemmi
    ref, got = gemmi.read_small_structure(source), gemmi.read_small_structure(unwrapped).sites

    def dist(a, b, periodic=True):
        d = [x - y for x, y in zip(a.fract.tolist(), b.fract.tolist())]
        d = [x - round(x) * periodic for x in d]
        return ref.cell.orthogonalize(gemmi.Fractional(*d)).length()

    def molecules(sites, periodic):  # atoms closer than 1.15 times their covalent radii
        root = list(range(len(sites)))
        find = lambda i: i if root[i] == i else find(root[i])
        for i, j in ((i, j) for i in range(len(sites)) for j in range(i)):
            bond = 1.15 * (sites[i].element.covalent_r + sites[j].element.covalent_r)
            if dist(sites[i], sites[j], periodic) < bond:
                root[find(i)] = find(j)
        return len({find(i) for i in range(len(sites))})

    same = lambda a, b, tol: a.element.name == b.element.name and dist(a, b) < tol
    merged = []  # PENCEN01 also lists the symmetry-completing atoms, which gemmi keeps twice
    for s in ref.get_all_unit_cell_sites():
        merged += [] if any(same(s, k, 0.2) for k in merged) else [s]
    if len(got) != len(merged) or not all(any(same(s, k, 2e-3) for s in got) for k in merged):
        return f"{len(got)} atoms are not the {len(merged)} sites of gemmi's expansion"
    if molecules(got, False) != molecules(merged, True):
        return "a molecule is split across the cell"

def attempt(label, check):
    try:
        problem = check()
    except ImportError as e:
        return skipped.add(e.name or str(e))
    except Exception as e:  # a reader that cannot read the file is a failure
        problem = f"{type(e).__name__}: {e}"
    if problem:
        failures.append(label)
    print(f"FAIL: {label}: {problem}" if problem else f"ok: {label}")

def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    cifs = sys.argv[2:]
    stdin = " ".join(map(repr, CELL)) + f" {NA}\n" + "".join(
        f"{len(m)}\n" + "".join(f"{Z[s]} {x!r} {y!r} {z!r}\n" for s, x, y, z in m)
        for m in [MOL] + CELL_MOLS)
    with tempfile.TemporaryDirectory(prefix="veska_readback_") as tmp:
        subprocess.run([sys.argv[1], tmp] + cifs, input=stdin, text=True, check=True,
                       stdout=subprocess.DEVNULL)
        for name, reader, want, decimals, facts in ROWS:
            attempt(f"{reader.__name__} {name}",
                    lambda: compare(reader(f"{tmp}/{name}"), want, decimals, facts))
        for n, cif in enumerate(cifs, 1):
            attempt(f"unwrap {cif.split('/')[-1]}",
                    lambda: check_unwrapped(cif, f"{tmp}/unwrap_{n}.cif"))
    print("note: no independent ORCA input reader is packaged; the unit tests check ORCA layouts")
    in_ci = os.environ.get("CI") == "true"
    if skipped:
        print(("FAIL (CI=true)" if in_ci else "SKIP") + ": missing independent reader(s): " + ", ".join(sorted(skipped)))
    print(f"{len(failures)} read-back check(s) failed" if failures else "no read-back check failed")
    return 1 if failures or (skipped and in_ci) else 77 if skipped else 0

if __name__ == "__main__":
    sys.exit(main())
