#!/usr/bin/env python
import os

os.system("touch /WORK/RUN/running.me_e")
os.system("qsub run_me.pbs")

