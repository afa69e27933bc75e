#!/usr/bin/env python3
"""End to end on real crystals and molecules: veska_transport_inp, then
veska_transport_prepare, in a scratch directory per input and set-up, checked
with programs nobody here wrote.

Every .py compiles, every job and shell script passes bash -n and shellcheck -S error;
the summary's counts match neighbor.dat and unique_id_map.dat. With plain
names every Gaussian input is read back by ASE (pentacene's Q-Chem inputs by
pymatgen): each neighbour is its molecule moved by its whole-cell offset,
each dimer the molecule and then the neighbour, each RE input the molecule
with its state's charge and multiplicity; the molecules and their neighbour
distances match reference.json (or the formulas MANIFEST.md publishes). The
names written for pentacene match a listing per engine and scheduler. The
structure layouts, as kept in the goldens the unit tests compare the writers
with, are read back by OpenBabel and gemmi.

Usage: check_run_dirs.py <inp command> <prepare command> <data dir>
Set VESKA_UPDATE_GOLDEN=1 to rewrite the listings.
"""
import collections
import json
import math
import os
import py_compile
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ET

INP, PREPARE, DATA = sys.argv[1:4]
IN_CI = os.environ.get("CI") == "true"
JOB_EXTS = (".pbs", ".slurm", ".lsf", ".local", ".sh")
PLAIN = {"HL_unique_mol": 0, "RE_unique_mol": 0}
STATES = {"neutral": (0, 1), "cation": (1, 2), "anion": (-1, 2)}
REFERENCE = {e["file"]: e for e in json.load(open(os.path.join(DATA, "reference.json")))["entries"]}
# Crystals without reference figures; the disordered one keeps both parts.
PUBLISHED = {"c20h14s2_lufhaw.cif": ["C20H14S2"] * 2, "naphthodithiophene_hahcoi.cif": ["C12H6S2"] * 2,
             "quinacridone_beta.cif": ["C20H12N2O2"] * 2, "tbbt_japwih.cif": ["C16H8S3"] * 2,
             "tipge_pentacene_x17059_disordered.cif": ["C50H68Ge2"]}
# What tests/test_fileio_writers.cpp writes into the goldens: a molecule
# (Cartesian), and two molecules in fractions, one unwrapped past the cell,
# in a 2 x 1 x 1 supercell.
MOLECULE = [("C", 0.0, 1.5, -12.34567), ("H", 10.25, -0.5, 2.0), ("Cl", 3.14159, 2.71828, -1.0)]
IN_CELL = [("C", .1, .2, .3), ("C", .25, .5, .75), ("H", 1.02, 0, -.05), ("C", .5, .5, .5), ("H", .9, .1, .2)]
SUPERCELL = [(s, (i + x) / 2, y, z) for i in range(2) for s, x, y, z in IN_CELL]
failures, skipped = [], []
read_back = [0]


def fail(msg):
    failures.append(msg)
    print("FAIL: " + msg)


def need(what, found):
    """A missing checker fails under CI=true; else its checks are skipped,
    and so is the test (77) when nothing fails."""
    if not found:
        (fail if IN_CI else skipped.append)("%s is not installed" % what)
    return found


def module(name):
    try:
        return __import__(name)
    except ImportError:
        return None


def ase_gaussian(path):
    from ase.io.gaussian import read_gaussian_in
    with open(path) as f:
        atoms = read_gaussian_in(f, attach_calculator=True)
    return [(s, *x) for s, x in zip(atoms.get_chemical_symbols(), atoms.positions)], atoms.calc.parameters


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
    m = QCInput.from_multi_jobs_file(path)[0].molecule
    return [(str(s.specie), *x) for s, x in zip(m, m.cart_coords)], {"charge": m.charge, "mult": m.spin_multiplicity}


def obabel(path):  # the file extension names the format
    out = subprocess.run(["obabel", path, "-ocml"], capture_output=True, text=True, check=True).stdout
    atoms = ET.fromstring(out).iter("{http://www.xml-cml.org/schema}atom")
    return [(a.get("elementType"), *map(float, map(a.get, ("x3", "y3", "z3")))) for a in atoms], None, None


def gemmi_cif(path):
    import gemmi
    s = gemmi.read_small_structure(path)
    return ([(a.element.name, *a.fract.tolist()) for a in s.sites],
            [s.cell.a, s.cell.b, s.cell.c, s.cell.alpha, s.cell.beta, s.cell.gamma], [a.label for a in s.sites])


def check_goldens(readers):
    for name, reader, atoms, decimals, cell in (
            ("molecule.xyz", obabel, MOLECULE, 10, None), ("molecule.mol", obabel, MOLECULE, 4, None),
            ("supercell.cif", gemmi_cif, SUPERCELL, 6, [20, 12, 14.5, 90, 100.5, 90])):
        if reader not in readers:
            continue
        rows, got_cell, labels = reader(os.path.join(DATA, "golden", name))
        tol = 0.5 * 10.0 ** -decimals + 5e-7 + 1e-12  # OpenBabel's CML rounds to six decimals
        if ([r[0] for r in rows] != [a[0] for a in atoms] or labels not in (None, ["%s%d" % (a[0], n) for n, a in enumerate(atoms, 1)])
                or any(abs(g - w) > tol for r, a in zip(rows, atoms) for g, w in zip(r[1:], a[1:]))
                or cell and any(abs(g - w) > 5e-5 for g, w in zip(got_cell, cell))):
            fail("%s reads %s as %s, cell %s" % (reader.__name__, name, rows, got_cell))
        read_back[0] += 1


def prepare(workdir, source, inp_args=(), keys=None, env=None, copy_as=None):
    """Writes veska.inp next to the input, adds keys, runs the command."""
    os.mkdir(workdir)
    shutil.copy(os.path.join(DATA, source), os.path.join(workdir, copy_as or source))
    subprocess.run([INP] + list(inp_args), cwd=workdir, env=dict(os.environ, **(env or {})), check=True,
                   stdout=subprocess.DEVNULL)
    if keys:
        path = os.path.join(workdir, "veska.inp")
        text = open(path).read().replace("\n/\n", "\n" + "".join("  %s = %s\n" % kv for kv in keys.items()) + "/\n")
        open(path, "w").write(text)
    return subprocess.run([PREPARE], cwd=workdir, capture_output=True, text=True)


def check_scripts(workdir):
    files = sorted(os.path.relpath(os.path.join(root, n), workdir) for root, _, names in os.walk(workdir) for n in names)
    for f in (f for f in files if f.endswith(".py")):
        try:
            py_compile.compile(os.path.join(workdir, f), doraise=True,
                               cfile=os.path.join(tempfile.gettempdir(), "veska_e2e.pyc"))
        except py_compile.PyCompileError as e:
            fail("%s does not compile: %s" % (f, e.msg))
    jobs = [f for f in files if f.endswith(JOB_EXTS)]
    for f in jobs:
        if subprocess.run(["bash", "-n", f], cwd=workdir).returncode:
            fail("bash -n rejects " + f)
    # PBS and LSF scripts carry no #! line: shellcheck is told they are bash.
    for shell, exts in (("bash", (".pbs", ".lsf")), (None, (".slurm", ".local", ".sh"))):
        group = [f for f in jobs if f.endswith(exts)]
        for k in range(0, len(group), 200) if shutil.which("shellcheck") else ():
            cmd = ["shellcheck", "-S", "error"] + (["-s", shell] if shell else [])
            if subprocess.run(cmd + group[k:k + 200], cwd=workdir).returncode:
                fail("shellcheck rejects job scripts of " + workdir)
    return files


def read_neighbors(workdir):
    """neighbor.dat: per molecule its centre, and per neighbour its molecule
    number, centre distance and cell offset."""
    rows = [l.split() for l in open(os.path.join(workdir, "data", "neighbor.dat")) if not l.startswith("#")]
    centres, table, pos = [], [], 1
    for _ in range(int(rows[0][0])):
        centres.append([float(x) for x in rows[pos][1:4]])
        count = int(rows[pos + 1][0])
        table.append([(int(w[0]), float(w[4]), [int(c) for c in w[5:8]]) for w in rows[pos + 2:pos + 2 + count]])
        pos += 2 + count
    return centres, table


def summary_value(out, label):
    m = re.search(r"^\s+%s\s+(\d+)" % label, out, re.M)
    return int(m.group(1)) if m else None


def check_counts(workdir, out, table, unique):
    pairs = sum(map(len, table))
    if summary_value(out, "molecules") != len(table) or summary_value(out, "neighbour pairs") != pairs:
        fail("%s: the summary's molecules or pairs differ from neighbor.dat" % workdir)
    idmap = os.path.join(workdir, "data", "unique_id_map.dat")
    if unique and os.path.exists(idmap):
        if sum(len(l.split()) == 3 for l in open(idmap)) != pairs:
            fail("%s: unique_id_map.dat does not list the %d pairs" % (workdir, pairs))
        if summary_value(out, "unique pairs") != len([f for f in os.listdir(workdir + "/HL") if f.startswith("2mol-")]):
            fail("%s: summary unique pairs differ from the dimer inputs" % workdir)


def lattice(cell):
    """Cell vectors as rows: a along x, b in the xy plane, as the writers place them."""
    from ase.geometry import cellpar_to_cell
    return cellpar_to_cell(cell)


def same(a, b):  # elements, and positions written to four decimals
    return a[0] == b[0] and all(abs(p - q) <= 2.5e-4 for u, v in zip(a[1], b[1]) for p, q in zip(u, v))


def check_inputs(workdir, table, reader, ext, cell):
    def load(name, charge_mult=(0, 1)):
        read_back[0] += 1
        rows, facts = reader("%s/%s.%s" % (workdir, name, ext))
        if (facts["charge"], facts["mult"]) != charge_mult:
            fail("%s/%s: charge %s multiplicity %s" % (workdir, name, facts["charge"], facts["mult"]))
        return [r[0] for r in rows], [list(r[1:]) for r in rows]
    uc = {i: load("HL/uc_mol-%d" % i) for i in range(1, len(table) + 1)}
    bad = ["re-mol%d-%s" % (i, s) for i in uc for s, cm in STATES.items()
           if not same(load("RE/re-mol%d-%s" % (i, s), cm), uc[i])]
    vectors = lattice(cell)
    for i, rows in enumerate(table, 1):
        for j, (m, _, offset) in enumerate(rows, 1):
            nei, dimer = load("HL/nei_mol-%d-%d" % (i, j)), load("HL/2mol-%d-%d" % (i, j))
            shift = [p - q for p, q in zip(nei[1][0], uc[m][1][0])]
            length = math.hypot(*(offset @ vectors))
            if not (same(nei, (uc[m][0], [[p + s for p, s in zip(u, shift)] for u in uc[m][1]]))
                    and abs(math.hypot(*shift) - length) < 1e-3 and same(dimer, (uc[i][0] + nei[0], uc[i][1] + nei[1]))):
                bad.append("pair %d-%d" % (i, j))
    if bad:
        fail("%s: inputs that do not read back as they should: %s" % (workdir, " ".join(bad[:10])))
    return uc


def formula(elements):
    """C first, H second, then the others alphabetically."""
    count = collections.Counter(elements)
    order = [e for e in ("C", "H") if e in count] + sorted(set(count) - {"C", "H"})
    return "".join(e + (str(count[e]) if count[e] > 1 else "") for e in order)


def check_reference(name, uc, centres, table, cell):
    import numpy
    formulas = [formula(uc[i][0]) for i in sorted(uc)]
    ref = REFERENCE.get(name, {})
    if name in PUBLISHED and formulas != PUBLISHED[name]:
        fail("%s: molecules %s, published %s" % (name, formulas, PUBLISHED[name]))
    if "elements_in_order" in ref:
        atoms = uc[1][1]
        if uc[1][0] != ref["elements_in_order"] or formulas != [ref["formula"]] or not all(
                abs(p - q) <= 1.5e-4 for u, v in ((atoms[0], ref["first_atom_xyz"]),
                                                   (atoms[-1], ref["last_atom_xyz"])) for p, q in zip(u, v)):
            fail("%s: the atoms read differ from reference.json" % name)
    if "molecules" not in ref:
        return
    # Each molecule matches one not matched before with the same formula and
    # centre (modulo whole cells), and has its neighbour distances.
    want = list(zip(ref["molecules"], ref["neighbors"]["per_molecule"]))
    if len(want) != len(table):
        fail("%s: %d molecules, reference %d" % (name, len(table), len(want)))
    for f, centre, rows in zip(formulas, centres, table):
        frac = numpy.linalg.solve(lattice(cell).T, centre)
        match = [w for w in want if w[0]["formula"] == f and
                 all(abs(d - round(d)) < 2e-4 for d in (p - q for p, q in zip(frac, w[0]["com_frac"])))]
        if not match:
            fail("%s: no reference molecule %s at %s" % (name, f, frac))
            continue
        want.remove(match[0])
        got, distances = sorted(r[1] for r in rows), match[0][1]["com_distances"]
        if len(got) != len(distances) or any(abs(g - d) > 1.5e-4 for g, d in zip(got, distances)):
            fail("%s: neighbour distances %s, reference %s" % (name, got, distances))


def check_run(workdir, r, name, ase_io, plain, cell):
    if r.returncode != 0 or "Done" not in r.stdout:
        fail("%s: exit %d\n%s%s" % (workdir, r.returncode, r.stdout, r.stderr))
        return False
    check_scripts(workdir)
    centres, table = read_neighbors(workdir)
    check_counts(workdir, r.stdout, table, not plain)
    if plain and ase_io:
        check_reference(name, check_inputs(workdir, table, ase_gaussian, "com", cell), centres, table, cell)
    return True


def cif_cell(crystal):
    text = open(os.path.join(DATA, crystal)).read()
    return [float(re.search(r"^_cell_%s\s+([-\d.]+)" % k, text, re.M).group(1))
            for k in ("length_a", "length_b", "length_c", "angle_alpha", "angle_beta", "angle_gamma")]


def run_crystal(tmp, crystal, ase_io):
    for variant, keys in (("unique", None), ("plain", PLAIN)):
        workdir = os.path.join(tmp, crystal.replace(".cif", "-" + variant))
        r = prepare(workdir, crystal, keys=keys)
        if "merqim" in crystal:  # no operator recognised: an empty cell
            return "WARNING" in r.stdout and r.returncode != 0 or fail("%s: an empty crystal must warn and fail" % crystal)
        if not check_run(workdir, r, crystal, ase_io, variant == "plain", cif_cell(crystal)):
            return False
        if "disordered" in crystal and "WARNING" not in r.stdout.split("Summary")[-1]:
            fail("%s: the summary does not warn about disorder" % crystal)
    return True


def run_mol(tmp, mol, ase_io):
    """MOL input: one molecule in a cubic cell; in a small one its
    neighbours are its own images."""
    edge = 15 if mol.startswith("culgi") else 40
    keys = dict(PLAIN, vector_a="%d 0 0" % edge, vector_b="0 %d 0" % edge, vector_c="0 0 %d" % edge)
    r = prepare(os.path.join(tmp, mol), mol, ["-mol"], keys=keys, copy_as="mol1.mol")
    return check_run(os.path.join(tmp, mol), r, mol, ase_io, True, [edge] * 3 + [90] * 3)


def check_listings(tmp, qcinput):
    """One crystal through every engine and scheduler, with site energies,
    ORCA's jobs single and the others' arrays: the names written."""
    for engine in ("gaussian", "orca", "qchem"):
        for sched in ("pbs", "slurm", "lsf", "local"):
            name, workdir = engine + "-" + sched, os.path.join(tmp, "golden-%s-%s" % (engine, sched))
            r = prepare(workdir, "pentacene_pencen01.cif", [] if engine == "gaussian" else ["-" + engine],
                        {"lat_site_energy": 1, "sched_job_array": int(engine != "orca")}, {"VESKA_JOB_SCHED": sched})
            if r.returncode:
                fail("%s: exit %d\n%s%s" % (name, r.returncode, r.stdout, r.stderr))
                continue
            listing = "".join(f + "\n" for f in check_scripts(workdir))
            golden = os.path.join(DATA, "run_listings", "files-%s.txt" % name)
            if os.environ.get("VESKA_UPDATE_GOLDEN"):
                open(golden, "w").write(listing)
            elif open(golden).read() != listing:
                fail("%s: the files written differ from %s" % (name, golden))
    if qcinput:
        workdir = os.path.join(tmp, "qchem-plain")
        r = prepare(workdir, "pentacene_pencen01.cif", ["-qchem"], keys=PLAIN)
        if r.returncode:
            return fail("qchem plain: exit %d\n%s" % (r.returncode, r.stderr))
        check_inputs(workdir, read_neighbors(workdir)[1], pymatgen_qchem, "inp", cif_cell("pentacene_pencen01.cif"))


def main():
    ase_io = need("ASE", module("ase.io"))
    qcinput = need("pymatgen", module("pymatgen.io.qchem.inputs"))
    need("shellcheck", shutil.which("shellcheck"))
    readers = [r for r, ok in ((obabel, need("OpenBabel", shutil.which("obabel"))),
                               (gemmi_cif, need("gemmi", module("gemmi")))) if ok]
    check_goldens(readers)
    tmp = tempfile.mkdtemp(prefix="veska_e2e_")
    try:
        for name in sorted(os.listdir(DATA)):
            if (run_crystal(tmp, name, ase_io) if name.endswith(".cif") else
                    name in REFERENCE and name.endswith(".mol") and run_mol(tmp, name, ase_io)):
                print("ok " + name)
        check_listings(tmp, qcinput)
    finally:
        shutil.rmtree(tmp, ignore_errors=True)
    print("%d files read back by independent readers, %d failures" % (read_back[0], len(failures)))
    for reason in skipped:
        print("SKIP part: " + reason)
    return 1 if failures else 77 if skipped else 0


if __name__ == "__main__":
    sys.exit(main())
