// Transfer-integral and reorganisation-energy job generation: one golden of
// every file written per engine and family, the orbital-index files, the
// neighbours' unique ids, an empty cell and bad input.

#include <algorithm>
#include <filesystem>

#include "qc_jobs_test_support.h"

namespace fs = std::filesystem;
using QcJobs = ScratchDirTest;

// Runs `write` on a fresh small crystal in `dir` (two levels down) and returns
// every file written, sorted, each after a line naming it; only the drivers'
// text unless `full`.
template <typename F>
static std::string run_in(const std::string& dir, int engine, bool full, F write)
{
    fs::create_directories(dir);
    fs::current_path(dir);
    {
        Transport t;
        small_crystal(t);
        t.work_dir = "/w";
        t.set_compute_engine(engine);
        write(t);
    }
    std::vector<std::string> paths;
    for (const auto& e : fs::recursive_directory_iterator(".")) paths.push_back(e.path().string());
    std::sort(paths.begin(), paths.end());
    std::string out;
    for (const std::string& p : paths)
        if (fs::is_regular_file(p))
            out += "=== " + dir + p.substr(1) + "\n" + (full || p.rfind("./scr/", 0) == 0 ? read_text_file(p) : "");
    fs::current_path("../..");
    return out;
}

TEST_F(QcJobs, GoldenPerEngineAndFamily)
{
    using Op = void (Transport::*)();
    const struct { std::string name; Op plain_inputs, re_plain, re_unique; } engines[] = {
        {"gaussian", &Transport::write_HL_gaussian_mol_gif, &Transport::write_RE_gaussian_mol_gjf_and_job,
         &Transport::write_RE_gaussian_mol_gjf_and_job_unique_separated},
        {"orca", &Transport::write_HL_orca_mol_inp, &Transport::write_RE_orca_mol_inp_and_job_seperated,
         &Transport::write_RE_orca_mol_inp_and_job_unique_seperated},
        {"qchem", &Transport::write_HL_qchem_mol_inp, &Transport::write_RE_qchem_mol_inp_and_job_seperated,
         &Transport::write_RE_qchem_mol_inp_and_job_unique_seperated}};
    const char* runs[] = {"plain_array", "unique_single", "unique_array", "plain_single"};
    for (int id = 1; id <= 3; id++) {
        const auto& e = engines[id - 1];
        std::string hl, re;
        // The last two runs write the same inputs again; their drivers differ.
        for (int r = 0; r < 4; r++)
            hl += run_in(e.name + "_hl/" + runs[r], id, r < 2, [&](Transport& t) {
                t.unique_uc_mol_one_calc_flag = t.unique_nei_mol_one_calc_flag = t.unique_2mol_calc_flag = r == 1 || r == 2;
                t.sched_job_array = r == 0 || r == 2;
                t.write_HL_inputs_and_jobs();
                if (r == 0) (t.*e.plain_inputs)();
            });
        re += run_in(e.name + "_re/plain", id, true, [&](Transport& t) { (t.*e.re_plain)(); });
        re += run_in(e.name + "_re/unique", id, true, [&](Transport& t) { (t.*e.re_unique)(); });
        EXPECT_EQ(hl, golden("qc_jobs_" + e.name + "_hl.txt"));
        EXPECT_EQ(re, golden("qc_jobs_" + e.name + "_re.txt"));
    }
    expect_scripts_pass_checkers();
}

TEST_F(QcJobs, EmptyCellWritesFramesAndAnEmptyArrayJob)
{
    Transport t;
    t.work_dir = "/w";
    t.sched_type = "lsf";
    t.parse_scheduling_type();
    t.write_HL_gaussian_mol_one_gjf_and_job_uc();
    t.write_RE_orca_mol_inp_and_job_seperated();
    EXPECT_EQ(read_text_file("scr/mol_one_uc.py"),
              "#!/usr/bin/env python\nimport os\n\ncwd = os.getcwd()\nos.chdir(\"HL\")\n\n\n"
              "os.system(\"bsub <  ../jobs/job_uc_mol.lsf\")\n\nos.chdir(cwd)\n\n");
    EXPECT_TRUE(fs::exists("jobs/job_uc_mol.lsf"));
    EXPECT_EQ(read_text_file("scr/mol_RE.py"),
              "#!/usr/bin/env python\nimport os\n\ncwd = os.getcwd()\nos.chdir(\"RE\")\n\nos.chdir(cwd)\n\n");
}

TEST_F(QcJobs, OrbitalIndexFilesAndNeighboursUniqueIds)
{
    Transport t;
    small_crystal(t);
    t.lumo_adjustment = {2, -1};
    EXPECT_EQ(t.calc_homo()[0], 3);  // C + H: 7 electrons
    t.write_H_L_inp();
    EXPECT_EQ(read_text_file("data/H.inp") + read_text_file("data/L.inp") + read_text_file("data/L_adj.inp"),
              "3\n3\n" "6\n3\n" "2\n2\n-1\n");
    EXPECT_FALSE(fs::exists("data/H_adj.inp"));

    t.prin_moment = new double*[2]{new double[3]{1, 2, 3}, new double[3]{4, 5, 6}};
    t.mol_mass = new double[2]{13.0, 14.0};
    t.hl_mol_index = new int[2]{1, 2};
    t.nei_unique_id = new int*[2]{new int[3](), new int[1]()};
    t.mol_id_indexes_allocated = true;
    t.find_HL_mol_neighbor_index_unique();
    EXPECT_EQ(std::vector<int>(t.nei_unique_id[0], t.nei_unique_id[0] + 3), (std::vector<int>{2, 1, 2}));
    EXPECT_EQ(read_text_file("scr/mol_one_nei.py"),
              "#!/usr/bin/env python\nimport sys\n\nsys.stdout.write(\">> Use results from mol_one_uc.py\\n\")\n\n");
}

// Each case stops with its message and leaves no driver behind.
TEST_F(QcJobs, BadInputStopsWithAMessageNamingIt)
{
    struct Case {
        const char* blocker;  // a plain file where a directory is wanted
        void (*write)(Transport&);
        const char* message;
    };
    const Case cases[] = {
        {nullptr, [](Transport& t) { t.compute_engine = 7, t.write_HL_inputs_and_jobs(); },
         "line 5001 : \nUnknown compute_engine 7"},
        {nullptr, [](Transport& t) { delete[] t.nnei, t.nnei = nullptr, t.write_HL_qchem_2mol_inp_and_job(); },
         "No neighbour list"},
        {nullptr, [](Transport& t) { t.re_unique_count = 0, t.write_RE_orca_mol_inp_and_job_unique_seperated(); },
         "No unique RE molecule list"},
        {"scr", [](Transport& t) { t.write_HL_orca_mol_one_inp_and_job_nei(); },
         "line 5101 : \nFailed to open output file scr/mol_one_nei.py"},
        {"HL", [](Transport& t) { t.write_HL_gaussian_mol_one_gjf_and_job_uc(); },
         "Failed to open output file HL/uc_mol-1.com"},
        {"jobs", [](Transport& t) { t.write_RE_qchem_mol_inp_and_job_seperated(); },
         "Failed to open output file jobs/job_re-mol1-anion.pbs"},
        {"scr", [](Transport& t) { t.write_RE_gaussian_mol_gjf_and_job(); },
         "line 5201 : \nFailed to open output file scr/mol_RE.py"},
    };
    for (const Case& c : cases) {
        fs::remove_all("scr"), fs::remove_all("HL"), fs::remove_all("jobs");
        if (c.blocker) put_file(c.blocker, "");
        Transport t;
        small_crystal(t);
        EXPECT_EXIT((dup2(2, 1), c.write(t)), ::testing::ExitedWithCode(255), c.message);
        EXPECT_FALSE(fs::exists("scr/mol_one_uc.py") || fs::exists("scr/mol_RE.py")) << c.message;
    }
}
