// Jobscript model and the Gaussian transfer-integral job in every dialect,
// plain and array, against data/golden/gaussian_hl.<dialect>.

#include <map>

#include "test_job_scripts_support.h"

TEST_F(JobScriptDir, GaussianJobInEveryDialectPlainAndArray)
{
    // count -1 writes the plain job; an empty index list goes in as null.
    // The local dialect repeats the body per index; count 0 leaves it empty.
    const struct {
        int dialect;
        bool module;
        const char* nodelist;
        int count;
        std::vector<int> indexes;
    } cases[] = {{0, true, "n01", -1, {}},         {0, false, "", 3, {2, 4, 7}},   {1, false, "", -1, {}},
                 {1, true, "c[1-2]", 5, {}},       {2, false, "h1 h2", -1, {}},    {2, true, "", 3, {3, 5, 9}},
                 {3, true, "ignored", -1, {}},     {3, false, "", 2, {4, 2}},      {3, false, "", 0, {4, 2}},
                 {3, false, "", 2, {}}};
    js.queue_name = "short";
    std::map<int, std::string> written;
    for (const auto& c : cases) {
        js.job_sched_type = c.dialect;
        js.module_gau_flag = c.module;
        js.nodelist = c.nodelist;
        if (c.count < 0) {
            js.write_gaussian_HL_job("HL", 2, 8, "uc_mol", "uc", "RUN/m");
        } else {
            int* list = c.indexes.empty() ? nullptr : const_cast<int*>(c.indexes.data());
            js.write_gaussian_HL_job_array("HL", 2, 8, "uc_mol", "uc", "RUN/m", c.count, list);
        }
        written[c.dialect] += read_text_file("jobs/HL." + js.script_ext[c.dialect]);
    }
    for (const auto& [dialect, text] : written)
        EXPECT_EQ(text, golden("gaussian_hl." + js.script_ext[dialect])) << js.script_ext[dialect];
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
    EXPECT_EXIT((dup2(2, 1), js.write_gaussian_HL_job("HL-1", 1, 8, "in", "t", "RUN/m")), testing::ExitedWithCode(255),
                "^\nERROR  transport : job_scripts : line 510 : \nUnknown job scheduling type!\n$");
    EXPECT_EXIT((dup2(2, 1), js.write_gaussian_HL_job_array("HL-1", 1, 8, "in", "t", "RUN/m", 1, nullptr)),
                testing::ExitedWithCode(255), "line 897 : \nUnknown job scheduling type!\n");
    js.jobs_dir = "blocked";
    put_file("blocked", "a file where the directory should be\n");
    for (const auto& [code, number] : {std::pair{0, 218}, {1, 296}, {2, 373}, {3, 451}}) {
        js.job_sched_type = code;
        EXPECT_EXIT((dup2(2, 1), js.write_gaussian_HL_job("HL-1", 1, 8, "in", "t", "RUN/m")),
                    testing::ExitedWithCode(255),
                    "^\nERROR  transport : job_scripts : line " + std::to_string(number) +
                        " : \nFailed to open output file blocked/HL-1." + js.script_ext[code] + "\n$");
    }
}
