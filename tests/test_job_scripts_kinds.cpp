// The other kinds of job script: their bodies, modules, names and places.

#include <set>

#include "job_compose.h"
#include "test_job_scripts_support.h"

TEST_F(JobScriptDir, OrcaPbsJobAsListed)
{
    js.module_gau_flag = true;
    js.module_qc = "orca/4.2";
    js.qc_exe = "/opt/orca/orca";
    js.orca_args = "--bind";
    js.scratch = "/scratch";
    js.write_orca_HL_job("HL-o", 1, 8, "2mol-5", "d5", "RUN/running.2mol-5");
    EXPECT_EQ(read("jobs/HL-o.pbs"), "#PBS -S /bin/bash\n"
                                     "#PBS -l walltime=1000:00:00\n"
                                     "#PBS -l nodes=1:ppn=8\n"
                                     "#PBS -q workq\n"
                                     "#PBS -o stdout-d5\n"
                                     "#PBS -j oe\n"
                                     "\n"
                                     "module load orca/4.2\n"
                                     "\n"
                                     "DataDir=/home/u/run/HL\n"
                                     "echo \"Starting job run at `date`\"\n"
                                     "python /home/u/run/scr/orca_out_check.py /home/u/run/HL/2mol-5.out\n"
                                     "if [ $? == 0 ]; then\n"
                                     "    echo \"Normal termination of ORCA detected, skip the current ORCA run.\"\n"
                                     "else\n"
                                     "    SCRDIR=/scratch/veska-$PBS_JOBID\n"
                                     "    if [ ! -a $SCRDIR ]; then\n"
                                     "        echo \"Scratch directory $SCRDIR created.\"\n"
                                     "        mkdir -p $SCRDIR\n"
                                     "    fi\n"
                                     "\n"
                                     "    cp ${DataDir}/2mol-5.inp $SCRDIR\n"
                                     "    cd ${SCRDIR}\n"
                                     "    echo \"Working directory is ${SCRDIR}\"\n"
                                     "\n"
                                     "    /opt/orca/orca 2mol-5.inp --bind > 2mol-5.out\n"
                                     "    orca_2mkl 2mol-5\n"
                                     "\n"
                                     "    CurrDir=`pwd`\n"
                                     "    if [ $DataDir != $CurrDir ]; then\n"
                                     "        echo \"Copy data back to HL directory...\"\n"
                                     "        mv $CurrDir/2mol-5.out $DataDir\n"
                                     "        mv $CurrDir/2mol-5.mkl $DataDir\n"
                                     "    fi\n"
                                     "    rm -Rf $SCRDIR\n"
                                     "fi\n"
                                     "python /home/u/run/scr/orca_out_check.py /home/u/run/HL/2mol-5.out\n"
                                     "if [ $? != 0 ]; then\n"
                                     "    touch /home/u/run/RUN/ERROR-HL_2mol-5\n"
                                     "fi\n"
                                     "rm -f /home/u/run/RUN/running.2mol-5\n"
                                     "echo \"Ending job run at `date`\"\n");
}

TEST_F(JobScriptDir, LocalMonteCarloRunsItsFixedCommand)
{
    js.job_sched_type = 3;
    js.module_gau_flag = true;
    js.write_MC_job("run_mc", 1, 8, "ignored body\n", "elec", "RUN/m");
    EXPECT_EQ(read("run_mc.local"), "#!/bin/sh\n\nmodule load gaussian/g09.e01\n\n"
                                    "echo \"Starting job run at `date`\"\n\nhopmc_OMP.exe\n\n"
                                    "rm -f /home/u/run/RUN/m\n\necho \"Ending job run at `date`\"\n\n");
}

// One distinctive piece of each kind per dialect: bodies, modules, scratch
// names, LSF job names and script places.
TEST_F(JobScriptDir, KindsDifferWhereDocumented)
{
    js.module_gau_flag = js.module_mpich2_gnu_flag = true;
    js.jobs_dir = "hl";
    js.qc_exe = "qchem";
    std::vector<std::pair<std::string, std::string>> expect;
    for (int code = 0; code < 4; ++code) {
        js.job_sched_type = code;
        const std::string ext = "." + js.script_ext[code];
        js.write_orca_HL_job("o", 1, 8, "in", "t", "RUN/m");
        js.write_qchem_HL_job("q", 1, 8, "in", "t", "RUN/m");
        js.write_orca_RE_job("ore", 1, 8, "mol3", "RE-mol3", "RUN/m", "BODY\n");
        js.write_gaussian_RE_job("gre", 1, 8, "BODY\n", "mol1", "RUN/m");
        js.write_MC_job("mc", 1, 8, "hopmc.exe -nsimu 20\n", "hole", "RUN/m");
        js.write_calc_mob_job("mob", 1, 8, "mob", "RUN/m", "hopmob_OMP.exe");
        js.write_calc_getHL_job("gh", 1, 8, "get_site_ener", "RUN/g", "hlgather.exe\n", "data");
        js.write_calc_getRE_job("gr", 1, 8, "re", "RUN/g", "python get_RE.py\n");
        js.write_calc_transint_job("ti", 1, 8, "t1", "RUN/g", "x\n", "data");
        int indexes[] = {1, 3};
        js.write_calc_transint_job_array("ta", 1, 8, "transint", "RUN/r", 2, indexes, "hlgather.exe", "data");
        expect.insert(expect.end(), {{"hl/q" + ext, "    qchem -nt 8 in.inp > in.out\n\nfi\n"},
                                     {"hl/ore" + ext, "\n\nBODY\n\nrm -f /home/u/run/RUN/m\n\necho \"Ending"},
                                     {"mob" + ext, "\n\nhopmob_OMP.exe\n\nrm -f /home/u/run/RUN/m\n"},
                                     {"ti" + ext, "cd data\n"}});
    }
    expect.insert(expect.end(), {{"hl/gre.slurm", "echo \"Copy data back to RE directory...\"\n"},
                                 {"mc.lsf", "\n\nhopmc.exe -nsimu 20\n\nrm -f /home/u/run/RUN/m\n"},
                                 {"hl/o.slurm", "SCRDIR=/tmp/veska-HL-$SLURM_JOB_ID\n"},
                                 {"hl/o.lsf", "SCRDIR=/tmp/veska-HL-$LSB_JOBID\n"},
                                 {"hl/o.local", "SCRDIR=/tmp/veska-HL-in-$RANDOM\n    if [ ! -a $SCRDIR ]"},
                                 {"hl/o.local", "        mv $SCRDIR/in.out $DataDir\n        mv $SCRDIR/in.mkl $DataDir\n"},
                                 {"hl/ore.pbs", "DataDir=/home/u/run/RE\nSCRDIR=/tmp/veska-RE-mol3-$PBS_JOBID\n\n"},
                                 {"hl/ore.local", "SCRDIR=/tmp/veska-RE-mol3-$RANDOM\n\n"},
                                 {"mc.pbs", "cd ${PBS_O_WORKDIR}\n\nmodule load mpich2/1.5-gnu-5.4.0\n\necho \"Starting"},
                                 {"mc.slurm", "#SBATCH -p workq\n#SBATCH --output=stdout-hole\n"},
                                 {"ti.pbs", "\ncd /home/u/run\ncd data\necho \"Working directory is `pwd`\"\n"},
                                 {"gh.pbs", "\ncd ${PBS_O_WORKDIR}\ncd data\n"},
                                 {"ta.pbs", "hlgather.exe -batch mol${PBS_ARRAYID}_trans_int_files.dat -prefix V "
                                            "-postfix ${PBS_ARRAYID}\n\nrm -f /home/u/run/RUN/r-${PBS_ARRAYID}\n"},
                                 {"ta.local", "cd data\nhlgather.exe -batch mol1_trans_int_files.dat"},
                                 {"hl/ore.lsf", "#BSUB -J RE-RE-mol3\n"},
                                 {"mc.lsf", "#BSUB -J MC-hole\n"},
                                 {"mob.lsf", "#BSUB -J mc-mob-mob\n"},
                                 {"gh.lsf", "#BSUB -J get_site_ener\n#BSUB -oo data/stdout-get_site_ener\n"},
                                 {"gr.lsf", "#BSUB -J getRE-re\n"},
                                 {"ti.lsf", "#BSUB -J Transint-t1\n"},
                                 {"ta.lsf", "#BSUB -J transint[1,3]\n"}});
    for (const auto& [file, piece] : expect) EXPECT_NE(read(file).find(piece), std::string::npos) << file << ": " << piece;
    EXPECT_EQ(read("mc.pbs").find("module load gaussian"), std::string::npos);  // qc module only for qc kinds
}

TEST(JobKinds, ErrorNumbersAreDistinct)
{
    std::set<int> numbers;
    for (const JobKind* k : {&kGaussianHLJob, &kGaussianHLArrayJob, &kGaussianREJob, &kOrcaHLJob, &kOrcaHLArrayJob,
                             &kOrcaREJob, &kQchemHLJob, &kQchemHLArrayJob, &kQchemREJob, &kMCJob, &kMEJob, &kCalcMobJob,
                             &kCalcGetREJob, &kCalcGetHLJob, &kCalcTransintJob, &kCalcTransintArrayJob}) {
        numbers.insert(k->dispatcher_error);
        numbers.insert(k->writer_error, k->writer_error + 4);
    }
    EXPECT_EQ(numbers.size(), 16u * 5u);
}
