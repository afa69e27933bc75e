// The other kinds of job script: their bodies, modules, names and places.

#include <set>

#include "job_compose.h"
#include "test_job_scripts_support.h"

namespace {

// Scheduler lines of a one-node PBS job and the empty line after them.
std::string pbs_header(const std::string& stdout_name)
{
    return "#PBS -S /bin/bash\n"
           "#PBS -l walltime=1000:00:00\n"
           "#PBS -l nodes=1:ppn=8\n"
           "#PBS -q workq\n"
           "#PBS -o " + stdout_name + "\n"
           "#PBS -j oe\n"
           "\n";
}

}  // namespace

TEST_F(JobScriptDir, OrcaPbsJobAsListed)
{
    js.module_gau_flag = true;
    js.module_qc = "orca/4.2";
    js.qc_exe = "/opt/orca/orca";
    js.orca_args = "--bind";
    js.scratch = "/scratch";
    js.write_orca_HL_job("HL-o", 1, 8, "2mol-5", "d5", "RUN/running.2mol-5");
    EXPECT_EQ(read("jobs/HL-o.pbs"), pbs_header("stdout-d5") +
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

TEST_F(JobScriptDir, OrcaScratchNamesPerDialect)
{
    const std::pair<int, std::string> cases[] = {{1, "SCRDIR=/tmp/veska-HL-$SLURM_JOB_ID\n"},
                                                 {2, "SCRDIR=/tmp/veska-HL-$LSB_JOBID\n"},
                                                 {3, "SCRDIR=/tmp/veska-HL-in-$RANDOM\n"}};
    for (const auto& [code, line] : cases) {
        js.job_sched_type = code;
        js.write_orca_HL_job("o", 1, 8, "in", "t", "RUN/m");
        EXPECT_NE(read("jobs/o." + js.script_ext[code]).find(line), std::string::npos) << code;
    }
    std::string local = read("jobs/o.local");
    EXPECT_NE(local.find("    cd $SCRDIR\n"), std::string::npos);
    EXPECT_NE(local.find("    if [ $CurrDir != $DataDir ]; then\n"), std::string::npos);
    EXPECT_NE(local.find("        mv $SCRDIR/in.out $DataDir\n        mv $SCRDIR/in.mkl $DataDir\n"),
              std::string::npos);

    js.job_sched_type = 0;
    js.write_orca_HL_job_array("oa", 1, 8, "in", "t", "RUN/m", 2, nullptr);
    std::string array = read("jobs/oa.pbs");
    EXPECT_NE(array.find("    SCRDIR=/tmp/veska-HL-$PBS_JOBID-${PBS_ARRAYID}\n"), std::string::npos);
    EXPECT_NE(array.find("    cp $DataDir/in-${PBS_ARRAYID}.inp $SCRDIR\n"), std::string::npos);
}

TEST_F(JobScriptDir, QchemPbsJob)
{
    js.qc_exe = "qchem";
    js.write_qchem_HL_job("q", 1, 8, "uc_mol-2", "u2", "RUN/m");
    EXPECT_EQ(read("jobs/q.pbs"), pbs_header("stdout-u2") +
                                      "DataDir=/home/u/run/HL\n"
                                      "\n"
                                      "cd ${PBS_O_WORKDIR}\n"
                                      "echo \"Working directory is ${PBS_O_WORKDIR}\"\n"
                                      "\n"
                                      "echo \"Starting job run at `date`\"\n"
                                      "python /home/u/run/scr/qchem_out_check.py /home/u/run/HL/uc_mol-2.out\n"
                                      "if [ $? == 0 ]; then\n"
                                      "    echo \"Normal termination of Q-Chem detected, skip the current Q-Chem run.\"\n"
                                      "else\n"
                                      "    qchem -nt 8 uc_mol-2.inp > uc_mol-2.out\n"
                                      "\n"
                                      "fi\n"
                                      "python /home/u/run/scr/qchem_out_check.py /home/u/run/HL/uc_mol-2.out\n"
                                      "if [ $? != 0 ]; then\n"
                                      "  touch /home/u/run/RUN/ERROR-HL_uc_mol-2\n"
                                      "fi\n"
                                      "rm -f /home/u/run/RUN/m\n"
                                      "echo \"Ending job run at `date`\"\n");
}

TEST_F(JobScriptDir, ReorganisationEnergyJobs)
{
    js.write_gaussian_RE_job("re", 1, 8, "BODY\n", "mol1", "RUN/m");
    EXPECT_EQ(read("jobs/re.pbs"), pbs_header("stdout-mol1") +
                                       "DataDir=/home/u/run/RE\n"
                                       "\n"
                                       "cd ${PBS_O_WORKDIR}\n"
                                       "echo \"Working directory is ${PBS_O_WORKDIR}\"\n"
                                       "\n"
                                       "echo \"Starting job run at `date`\"\n"
                                       "\n"
                                       "BODY\n"
                                       "\n"
                                       "rm -f /home/u/run/RUN/m\n"
                                       "\n"
                                       "CurrDir=`pwd`\n"
                                       "if [ $DataDir != $CurrDir ]; then\n"
                                       "    echo \"Copy data back to RE directory...\"\n"
                                       "    mv $CurrDir/*  $DataDir\n"
                                       "    rm -Rf $CurrDir\n"
                                       "fi\n"
                                       "\n"
                                       "echo \"Ending job run at `date`\"\n"
                                       "\n");

    const char scratch_frame[] = "DataDir=/home/u/run/RE\n"
                                 "SCRDIR=/tmp/veska-RE-mol3-$PBS_JOBID\n"
                                 "\n"
                                 "echo \"Starting job run at `date`\"\n"
                                 "\n"
                                 "BODY\n"
                                 "\n"
                                 "rm -f /home/u/run/RUN/m\n"
                                 "\n"
                                 "echo \"Ending job run at `date`\"\n"
                                 "\n";
    js.write_orca_RE_job("ore", 1, 8, "mol3", "RE-mol3", "RUN/m", "BODY\n");
    js.write_qchem_RE_job("qre", 1, 8, "mol3", "RE-mol3", "RUN/m", "BODY\n");
    const std::string pbs = pbs_header("stdout-RE-mol3") + scratch_frame;
    EXPECT_EQ(read("jobs/ore.pbs"), pbs);
    EXPECT_EQ(read("jobs/qre.pbs"), pbs);

    js.job_sched_type = 3;
    js.write_orca_RE_job("ore", 1, 8, "mol3", "RE-mol3", "RUN/m", "BODY\n");
    EXPECT_NE(read("jobs/ore.local").find("SCRDIR=/tmp/veska-RE-mol3-$RANDOM\n\n"), std::string::npos);
    js.job_sched_type = 2;
    js.write_qchem_RE_job("qre", 1, 8, "mol3", "RE-mol3", "RUN/m", "BODY\n");
    EXPECT_NE(read("jobs/qre.lsf").find("#BSUB -J RE-RE-mol3\n"), std::string::npos);
}

TEST_F(JobScriptDir, MonteCarloJobFramesItsBodyAndLoadsOnlyTheMpiModule)
{
    js.module_gau_flag = true;
    js.write_MC_job("MC1", 1, 8, "hopmc.exe -simu0 0 -nsimu 20\necho done\n", "hole", "RUN/running.x");
    EXPECT_EQ(read("MC1.pbs"), pbs_header("stdout-hole") +
                                   "echo \"Working directory is ${PBS_O_WORKDIR}\"\n"
                                   "cd ${PBS_O_WORKDIR}\n"
                                   "\n"
                                   "echo \"Starting job run at `date`\"\n"
                                   "\n"
                                   "hopmc.exe -simu0 0 -nsimu 20\n"
                                   "echo done\n"
                                   "\n"
                                   "rm -f /home/u/run/RUN/running.x\n"
                                   "\n"
                                   "echo \"Ending job run at `date`\"\n"
                                   "\n");
    EXPECT_FALSE(std::filesystem::exists("jobs/MC1.pbs"));

    js.module_mpich2_gnu_flag = true;
    js.write_ME_job("ME1", 1, 8, "hopmeq.exe\n", "elec", "RUN/m");
    EXPECT_NE(read("ME1.pbs").find("cd ${PBS_O_WORKDIR}\n\nmodule load mpich2/1.5-gnu-5.4.0\n\necho \"Starting"),
              std::string::npos);
}

TEST_F(JobScriptDir, LocalMonteCarloRunsItsFixedCommand)
{
    js.job_sched_type = 3;
    js.module_gau_flag = true;
    js.write_MC_job("run_mc", 1, 8, "ignored body\n", "elec", "RUN/m");
    EXPECT_EQ(read("run_mc.local"), "#!/bin/sh\n"
                                    "\n"
                                    "module load gaussian/g09.e01\n"
                                    "\n"
                                    "echo \"Starting job run at `date`\"\n"
                                    "\n"
                                    "hopmc_OMP.exe\n"
                                    "\n"
                                    "rm -f /home/u/run/RUN/m\n"
                                    "\n"
                                    "echo \"Ending job run at `date`\"\n"
                                    "\n");
}

TEST_F(JobScriptDir, MonteCarloSlurmPutsTheOutputLineLast)
{
    js.job_sched_type = 1;
    js.nodelist = "c1";
    js.write_MC_job("MC1", 1, 8, "x\n", "e", "RUN/m");
    const std::string header = "#!/bin/bash\n\n"
                               "#SBATCH --time=0-1000:00:00\n"
                               "#SBATCH --nodes=1 --ntasks-per-node=8\n"
                               "#SBATCH -p workq\n"
                               "#SBATCH --output=stdout-e\n"
                               "#SBATCH --nodelist=c1\n\n";
    EXPECT_EQ(read("MC1.slurm").substr(0, header.size()), header);
    js.write_calc_mob_job("mob", 1, 8, "mob", "RUN/m", "hopmob_OMP.exe");
    std::string mob = read("mob.slurm");
    EXPECT_NE(mob.find("\n\nhopmob_OMP.exe\n\nrm -f /home/u/run/RUN/m\n"), std::string::npos);
    js.job_sched_type = 2;
    js.write_calc_mob_job("mob", 1, 8, "mob", "RUN/m", "hopmob_OMP.exe");
    EXPECT_NE(read("mob.lsf").find("#BSUB -J mc-mob-mob\n"), std::string::npos);
}

TEST_F(JobScriptDir, GatheringJobsRunInTheirDirectory)
{
    js.module_mpich2_gnu_flag = true;
    js.write_calc_transint_job("jobs/job_transint_mol1", 1, 8, "transint_mol1", "RUN/r1",
                               "hlgather.exe -batch mol1_trans_int_files.dat -prefix V -postfix 1\n", "data");
    EXPECT_EQ(read("jobs/job_transint_mol1.pbs"),
              pbs_header("data/stdout-transint_mol1") +
                  "module load mpich2/1.5-gnu-5.4.0\n"
                  "\n"
                  "cd /home/u/run\n"
                  "cd data\n"
                  "echo \"Working directory is `pwd`\"\n"
                  "\n"
                  "echo \"Starting job run at `date`\"\n"
                  "\n"
                  "hlgather.exe -batch mol1_trans_int_files.dat -prefix V -postfix 1\n"
                  "\n"
                  "rm -f /home/u/run/RUN/r1\n"
                  "\n"
                  "echo \"Ending job run at `date`\"\n"
                  "\n");

    js.write_calc_getHL_job("get_site_ener", 1, 8, "get_site_ener", "RUN/g", "hlgather.exe\n", "data");
    EXPECT_NE(read("get_site_ener.pbs").find("\ncd ${PBS_O_WORKDIR}\ncd data\n"), std::string::npos);
    js.job_sched_type = 2;
    js.write_calc_getHL_job("get_site_ener", 1, 8, "get_site_ener", "RUN/g", "hlgather.exe\n", "data");
    js.write_calc_getRE_job("get_re", 1, 8, "re", "RUN/g", "python get_RE.py\n");
    js.write_calc_transint_job("ti", 1, 8, "t1", "RUN/g", "x\n", "data");
    EXPECT_NE(read("get_site_ener.lsf").find("#BSUB -J get_site_ener\n#BSUB -oo data/stdout-get_site_ener\n"),
              std::string::npos);
    EXPECT_NE(read("get_re.lsf").find("#BSUB -J getRE-re\n"), std::string::npos);
    EXPECT_NE(read("ti.lsf").find("#BSUB -J Transint-t1\n"), std::string::npos);
}

TEST_F(JobScriptDir, TransferIntegralArrayJob)
{
    js.write_calc_transint_job_array("ta", 1, 8, "transint", "RUN/running.run_transint", 3, nullptr, "hlgather.exe",
                                     "data");
    std::string pbs = read("ta.pbs");
    EXPECT_NE(pbs.find("#PBS -t 1-3\n#PBS -o data/stdout-transint\n"), std::string::npos);
    EXPECT_NE(pbs.find("hlgather.exe -batch mol${PBS_ARRAYID}_trans_int_files.dat -prefix V -postfix "
                       "${PBS_ARRAYID}\n\nrm -f /home/u/run/RUN/running.run_transint-${PBS_ARRAYID}\n"),
              std::string::npos);

    js.job_sched_type = 2;
    int indexes[] = {1, 3};
    js.write_calc_transint_job_array("ta", 1, 8, "transint", "RUN/r", 2, indexes, "hlgather.exe", "data");
    EXPECT_NE(read("ta.lsf").find("#BSUB -J transint[1,3]\n"), std::string::npos);

    js.job_sched_type = 3;
    js.write_calc_transint_job_array("ta", 1, 8, "transint", "RUN/r", 2, nullptr, "hlgather.exe", "data");
    EXPECT_EQ(read("ta.local"), "#!/bin/sh\n"
                                "\n"
                                "echo \"Starting job run at `date`\"\n"
                                "cd data\n"
                                "hlgather.exe -batch mol1_trans_int_files.dat -prefix V -postfix 1\n"
                                "\n"
                                "rm -f /home/u/run/RUN/r-1\n"
                                "\n"
                                "hlgather.exe -batch mol2_trans_int_files.dat -prefix V -postfix 2\n"
                                "\n"
                                "rm -f /home/u/run/RUN/r-2\n"
                                "\n"
                                "echo \"Ending job run at `date`\"\n");
}

TEST_F(JobScriptDir, ScriptLocations)
{
    js.write_MC_job("MC1", 1, 8, "x\n", "t", "RUN/m");
    js.write_gaussian_HL_job("HL1", 1, 8, "in", "t", "RUN/m");
    EXPECT_TRUE(std::filesystem::exists("MC1.pbs"));
    EXPECT_TRUE(std::filesystem::exists("jobs/HL1.pbs"));
    js.jobs_dir = "other";
    js.job_sched_type = 3;
    js.write_qchem_HL_job_array("qa", 1, 8, "in", "t", "RUN/m", 1, nullptr);
    EXPECT_TRUE(std::filesystem::exists("other/qa.local"));
}

TEST(JobKinds, ErrorNumbersAreDistinct)
{
    const JobKind* kinds[] = {&kGaussianHLJob, &kGaussianHLArrayJob, &kGaussianREJob, &kOrcaHLJob,
                              &kOrcaHLArrayJob, &kOrcaREJob, &kQchemHLJob, &kQchemHLArrayJob,
                              &kQchemREJob, &kMCJob, &kMEJob, &kCalcMobJob,
                              &kCalcGetREJob, &kCalcGetHLJob, &kCalcTransintJob, &kCalcTransintArrayJob};
    std::set<int> numbers;
    for (const JobKind* k : kinds) {
        numbers.insert(k->dispatcher_error);
        numbers.insert(k->writer_error, k->writer_error + 4);
    }
    EXPECT_EQ(numbers.size(), 16u * 5u);
}
