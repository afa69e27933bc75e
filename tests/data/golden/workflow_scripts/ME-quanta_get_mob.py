#!/usr/bin/env python
import os
from shutil import copyfile

copyfile("elec/exp_data.dat", "./mob_e.dat")
copyfile("hole/exp_data.dat", "./mob_h.dat")

