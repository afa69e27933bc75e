// Workflow scripts as users meet them: goldens for one engine and scheduler,
// the other engines checked as differences, the generated Python run on
// hand-made inputs, and every job kind through bash -n and shellcheck.

#include <functional>
#include <regex>

#include "test_support.h"
#include "transport.h"

void write_every_kind_in_every_dialect(Jobscript& js);  // test_job_scripts.cpp

namespace {

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

class WorkflowScripts : public ScratchDirTest {
protected:
    // Two molecules; molecule 2's only pair is the reverse of molecule 1's
    // first, and molecule 2 equals molecule 1.
    void SetUp() override
    {
        ScratchDirTest::SetUp();
        root = fs::current_path().string();
        t.set_varables_default();
        t.nmols = 2, t.input_kind = 2, t.crystal_file = "x.cif";
        t.nnei = new int[2]{2, 1};
        t.nei_mol = new int*[2]{new int[2]{1, 1}, new int[1]{0}};
        t.unique_pair_map = new int[3]{0, 1, 0};
        t.hl_mol_index = new int[2]{1, 1}, t.re_mol_index = new int[2]{1, 1};
        t.re_unique_list = new int[2]{1, 0}, t.re_unique_count = 1, t.neighbor_nmols = 2;
        t.neighbor_list_built = t.pair_data_built = t.mol_id_indexes_allocated = true;
        t.do_transport_run_MC_temp = t.do_transport_run_ME = t.do_transport_run_ME_temp = 1;
        enter(".");
    }
    // Makes `dir` the run directory, with the bond lists the evc inputs read.
    void enter(const std::string& dir)
    {
        fs::create_directories(dir + "/data");
        fs::current_path(dir);
        t.work_dir = fs::current_path().string();
        put_file("data/mol1_bonds.dat", "2\n  1   2  0  0\n  2   3  0  0\n  3   4  0  0\n");
        put_file("data/mol2_bonds.dat", "0\n");
    }
    void write_in(const std::string& dir)
    {
        enter(dir);
        t.write_scripts(false);
        fs::current_path(root);
    }
    std::string generated(const std::string& path) { return replaced(read_text_file(path), root, "/WORK"); }
    std::string root;
    Transport t;
};

TEST_F(WorkflowScripts, OutputChecksAndFchkRenamingRunAsUsersRunThem)
{
    t.write_gaussian_log_check_py_file();
    t.write_orca_out_check_py_file();
    t.write_qchem_out_check_py_file();
    std::tuple<std::string, const char*, int> cases[] = {
        {"gaussian_log_check", "x\n Normal termination of Gaussian 16 at Mon Jan  1.\n", 0},
        {"gaussian_log_check", "x\n Normal termination of Gaussian 16", 0},
        {"gaussian_log_check", " Normal termination of Gaussian 16\n Link1:  next step\n", 1},
        {"gaussian_log_check", "", 1},
        {"orca_out_check", "x\n ****ORCA TERMINATED NORMALLY****\nTOTAL RUN TIME\n", 0},
        {"orca_out_check", "", 1},
        {"qchem_out_check", " *** Have a nice day. ***\nmore\n", 0},
        {"qchem_out_check", "Have a nice day\n", 1},
    };
    std::string out;
    for (const auto& [script, output, status] : cases) {
        put_file("out.txt", output);
        EXPECT_EQ(run(kPython + " scr/" + script + ".py out.txt", &out), status) << script << output;
        EXPECT_EQ(out, "");
    }
    for (std::string script : {"gaussian_log_check", "orca_out_check", "qchem_out_check"})
        for (const char* arg : {" missing.txt", ""})  // no such file, no argument
            EXPECT_EQ(run(kPython + " scr/" + script + ".py" + arg, &out) + out.size(), 1u);
    t.write_qchem_fchk_ext_lowercase_py_file();
    fs::create_directory("HL");
    for (const char* name : {"HL/a.FChk", "HL/b.c.FChk", "HL/keep.txt", "HL/d.FChk.bak"}) put_file(name, name);
    put_file("HL/a.fchk", "old");
    EXPECT_EQ(run(kPython + " scr/qchem_fchk_ext_lowercase.py HL"), 0);
    EXPECT_EQ(names("HL"), "a.fchk b.c.fchk d.FChk.bak keep.txt");
    EXPECT_EQ(read_text_file("HL/a.fchk"), "HL/a.FChk");
}

TEST_F(WorkflowScripts, GetREAndPrepareRERunOnHandMadeTrees)
{
    t.write_get_re_py_file("get_RE.py");
    for (std::string dir : {"evc/mol1/elec", "evc/mol1/hole", "evc/mol2/elec", "evc/mol2/hole"}) {
        fs::create_directories(dir);
        put_file(dir + "/NM.dat", dir);
        put_file(dir + "/evc.cart.dat", "modes\n");
    }
    put_file("evc/mol1/elec/evc.cart.dat",
             " Total reorganization energy (cm-1):   100.0  200.0\nTotal reorganization energy 1 1\n");
    ASSERT_EQ(run(kPython + " scr/get_RE.py"), 0);
    EXPECT_EQ(read_text_file("evc/mol1/lamda.dat"),
              "elec:\nlam lam1 lam2 [meV]\n 37.19526000  12.39842000  24.79684000\n"
              "hole:\nlam lam1 lam2 [meV]\n  0.00000000   0.00000000   0.00000000\n");
    EXPECT_EQ(read_text_file("evc/mol2_NM-h.dat") + read_text_file("data/NM02-h.dat"), "evc/mol2/holeevc/mol2/hole");

    fs::remove_all("evc");  // prepare_RE.py lays it out afresh from a hand-made RE/
    for (const char* chargetype : {"H", "x"}) {
        t.chargetype = chargetype;
        t.write_evc_inp_file();
    }
    EXPECT_EQ(names("RE"), "evc-h-mol1.inp evc-h-mol2.inp");
    EXPECT_NE(read_text_file("RE/evc-h-mol2.inp").find("\n  def_add_int_coord = \n/\n"), std::string::npos);
    t.chargetype = "a";
    t.write_evc_inp_file();
    t.write_prepare_evc_files("prepare_RE.py");
    for (const char* mol : {"1", "2"})
        for (const char* state : {"anion", "cation", "neutral"})
            for (const char* ext : {".fchk", ".log"}) put_file(std::string("RE/re-mol") + mol + "-" + state + ext, state);
    ASSERT_EQ(run(kPython + " scr/prepare_RE.py"), 0);
    EXPECT_EQ(names("evc/mol2/hole"),
              "evc.inp job_get_NM.pbs re-mol2-cation.fchk re-mol2-cation.log re-mol2-neutral.fchk re-mol2-neutral.log");
    EXPECT_EQ(read_text_file("evc/mol1/elec/evc.inp"), read_text_file("RE/evc-e-mol1.inp"));
    EXPECT_EQ(read_text_file("evc/mol1/elec/re-mol1-anion.log"), "anion");
}

TEST_F(WorkflowScripts, MobilityScriptsReadHandMadeExpData)
{
    t.delta_temp = 40;
    t.write_get_mob_py_ME_TD("td");
    t.write_get_mob_py_ME("me");
    for (std::string dir : {"td/elec/200", "td/elec/240", "td/elec/280", "td/hole/200", "td/hole/240", "td/hole/280",
                            "me/elec", "me/hole"}) {
        fs::create_directories(dir);
        put_file(dir + "/exp_data.dat", "a 0 1.5\nb 0 2.5e-3\nc 0 " + dir.substr(dir.rfind('/') + 1) + "\nav 0 4\n");
    }
    ASSERT_EQ(run("cd td && " + kPython + " get_mob.py && cd ../me && " + kPython + " get_mob.py"), 0);
    EXPECT_EQ(read_text_file("me/mob_h.dat"), read_text_file("me/hole/exp_data.dat"));
    EXPECT_EQ(read_text_file("td/mob_h.dat")
                  .find("dir_a:\n200  1.500000e+00  cm^{2}/Vs\n240  1.500000e+00  cm^{2}/Vs\n"
                        "280  1.500000e+00  cm^{2}/Vs\ndir_b:\n200  2.500000e-03  cm^{2}/Vs\n"
                        "240  2.500000e-03  cm^{2}/Vs\n280  2.500000e-03  cm^{2}/Vs\ndir_c:\n"
                        "200  2.000000e+02  cm^{2}/Vs\n240  2.400000e+02  cm^{2}/Vs"),
              0u);
}

TEST_F(WorkflowScripts, GaussianPbsFilesMatchGoldensAndProgressIsInOrder)
{
    t.lat_site_energy = 1;
    testing::internal::CaptureStdout();
    t.write_scripts(true);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Writting trans_int_files.dat...\nWritting get_transint.py...\nWritting site_ener_files.dat...\n"
              "Writting evc inp files ...\nWritting evc get_RE.py...\nWritting MC files...\nWritting ME files...\n");
    t.write_exp_re_py_file("exp_RE.py", "os.system(\"nmodes.exe evc.inp\")\n");
    t.write_qchem_fchk_ext_lowercase_py_file();
    // The goldens are named after the paths, with '_' for '/'.
    for (std::string path :
         {"scr/gaussian_log_check.py", "scr/qchem_fchk_ext_lowercase.py", "scr/exp_RE.py", "scr/get_RE.py",
          "RE/evc-e-mol1.inp", "scr/prepare_RE.py", "scr/run_RE.py", "data/mol2_trans_int_files.dat",
          "scr/get_transint.py", "data/site_ener_files.dat", "scr/get_site_ener.py", "scr/veska.sh",
          "MC-quanta-temp/250/hole/prepare-mc.py", "MC-quanta-temp/250/hole/run_mc_batch.py",
          "MC-quanta-temp/250/hole/get_mob.py", "ME-quanta/elec/prepare-me.py", "ME-quanta/elec/run_me_batch.py",
          "ME-quanta/get_mob.py", "ME-quanta-temp/get_mob.py"})
        EXPECT_EQ(generated(path), golden("workflow_scripts/" + replaced(path, "/", "_"))) << path;
}

TEST_F(WorkflowScripts, OtherEnginesDifferFromGaussianOnlyWhereTheyShould)
{
    for (int engine = 1; engine <= 3; engine++) {  // (the names each writes: the run listings)
        t.compute_engine = engine;
        write_in(std::to_string(engine));
    }
    // Each row turns the Gaussian file into the other engine's: pattern, replacement, in order.
    const char* qchem_re = "copyfile\n\nos.system(\"python scr/qchem_fchk_ext_lowercase.py RE\")\n\n";
    const char* qchem_hl = "import os\n\nos.system(\"python scr/qchem_fchk_ext_lowercase.py HL\")\n\n";
    std::tuple<int, const char*, std::vector<std::pair<const char*, const char*>>> rows[] = {
        {2, "data/mol1_trans_int_files.dat", {{"\\.log", ".out"}}},
        {3, "data/mol1_trans_int_files.dat", {{"\\.log", ".out"}}},
        {2, "RE/evc-h-mol1.inp", {{"\\.log\"", ".hess\""}}},
        {3, "RE/evc-h-mol1.inp", {{"\\.log\"", ".out\""}}},
        {2, "jobs/job_transint.pbs", {{"tintegral.exe ", "tintegral.exe -orca "}}},
        {3, "jobs/job_transint.pbs", {{"tintegral.exe ", "tintegral.exe -qchem "}}},
        {2, "scr/prepare_RE.py", {{"copyfile[^\n]*fchk[^\n]*\n", ""}, {"\\.log", ".hess"}}},
        {3, "scr/prepare_RE.py", {{"\\.log", ".out"}, {"copyfile\n\n", qchem_re}}},
        {2, "scr/get_transint.py", {}},
        {3, "scr/get_transint.py", {{"import os\n\n", qchem_hl}}},
    };
    for (const auto& [engine, path, changes] : rows) {
        std::string expected = generated(std::string("1/") + path);
        for (const auto& [pattern, replacement] : changes)
            expected = std::regex_replace(expected, std::regex(pattern), replacement);
        std::string other = generated(std::to_string(engine) + "/" + path);
        EXPECT_EQ(replaced(other, "/WORK/" + std::to_string(engine), "/WORK/1"), expected) << path;
    }
}

TEST_F(WorkflowScripts, TemperatureScansSiteEnergiesAndPlainPairLists)
{
    std::tuple<double, double, double, const char*> scans[] = {
        {200, 300, 50, "200 250 300"}, {200, 300, 40, "200 240 280"}, {300, 200, 50, ""},
        {250, 300, 0, "250"},          {250, 250, 0, "250"},          {200, 300, -50, ""}};
    t.unique_nei_mol_one_calc_flag = t.unique_2mol_calc_flag = t.unique_RE_calc_flag = false;
    int n = 0;
    for (const auto& [start, end, step, dirs] : scans) {
        t.start_temp = start, t.end_temp = end, t.delta_temp = step;
        std::string dir = std::to_string(n++);
        write_in(dir);
        EXPECT_EQ(names(dir + "/MC-quanta-temp"), dirs) << dir;
        EXPECT_EQ(names(dir + "/ME-quanta-temp/hole"), dirs) << dir;
    }
    EXPECT_EQ(read_text_file("0/data/mol2_trans_int_files.dat"),
              "1\n../HL/2mol-2-1.log  ../HL/uc_mol-2.log  ../HL/nei_mol-2-1.log  2 1\n");
    EXPECT_FALSE(fs::exists("0/data/site_ener_files.dat") || fs::exists("0/scr/get_site_ener.py"));
    EXPECT_EQ(read_text_file("0/MC-quanta/elec/prepare-mc.py").find("EH0"), std::string::npos);
    EXPECT_NE(read_text_file("0/MC-quanta/elec/prepare-mc.py").find("data/NM02-e.dat"), std::string::npos);
}

TEST_F(WorkflowScripts, BadInputStopsWithAMessageNamingTheCause)
{
    std::pair<std::function<void()>, const char*> cases[] = {
        {[&] { t.nmols = 0; }, "The unit cell holds no molecules"},
        {[&] { t.neighbor_nmols = 1; }, "No neighbour list for the 2 molecules"},
        {[&] { delete[] t.unique_pair_map, t.unique_pair_map = nullptr; }, "unique-pair map is missing"},
        {[&] { t.unique_pair_map[2] = 3; }, "line 4100 : \n.*neighbor key mapping error!"},
        {[&] { put_file("scr", ""); }, "Failed to open output file scr/gaussian_log_check.py"},
        {[&] { fs::remove("data/mol2_bonds.dat"); }, "Failed to open input file \"data/mol2_bonds.dat\""},
        {[&] { t.delta_temp = 1e-6; }, "gives 100000001 temperatures; at most 10000"},
        {[&] { t.compute_engine = 4; }, "compute_engine 4 is none of"},
    };
    int n = 0;
    for (const auto& [spoil, message] : cases) {  // each in its own run directory: the files it spoils stay
        std::string dir = std::to_string(n++);
        EXPECT_EXIT((dup2(2, 1), enter(dir), spoil(), t.write_scripts(false)), testing::ExitedWithCode(255), message);
    }
}

// Every job kind in every dialect, bare and full, passes bash -n and
// shellcheck at error level (the run directories of every engine and
// scheduler are linted end to end).
TEST_F(WorkflowScripts, EveryJobKindInEveryDialectLints)
{
    if (run("command -v shellcheck >/dev/null") != 0) {  // a missing checker fails under CI, else skips
        ASSERT_STRNE(getenv("CI"), "true") << "shellcheck missing";
        GTEST_SKIP() << "shellcheck missing";
    }
    write_every_kind_in_every_dialect(t);
    const std::string jobs = "find . -name '*.pbs' -o -name '*.slurm' -o -name '*.lsf' -o -name '*.local'";
    EXPECT_EQ(run("test $(" + jobs + " | wc -l) = 160 && " + jobs + " | xargs -n1 bash -n"), 0);  // 4 x 2 x 20
    EXPECT_EQ(run("find . -name '*.pbs' -o -name '*.lsf' | xargs shellcheck -S error -s bash"), 0);
    EXPECT_EQ(run("find . -name '*.slurm' -o -name '*.local' | xargs shellcheck -S error"), 0);
}

}  // namespace
