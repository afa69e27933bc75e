#!/usr/bin/env python3
"""End to end on real crystals: veska_transport_inp, then
veska_transport_prepare, in a scratch directory per crystal and set-up.

Every run directory is checked with programs nobody here wrote: every .py
compiles, every job script passes bash -n and shellcheck -S error, every
Gaussian input is read by ASE and every Q-Chem input by pymatgen with the
atom count the neighbour table implies; the summary's counts match
neighbor.dat and unique_id_map.dat. The names of the files written for
pentacene are compared with a golden listing per engine and scheduler.

Usage: check_run_dirs.py <inp command> <prepare command> <data dir> <golden dir>
Set VESKA_UPDATE_GOLDEN=1 to rewrite the listings.
"""
import glob
import os
import py_compile
import re
import shutil
import subprocess
import sys
import tempfile

INP, PREPARE, DATA, GOLDEN = sys.argv[1:5]
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "readback"))
from check_readback import ase_gaussian, pymatgen_qchem  # noqa: E402  the readers, as the read-back uses them
IN_CI = os.environ.get("CI") == "true"
JOB_EXTS = (".pbs", ".slurm", ".lsf", ".local")
failures = []
read_back = [0]


def fail(msg):
    failures.append(msg)
    print("FAIL: " + msg)


def need(module):
    try:
        return __import__(module)
    except ImportError:
        if IN_CI:
            fail("%s is not installed" % module)
        else:
            print("SKIP part: %s is not installed" % module)
        return None


def prepare(workdir, crystal, inp_args=(), keys=None, env=None, copy_as=None):
    """Writes veska.inp next to the crystal, adds keys, runs the command."""
    shutil.copy(os.path.join(DATA, crystal), os.path.join(workdir, copy_as or crystal))
    run_env = dict(os.environ, **(env or {}))
    subprocess.run([INP] + list(inp_args), cwd=workdir, env=run_env, check=True,
                   stdout=subprocess.DEVNULL)
    if keys:
        path = os.path.join(workdir, "veska.inp")
        text = open(path).read()
        extra = "".join("  %s = %s\n" % kv for kv in keys.items())
        open(path, "w").write(text.replace("\n/\n", "\n" + extra + "/\n"))
    return subprocess.run([PREPARE], cwd=workdir, capture_output=True, text=True)


def files_under(workdir):
    out = []
    for root, _, names in os.walk(workdir):
        for n in names:
            out.append(os.path.relpath(os.path.join(root, n), workdir))
    return sorted(out)


def check_scripts(workdir, files):
    for f in files:
        if f.endswith(".py"):
            try:
                py_compile.compile(os.path.join(workdir, f), doraise=True,
                                   cfile=os.path.join(tempfile.gettempdir(), "veska_e2e.pyc"))
            except py_compile.PyCompileError as e:
                fail("%s does not compile: %s" % (f, e.msg))
    jobs = [f for f in files if f.endswith(JOB_EXTS)]
    for f in jobs:
        if subprocess.run(["bash", "-n", f], cwd=workdir).returncode:
            fail("bash -n rejects " + f)
    if not shutil.which("shellcheck"):
        (fail if IN_CI else print)("shellcheck is not installed")
        return
    # PBS and LSF scripts carry no #! line: shellcheck is told they are bash.
    for shell, exts in (("bash", (".pbs", ".lsf")), (None, (".slurm", ".local"))):
        group = [f for f in jobs if f.endswith(exts)]
        for k in range(0, len(group), 200):
            cmd = ["shellcheck", "-S", "error"] + (["-s", shell] if shell else [])
            if subprocess.run(cmd + group[k:k + 200], cwd=workdir).returncode:
                fail("shellcheck rejects job scripts of " + workdir)


def read_neighbors(workdir):
    """neighbor.dat: per molecule the one-based neighbour molecule numbers."""
    words = open(os.path.join(workdir, "data", "neighbor.dat")).read().split("\n")
    rows = [w for w in words if w and not w.startswith("#")]
    nmols, pos, table = int(rows[0]), 1, []
    for _ in range(nmols):
        count = int(rows[pos + 1].split()[0])
        table.append([int(r.split()[0]) for r in rows[pos + 2:pos + 2 + count]])
        pos += 2 + count
    return table


def summary_value(out, label):
    m = re.search(r"^\s+%s\s+(\d+)" % label, out, re.M)
    return int(m.group(1)) if m else None


def check_counts(workdir, out, neighbors, unique):
    pairs = sum(len(n) for n in neighbors)
    if summary_value(out, "molecules") != len(neighbors):
        fail("%s: summary molecules differ from neighbor.dat" % workdir)
    if summary_value(out, "neighbour pairs") != pairs:
        fail("%s: summary pairs differ from neighbor.dat" % workdir)
    idmap = os.path.join(workdir, "data", "unique_id_map.dat")
    if unique and os.path.exists(idmap):
        keys = [l.split() for l in open(idmap) if len(l.split()) == 3]
        if len(keys) != pairs:
            fail("%s: unique_id_map.dat lists %d pairs, not %d" % (workdir, len(keys), pairs))
        unique_pairs = len(glob.glob(os.path.join(workdir, "HL", "2mol-*.*")))
        if summary_value(out, "unique pairs") != unique_pairs:
            fail("%s: summary unique pairs differ from the dimer inputs" % workdir)


def atom_count(reader, path):
    read_back[0] += 1
    return len(reader(path)[0])


def check_inputs(workdir, neighbors, counter, ext):
    """Plain (non-unique) names: every input's atom count follows from the
    unit-cell molecules' counts and the neighbour table."""
    n = {}
    for i in range(1, len(neighbors) + 1):
        n[i] = counter(os.path.join(workdir, "HL", "uc_mol-%d.%s" % (i, ext)))
    for i, nei in enumerate(neighbors, 1):
        for j, m in enumerate(nei, 1):
            for name, want in (("nei_mol-%d-%d" % (i, j), n[m]),
                               ("2mol-%d-%d" % (i, j), n[i] + n[m])):
                got = counter(os.path.join(workdir, "HL", "%s.%s" % (name, ext)))
                if got != want:
                    fail("%s/%s: %d atoms, expected %d" % (workdir, name, got, want))
        for state in ("neutral", "cation", "anion"):
            got = counter(os.path.join(workdir, "RE", "re-mol%d-%s.%s" % (i, state, ext)))
            if got != n[i]:
                fail("%s: re-mol%d-%s has %d atoms, expected %d" % (workdir, i, state, got, n[i]))
    return n


def check_run(workdir, r, label, ase_io, plain):
    if r.returncode != 0 or "Done" not in r.stdout:
        fail("%s: exit %d\n%s%s" % (label, r.returncode, r.stdout, r.stderr))
        return False
    check_scripts(workdir, files_under(workdir))
    neighbors = read_neighbors(workdir)
    check_counts(workdir, r.stdout, neighbors, not plain)
    if plain and ase_io:
        check_inputs(workdir, neighbors, lambda p: atom_count(ase_gaussian, p), "com")
    return True


def run_mol(tmp, ase_io):
    """MOL input: one molecule in a 15 A cubic cell, its neighbours its images."""
    workdir = os.path.join(tmp, "mol-input")
    os.mkdir(workdir)
    cell = {"vector_a": "15 0 0", "vector_b": "0 15 0", "vector_c": "0 0 15",
            "HL_unique_mol": 0, "RE_unique_mol": 0}
    r = prepare(workdir, "culgi_00_v2000.mol", ["-mol"], keys=cell, copy_as="mol1.mol")
    if check_run(workdir, r, "MOL input", ase_io, True):
        print("ok MOL input")


def run_crystal(tmp, crystal, ase_io):
    base = os.path.join(tmp, crystal.replace(".cif", ""))
    for variant, keys in (("unique", None), ("plain", {"HL_unique_mol": 0, "RE_unique_mol": 0})):
        workdir = base + "-" + variant
        os.mkdir(workdir)
        r = prepare(workdir, crystal, keys=keys)
        if "merqim" in crystal:
            if r.returncode == 0 or "WARNING" not in r.stdout:
                fail("%s: an empty crystal must warn and fail" % crystal)
            return
        if not check_run(workdir, r, crystal + " " + variant, ase_io, variant == "plain"):
            return
        if "disordered" in crystal and "WARNING" not in r.stdout.split("Summary")[-1]:
            fail("%s: the summary does not warn about disorder" % crystal)
    print("ok %s" % crystal)


def check_golden(tmp, qcinput):
    """One crystal through every engine and scheduler: the names written."""
    setups = [("gaussian-pbs", [], {}), ("orca-pbs", ["-orca"], {}),
              ("qchem-pbs", ["-qchem"], {}), ("gaussian-slurm", [], {"VESKA_JOB_SCHED": "slurm"}),
              ("gaussian-lsf", [], {"VESKA_JOB_SCHED": "lsf"}),
              ("gaussian-local", [], {"VESKA_JOB_SCHED": "local"})]
    for name, args, env in setups:
        workdir = os.path.join(tmp, "golden-" + name)
        os.mkdir(workdir)
        r = prepare(workdir, "pentacene_pencen01.cif", args, env=env)
        if r.returncode:
            fail("%s: exit %d\n%s%s" % (name, r.returncode, r.stdout, r.stderr))
            continue
        files = files_under(workdir)
        check_scripts(workdir, files)
        listing = "".join(f + "\n" for f in files)
        golden = os.path.join(GOLDEN, "files-%s.txt" % name)
        if os.environ.get("VESKA_UPDATE_GOLDEN"):
            open(golden, "w").write(listing)
        elif open(golden).read() != listing:
            fail("%s: the files written differ from %s" % (name, golden))
    if qcinput:
        workdir = os.path.join(tmp, "qchem-plain")
        os.mkdir(workdir)
        r = prepare(workdir, "pentacene_pencen01.cif", ["-qchem"],
                    keys={"HL_unique_mol": 0, "RE_unique_mol": 0})
        if r.returncode:
            fail("qchem plain: exit %d\n%s" % (r.returncode, r.stderr))
            return
        check_inputs(workdir, read_neighbors(workdir),
                     lambda p: atom_count(pymatgen_qchem, p), "inp")


def main():
    ase_io = need("ase.io")
    qcinput = need("pymatgen.io.qchem.inputs")
    tmp = tempfile.mkdtemp(prefix="veska_e2e_")
    try:
        for crystal in sorted(os.listdir(DATA)):
            if crystal.endswith(".cif"):
                run_crystal(tmp, crystal, ase_io)
        run_mol(tmp, ase_io)
        check_golden(tmp, qcinput)
    finally:
        shutil.rmtree(tmp, ignore_errors=True)
    print("%d inputs read back by independent readers, %d failures" % (read_back[0], len(failures)))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
