#!/usr/bin/env python
import os

os.system("touch /WORK/RUN/running.MC-quanta-temp_250_hole")
os.system("qsub run_mc.pbs")

