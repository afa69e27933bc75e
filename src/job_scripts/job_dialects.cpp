// The four scheduler dialects as data: scheduler lines, variables and
// scratch names. Templates use the names of JobText::value.

#include "job_compose.h"

namespace {

const HeaderLine kPbsLines[] = {
    {kAlways, "#PBS -S /bin/bash"},
    {kAlways, "#PBS -l walltime=1000:00:00"},
    {kAlways, "#PBS -l nodes=@NODES@:ppn=@PPN@"},
    {kAlways, "#PBS -q @QUEUE@"},
    {kArrayOnly, "#PBS -t @LIST@"},
    {kAlways, "#PBS -o @STDOUT@"},
    {kAlways, "#PBS -j oe"},
    {kWithNodelist, "#PBS -l nodes=@NODELIST@"},
    {kAlways, nullptr},
};

const HeaderLine kSlurmLines[] = {
    {kAlways, "#SBATCH --time=0-1000:00:00"},
    {kOutputEarly, "#SBATCH --output=@STDOUT@"},
    {kAlways, "#SBATCH --nodes=@NODES@ --ntasks-per-node=@PPN@"},
    {kAlways, "#SBATCH -p @QUEUE@"},
    {kOutputLate, "#SBATCH --output=@STDOUT@"},
    {kArrayOnly, "#SBATCH --array=@LIST@"},
    {kWithNodelist, "#SBATCH --nodelist=@NODELIST@"},
    {kAlways, nullptr},
};

const HeaderLine kLsfLines[] = {
    {kAlways, "#BSUB -W 1000:00"},
    {kPlainOnly, "#BSUB -J @JOBNAME@"},
    {kAlways, "#BSUB -oo @STDOUT@"},
    {kAlways, "#BSUB -n @SLOTS@"},
    {kAlways, "#BSUB -R 'span[ptile=@PPN@]'"},
    {kAlways, "#BSUB -q @QUEUE@"},
    {kArrayOnly, "#BSUB -J @JOBNAME@"},
    {kWithNodelist, "#BSUB -m '@NODELIST@'"},
    {kAlways, nullptr},
};

const HeaderLine kNoLines[] = {
    {kAlways, nullptr},
};

}  // namespace

const JobDialect kJobDialects[4] = {
    {"PBS", nullptr, kPbsLines, "${PBS_ARRAYID}", "", "${PBS_O_WORKDIR}", "${PBS_O_WORKDIR}", true,
     "veska-$PBS_JOBID", "veska-HL-$PBS_JOBID-${PBS_ARRAYID}", "veska-RE-@INPUT@-$PBS_JOBID", 1},
    {"SLURM", "#!/bin/bash", kSlurmLines, "${SLURM_ARRAY_TASK_ID}", "-%a", "${SLURM_SUBMIT_DIR}",
     "$SLURM_SUBMIT_DIR", false, "veska-HL-$SLURM_JOB_ID",
     "veska-HL-$SLURM_JOB_ID-${SLURM_ARRAY_TASK_ID}", "veska-RE-@INPUT@-$SLURM_JOB_ID", 0},
    {"LSF", nullptr, kLsfLines, "${LSB_JOBINDEX}", "-%I", "${LS_SUBCWD}", "${LS_SUBCWD}", false,
     "veska-HL-$LSB_JOBID", "veska-HL-$LSB_JOBID-${LSB_JOBINDEX}", "veska-RE-@INPUT@-$LSB_JOBID", 0},
    {"LOCAL", "#!/bin/sh", kNoLines, nullptr, "", nullptr, nullptr, false, "veska-HL-@INPUT@-$RANDOM",
     "veska-HL-@INPUT@-$RANDOM", "veska-RE-@INPUT@-$RANDOM", 0},
};
