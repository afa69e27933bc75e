// Job scripts: the Gaussian transfer-integral job in every dialect, plain and
// array, against data/golden; one distinctive piece of every other kind;
// names, announcements and failures.

#include "job_scripts.h"
#include "test_support.h"

// Every kind once, arrays with an index list and with a null list and a count.
// Scripts are named after kind and variant v.
static void write_every_kind(Jobscript& js, const std::string& v)
{
    int ids[] = {2, 4, 7};
    const char* body = "echo body line 1\necho body line 2\n";
    js.write_gaussian_HL_job(("gau-HL-" + v).c_str(), 2, 8, "uc_mol-1", "uc1", "RUN/running.uc_mol-1");
    js.write_orca_HL_job(("orca-HL-" + v).c_str(), 2, 8, "uc_mol-1", "uc1", "RUN/running.uc_mol-1");
    js.write_qchem_HL_job(("qchem-HL-" + v).c_str(), 2, 8, "uc_mol-1", "uc1", "RUN/running.uc_mol-1");
    for (int* list : {ids, static_cast<int*>(nullptr)}) {
        std::string a = v + (list ? "-list" : "-count");
        js.write_gaussian_HL_job_array(("gau-HLa-" + a).c_str(), 1, 8, "nei_mol-1", "nei1", "RUN/r", 3, list);
        js.write_orca_HL_job_array(("orca-HLa-" + a).c_str(), 1, 8, "nei_mol-1", "nei1", "RUN/r", 3, list);
        js.write_qchem_HL_job_array(("qchem-HLa-" + a).c_str(), 1, 8, "nei_mol-1", "nei1", "RUN/r", 3, list);
        js.write_calc_transint_job_array(("transint-a-" + a).c_str(), 1, 8, "transint", "RUN/r", 3, list,
                                         "hlgather.exe", "data");
    }
    js.write_gaussian_RE_job(("gau-RE-" + v).c_str(), 1, 8, body, "mol1", "RUN/re1");
    js.write_orca_RE_job(("orca-RE-" + v).c_str(), 1, 8, "mol1", "RE-mol1", "RUN/re1", body);
    js.write_qchem_RE_job(("qchem-RE-" + v).c_str(), 1, 8, "mol1", "RE-mol1", "RUN/re1", body);
    js.write_MC_job(("mc-" + v).c_str(), 1, 8, body, "elec", "RUN/mc");
    js.write_ME_job(("me-" + v).c_str(), 1, 8, body, "elec", "RUN/me");
    js.write_calc_mob_job(("mob-" + v).c_str(), 1, 8, "mob", "RUN/mob", "hopmob_OMP.exe");
    js.write_calc_getRE_job(("getRE-" + v).c_str(), 1, 8, "getre", "RUN/g", body);
    js.write_calc_getHL_job(("getHL-" + v).c_str(), 1, 8, "get_site_ener", "RUN/g", body, "data");
    js.write_calc_transint_job(("transint-" + v).c_str(), 1, 8, "transint_mol1", "RUN/t", body, "data");
}

// Every kind in every dialect, bare (no modules, no node list) and full; the
// workflow test lints what this writes.
void write_every_kind_in_every_dialect(Jobscript& js)
{
    js.qc_exe = "qchem";
    for (int code = 0; code < 4; ++code) {
        js.job_sched_type = code;
        for (bool full : {false, true}) {
            js.module_gau_flag = js.module_mpich2_gnu_flag = full;
            js.nodelist = full ? "node01" : "";
            js.orca_args = full ? "--use-hwthread-cpus" : "";
            js.scratch = full ? "/scratch" : "/tmp";
            write_every_kind(js, full ? "full" : "bare");
        }
    }
}

class JobScriptDir : public ScratchDirTest {
protected:
    JobScriptDir() { js.work_dir = "/home/u/run"; }
    Jobscript js;
};

TEST_F(JobScriptDir, GoldenJobsInEveryDialectPlainAndArray)
{
    // count -1 writes the plain job; an empty index list goes in as null.
    // The local dialect repeats the body per index; count 0 leaves it empty.
    const struct { int dialect; bool module; const char* nodelist; int count; std::vector<int> indexes; } cases[] = {
        {0, true, "n01", -1, {}},     {0, false, "", 3, {2, 4, 7}}, {1, false, "", -1, {}},     {1, true, "c[1-2]", 5, {}},
        {2, false, "h1 h2", -1, {}},  {2, true, "", 3, {3, 5, 9}},  {3, true, "ignored", -1, {}},
        {3, false, "", 2, {4, 2}},    {3, false, "", 0, {4, 2}},    {3, false, "", 2, {}}};
    js.queue_name = "short";
    std::string written[4];
    for (const auto& c : cases) {
        js.job_sched_type = c.dialect;
        js.module_gau_flag = c.module;
        js.nodelist = c.nodelist;
        int* list = c.indexes.empty() ? nullptr : const_cast<int*>(c.indexes.data());
        if (c.count < 0) js.write_gaussian_HL_job("HL", 2, 8, "uc_mol", "uc", "RUN/m");
        else js.write_gaussian_HL_job_array("HL", 2, 8, "uc_mol", "uc", "RUN/m", c.count, list);
        written[c.dialect] += read_text_file("jobs/HL." + js.script_ext[c.dialect]);
    }
    for (int d = 0; d < 4; d++) EXPECT_EQ(written[d], golden("gaussian_hl." + js.script_ext[d])) << d;
}

// One distinctive piece of each kind: bodies, modules, scratch names, LSF
// job names and script places (HL and RE jobs under jobs/, the rest here).
// The quantum-chemistry jobs in PBS are whole in the qc_jobs goldens. Each
// piece follows a line "=== <script>" and ends with the line before the next.
TEST_F(JobScriptDir, KindsDifferWhereDocumented)
{
    write_every_kind_in_every_dialect(js);
    const std::string pieces = "\n" + golden("job_kind_pieces.txt");
    for (size_t at = pieces.find("\n=== "), text, next; at != std::string::npos; at = next) {
        text = pieces.find('\n', at + 1) + 1;
        next = pieces.find("\n=== ", text - 1);
        const std::string file = pieces.substr(at + 5, text - at - 6);
        const std::string piece = pieces.substr(text, next == std::string::npos ? next : next + 1 - text);
        EXPECT_NE(read_text_file(file).find(piece), std::string::npos) << file << ":\n" << piece;
    }
    EXPECT_EQ(read_text_file("mc-full.pbs").find("module load gaussian"), std::string::npos);  // the qc module is for qc kinds
}

TEST_F(JobScriptDir, NamesAnnouncementsAndFailures)
{
    const std::pair<const char*, int> names[] = {{"Slurm", 1}, {"lsf", 2}, {"LOCAL", 3}, {"torque", 0}, {"", 0}};
    for (const auto& [name, code] : names) {
        js.job_sched_type = 2;
        js.sched_type = name;
        js.parse_scheduling_type();
        EXPECT_EQ(js.get_job_sched_type(), code) << name;
        EXPECT_STREQ(js.get_job_script_ext(), js.script_ext[code].c_str());
    }
    EXPECT_EQ(js.getFileName("/x/jobs/a.pbs") + "|" + js.getFileName("a.pbs"), "a.pbs|");
    // The dialect comes from the writer, the extension from the configured scheduler.
    js.verbose = 1;
    fs::create_directory("jobs");
    using Writer = void (Jobscript::*)(const char*, int, int, const char*, const char*, const char*);
    const std::pair<Writer, std::string> writers[] = {
        {&Jobscript::write_gaussian_HL_job_pbs, "PBS"}, {&Jobscript::write_gaussian_HL_job_slurm, "SLURM"},
        {&Jobscript::write_gaussian_HL_job_lsf, "LSF"}, {&Jobscript::write_gaussian_HL_job_local, "LOCAL"}};
    for (const auto& [writer, label] : writers) {
        testing::internal::CaptureStdout();
        (js.*writer)("HL-1", 1, 8, "in", "t", "RUN/m");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "Writing gaussian job " + label + " script jobs/HL-1.pbs ...\n");
    }

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
                    "line " + std::to_string(number) + " : \nFailed to open output file blocked/HL-1." +
                        js.script_ext[code] + "\n$");
    }
}
