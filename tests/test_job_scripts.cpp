// Jobscript model and the Gaussian transfer-integral job in every dialect.
// Expected texts are written out from the documented line lists.

#include "test_job_scripts_support.h"

namespace {

// Steps 3 to 5 of the Gaussian body for one input I and marker M.
std::string gaussian_steps(const std::string& i, const std::string& m)
{
    return "python /home/u/run/scr/gaussian_log_check.py /home/u/run/HL/" + i + ".log\n"
           "if [ $? == 0 ]; then\n"
           "    echo \"Normal termination of Gaussian detected, skip the current Gaussian run.\"\n"
           "else\n"
           "    g09 " + i + ".com\n"
           "fi\n"
           "\n"
           "python /home/u/run/scr/gaussian_log_check.py /home/u/run/HL/" + i + ".log\n"
           "if [ $? != 0 ]; then\n"
           "    touch /home/u/run/RUN/ERROR-HL_" + i + "\n"
           "else\n"
           "    formchk " + i + ".chk\n"
           "fi\n"
           "\n"
           "rm -f /home/u/run/" + m + "\n"
           "\n";
}

// DataDir and the change into the submission directory, per dialect.
const char kPbsDirs[] = "\nDataDir=/home/u/run/HL\n\ncd ${PBS_O_WORKDIR}\necho \"Working directory is ${PBS_O_WORKDIR}\"\n\n";
const char kSlurmDirs[] = "\nDataDir=/home/u/run/HL\n\necho \"Working directory is $SLURM_SUBMIT_DIR\"\ncd ${SLURM_SUBMIT_DIR}\n\n";
const char kLsfDirs[] = "\nDataDir=/home/u/run/HL\n\necho \"Working directory is ${LS_SUBCWD}\"\ncd ${LS_SUBCWD}\n\n";

const char kStart[] = "echo \"Starting job run at `date`\"\n\n";
const char kEnd[] = "echo \"Ending job run at `date`\"\n";
const char kCopyBack[] = "CurrDir=`pwd`\n"
                         "if [ $DataDir != $CurrDir ]; then\n"
                         "    echo \"Copy data back to HL directory...\"\n"
                         "    mv $CurrDir/*  $DataDir\n"
                         "    rm -Rf $CurrDir\n"
                         "fi\n"
                         "\n";

// A scheduled Gaussian job: its scheduler lines, then the common frame.
std::string scheduled(const std::string& sched_lines, const char* dirs, const std::string& module,
                      const std::string& input, const std::string& marker)
{
    return sched_lines + dirs + module + kStart + gaussian_steps(input, marker) + kCopyBack + kEnd;
}

const char kModule[] = "module load gaussian/g09.e01\n\n";

}  // namespace

TEST(Jobscript, ConstructionValues)
{
    Jobscript js;
    EXPECT_EQ(js.verbose, 0);
    EXPECT_EQ(js.get_job_sched_type(), 0);
    EXPECT_EQ(js.trans_int_files, "trans_int_files.dat");
    EXPECT_EQ(js.jobs_dir, "jobs");
    EXPECT_EQ(js.scratch, "/tmp");
    EXPECT_EQ(js.submit_cmd[2], "bsub < ");
    EXPECT_EQ(js.get_run_nodes(), 1);
    EXPECT_EQ(js.get_run_ppn(), 8);
    EXPECT_EQ(js.module_mpich2, "mpich2/1.5-gnu-5.4.0");
    EXPECT_TRUE(js.sched_job_array);
    EXPECT_FALSE(js.module_gau_flag);
    js.set_environment_module_gau_flag(true);
    js.set_environment_module_mpich2_gnu_flag(true);
    EXPECT_TRUE(js.module_gau_flag && js.module_mpich2_gnu_flag);
}

TEST(Jobscript, SchedulerNamesIgnoreCaseAndUnknownMeansPbs)
{
    Jobscript js;
    const std::pair<const char*, int> cases[] = {{"SLURM", 1}, {"Slurm", 1}, {"lsf", 2}, {"LOCAL", 3},
                                                 {"torque", 0}, {"", 0}, {"pbs", 0}};
    for (const auto& [name, code] : cases) {
        js.job_sched_type = 2;
        js.sched_type = name;
        js.parse_scheduling_type();
        EXPECT_EQ(js.get_job_sched_type(), code) << name;
        EXPECT_STREQ(js.get_job_script_ext(), js.script_ext[code].c_str());
    }
}

TEST(Jobscript, FileNameIsThePartAfterTheLastSlash)
{
    Jobscript js;
    EXPECT_EQ(js.getFileName("jobs/a.pbs"), "a.pbs");
    EXPECT_EQ(js.getFileName("/x/y/z"), "z");
    EXPECT_EQ(js.getFileName("dir/"), "");
    EXPECT_EQ(js.getFileName("a.pbs"), "");
}

TEST_F(JobScriptDir, GaussianPbsWithModuleAndNodeList)
{
    js.module_gau_flag = true;
    js.nodelist = "n01";
    js.write_gaussian_HL_job("HL-1", 2, 8, "uc_mol-1", "uc1", "RUN/running.uc_mol-1");
    EXPECT_EQ(read("jobs/HL-1.pbs"),
              scheduled("#PBS -S /bin/bash\n"
                        "#PBS -l walltime=1000:00:00\n"
                        "#PBS -l nodes=2:ppn=8\n"
                        "#PBS -q workq\n"
                        "#PBS -o stdout-uc1\n"
                        "#PBS -j oe\n"
                        "#PBS -l nodes=n01\n",
                        kPbsDirs, kModule, "uc_mol-1", "RUN/running.uc_mol-1"));
}

TEST_F(JobScriptDir, GaussianSlurmWithoutModule)
{
    js.job_sched_type = 1;
    js.queue_name = "short";
    js.write_gaussian_HL_job("HL-1", 1, 4, "2mol-3", "d3", "RUN/m3");
    EXPECT_EQ(read("jobs/HL-1.slurm"),
              scheduled("#!/bin/bash\n"
                        "\n"
                        "#SBATCH --time=0-1000:00:00\n"
                        "#SBATCH --output=stdout-d3\n"
                        "#SBATCH --nodes=1 --ntasks-per-node=4\n"
                        "#SBATCH -p short\n",
                        kSlurmDirs, "", "2mol-3", "RUN/m3"));
}

TEST_F(JobScriptDir, GaussianLsfCountsSlotsAsNodesTimesPpn)
{
    js.job_sched_type = 2;
    js.nodelist = "h1 h2";
    js.write_gaussian_HL_job("HL-1", 2, 8, "uc_mol-1", "uc1", "RUN/m");
    EXPECT_EQ(read("jobs/HL-1.lsf"),
              scheduled("#BSUB -W 1000:00\n"
                        "#BSUB -J HL-uc1\n"
                        "#BSUB -oo stdout-uc1\n"
                        "#BSUB -n 16\n"
                        "#BSUB -R 'span[ptile=8]'\n"
                        "#BSUB -q workq\n"
                        "#BSUB -m 'h1 h2'\n",
                        kLsfDirs, "", "uc_mol-1", "RUN/m"));
}

TEST_F(JobScriptDir, GaussianLocalHasNoSchedulerLinesNoStartNoCopyBack)
{
    js.job_sched_type = 3;
    js.module_gau_flag = true;
    js.module_qc = "g16";
    js.nodelist = "ignored";
    js.write_gaussian_HL_job("HL-1", 1, 8, "uc_mol-1", "uc1", "RUN/m");
    EXPECT_EQ(read("jobs/HL-1.local"), "#!/bin/sh\n\nmodule load g16\n\n" + gaussian_steps("uc_mol-1", "RUN/m") + kEnd);
}

TEST_F(JobScriptDir, GaussianArrayPbsListsIndexesAndEndsWithAnEmptyLine)
{
    int indexes[] = {2, 4, 7};
    js.write_gaussian_HL_job_array("HL-a", 1, 8, "nei_mol-1", "nei1", "RUN/running.nei_mol-1", 3, indexes);
    EXPECT_EQ(read("jobs/HL-a.pbs"),
              scheduled("#PBS -S /bin/bash\n"
                        "#PBS -l walltime=1000:00:00\n"
                        "#PBS -l nodes=1:ppn=8\n"
                        "#PBS -q workq\n"
                        "#PBS -t 2,4,7\n"
                        "#PBS -o stdout-nei1\n"
                        "#PBS -j oe\n",
                        kPbsDirs, "", "nei_mol-1-${PBS_ARRAYID}", "RUN/running.nei_mol-1-${PBS_ARRAYID}") + "\n");
}

TEST_F(JobScriptDir, GaussianArraySlurmWithNullListCountsFromOne)
{
    js.job_sched_type = 1;
    js.module_gau_flag = true;
    js.nodelist = "c[1-2]";
    js.write_gaussian_HL_job_array("HL-a", 1, 8, "uc_mol", "uc", "RUN/m", 5, nullptr);
    EXPECT_EQ(read("jobs/HL-a.slurm"),
              scheduled("#!/bin/bash\n"
                        "\n"
                        "#SBATCH --time=0-1000:00:00\n"
                        "#SBATCH --output=stdout-uc-%a\n"
                        "#SBATCH --nodes=1 --ntasks-per-node=8\n"
                        "#SBATCH -p workq\n"
                        "#SBATCH --array=1-5\n"
                        "#SBATCH --nodelist=c[1-2]\n",
                        kSlurmDirs, kModule, "uc_mol-${SLURM_ARRAY_TASK_ID}", "RUN/m-${SLURM_ARRAY_TASK_ID}"));
}

TEST_F(JobScriptDir, GaussianArrayLsfNamesTheListInTheJobName)
{
    js.job_sched_type = 2;
    int indexes[] = {3, 5, 9};
    js.write_gaussian_HL_job_array("HL-a", 2, 4, "2mol", "dim", "RUN/m", 3, indexes);
    EXPECT_EQ(read("jobs/HL-a.lsf"),
              scheduled("#BSUB -W 1000:00\n"
                        "#BSUB -oo stdout-dim-%I\n"
                        "#BSUB -n 8\n"
                        "#BSUB -R 'span[ptile=4]'\n"
                        "#BSUB -q workq\n"
                        "#BSUB -J HL-dim[3,5,9]\n",
                        kLsfDirs, "", "2mol-${LSB_JOBINDEX}", "RUN/m-${LSB_JOBINDEX}"));
}

TEST_F(JobScriptDir, GaussianArrayLocalRepeatsEachMember)
{
    js.job_sched_type = 3;
    js.module_gau_flag = true;
    int indexes[] = {4, 2};
    js.write_gaussian_HL_job_array("HL-a", 1, 8, "uc_mol", "uc", "RUN/m", 2, indexes);
    const std::string rule = "# ----------------------------------------------------\n";
    EXPECT_EQ(read("jobs/HL-a.local"), "#!/bin/sh\n\nmodule load gaussian/g09.e01\n\n" + rule + "# mol-4\n" +
                                           gaussian_steps("uc_mol-4", "RUN/m-4") + rule + "# mol-2\n" +
                                           gaussian_steps("uc_mol-2", "RUN/m-2") + kEnd);

    js.write_gaussian_HL_job_array("HL-b", 1, 8, "uc_mol", "uc", "RUN/m", 2, nullptr);
    EXPECT_NE(read("jobs/HL-b.local").find("# mol-2\n" + gaussian_steps("uc_mol-2", "RUN/m-2") + kEnd),
              std::string::npos);

    js.module_gau_flag = false;
    js.write_gaussian_HL_job_array("HL-c", 1, 8, "uc_mol", "uc", "RUN/m", 0, indexes);
    EXPECT_EQ(read("jobs/HL-c.local"), std::string("#!/bin/sh\n\n") + kEnd);
}

TEST_F(JobScriptDir, DialectWritersAnnounceThemselvesWhenVerbose)
{
    js.verbose = 1;
    const std::pair<void (Jobscript::*)(const char*, int, int, const char*, const char*, const char*), std::string>
        writers[] = {{&Jobscript::write_gaussian_HL_job_pbs, "PBS"},
                     {&Jobscript::write_gaussian_HL_job_slurm, "SLURM"},
                     {&Jobscript::write_gaussian_HL_job_lsf, "LSF"},
                     {&Jobscript::write_gaussian_HL_job_local, "LOCAL"}};
    std::filesystem::create_directory("jobs");
    for (const auto& [writer, label] : writers) {
        testing::internal::CaptureStdout();
        (js.*writer)("HL-1", 1, 8, "in", "t", "RUN/m");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "Writing gaussian job " + label + " script jobs/HL-1.pbs ...\n");
    }
    // The dialect comes from the writer, the extension from the configured scheduler.
    EXPECT_EQ(read("jobs/HL-1.pbs").substr(0, 10), "#!/bin/sh\n");
}

TEST_F(JobScriptDir, UnknownSchedulerAndUnwritableScriptAreFatal)
{
    js.job_sched_type = 4;
    auto plain = [&] {
        dup2(2, 1);
        js.write_gaussian_HL_job("HL-1", 1, 8, "in", "t", "RUN/m");
    };
    EXPECT_EXIT(plain(), testing::ExitedWithCode(255),
                "^\nERROR  transport : job_scripts : line 510 : \nUnknown job scheduling type!\n$");
    auto array = [&] {
        dup2(2, 1);
        js.write_gaussian_HL_job_array("HL-1", 1, 8, "in", "t", "RUN/m", 1, nullptr);
    };
    EXPECT_EXIT(array(), testing::ExitedWithCode(255), "line 897 : \nUnknown job scheduling type!\n");

    // (The children above created jobs/ before failing.)
    js.jobs_dir = "blocked";
    std::ofstream("blocked") << "a file where the directory should be\n";
    const std::pair<int, int> writers[] = {{0, 218}, {1, 296}, {2, 373}, {3, 451}};
    for (const auto& [code, number] : writers) {
        js.job_sched_type = code;
        std::string path = "blocked/HL-1." + js.script_ext[code];
        auto write = [&] {
            dup2(2, 1);
            js.write_gaussian_HL_job("HL-1", 1, 8, "in", "t", "RUN/m");
        };
        EXPECT_EXIT(write(), testing::ExitedWithCode(255),
                    "^\nERROR  transport : job_scripts : line " + std::to_string(number) +
                        " : \nFailed to open output file " + path + "\n$");
    }
}
