#!/bin/sh

python $VESKA_ROOT/bin/veska.py &> veska.log &

