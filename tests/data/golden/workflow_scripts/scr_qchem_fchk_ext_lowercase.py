import os,sys
import shutil
# Renames every .FChk file of the folder given to .fchk; an existing .fchk is replaced.
if len(sys.argv) == 1:
    sys.exit(1)
directory = sys.argv[1]
if not os.path.isdir(directory):
    sys.exit(1)

for name in sorted(os.listdir(directory)):
    if not name.endswith('.FChk'):
        continue
    new_path = os.path.join(directory, name[:name.rfind('.')] + '.fchk')
    if os.path.exists(new_path):
        os.remove(new_path)
    shutil.move(os.path.join(directory, name), new_path)
