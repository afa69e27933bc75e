#!/usr/bin/env python3
"""Driver of the transport stage, started by run.sh and scr/veska.sh.

Runs the preparation command in the current directory (which holds
veska.inp and the crystal) and passes its exit status on. The command is
looked up next to this script first, then on PATH.
"""
import os
import shutil
import subprocess
import sys

NAME = "veska_transport_prepare"


def find_prepare():
    here = os.path.dirname(os.path.abspath(__file__))
    local = os.path.join(here, NAME)
    if os.access(local, os.X_OK):
        return local
    return shutil.which(NAME)


def main():
    prepare = find_prepare()
    if prepare is None:
        sys.stderr.write("veska.py: cannot find %s next to this script or on PATH\n" % NAME)
        return 1
    return subprocess.call([prepare] + sys.argv[1:])


if __name__ == "__main__":
    sys.exit(main())
