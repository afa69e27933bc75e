#
# VESKA transport (https://veska-transport.example.org): hop rates and transport runs
# Written by the VESKA transport developers
#

#!/usr/bin/env python

import os
from shutil import copyfile

copyfile("../../veska.inp", "./veska.inp")
copyfile("../../x.cif", "./x.cif")
copyfile("../../data/VH01.dat", "./VH01.dat")
copyfile("../../data/VL01.dat", "./VL01.dat")
copyfile("../../data/VH02.dat", "./VH02.dat")
copyfile("../../data/VL02.dat", "./VL02.dat")
copyfile("../../data/NM01-e.dat", "./NM01-e.dat")
copyfile("../../data/NM01-h.dat", "./NM01-h.dat")
copyfile("../../data/NM01-e.dat", "./NM02-e.dat")
copyfile("../../data/NM01-h.dat", "./NM02-h.dat")
copyfile("../../data/EH01.dat", "./EH01.dat")
copyfile("../../data/EL01.dat", "./EL01.dat")
copyfile("../../data/EH02.dat", "./EH02.dat")
copyfile("../../data/EL02.dat", "./EL02.dat")
os.system("hoprates.exe")

with open("charge.inp", "w") as f:
    f.write("e\n")

