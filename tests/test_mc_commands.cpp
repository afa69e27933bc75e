// The Monte Carlo and mobility commands run as the generated scripts run
// them, in staged run directories: a one-atom cubic lattice with known
// diffusion, and a real crystal with hand-made rate files.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <sstream>

#include "test_support.h"
#include "transport.h"

namespace {

// Runs a shell command line with the build's commands first on PATH;
// returns the exit status, with standard output and error in *out.
int run(const std::string& line, std::string* out = nullptr)
{
    int rc = system(("export PATH=" VESKA_MC_BIN_DIR ":$PATH; { " + line + "; } > cmd.out 2>&1").c_str());
    if (out) *out = read_text_file("cmd.out");
    return WIFEXITED(rc) ? WEXITSTATUS(rc) : -1;
}

// One carbon atom in a 5 A cubic cell: its neighbours are its six images
// along +-a, +-b, +-c, with rates k[0], k[1], k[2] (1/ns).
void stage_lattice(int nsimu, const double k[3], const std::string& extra = "")
{
    put_file("cubic.cif", "data_c\n_cell_length_a 5\n_cell_length_b 5\n_cell_length_c 5\n_cell_angle_alpha 90\n"
                          "_cell_angle_beta 90\n_cell_angle_gamma 90\nloop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\n\n"
                          "loop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n"
                          "_atom_site_fract_y\n_atom_site_fract_z\nC1 C 0.5 0.5 0.5\n");
    put_file("veska.inp", "&transport\n crystal = cubic.cif\n lat_cutoff = 5.5\n nei_scell = 1 1 1\n tsimu = 40\n"
                          " tsnap = 4\n nsimu = " + std::to_string(nsimu) + "\n" + extra + "/\n");
    put_file("charge.inp", "e\n");
    // The rate file follows the neighbour list's order: build the list to
    // find the axis of each line.
    Transport t;
    t.read_veska_inp("veska.inp", false);
    t.read_crystal_strcuture_files(false, false);
    t.post_data_read_treatment();
    t.build_neighbor_list(false);
    std::string rates;
    for (int j = 0; j < t.nnei[0]; j++)
        for (int d = 0; d < 3; d++)
            if (t.nei_cell[d][0][j]) rates += "1 eV " + std::to_string(k[d]) + " 1/ns 1 A\n";
    put_file("WL01.dat", rates);
}

std::map<std::string, std::string> track_files()
{
    std::map<std::string, std::string> files;
    for (auto& e : std::filesystem::directory_iterator("track")) files[e.path().filename()] = read_text_file(e.path());
    return files;
}

long last_istep(const std::string& track) { return std::stol(track.substr(track.rfind(' ', track.size() - 2))); }

// Column 2 (D) or 3 (mobility) of the line of mob.dat that starts with `name`.
double mob_value(const std::string& name, int column)
{
    std::istringstream in(read_text_file("mob.dat"));
    std::string word;
    double value[2];
    while (in >> word >> value[0] >> value[1])
        if (word == name) return value[column - 2];
    return -1;
}

}  // namespace

TEST(MonteCarloCommands, CommandLinesAndRunDirectoriesThatCannotRun)
{
    const double k[3] = {1, 1, 1};
    struct Case { std::string extra, line; int status; std::string out; } cases[] = {
        {"", "hopmc.exe -h", 0, "Usage: hopmc.exe [-simu0 N] [-nsimu N] [-seed S] [-h]\n"},
        {"", "hopmob_OMP.exe --help", 0, "Usage: hopmob_OMP.exe [-h]\n"},
        {"", "hopmc_OMP.exe -x", 2, "hopmc_OMP.exe: unknown option '-x'\n\nUsage: hopmc_OMP.exe"},
        {"", "hopmc.exe -simu0 0 -nsimu", 2, "hopmc.exe: -nsimu needs a value\n"},
        {"", "hopmc.exe -nsimu 0", 2, "hopmc.exe: -nsimu needs a whole number from 1 to 2147483646, not '0'\n"},
        {"", "hopmob.exe -seed 2", 2, "hopmob.exe: unknown option '-seed'"},
        {"", "rm veska.inp; hopmc.exe", 255, "Failed to open input file: veska.inp"},
        {" nsimu = 0\n", "hopmc.exe", 255, "line 3196 : \nnsimu = 0: at least one Monte Carlo simulation is needed"},
        {" lat_cutoff = 1\n", "hopmc_OMP.exe", 255,
         "line 3190 : \nMolecule 1 has no neighbour within lat_cutoff = 1 A: a carrier that reaches it cannot hop on."},
        {"", "rm charge.inp; hopmc.exe", 255, "Failed to open input file charge.inp\n"},
        {"", "touch track; hopmc_OMP.exe", 255, "line 3213 : \nFailed to open output file track/track_0001.dat"},
        {"", "hopmob.exe", 255, "No track files (track_0001.dat ...) in 'track': run hopmc.exe first"},
        {" temp = 0\n", "hopmc.exe -nsimu 1 && hopmob.exe", 255, "The temperature is 0 K"},
    };
    for (const Case& c : cases) {
        ScratchDir dir;
        stage_lattice(1, k, c.extra);
        std::string out;
        EXPECT_EQ(run(c.line, &out), c.status) << c.line;
        EXPECT_NE(out.find(c.out), std::string::npos) << c.line << "\n" << out;
    }
}

// A seed makes runs repeat, and the thread count does not change the files.
TEST(MonteCarloCommands, SeededRunsRepeatOnAnyNumberOfThreads)
{
    ScratchDir dir;
    const double k[3] = {1, 2, 3};
    stage_lattice(40, k);
    ASSERT_EQ(run("OMP_NUM_THREADS=1 hopmc_OMP.exe -seed 5"), 0);
    auto one = track_files();
    ASSERT_EQ(run("rm -r track; OMP_NUM_THREADS=2 hopmc_OMP.exe -seed 5"), 0);
    EXPECT_EQ(track_files(), one);
    EXPECT_EQ(one.size(), 41u);
    EXPECT_EQ(last_istep(one["track_total.dat"]), 0);

    ASSERT_EQ(run("rm -r track; hopmc.exe -seed 5 -simu0 3 -nsimu 2"), 0);
    auto first = track_files();
    ASSERT_EQ(run("hopmc.exe -seed 5 -simu0 3 -nsimu 2"), 0);
    EXPECT_EQ(track_files(), first);
    ASSERT_EQ(first.size(), 3u);  // track_0004, track_0005 and the average, whose istep is the integer mean
    EXPECT_EQ(last_istep(first["track_total.dat"]),
              (last_istep(first["track_0004.dat"]) + last_istep(first["track_0005.dat"])) / 2);
}

// Rates k along a, b, c: D = k a^2 per axis, and mu = e D / (kB T). The
// bounds are three standard errors of the fitted slope: sqrt(6.5 / nsimu)
// relative per axis, about two thirds of that for the average of 1, 2, 4.
TEST(MonteCarloCommands, MobilityOfACubicLattice)
{
    ScratchDir dir;
    const double k[3] = {1, 2, 4}, kT = 8.617333262e-5 * 250;
    const int nsimu = 12000;
    stage_lattice(nsimu, k);
    put_file("temp.inp", "250 K\n");
    std::string out;
    ASSERT_EQ(run("hopmc_OMP.exe -seed 1 && hopmob.exe", &out), 0) << out;
    const char* names[4] = {"a", "b", "c", "av"};
    for (int d = 0; d < 4; d++) {
        double D = mob_value(names[d], 2), mu = mob_value(names[d], 3);
        double expected = (d < 3 ? k[d] : (k[0] + k[1] + k[2]) / 3) * 25e-7;  // k a^2, A^2/ns to cm^2/s
        EXPECT_NEAR(D / expected, 1.0, 3 * std::sqrt(6.5 / nsimu) * (d == 3 ? 0.67 : 1.0)) << names[d];
        EXPECT_NEAR(mu * kT / D, 1.0, 1e-6) << names[d];
    }
}

// A real crystal, naphthalene (two molecules, 14 neighbours each, on
// inversion centres), with hole rates by centre distance, staged as the run
// scripts stage it and run through the local job scripts. With no drift
// the mean-square displacement grows by sum w r^2 per unit time, so
// D = sum w r^2 / 6; the bound is four standard errors.
TEST(MonteCarloCommands, RealCrystalThroughTheLocalJobScripts)
{
    ScratchDir dir;
    const char* cif = "naphthalene_cod2100603_0.4GPa.cif";
    put_file(cif, read_text_file(data_file(cif)));
    put_file("veska.inp", "&transport\n crystal = " + std::string(cif) +
                              "\n nsimu = 1000\n tsimu = 2\n tsnap = 0.05\n sched_type = local\n/\n");
    put_file("charge.inp", "hole\n");
    put_file("temp.inp", "300 K\n");
    const double r[5] = {4.9812, 5.8899, 7.7523, 8.565, 10.3947}, w[5] = {3e12, 1e12, 1e11, 1e11, 1e10};
    const int count[5] = {4, 2, 4, 2, 2};  // neighbours at each distance
    std::string rates;
    double sum = 0;
    for (int g = 0; g < 5; g++)
        for (int j = 0; j < count[g]; j++) {
            rates += "1.0 eV " + std::to_string(w[g]) + " 1/s 4.0 A\n";
            sum += w[g] * 1e-9 * r[g] * r[g];
        }
    put_file("WH01.dat", rates);
    put_file("WH02.dat", rates);
    Transport t;
    t.read_veska_inp("veska.inp", false);
    t.parse_scheduling_type();
    t.write_MC_job("run_mc", 1, 2, "hopmc_OMP.exe -simu0 0 -nsimu 1000\n", "hole", "running.mc");
    t.write_calc_mob_job("get_mob", 1, 2, "mob", "running.mob", "hopmob_OMP.exe");
    std::string out;
    ASSERT_EQ(run("OMP_NUM_THREADS=2 sh run_mc.local && sh get_mob.local", &out), 0) << out;
    EXPECT_NE(out.find("Reading input file charge.inp ...\nReading input file temp.inp ...\n  chargetype = h\n"
                       "  temp       = 300\n  nsimu      = 1000\n  tsimu      = 2 ns\n  tsnap      = 0.05 ns\n"),
              std::string::npos) << out;
    std::string total = read_text_file("track/track_total.dat");
    EXPECT_EQ(std::count(total.begin(), total.end(), '\n'), 42);
    EXPECT_NEAR(mob_value("av", 2) / (sum / 6 * 1e-7), 1.0, 4 * std::sqrt(6.5 / 1000 / 3)) << out;
    EXPECT_GT(mob_value("a", 3), 0.0);
}
