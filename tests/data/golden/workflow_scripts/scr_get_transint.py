#!/usr/bin/env python
import os

os.system("touch /WORK/RUN/running.run_transint-1")
os.system("touch /WORK/RUN/running.run_transint-2")

os.system("qsub jobs/job_transint.pbs")

