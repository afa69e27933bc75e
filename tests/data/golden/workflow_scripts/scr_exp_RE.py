#
# VESKA transport (https://veska-transport.example.org): reorganisation energies and normal modes
# Written by the VESKA transport developers
#

#!/usr/bin/env python

import os
import sys
from shutil import copyfile

sys.stdout.write("Calculating NM data ...\n")

lamda_line = "Total reorganization energy"

# cm-1 to meV
ener_scale = 0.1239842

cwd = os.getcwd()
access_rights = 493

if not os.path.isdir("evc"):
    os.mkdir("evc", access_rights)

os.chdir("evc")
cwd2 = os.getcwd()

sys.stdout.write("Treating mol01 ...\n")
os.chdir(cwd2)
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
os.chdir("elec")
os.system("nmodes.exe evc.inp")
e_lam1 = 0.0
e_lam2 = 0.0
e_lam = 0.0
if os.path.isfile("evc.cart.dat"):
    with open("evc.cart.dat") as f:
        for line in f:
            if lamda_line in line:
                items = line.split()
                e_lam1 = float(items[-2]) * ener_scale
                e_lam2 = float(items[-1]) * ener_scale
                e_lam = e_lam1 + e_lam2
                break
else:
    sys.stdout.write("  No evc.cart.dat in %s\n" % os.getcwd())
os.chdir("..")
if not os.path.isdir("hole"):
    os.mkdir("hole", access_rights)
copyfile("../../RE/re-mol1-cation.fchk", "hole/re-mol1-cation.fchk")
copyfile("../../RE/re-mol1-cation.log", "hole/re-mol1-cation.log")
copyfile("../../RE/re-mol1-neutral.fchk", "hole/re-mol1-neutral.fchk")
copyfile("../../RE/re-mol1-neutral.log", "hole/re-mol1-neutral.log")
copyfile("../../RE/evc-h-mol1.inp", "hole/evc.inp")
os.chdir("hole")
os.system("nmodes.exe evc.inp")
h_lam1 = 0.0
h_lam2 = 0.0
h_lam = 0.0
if os.path.isfile("evc.cart.dat"):
    with open("evc.cart.dat") as f:
        for line in f:
            if lamda_line in line:
                items = line.split()
                h_lam1 = float(items[-2]) * ener_scale
                h_lam2 = float(items[-1]) * ener_scale
                h_lam = h_lam1 + h_lam2
                break
else:
    sys.stdout.write("  No evc.cart.dat in %s\n" % os.getcwd())
os.chdir("..")
with open("lamda.dat", "w") as f:
    f.write("elec:\n")
    f.write("lam lam1 lam2 [meV]\n")
    f.write("%12.8f %12.8f %12.8f\n" % (e_lam, e_lam1, e_lam2))
    f.write("hole:\n")
    f.write("lam lam1 lam2 [meV]\n")
    f.write("%12.8f %12.8f %12.8f\n" % (h_lam, h_lam1, h_lam2))

copyfile("elec/NM.dat", "../mol1_NM-e.dat")
copyfile("hole/NM.dat", "../mol1_NM-h.dat")

copyfile("elec/NM.dat", "../../data/NM01-e.dat")
copyfile("hole/NM.dat", "../../data/NM01-h.dat")

sys.stdout.write("Treating mol02 ...\n")
os.chdir(cwd2)
if not os.path.isdir("mol2"):
    os.mkdir("mol2", access_rights)
os.chdir("mol2")
if not os.path.isdir("elec"):
    os.mkdir("elec", access_rights)
copyfile("../../RE/re-mol2-anion.fchk", "elec/re-mol2-anion.fchk")
copyfile("../../RE/re-mol2-anion.log", "elec/re-mol2-anion.log")
copyfile("../../RE/re-mol2-neutral.fchk", "elec/re-mol2-neutral.fchk")
copyfile("../../RE/re-mol2-neutral.log", "elec/re-mol2-neutral.log")
copyfile("../../RE/evc-e-mol2.inp", "elec/evc.inp")
os.chdir("elec")
os.system("nmodes.exe evc.inp")
e_lam1 = 0.0
e_lam2 = 0.0
e_lam = 0.0
if os.path.isfile("evc.cart.dat"):
    with open("evc.cart.dat") as f:
        for line in f:
            if lamda_line in line:
                items = line.split()
                e_lam1 = float(items[-2]) * ener_scale
                e_lam2 = float(items[-1]) * ener_scale
                e_lam = e_lam1 + e_lam2
                break
else:
    sys.stdout.write("  No evc.cart.dat in %s\n" % os.getcwd())
os.chdir("..")
if not os.path.isdir("hole"):
    os.mkdir("hole", access_rights)
copyfile("../../RE/re-mol2-cation.fchk", "hole/re-mol2-cation.fchk")
copyfile("../../RE/re-mol2-cation.log", "hole/re-mol2-cation.log")
copyfile("../../RE/re-mol2-neutral.fchk", "hole/re-mol2-neutral.fchk")
copyfile("../../RE/re-mol2-neutral.log", "hole/re-mol2-neutral.log")
copyfile("../../RE/evc-h-mol2.inp", "hole/evc.inp")
os.chdir("hole")
os.system("nmodes.exe evc.inp")
h_lam1 = 0.0
h_lam2 = 0.0
h_lam = 0.0
if os.path.isfile("evc.cart.dat"):
    with open("evc.cart.dat") as f:
        for line in f:
            if lamda_line in line:
                items = line.split()
                h_lam1 = float(items[-2]) * ener_scale
                h_lam2 = float(items[-1]) * ener_scale
                h_lam = h_lam1 + h_lam2
                break
else:
    sys.stdout.write("  No evc.cart.dat in %s\n" % os.getcwd())
os.chdir("..")
with open("lamda.dat", "w") as f:
    f.write("elec:\n")
    f.write("lam lam1 lam2 [meV]\n")
    f.write("%12.8f %12.8f %12.8f\n" % (e_lam, e_lam1, e_lam2))
    f.write("hole:\n")
    f.write("lam lam1 lam2 [meV]\n")
    f.write("%12.8f %12.8f %12.8f\n" % (h_lam, h_lam1, h_lam2))

copyfile("elec/NM.dat", "../mol2_NM-e.dat")
copyfile("hole/NM.dat", "../mol2_NM-h.dat")

copyfile("elec/NM.dat", "../../data/NM02-e.dat")
copyfile("hole/NM.dat", "../../data/NM02-h.dat")

