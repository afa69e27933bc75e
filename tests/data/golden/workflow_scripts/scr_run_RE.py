#!/usr/bin/env python
import os
import sys

os.system("touch /WORK/RUN/running.run_evc_mol1_elec")
os.chdir("/WORK/evc/mol1/elec")
os.system("qsub job_get_NM.pbs")

os.system("touch /WORK/RUN/running.run_evc_mol1_hole")
os.chdir("/WORK/evc/mol1/hole")
os.system("qsub job_get_NM.pbs")


