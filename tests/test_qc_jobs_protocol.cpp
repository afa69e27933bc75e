// The resumable job protocol run for real: stand-in schedulers and engine
// first on PATH, the generated drivers run under every dialect (the local one
// under bash), run again, and once with a failing calculation.

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

#include "qc_jobs_test_support.h"

namespace fs = std::filesystem;
using QcJobsProtocol = ScratchDirTest;

// Runs the job script at once, once per array member, as the scheduler named
// by $0 would; "sh" is bash, as the local dialect needs. With DRY set it
// accepts the job and runs nothing. Shell built-ins only, to stay quick.
static const char kScheduler[] = R"(#!/bin/bash
[ -n "$DRY" ] && exit 0
case ${0##*/} in
qsub) script=$1 tag='#PBS -t ' index=PBS_ARRAYID; export PBS_O_WORKDIR=$PWD ;;
sbatch) script=$1 tag='#SBATCH --array=' index=SLURM_ARRAY_TASK_ID; export SLURM_SUBMIT_DIR=$PWD ;;
bsub) script=.bsub.$$ tag='#BSUB -J ' index=LSB_JOBINDEX; export LS_SUBCWD=$PWD
      mapfile -t text; printf '%s\n' "${text[@]}" >"$script" ;;
*) exec bash "$@" ;;
esac
list=
while read -r line; do [[ $line == "$tag"* ]] && list=${line#"$tag"}; done <"$script"
case $list in *\[*\]) list=${list##*\[} list=${list%\]} ;; *) [ $index = LSB_JOBINDEX ] && list= ;; esac
[ -z "$list" ] && exec bash "$script"
for part in ${list//,/ }; do
    for ((k = ${part%-*}; k <= ${part#*-}; k++)); do export "$index=$k"; bash "$script"; done
done
)";

// Logs each run of an input that exists; the one named by FAIL_INPUT ends
// without a normal termination.
static const char kEngine[] = R"(#!/bin/bash
[ -f "$1" ] || exit 1
echo "$1" >>"$CALLS"
[ "${1%.com}" = "$FAIL_INPUT" ] && end="Error termination" || end="Normal termination of Gaussian 16"
echo " $end" >"${1%.com}.log"
)";

// Python for the drivers; the output check answers in the shell (status 0
// when the log ends normally, as the jobs expect), which keeps the test fast.
static std::string python_stand_in(const std::string& python)
{
    return "#!/bin/bash\ncase $1 in */gaussian_log_check.py) read -r log <\"$2\" && [[ $log == *'Normal termination'* ]]; exit ;; esac\n"
           "exec " + python + " \"$@\"\n";
}

static void put_program(const std::string& path, const std::string& text)
{
    put_file(path, text);
    chmod(path.c_str(), 0755);
}

// Number of files in RUN whose name begins with `prefix`.
static int markers(const char* prefix)
{
    int n = 0;
    for (const auto& f : fs::directory_iterator("RUN")) n += f.path().filename().string().rfind(prefix, 0) == 0;
    return n;
}

TEST_F(QcJobsProtocol, DriversRunResumeAndMarkFailures)
{
    const fs::path root = fs::current_path();
    for (const std::string sched : {"pbs", "slurm", "lsf", "local"}) {
        fs::create_directories(root / sched / "bin");
        fs::current_path(root / sched);
        for (const char* name : {"qsub", "sbatch", "bsub", "sh"}) put_program("bin/" + std::string(name), kScheduler);
        put_program("bin/g16", kEngine);
        put_program("bin/formchk", "#!/bin/sh\n: >\"${1%.chk}.fchk\"\n");
        put_program("bin/python", python_stand_in(test_python()));
        put_program("run", "export PATH=\"$PWD/bin:$PATH\" CALLS=\"$PWD/calls\" FAIL_INPUT=\"$1\"\n"
                           "for d in mol_one_uc mol_one_nei mol_two mol_RE; do python scr/$d.py >/dev/null 2>&1; done\n");
        {
            Transport t;
            small_crystal(t);
            t.sched_type = sched;
            t.parse_scheduling_type();
            t.qc_exe = "g16";
            t.sched_job_array = sched != "local";  // the local dialect runs single jobs
            t.unique_uc_mol_one_calc_flag = t.unique_nei_mol_one_calc_flag = t.unique_2mol_calc_flag = false;
            t.write_HL_inputs_and_jobs();
            t.write_RE_inputs_and_jobs();
        }
        expect_scripts_pass_checkers();
        const auto calls = [] { const std::string log = read_text_file("calls"); return std::count(log.begin(), log.end(), '\n'); };
        ASSERT_EQ(system("DRY=1 sh run"), 0);
        EXPECT_EQ(markers("running."), 2 + 3 + 3 + 2) << sched;  // HL sets, and RE per molecule
        ASSERT_EQ(system("sh run"), 0);
        EXPECT_EQ(calls(), 2 + 3 + 3 + 6) << sched;  // molecules, neighbours, dimers, three states each
        EXPECT_EQ(markers("running.") + markers("ERROR-"), 0) << sched;
        ASSERT_EQ(system("sh run"), 0);
        EXPECT_EQ(calls(), 14) << sched << ": a finished calculation ran again";
        fs::remove("HL/2mol-1-2.log");
        ASSERT_EQ(system("sh run 2mol-1-2"), 0);
        EXPECT_EQ(calls(), 15) << sched;
        EXPECT_TRUE(fs::exists("RUN/ERROR-HL_2mol-1-2")) << sched;
        EXPECT_EQ(markers("running.") + markers("ERROR-"), 1) << sched;
    }
}
