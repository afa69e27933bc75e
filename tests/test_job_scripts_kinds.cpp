// The other kinds of job script: their bodies, modules, names and places,
// and the sweep of every kind in every dialect that the shell lint reads.

#include <cstdlib>

#include "test_job_scripts_support.h"

TEST_F(JobScriptDir, OrcaPbsJobAsListed)
{
    js.module_gau_flag = true;
    js.module_qc = "orca/4.2";
    js.qc_exe = "/opt/orca/orca";
    js.orca_args = "--bind";
    js.scratch = "/scratch";
    js.write_orca_HL_job("HL-o", 1, 8, "2mol-5", "d5", "RUN/running.2mol-5");
    EXPECT_EQ(read_text_file("jobs/HL-o.pbs"), golden("orca_hl.pbs"));
}

// One distinctive piece of each kind: bodies, modules, scratch names, LSF
// job names and script places (HL and RE jobs under jobs/, the rest here).
TEST_F(JobScriptDir, KindsDifferWhereDocumented)
{
    write_every_kind_in_every_dialect(js);
    const std::string body = "echo \"Starting job run at `date`\"\n\necho body line 1\necho body line 2\n\nrm -f /home/u/run/RUN/";
    const std::pair<const char*, std::string> expect[] = {
        {"jobs/qchem-HL-full.local", "    qchem -nt 8 uc_mol-1.inp > uc_mol-1.out\n\nfi\n"},
        {"jobs/orca-HL-full.slurm", "SCRDIR=/tmp/veska-HL-$SLURM_JOB_ID\n"},
        {"jobs/orca-HL-full.lsf", "SCRDIR=/tmp/veska-HL-$LSB_JOBID\n"},
        {"jobs/orca-HL-full.local", "SCRDIR=/tmp/veska-HL-uc_mol-1-$RANDOM\n    if [ ! -a $SCRDIR ]"},
        {"jobs/orca-HL-full.local", "        mv $SCRDIR/uc_mol-1.out $DataDir\n        mv $SCRDIR/uc_mol-1.mkl $DataDir\n"},
        {"jobs/orca-HLa-full-count.pbs", "    SCRDIR=/tmp/veska-HL-$PBS_JOBID-${PBS_ARRAYID}\n"},
        {"jobs/orca-HLa-full-count.pbs", "    cp $DataDir/nei_mol-1-${PBS_ARRAYID}.inp $SCRDIR\n"},
        {"jobs/gau-RE-full.slurm", body + "re1\n\nCurrDir=`pwd`\n"},
        {"jobs/orca-RE-bare.pbs", "DataDir=/home/u/run/RE\nSCRDIR=/tmp/veska-RE-mol1-$PBS_JOBID\n\n"},
        {"jobs/qchem-RE-full.local", "SCRDIR=/tmp/veska-RE-mol1-$RANDOM\n\n" + body + "re1\n\necho \"Ending"},
        {"mc-full.pbs", "cd ${PBS_O_WORKDIR}\n\nmodule load mpich2/1.5-gnu-5.4.0\n\n" + body + "mc\n"},
        {"mc-bare.slurm", "#SBATCH -p workq\n#SBATCH --output=stdout-elec\n\n"},
        {"mc-full.local", "`date`\"\n\nhopmc_OMP.exe\n\nrm -f /home/u/run/RUN/mc\n"},  // its fixed command, no body
        {"mob-full.lsf", "\n\nhopmob_OMP.exe\n\nrm -f /home/u/run/RUN/mob\n"},
        {"transint-full.pbs", "\ncd /home/u/run\ncd data\necho \"Working directory is `pwd`\"\n"},
        {"getHL-full.pbs", "\ncd ${PBS_O_WORKDIR}\ncd data\n"},
        {"transint-a-full-count.pbs", "hlgather.exe -batch mol${PBS_ARRAYID}_trans_int_files.dat -prefix V -postfix "
                                      "${PBS_ARRAYID}\n\nrm -f /home/u/run/RUN/r-${PBS_ARRAYID}\n"},
        {"transint-a-full-count.local", "cd data\nhlgather.exe -batch mol1_trans_int_files.dat"},
        {"jobs/qchem-RE-full.lsf", "#BSUB -J RE-RE-mol1\n"},
        {"me-full.lsf", "#BSUB -J ME-elec\n"},
        {"mob-full.lsf", "#BSUB -J mc-mob-mob\n"},
        {"getHL-full.lsf", "#BSUB -J get_site_ener\n#BSUB -oo data/stdout-get_site_ener\n"},
        {"getRE-full.lsf", "#BSUB -J getRE-getre\n"},
        {"transint-full.lsf", "#BSUB -J Transint-transint_mol1\n"},
        {"transint-a-full-list.lsf", "#BSUB -J transint[2,4,7]\n"}};
    for (const auto& [file, piece] : expect) EXPECT_NE(read_text_file(file).find(piece), std::string::npos) << file << ": " << piece;
    EXPECT_EQ(read_text_file("mc-full.pbs").find("module load gaussian"), std::string::npos);  // the qc module is for qc kinds
}

// tests/shellcheck.cmake runs this with VESKA_JOB_SWEEP_DIR set and lints
// the scripts it leaves there.
TEST_F(JobScriptDir, SweepWritesEveryKindInEveryDialect)
{
    if (const char* keep = getenv("VESKA_JOB_SWEEP_DIR")) std::filesystem::current_path(keep);
    write_every_kind_in_every_dialect(js);
    int files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(".")) files += entry.is_regular_file();
    EXPECT_EQ(files, 4 * 2 * (12 + 4 * 2));
}
