import os,sys
# Exit status 0 when the Gaussian output named on the command line ended normally, 1 otherwise.

if len(sys.argv) == 1:
    # sys.stdout.write('Usage: python gaussian_log_check.py <Gaussian output>\n')
    sys.exit(1)

Input=sys.argv[1]
if not os.path.isfile(Input):
    # sys.stdout.write('%s does not exist.\n' % Input)
    sys.exit(1)

GauNormEndStr=' Normal termination of Gaussian'

with open(Input, errors='replace') as f:
    lines = f.readlines()
last = lines[-1] if lines else ''
if last.find(GauNormEndStr) != -1:
    # sys.stdout.write('Normal termination of Gaussian detected.\n')
    sys.exit(0)
else:
    # sys.stdout.write('No normal termination of Gaussian found.\n')
    sys.exit(1)
