// The Monte Carlo and mobility commands run as the generated scripts run
// them, in staged run directories: a one-atom cubic lattice with known
// diffusion, and a real crystal with hand-made rate files.

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <sstream>

#include "test_support.h"
#include "transport.h"

namespace {

// Runs a shell command line with the commands of the build first on PATH;
// returns the exit status, with standard output and error in *out.
int run(const std::string& line, std::string* out = nullptr)
{
    int rc = system(("PATH=" VESKA_MC_BIN_DIR ":$PATH " + line + " > cmd.out 2>&1").c_str());
    if (out) *out = read_text_file("cmd.out");
    return WIFEXITED(rc) ? WEXITSTATUS(rc) : -1;
}

std::string config(const std::string& crystal, const std::string& settings)
{
    return "&transport\n  crystal = " + crystal + "\n" + settings + "/\n";
}

// One carbon atom in a 5 A cubic cell: its neighbours are its six images
// along +-a, +-b, +-c, with rates k[0], k[1], k[2] (1/ns).
void stage_lattice(int nsimu, const double k[3])
{
    put_file("cubic.cif",
             "data_cubic\n_cell_length_a 5\n_cell_length_b 5\n_cell_length_c 5\n"
             "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n"
             "loop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\n\nloop_\n_atom_site_label\n"
             "_atom_site_type_symbol\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n"
             "C1 C 0.5 0.5 0.5\n");
    put_file("veska.inp", config("cubic.cif", "  lat_cutoff = 5.5\n  nei_scell = 1 1 1\n  tsimu = 40\n  tsnap = 4\n"
                                              "  nsimu = " + std::to_string(nsimu) + "\n"));
    put_file("charge.inp", "e\n");
    // A rate file follows the neighbour list's order: build the list to
    // find the axis of each line.
    Transport t;
    t.read_veska_inp("veska.inp", false);
    t.read_crystal_strcuture_files(false, false);
    t.post_data_read_treatment();
    t.build_neighbor_list(false);
    std::string rates;
    for (int j = 0; j < 6; j++)
        for (int d = 0; d < 3; d++)
            if (t.nei_cell[d][0][j]) rates += "1 eV " + std::to_string(k[d]) + " 1/ns 1 A\n";
    put_file("WL01.dat", rates);
}

std::map<std::string, std::string> directory_files(const std::string& dir)
{
    std::map<std::string, std::string> files;
    for (auto& e : std::filesystem::directory_iterator(dir)) files[e.path().string()] = read_text_file(e.path().string());
    return files;
}

}  // namespace

TEST(MonteCarloCommands, CommandLines)
{
    ScratchDir dir;
    struct Case { std::string line; int status; std::string out; } cases[] = {
        {"hopmc.exe -h", 0, "Usage: hopmc.exe [-simu0 N] [-nsimu N] [-seed S] [-h]\n"},
        {"hopmob_OMP.exe --help", 0, "Usage: hopmob_OMP.exe [-h]\n"},
        {"hopmc_OMP.exe -x", 2, "hopmc_OMP.exe: unknown option '-x'\n\nUsage: hopmc_OMP.exe"},
        {"hopmc.exe -simu0 0 -nsimu", 2, "hopmc.exe: -nsimu needs a value\n"},
        {"hopmc.exe -nsimu 0", 2, "hopmc.exe: -nsimu needs a whole number from 1 to 2147483646, not '0'\n"},
        {"hopmc.exe -seed -1", 2, "-seed needs a whole number from 0 to 18446744073709551615, not '-1'"},
        {"hopmob.exe -nsimu 2", 2, "hopmob.exe: unknown option '-nsimu'"},
        {"hopmc.exe", 255, "Failed to open input file: veska.inp"},
    };
    for (const Case& c : cases) {
        std::string out;
        EXPECT_EQ(run(c.line, &out), c.status) << c.line;
        EXPECT_NE(out.find(c.out), std::string::npos) << c.line << "\n" << out;
    }
}

// A seed makes runs repeat; the thread count does not change the files.
TEST(MonteCarloCommands, SeededRunsRepeatOnAnyNumberOfThreads)
{
    ScratchDir dir;
    const double k[3] = {1, 2, 3};
    stage_lattice(40, k);
    ASSERT_EQ(run("OMP_NUM_THREADS=1 hopmc_OMP.exe -seed 5"), 0);
    auto one = directory_files("track");
    std::filesystem::remove_all("track");
    ASSERT_EQ(run("OMP_NUM_THREADS=2 hopmc_OMP.exe -seed 5"), 0);
    EXPECT_EQ(directory_files("track"), one);
    EXPECT_EQ(one.size(), 41u);

    std::filesystem::remove_all("track");
    ASSERT_EQ(run("hopmc.exe -seed 5 -simu0 3 -nsimu 2"), 0);
    auto first = directory_files("track");
    ASSERT_EQ(run("hopmc.exe -seed 5 -simu0 3 -nsimu 2"), 0);
    EXPECT_EQ(directory_files("track"), first);
    ASSERT_EQ(first.size(), 3u);
    // istep of the average is the integer mean of the two simulations
    auto last_istep = [&](const char* name) {
        std::istringstream in(first["track/" + std::string(name)]);
        std::string line, last;
        while (std::getline(in, line)) last = line;
        return std::stol(last.substr(last.rfind(' ')));
    };
    EXPECT_EQ(last_istep("track_total.dat"), (last_istep("track_0004.dat") + last_istep("track_0005.dat")) / 2);
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
    ASSERT_EQ(run("hopmc_OMP.exe -seed 1"), 0);
    std::string out;
    ASSERT_EQ(run("hopmob.exe", &out), 0) << out;
    std::istringstream mob(read_text_file("mob.dat"));
    double expected[4] = {k[0] * 25e-7, k[1] * 25e-7, k[2] * 25e-7, (k[0] + k[1] + k[2]) * 25e-7 / 3};
    const char* names[4] = {"a", "b", "c", "av"};
    for (int d = 0; d < 4; d++) {
        std::string word;
        double D = 0, mu = 0;
        mob >> word >> D >> mu;
        EXPECT_EQ(word, names[d]);
        EXPECT_NEAR(D / expected[d], 1.0, 3 * std::sqrt(6.5 / nsimu) * (d == 3 ? 0.67 : 1.0)) << word;
        EXPECT_NEAR(mu * kT / D, 1.0, 1e-6) << word;
    }
}
