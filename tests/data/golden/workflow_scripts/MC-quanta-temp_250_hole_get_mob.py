#!/usr/bin/env python
import os
import sys

os.system("touch /WORK/RUN/running.MC-quanta-temp_250_hole_getmob")
os.system("qsub get_mob.pbs")

