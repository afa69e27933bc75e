#!/usr/bin/env python3
"""usage: check_data.py <data dir> <shared data dir>
The bundled real data are byte for byte what reference.json's sha256 says (a
changed line end fails), and so is the shared data beside the checkout when it
is there. Crystals without an entry are pinned here."""
import hashlib
import json
import os
import sys

PINNED = {
    "c16h14s4_merqim.cif": "f857d569830e6537829893ccc1576cb41fb3b81cad6c595ccb793acdfd680a8f",
    "c20h14s2_lufhaw.cif": "e8a302dec3eef0812526f365e1fc430f1caec871def4079f8b1adc73045eed7b",
    "naphthodithiophene_hahcoi.cif": "54c05a2ce242635b38d7302e40c351232132e095e05a089fd8bff87196d2a6bb",
    "quinacridone_beta.cif": "7cdcb09b02b00dd0997bef9bf99dedea768a3a5d578aa81486823e7584e658c1",
    "tbbt_japwih.cif": "b30d5485c0575874ce9b301424ec86885a849a7a543f5d1960add1653fe04263",
    "tipge_pentacene_x17059_disordered.cif": "7fcee2110348d5a4b1358c19d0ab1b128dde80280c876a5ae4d26950a6863938"}


def sha256(path):
    return hashlib.sha256(open(path, "rb").read()).hexdigest() if os.path.isfile(path) else "missing"


def main():
    data, shared = sys.argv[1:3]
    pinned = dict(PINNED, **{e["file"]: e["sha256"] for e in json.load(open(data + "/reference.json"))["entries"]})
    dirs = [data]
    if os.path.isdir(shared):
        dirs.append(shared)
        for name in ("reference.json", "MANIFEST.md"):  # no recorded sum: the copies must agree
            pinned[name] = sha256(os.path.join(data, name))
    else:
        print("the shared data are not beside the checkout: only the copies in tests/data are checked")
    bad = [os.path.join(d, n) for n, want in pinned.items() for d in dirs if sha256(os.path.join(d, n)) != want]
    for path in bad:
        print("FAIL: %s: sha256 %s differs from the recorded one" % (path, sha256(path)))
    print("%d of %d data files differ from their recorded SHA-256" % (len(bad), len(pinned) * len(dirs)))
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
