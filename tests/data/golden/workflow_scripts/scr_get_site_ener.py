#!/usr/bin/env python
import os
import sys

os.system("touch /WORK/RUN/running.get_site_ener")

os.system("qsub jobs/get_site_ener.pbs")

