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

const char kModule[] = "module load gaussian/g09.e01\n\n";
const char kEnd[] = "echo \"Ending job run at `date`\"\n";

// A scheduled job: scheduler lines, DataDir and the change into the
// submission directory, module, body for uc_mol<var>, copy-back and ending.
std::string scheduled(const std::string& lines, const std::string& cd, const char* module, const std::string& var)
{
    return lines + "\nDataDir=/home/u/run/HL\n\n" + cd + "\n" + module + "echo \"Starting job run at `date`\"\n\n" +
           gaussian_steps("uc_mol" + var, "RUN/m" + var) +
           "CurrDir=`pwd`\n"
           "if [ $DataDir != $CurrDir ]; then\n"
           "    echo \"Copy data back to HL directory...\"\n"
           "    mv $CurrDir/*  $DataDir\n"
           "    rm -Rf $CurrDir\n"
           "fi\n"
           "\n" + kEnd;
}

const char kPbsCd[] = "cd ${PBS_O_WORKDIR}\necho \"Working directory is ${PBS_O_WORKDIR}\"\n";
const char kSlurmCd[] = "echo \"Working directory is $SLURM_SUBMIT_DIR\"\ncd ${SLURM_SUBMIT_DIR}\n";
const char kLsfCd[] = "echo \"Working directory is ${LS_SUBCWD}\"\ncd ${LS_SUBCWD}\n";
const std::string kRule = "# ----------------------------------------------------\n";

}  // namespace

TEST_F(JobScriptDir, GaussianJobInEveryDialectPlainAndArray)
{
    // count -1 writes the plain job; an empty index list goes in as null.
    struct Case {
        int dialect;
        bool module;
        const char* nodelist;
        int count;
        std::vector<int> indexes;
        std::string expected;
    } cases[] = {
        {0, true, "n01", -1, {},
         scheduled("#PBS -S /bin/bash\n#PBS -l walltime=1000:00:00\n#PBS -l nodes=2:ppn=8\n#PBS -q short\n"
                   "#PBS -o stdout-uc\n#PBS -j oe\n#PBS -l nodes=n01\n", kPbsCd, kModule, "")},
        {0, false, "", 3, {2, 4, 7},  // the PBS array ends with one more empty line
         scheduled("#PBS -S /bin/bash\n#PBS -l walltime=1000:00:00\n#PBS -l nodes=2:ppn=8\n#PBS -q short\n"
                   "#PBS -t 2,4,7\n#PBS -o stdout-uc\n#PBS -j oe\n", kPbsCd, "", "-${PBS_ARRAYID}") + "\n"},
        {1, false, "", -1, {},
         scheduled("#!/bin/bash\n\n#SBATCH --time=0-1000:00:00\n#SBATCH --output=stdout-uc\n"
                   "#SBATCH --nodes=2 --ntasks-per-node=8\n#SBATCH -p short\n", kSlurmCd, "", "")},
        {1, true, "c[1-2]", 5, {},
         scheduled("#!/bin/bash\n\n#SBATCH --time=0-1000:00:00\n#SBATCH --output=stdout-uc-%a\n"
                   "#SBATCH --nodes=2 --ntasks-per-node=8\n#SBATCH -p short\n#SBATCH --array=1-5\n"
                   "#SBATCH --nodelist=c[1-2]\n", kSlurmCd, kModule, "-${SLURM_ARRAY_TASK_ID}")},
        {2, false, "h1 h2", -1, {},  // slots: nodes times ppn
         scheduled("#BSUB -W 1000:00\n#BSUB -J HL-uc\n#BSUB -oo stdout-uc\n#BSUB -n 16\n"
                   "#BSUB -R 'span[ptile=8]'\n#BSUB -q short\n#BSUB -m 'h1 h2'\n", kLsfCd, "", "")},
        {2, true, "", 3, {3, 5, 9},
         scheduled("#BSUB -W 1000:00\n#BSUB -oo stdout-uc-%I\n#BSUB -n 16\n#BSUB -R 'span[ptile=8]'\n"
                   "#BSUB -q short\n#BSUB -J HL-uc[3,5,9]\n", kLsfCd, kModule, "-${LSB_JOBINDEX}")},
        // Local: no scheduler lines, no start line, no copy-back; arrays repeat the body.
        {3, true, "ignored", -1, {}, "#!/bin/sh\n\n" + std::string(kModule) + gaussian_steps("uc_mol", "RUN/m") + kEnd},
        {3, false, "", 2, {4, 2},
         "#!/bin/sh\n\n" + kRule + "# mol-4\n" + gaussian_steps("uc_mol-4", "RUN/m-4") + kRule + "# mol-2\n" +
             gaussian_steps("uc_mol-2", "RUN/m-2") + kEnd},
        {3, false, "", 0, {4, 2}, "#!/bin/sh\n\n" + std::string(kEnd)},
    };
    js.queue_name = "short";
    for (const Case& c : cases) {
        SCOPED_TRACE(c.expected.substr(0, 40));
        js.job_sched_type = c.dialect;
        js.module_gau_flag = c.module;
        js.nodelist = c.nodelist;
        if (c.count < 0) {
            js.write_gaussian_HL_job("HL", 2, 8, "uc_mol", "uc", "RUN/m");
        } else {
            int* list = c.indexes.empty() ? nullptr : const_cast<int*>(c.indexes.data());
            js.write_gaussian_HL_job_array("HL", 2, 8, "uc_mol", "uc", "RUN/m", c.count, list);
        }
        EXPECT_EQ(read_text_file("jobs/HL." + js.script_ext[c.dialect]), c.expected);
    }
    js.write_gaussian_HL_job_array("HL", 2, 8, "uc_mol", "uc", "RUN/m", 2, nullptr);
    EXPECT_NE(read_text_file("jobs/HL.local").find("# mol-2\n" + gaussian_steps("uc_mol-2", "RUN/m-2") + kEnd), std::string::npos);
}

TEST(Jobscript, SchedulerNamesAndFileNames)
{
    Jobscript js;
    const std::pair<const char*, int> cases[] = {{"Slurm", 1}, {"lsf", 2}, {"LOCAL", 3}, {"torque", 0}, {"", 0}};
    for (const auto& [name, code] : cases) {
        js.job_sched_type = 2;
        js.sched_type = name;
        js.parse_scheduling_type();
        EXPECT_EQ(js.get_job_sched_type(), code) << name;
        EXPECT_STREQ(js.get_job_script_ext(), js.script_ext[code].c_str());
    }
    EXPECT_EQ(js.getFileName("/x/jobs/a.pbs"), "a.pbs");
    EXPECT_EQ(js.getFileName("a.pbs"), "");
}

TEST_F(JobScriptDir, DialectWritersAnnounceThemselvesWhenVerbose)
{
    js.verbose = 1;
    std::filesystem::create_directory("jobs");
    using Writer = void (Jobscript::*)(const char*, int, int, const char*, const char*, const char*);
    const std::pair<Writer, std::string> writers[] = {
        {&Jobscript::write_gaussian_HL_job_pbs, "PBS"}, {&Jobscript::write_gaussian_HL_job_slurm, "SLURM"},
        {&Jobscript::write_gaussian_HL_job_lsf, "LSF"}, {&Jobscript::write_gaussian_HL_job_local, "LOCAL"}};
    for (const auto& [writer, label] : writers) {
        testing::internal::CaptureStdout();
        (js.*writer)("HL-1", 1, 8, "in", "t", "RUN/m");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "Writing gaussian job " + label + " script jobs/HL-1.pbs ...\n");
    }
    // The dialect comes from the writer, the extension from the configured scheduler.
    EXPECT_EQ(read_text_file("jobs/HL-1.pbs").substr(0, 10), "#!/bin/sh\n");
}

TEST_F(JobScriptDir, UnknownSchedulerAndUnwritableScriptAreFatal)
{
    js.job_sched_type = 4;
    EXPECT_EXIT((dup2(2, 1), js.write_gaussian_HL_job("HL-1", 1, 8, "in", "t", "RUN/m")),
                testing::ExitedWithCode(255),
                "^\nERROR  transport : job_scripts : line 510 : \nUnknown job scheduling type!\n$");
    EXPECT_EXIT((dup2(2, 1), js.write_gaussian_HL_job_array("HL-1", 1, 8, "in", "t", "RUN/m", 1, nullptr)),
                testing::ExitedWithCode(255), "line 897 : \nUnknown job scheduling type!\n");
    js.jobs_dir = "blocked";
    std::ofstream("blocked") << "a file where the directory should be\n";
    for (const auto& [code, number] : {std::pair{0, 218}, {1, 296}, {2, 373}, {3, 451}}) {
        js.job_sched_type = code;
        EXPECT_EXIT((dup2(2, 1), js.write_gaussian_HL_job("HL-1", 1, 8, "in", "t", "RUN/m")),
                    testing::ExitedWithCode(255),
                    "^\nERROR  transport : job_scripts : line " + std::to_string(number) +
                        " : \nFailed to open output file blocked/HL-1." + js.script_ext[code] + "\n$");
    }
}
