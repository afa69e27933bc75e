#!/usr/bin/env python

import os
import sys
from shutil import copyfile

sys.stdout.write("Prepare for evc calculations ...\n")

rootdir = os.getcwd()

access_rights = 493

if not os.path.isdir("evc"):
    os.mkdir("evc", access_rights)

os.chdir("evc")
evcdir = os.getcwd()

sys.stdout.write("  Treating mol01 ...\n")
os.chdir(evcdir)

if not os.path.isdir("mol1"):
    os.mkdir("mol1", access_rights)

os.chdir("mol1")

if not os.path.isdir("elec"):
    os.mkdir("elec", access_rights)

copyfile("../../RE/re-mol1-anion.fchk", "elec/re-mol1-anion.fchk")
copyfile("../../RE/re-mol1-anion.log", "elec/re-mol1-anion.log")
copyfile("../../RE/re-mol1-neutral.fchk", "elec/re-mol1-neutral.fchk")
copyfile("../../RE/re-mol1-neutral.log", "elec/re-mol1-neutral.log")
copyfile("../../RE/evc-e-mol1.inp", "elec/evc.inp")


if not os.path.isdir("hole"):
    os.mkdir("hole", access_rights)

copyfile("../../RE/re-mol1-cation.fchk", "hole/re-mol1-cation.fchk")
copyfile("../../RE/re-mol1-cation.log", "hole/re-mol1-cation.log")
copyfile("../../RE/re-mol1-neutral.fchk", "hole/re-mol1-neutral.fchk")
copyfile("../../RE/re-mol1-neutral.log", "hole/re-mol1-neutral.log")
copyfile("../../RE/evc-h-mol1.inp", "hole/evc.inp")


