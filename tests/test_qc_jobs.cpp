// Transfer-integral and reorganisation-energy job generation: one golden of
// every file written per engine and family, the orbital-index files, an
// empty cell, bad input, and the resumable job protocol run for real.

#include <sys/stat.h>

#include <algorithm>

#include "test_support.h"
#include "transport.h"

// A small hand-made crystal: in a monoclinic cell, molecule 1 (C, H) has
// three neighbours (molecule 2 twice, in two cells, and its own image),
// molecule 2 (N) none. Unique lists out of walk order.
static void small_crystal(Transport& t)
{
    place_molecules(t, {5, 6, 7, 90, 100, 90}, {{{6, 1}, {.1, .2, .3, .15, .25, .35}}, {{7}, {.6, .55, .4}}});
    t.neighbor_nmols = 2;
    t.nnei = new int[2]{3, 0};
    t.nei_mol = new int*[2]{new int[3]{1, 0, 1}, new int[1]};
    t.nei_cell[0] = new int*[2]{new int[3]{0, 1, 0}, new int[1]};
    t.nei_cell[1] = new int*[2]{new int[3]{0, 0, -1}, new int[1]};
    t.nei_cell[2] = new int*[2]{new int[3]{0, 0, 1}, new int[1]};
    t.hl_unique_count = t.re_unique_count = t.unique_pair_count = 2;
    t.hl_unique_list = new int[2]{2, 1};
    t.re_unique_list = new int[2]{2, 1};
    t.unique_pair_list = new int[2]{3, 1};
}

using QcJobs = ScratchDirTest;

// Runs `write` on a fresh small crystal in `dir`; returns every file written,
// sorted, each after a line naming it; only the drivers' text unless `full`.
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
    fs::current_path("../..");
    return dump(dir, full ? "" : "/scr/");
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
}

TEST_F(QcJobs, EmptyCellOrbitalIndexFilesAndNeighboursUniqueIds)
{
    Transport e;  // no molecules: the drivers' frames and an empty array job
    e.work_dir = "/w";
    e.sched_type = "lsf";
    e.parse_scheduling_type();
    e.write_HL_gaussian_mol_one_gjf_and_job_uc();
    e.write_RE_orca_mol_inp_and_job_seperated();
    EXPECT_EQ(dump(".", "/scr/"), golden("qc_jobs_empty_cell.txt"));

    Transport t;
    small_crystal(t);
    t.lumo_adjustment = {2, -1};
    EXPECT_EQ(t.calc_homo()[0], 3);  // C + H: 7 electrons
    t.write_H_L_inp();
    EXPECT_EQ(read_text_file("data/H.inp") + read_text_file("data/L.inp") + read_text_file("data/L_adj.inp"),
              "3\n3\n" "6\n3\n" "2\n2\n-1\n");
    EXPECT_FALSE(fs::exists("data/H_adj.inp"));
    t.prin_moment = new double*[2]{new double[3]{1, 2, 3}, new double[3]{4, 5, 6}};
    t.mol_mass[0] = 13.0, t.mol_mass[1] = 14.0;
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

// A stand-in scheduler: runs the job script at once, once per array member,
// as the one named by $0 would; "sh" is bash, as the local dialect needs.
// With DRY set it accepts the job and runs nothing. Built-ins only, for speed.
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

// A stand-in engine: logs each run of an input that exists; the one named by
// FAIL_INPUT ends without a normal termination. The python stand-in answers
// the output check in the shell (status 0 when the log ends normally).
static const char kEngine[] = R"(#!/bin/bash
[ -f "$1" ] || exit 1
echo "$1" >>"$CALLS"
[ "${1%.com}" = "$FAIL_INPUT" ] && end="Error termination" || end="Normal termination of Gaussian 16"
echo " $end" >"${1%.com}.log"
)";

// Stand-in schedulers and engine first on PATH, the generated drivers run
// under every dialect (the local one under bash), run again, and once with a
// failing calculation.
TEST_F(QcJobs, ProtocolRunsResumesAndMarksFailures)
{
    const fs::path root = fs::current_path();
    const std::string python = "#!/bin/bash\ncase $1 in */gaussian_log_check.py) read -r log <\"$2\" && "
                               "[[ $log == *'Normal termination'* ]]; exit ;; esac\nexec " + kPython + " \"$@\"\n";
    const std::pair<std::string, std::string> programs[] = {
        {"qsub", kScheduler}, {"sbatch", kScheduler}, {"bsub", kScheduler}, {"sh", kScheduler}, {"g16", kEngine},
        {"formchk", "#!/bin/sh\n: >\"${1%.chk}.fchk\"\n"}, {"python", python}};
    const auto markers = [](const char* prefix) {
        int n = 0;
        for (const auto& f : fs::directory_iterator("RUN")) n += f.path().filename().string().rfind(prefix, 0) == 0;
        return n;
    };
    for (const std::string sched : {"pbs", "slurm", "lsf", "local"}) {
        fs::create_directories(root / sched / "bin");
        fs::current_path(root / sched);
        for (const auto& [name, text] : programs) {
            put_file("bin/" + name, text);
            chmod(("bin/" + name).c_str(), 0755);
        }
        put_file("run", "export PATH=\"$PWD/bin:$PATH\" CALLS=\"$PWD/calls\" FAIL_INPUT=\"$1\"\n"
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
