#!/usr/bin/env python3
"""Reads the project's structure files and quantum-chemistry inputs back with
readers written elsewhere (OpenBabel, gemmi, ASE, pymatgen) and compares
atoms, elements and coordinates with what was asked for, to the precision
that each layout writes.

usage: check_readback.py <generator> [<cif> ...]

The generator writes the files and expected.json into a directory given on
its command line. Each CIF given is also converted to its unwrapped P1 form
and compared with gemmi's own symmetry expansion of the original.
Exit status: 0 all checks passed, 1 a check failed, 77 a reader is missing
(the checks that could run did pass).
"""

import json
import math
import re
import shutil
import subprocess
import sys
import tempfile
import types
import xml.etree.ElementTree as ET
from pathlib import Path

SKIP = 77
SYMBOLS = {1: "H", 6: "C", 7: "N", 8: "O", 9: "F", 16: "S", 17: "Cl", 35: "Br"}

failures = []
skipped = []


def fail(what):
    failures.append(what)
    print("FAIL: " + what)


def tolerance(written_decimals, reader_decimals=None):
    """Largest honest difference between a value and its read-back."""
    tol = 0.5 * 10.0 ** -written_decimals
    if reader_decimals is not None:
        tol += 0.5 * 10.0 ** -reader_decimals
    return tol + 1e-9 * tol + 1e-12


def compare_atoms(source, got_symbols, got_coords, want_symbols, want_coords, tol):
    if list(got_symbols) != list(want_symbols):
        fail(f"{source}: elements {list(got_symbols)} != {list(want_symbols)}")
        return
    for n, (got, want) in enumerate(zip(got_coords, want_coords)):
        for axis in range(3):
            if abs(float(got[axis]) - want[axis]) > tol:
                fail(f"{source}: atom {n + 1} axis {axis}: {got[axis]} != {want[axis]} (tol {tol:g})")
                return
    print(f"ok: {source}: {len(want_symbols)} atoms")


def triples(flat):
    return [flat[i:i + 3] for i in range(0, len(flat), 3)]


class Expected:
    def __init__(self, path):
        data = json.loads(Path(path).read_text())
        self.mol_symbols = [SYMBOLS[z] for z in data["mol_types"]]
        self.mol_cart = triples(data["mol_cart"])
        self.cell = data["cell"]
        self.cell_symbols = [SYMBOLS[z] for z in data["cell_types"]]
        self.cell_frac = triples(data["cell_frac"])
        na, nb, nc = data["supercell"]
        self.super_mult = (na, nb, nc)
        # Images with c outermost and a innermost, every molecule in each.
        self.super_symbols, self.super_frac = [], []
        for k in range(nc):
            for j in range(nb):
                for i in range(na):
                    for sym, f in zip(self.cell_symbols, self.cell_frac):
                        self.super_symbols.append(sym)
                        self.super_frac.append([(i + f[0]) / na, (j + f[1]) / nb, (k + f[2]) / nc])
        self.super_cell = [self.cell[0] * na, self.cell[1] * nb, self.cell[2] * nc] + self.cell[3:]


# ---- OpenBabel --------------------------------------------------------------

def obabel_cml(fmt, path):
    out = subprocess.run(["obabel", "-i" + fmt, str(path), "-ocml"], capture_output=True, text=True,
                         check=True).stdout
    root = ET.fromstring(out)
    ns = {"c": "http://www.xml-cml.org/schema"}
    atoms = root.findall(".//c:atom", ns)
    scalars = {s.get("title"): float(s.text) for s in root.findall(".//c:scalar", ns)}
    return atoms, scalars


def check_obabel(exp, d, cifs):
    if not shutil.which("obabel"):
        skipped.append("OpenBabel (obabel, Debian package openbabel)")
        return
    for name, fmt, decimals in (("molecule.xyz", "xyz", 10), ("molecule.mol", "mol", 4)):
        atoms, _ = obabel_cml(fmt, d / name)
        coords = [[a.get("x3"), a.get("y3"), a.get("z3")] for a in atoms]
        compare_atoms("obabel " + name, [a.get("elementType") for a in atoms], coords,
                      exp.mol_symbols, exp.mol_cart, tolerance(decimals, 6))
    for name, cell, symbols, frac in (("unitcell.cif", exp.cell, exp.cell_symbols, exp.cell_frac),
                                      ("supercell.cif", exp.super_cell, exp.super_symbols,
                                       exp.super_frac)):
        atoms, scalars = obabel_cml("cif", d / name)
        got_cell = [scalars.get(t, math.nan) for t in ("a", "b", "c", "alpha", "beta", "gamma")]
        if any(not abs(g - w) <= tolerance(4, 6) for g, w in zip(got_cell, cell)):
            fail(f"obabel {name}: cell {got_cell} != {cell}")
        coords = [[a.get("xFract"), a.get("yFract"), a.get("zFract")] for a in atoms]
        compare_atoms("obabel " + name, [a.get("elementType") for a in atoms], coords, symbols,
                      frac, tolerance(6, 6))


# ---- gemmi ------------------------------------------------------------------

def gemmi_sites(gemmi, path):
    block = gemmi.cif.read_file(str(path)).sole_block()
    small = gemmi.make_small_structure_from_block(block)
    return block, small


def check_gemmi_cif(gemmi, name, block, small, cell, symbols, frac):
    c = small.cell
    got_cell = [c.a, c.b, c.c, c.alpha, c.beta, c.gamma]
    if any(not abs(g - w) <= tolerance(4) for g, w in zip(got_cell, cell)):
        fail(f"gemmi {name}: cell {got_cell} != {cell}")
    if list(block.find_loop("_symmetry_equiv_pos_as_xyz")) != ["x,y,z"]:
        fail(f"gemmi {name}: symmetry operators are not just x,y,z")
    if not re.fullmatch(r"\d{4}-\d\d-\d\d", block.find_value("_audit_creation_date") or ""):
        fail(f"gemmi {name}: creation date not YYYY-MM-DD")
    labels = [s.label for s in small.sites]
    want_labels = [f"{sym}{n + 1}" for n, sym in enumerate(symbols)]
    if labels != want_labels:
        fail(f"gemmi {name}: labels {labels} != {want_labels}")
    compare_atoms("gemmi " + name, [s.element.name for s in small.sites],
                  [[s.fract.x, s.fract.y, s.fract.z] for s in small.sites], symbols, frac,
                  tolerance(6))


def check_gemmi(exp, d, cifs):
    try:
        import gemmi
    except ImportError:
        skipped.append("gemmi (Debian package python3-gemmi)")
        return
    block, small = gemmi_sites(gemmi, d / "unitcell.cif")
    if block.name != "readback":
        fail(f"gemmi unitcell.cif: data block {block.name!r}")
    check_gemmi_cif(gemmi, "unitcell.cif", block, small, exp.cell, exp.cell_symbols, exp.cell_frac)
    block, small = gemmi_sites(gemmi, d / "supercell.cif")
    check_gemmi_cif(gemmi, "supercell.cif", block, small, exp.super_cell, exp.super_symbols,
                    exp.super_frac)
    for n, cif in enumerate(cifs):
        check_unwrapped(gemmi, cif, d / f"unwrap_{n + 1}.cif")


def cart_delta(gemmi, cell, fa, fb, periodic):
    d = [a - b for a, b in zip(fa, fb)]
    if periodic:
        d = [x - round(x) for x in d]
    return cell.orthogonalize(gemmi.Fractional(*d)).length()


def count_molecules(gemmi, cell, sites, periodic):
    """Connected groups of atoms closer than 1.15 times their covalent radii."""
    parent = list(range(len(sites)))

    def root(i):
        while parent[i] != i:
            parent[i] = parent[parent[i]]
            i = parent[i]
        return i

    fr = [(s.fract.x, s.fract.y, s.fract.z) for s in sites]
    for i in range(len(sites)):
        for j in range(i):
            limit = 1.15 * (sites[i].element.covalent_r + sites[j].element.covalent_r)
            if cart_delta(gemmi, cell, fr[i], fr[j], periodic) < limit:
                parent[root(i)] = root(j)
    return len({root(i) for i in range(len(sites))})


def merge_coincident(gemmi, cell, sites):
    """gemmi merges the images of one site only; files that also list the
    symmetry-completing atoms (PENCEN01) give each such atom twice."""
    kept = []
    for site in sites:
        f = (site.fract.x, site.fract.y, site.fract.z)
        if not any(k.element.name == site.element.name and
                   cart_delta(gemmi, cell, f, (k.fract.x, k.fract.y, k.fract.z), True) < 0.2
                   for k in kept):
            kept.append(site)
    return kept


def check_unwrapped(gemmi, source, unwrapped):
    """Same atoms as gemmi's expansion of the source, modulo whole cells,
    and every molecule whole without periodic images."""
    name = f"unwrap {Path(source).name}"
    ref = gemmi_sites(gemmi, source)[1]
    expanded = merge_coincident(gemmi, ref.cell, ref.get_all_unit_cell_sites())
    got = gemmi_sites(gemmi, unwrapped)[1]
    if len(got.sites) != len(expanded):
        fail(f"{name}: {len(got.sites)} atoms, gemmi expands to {len(expanded)}")
        return
    unused = list(range(len(expanded)))
    for site in got.sites:
        f = (site.fract.x, site.fract.y, site.fract.z)
        match = [k for k in unused if expanded[k].element.name == site.element.name and
                 cart_delta(gemmi, ref.cell, f, (expanded[k].fract.x, expanded[k].fract.y,
                                          expanded[k].fract.z), True) < 2e-3]
        if not match:
            fail(f"{name}: {site.label} at {f} is not a site of the expanded cell")
            return
        unused.remove(match[0])
    whole = count_molecules(gemmi, got.cell, got.sites, False)
    periodic = count_molecules(gemmi, ref.cell, expanded, True)
    if whole != periodic:
        fail(f"{name}: {whole} groups without images, {periodic} molecules in the crystal")
        return
    print(f"ok: {name}: {len(got.sites)} atoms, {whole} whole molecules")


# ---- ASE --------------------------------------------------------------------

def check_ase(exp, d, cifs):
    try:
        import ase.io
        from ase.io.gaussian import read_gaussian_in
    except ImportError:
        skipped.append("ASE (Debian package python3-ase)")
        return
    atoms = ase.io.read(str(d / "molecule.xyz"), format="xyz")
    compare_atoms("ase molecule.xyz", atoms.get_chemical_symbols(), atoms.positions,
                  exp.mol_symbols, exp.mol_cart, tolerance(10))
    for name, charge, mult, chk in (("hl.com", 0, 1, "hl"), ("re.com", 1, 2, "re")):
        with open(d / name) as f:
            atoms = read_gaussian_in(f, attach_calculator=True)
        compare_atoms("ase " + name, atoms.get_chemical_symbols(), atoms.positions,
                      exp.mol_symbols, exp.mol_cart, tolerance(4))
        p = atoms.calc.parameters
        got = (p.get("charge"), p.get("mult"), p.get("chk"), p.get("mem"), p.get("nprocs"))
        if got != (charge, mult, chk + ".chk", "2000mb", "4"):
            fail(f"ase {name}: charge, multiplicity, link 0 {got}")


# ---- pymatgen ---------------------------------------------------------------

def python311_regex_shim(module):
    """Debian's pymatgen puts an inline (?i) in the middle of a pattern,
    which Python 3.11 rejects; older Pythons applied such a flag to the
    whole pattern, so do exactly that."""
    real_re = module.re

    def compile_(pattern, flags=0):
        if isinstance(pattern, str) and "(?i)" in pattern[1:]:
            pattern, flags = pattern.replace("(?i)", ""), flags | real_re.IGNORECASE
        return real_re.compile(pattern, flags)

    shim = types.SimpleNamespace(**{k: getattr(real_re, k) for k in dir(real_re) if not k.startswith("__")})
    shim.compile = compile_
    module.re = shim


def pymatgen_atoms(mol):
    return [str(s.specie) for s in mol], mol.cart_coords


def check_pymatgen(exp, d, cifs):
    try:
        from pymatgen.io.gaussian import GaussianInput
        from pymatgen.io.qchem import utils as qchem_utils
        from pymatgen.io.qchem.inputs import QCInput
    except ImportError:
        skipped.append("pymatgen (Debian package python3-pymatgen)")
        return
    python311_regex_shim(qchem_utils)
    # Only the transfer-integral input: this reader takes the route section
    # as one line, and the RE route is continued on a second line.
    g = GaussianInput.from_file(str(d / "hl.com"))
    compare_atoms("pymatgen hl.com", *pymatgen_atoms(g.molecule), exp.mol_symbols, exp.mol_cart,
                  tolerance(4))
    got = (g.charge, g.spin_multiplicity, g.title, g.functional, g.basis_set, g.link0_parameters)
    want = (0, 1, "transfer integral", "b3lyp", "6-31g(d)",
            {"%chk": "hl.chk", "%mem": "2000MB", "%nprocs": "4"})
    if got != want:
        fail(f"pymatgen hl.com: {got} != {want}")

    q = QCInput.from_file(str(d / "hl.qcin"))
    compare_atoms("pymatgen hl.qcin", *pymatgen_atoms(q.molecule), exp.mol_symbols, exp.mol_cart,
                  tolerance(4))
    want_rem = {"job_type": "sp", "method": "b3lyp", "basis": "6-31g*", "exchange": "wb97x",
                "gui": "2", "symmetry": "off", "sym_ignore": "true"}
    check_rem("hl.qcin", q, 0, 1, want_rem)

    jobs = QCInput.from_multi_jobs_file(str(d / "re.qcin"))
    if len(jobs) != 2:
        fail(f"pymatgen re.qcin: {len(jobs)} jobs")
        return
    compare_atoms("pymatgen re.qcin", *pymatgen_atoms(jobs[0].molecule), exp.mol_symbols,
                  exp.mol_cart, tolerance(4))
    check_rem("re.qcin job 1", jobs[0], -1, 2, {"job_type": "opt", "method": "b3lyp",
                                                "basis": "6-31g*", "symmetry": "off",
                                                "sym_ignore": "true"})
    if jobs[1].molecule != "read":
        fail("pymatgen re.qcin: second job does not read the molecule")
    check_rem("re.qcin job 2", jobs[1], None, None,
              {"job_type": "freq", "method": "b3lyp", "basis": "6-31g*", "iprint": "10000000",
               "gui": "2", "symmetry": "off", "sym_ignore": "true"})


def check_rem(name, q, charge, mult, want):
    """The reader lower-cases the keywords and names JOBTYPE job_type."""
    got = {k.lower(): str(v).lower() for k, v in q.rem.items()}
    if got != want:
        fail(f"pymatgen {name}: rem {got} != {want}")
    if charge is not None and (q.molecule.charge, q.molecule.spin_multiplicity) != (charge, mult):
        fail(f"pymatgen {name}: charge {q.molecule.charge} multiplicity {q.molecule.spin_multiplicity}")


def main():
    if len(sys.argv) < 2:
        print(__doc__)
        return 2
    generator, cifs = sys.argv[1], sys.argv[2:]
    with tempfile.TemporaryDirectory(prefix="veska_readback_") as tmp:
        d = Path(tmp)
        subprocess.run([generator, tmp] + cifs, check=True, stdout=subprocess.DEVNULL)
        exp = Expected(d / "expected.json")
        for check in (check_obabel, check_gemmi, check_ase, check_pymatgen):
            try:
                check(exp, d, cifs)
            except Exception as e:  # a reader that cannot read the file is a failure
                fail(f"{check.__name__}: {type(e).__name__}: {e}")
    print("note: no independent ORCA input reader is packaged; ORCA layouts are checked by the unit tests")
    if failures:
        print(f"{len(failures)} read-back check(s) failed")
        return 1
    if skipped:
        print("SKIP: missing independent reader(s): " + "; ".join(skipped))
        return SKIP
    print("all read-back checks passed")
    return 0


if __name__ == "__main__":
    sys.exit(main())
