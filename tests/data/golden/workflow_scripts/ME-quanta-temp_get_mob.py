#!/usr/bin/env python
import os

import sys

mu = []
mu.append([])
with open("elec/200/exp_data.dat") as f:
    for i in range(4):
        line = f.readline()
        items = line.split()
        mu[0].append(float(items[2]))

mu.append([])
with open("elec/250/exp_data.dat") as f:
    for i in range(4):
        line = f.readline()
        items = line.split()
        mu[1].append(float(items[2]))

mu.append([])
with open("elec/300/exp_data.dat") as f:
    for i in range(4):
        line = f.readline()
        items = line.split()
        mu[2].append(float(items[2]))

sys.stdout.write("  Writing file mob_e.dat ...\n")

with open("mob_e.dat", "w") as n:
    n.write("dir_a:\n")
    n.write("200  %12.6e  cm^{2}/Vs\n" % (mu[0][0]))
    n.write("250  %12.6e  cm^{2}/Vs\n" % (mu[1][0]))
    n.write("300  %12.6e  cm^{2}/Vs\n" % (mu[2][0]))
    n.write("dir_b:\n")
    n.write("200  %12.6e  cm^{2}/Vs\n" % (mu[0][1]))
    n.write("250  %12.6e  cm^{2}/Vs\n" % (mu[1][1]))
    n.write("300  %12.6e  cm^{2}/Vs\n" % (mu[2][1]))
    n.write("dir_c:\n")
    n.write("200  %12.6e  cm^{2}/Vs\n" % (mu[0][2]))
    n.write("250  %12.6e  cm^{2}/Vs\n" % (mu[1][2]))
    n.write("300  %12.6e  cm^{2}/Vs\n" % (mu[2][2]))
    n.write("dir_av:\n")
    n.write("200  %12.6e  cm^{2}/Vs\n" % (mu[0][3]))
    n.write("250  %12.6e  cm^{2}/Vs\n" % (mu[1][3]))
    n.write("300  %12.6e  cm^{2}/Vs\n" % (mu[2][3]))

mu = []
mu.append([])
with open("hole/200/exp_data.dat") as f:
    for i in range(4):
        line = f.readline()
        items = line.split()
        mu[0].append(float(items[2]))

mu.append([])
with open("hole/250/exp_data.dat") as f:
    for i in range(4):
        line = f.readline()
        items = line.split()
        mu[1].append(float(items[2]))

mu.append([])
with open("hole/300/exp_data.dat") as f:
    for i in range(4):
        line = f.readline()
        items = line.split()
        mu[2].append(float(items[2]))

sys.stdout.write("  Writing file mob_h.dat ...\n")

with open("mob_h.dat", "w") as n:
    n.write("dir_a:\n")
    n.write("200  %12.6e  cm^{2}/Vs\n" % (mu[0][0]))
    n.write("250  %12.6e  cm^{2}/Vs\n" % (mu[1][0]))
    n.write("300  %12.6e  cm^{2}/Vs\n" % (mu[2][0]))
    n.write("dir_b:\n")
    n.write("200  %12.6e  cm^{2}/Vs\n" % (mu[0][1]))
    n.write("250  %12.6e  cm^{2}/Vs\n" % (mu[1][1]))
    n.write("300  %12.6e  cm^{2}/Vs\n" % (mu[2][1]))
    n.write("dir_c:\n")
    n.write("200  %12.6e  cm^{2}/Vs\n" % (mu[0][2]))
    n.write("250  %12.6e  cm^{2}/Vs\n" % (mu[1][2]))
    n.write("300  %12.6e  cm^{2}/Vs\n" % (mu[2][2]))
    n.write("dir_av:\n")
    n.write("200  %12.6e  cm^{2}/Vs\n" % (mu[0][3]))
    n.write("250  %12.6e  cm^{2}/Vs\n" % (mu[1][3]))
    n.write("300  %12.6e  cm^{2}/Vs\n" % (mu[2][3]))

