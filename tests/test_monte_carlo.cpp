// The hop loop against its per-hop reference and the physics of a random
// walk, the snapshot rule, the track and rate files; then the Monte Carlo and
// mobility commands run as the generated scripts run them, in staged run
// directories: a one-atom cubic lattice and a real crystal.

#include <cmath>
#include <random>
#include <sstream>

#include "mc_hops.h"
#include "test_support.h"
#include "transport.h"

namespace {

struct Hop {
    int mol, cx, cy, cz;
    double rate;
};

// A workspace whose neighbour lists and rates are set by hand; a = b = c = 5.
void set_hops(Transport& t, const std::vector<std::vector<Hop>>& lists)
{
    int n = t.nmols = t.neighbor_nmols = (int)lists.size();
    t.nnei = new int[n];
    t.nei_mol = new int*[n];
    t.w0 = new double*[n];
    for (int d = 0; d < 3; d++) t.nei_cell[d] = new int*[n];
    for (int i = 0; i < n; i++) {
        int c = t.nnei[i] = (int)lists[i].size();
        t.nei_mol[i] = new int[c];
        t.w0[i] = new double[c];
        for (int d = 0; d < 3; d++) t.nei_cell[d][i] = new int[c];
        for (int k = 0; k < c; k++) {
            const Hop& h = lists[i][k];
            t.nei_mol[i][k] = h.mol, t.w0[i][k] = h.rate;
            t.nei_cell[0][i][k] = h.cx, t.nei_cell[1][i][k] = h.cy, t.nei_cell[2][i][k] = h.cz;
        }
    }
    t.neighbor_list_built = true;
    t.latt3x3[0][0] = t.latt3x3[1][1] = t.latt3x3[2][2] = 5.0;
}

struct Walk {
    std::vector<int> istep;
    std::vector<double> t, x, r2;
};

Walk simulate(Transport& t, bool plain, double tsimu, double tsnap, int nsnap, unsigned seed)
{
    HopTable table;
    table.build(t.nmols, t.nnei, t.w0, t.nei_mol, t.nei_cell);
    table.plain = plain;
    std::mt19937 engine(seed);
    UniformSource uniform;
    uniform.engine = &engine;
    Walk w{std::vector<int>(nsnap + 1), std::vector<double>(nsnap + 1), std::vector<double>(3 * nsnap + 3),
           std::vector<double>(nsnap + 1)};
    run_one_simulation(table, t.latt3x3, tsimu, tsnap, {nsnap, w.istep.data(), w.t.data(), w.x.data(), w.r2.data()},
                       uniform);
    return w;
}

}  // namespace

// The precomputed sums must choose exactly what the per-hop method chooses,
// at and beside every cumulative value and every bucket edge of the guide,
// and so give identical trajectories.
TEST(MonteCarloHops, PrecomputedSumsMatchThePerHopMethod)
{
    std::mt19937 gen(11);
    std::vector<std::vector<Hop>> lists(5);
    for (auto& list : lists)
        for (int k = 0, c = 1 + gen() % 30; k < c; k++)
            list.push_back({(int)(gen() % 5), (int)(gen() % 3) - 1, (int)(gen() % 3) - 1, 0,
                            gen() % 4 == 0 && k ? 0.0 : std::ldexp(1.0 + gen() % 1000, -(int)(gen() % 20))});
    Transport t;
    set_hops(t, lists);
    HopTable table;
    table.build(t.nmols, t.nnei, t.w0, t.nei_mol, t.nei_cell);
    std::vector<double> p(30);
    for (int m = 0; m < t.nmols; m++) {
        std::vector<double> rs;
        for (int g = 0; g <= table.guide_size; g++) rs.push_back(g / table.guide_scale);
        for (int k = 0; k < t.nnei[m]; k++) rs.push_back(table.cum[table.sites[m].cum_first + k]);
        for (double r : std::vector<double>(rs)) rs.insert(rs.end(), {std::nextafter(r, 0.0), std::nextafter(r, 2.0)});
        for (double r : rs) {
            double dt;
            EXPECT_EQ(table.pick(m, r), choose_hop_plain(t.w0[m], t.nnei[m], p.data(), r, &dt)) << m << " " << r;
            EXPECT_EQ(table.sites[m].dt, dt);
        }
    }
    Walk fast = simulate(t, false, 10.0, 0.05, 200, 3), plain = simulate(t, true, 10.0, 0.05, 200, 3);
    EXPECT_EQ(fast.istep, plain.istep);
    EXPECT_EQ(fast.t, plain.t);
    EXPECT_EQ(fast.x, plain.x);
    EXPECT_GT(fast.istep[150], 1000);
}

TEST(MonteCarloHops, SnapshotRuleDisplacementsAndTrackFiles)
{
    // rates 1 and 3: dt = 0.25, and r below 0.25 picks the first neighbour;
    // with tsnap 1 a snapshot holds the time and hop count before its hop,
    // then one follows every three hops
    Transport one;
    set_hops(one, {{{0, 1, 0, 0, 1.0}, {0, 0, 1, 0, 3.0}}});
    Walk r = simulate(one, false, 2.2, 1.0, 4, 1);
    EXPECT_EQ(r.istep, (std::vector<int>{2, 5, 8, 0, 0}));
    EXPECT_EQ(r.t, (std::vector<double>{0.5, 1.25, 2.0, 0, 0}));
    HopTable table;
    table.build(1, one.nnei, one.w0, one.nei_mol, one.nei_cell);
    EXPECT_EQ(table.pick(0, 0.2499) * 10 + table.pick(0, 0.25), 1);
    // forth and back through (1, 0, 0) and (-1, 0, 0): X alternates a and 0
    Transport two;
    set_hops(two, {{{1, 1, 0, 0, 4.0}}, {{0, -1, 0, 0, 4.0}}});
    Walk x = simulate(two, false, 1.0, 0.25, 4, 1);
    EXPECT_EQ(x.x, (std::vector<double>{5, 0, 0, 0, 0, 0, 5, 0, 0, 0, 0, 0, 5, 0, 0}));
    EXPECT_EQ(x.r2, (std::vector<double>{25, 0, 25, 0, 25}));

    // The first row is zeros whatever the simulation did; slot nsnap is not written.
    ScratchDir dir;
    one.nsnap = 1;
    double time[2] = {0.5, 9}, xs[6] = {5, 0, -5, 7, 7, 7}, r2[2] = {50, 1};
    int istep[2] = {2, 9};
    for (int number : {1, 9999, 10000}) one.output_track("tr", number, time, xs, r2, istep);
    one.output_track_ave("tr", time, xs, r2, istep);
    for (const char* name : {"tr/track_0001.dat", "tr/track_9999.dat", "tr/track_10000.dat", "tr/track_total.dat"})
        EXPECT_EQ(read_text_file(name), "#      t,ns         x,angs         y,angs         z,angs         r2,A^2     istep\n"
                                        "  0.000000e+00   0.000000e+00   0.000000e+00   0.000000e+00   0.000000e+00  0\n"
                                        "  5.000000e-01   5.000000e+00   0.000000e+00  -5.000000e+00   5.000000e+01  2\n")
            << name;
}

TEST(MonteCarloInputs, RateFiles)
{
    ScratchDir dir;
    Transport t;
    set_hops(t, {{{0, 1, 0, 0, 0}, {0, -1, 0, 0, 0}}, {}});
    t.mc_chargetype = "Hole";
    put_file("WH01.dat", "1.0 eV 2.5e12 1/s 3.9 A\n1 eV 7 1/ps 1 A\n");  // the first line's unit counts
    put_file("WH02.dat", "");
    t.read_MC_w0();
    t.write_MC_w0_out();
    EXPECT_EQ(read_text_file("w0_01.out") + read_text_file("w0_02.out"),
              "2\n   2.500000e+03 1/ns\n   7.000000e-09 1/ns\n0\n");
    put_file("WH01.dat", "1 eV 2 \t 1/PS 3 A\n1 eV 3 1/s 1 A\n");
    t.read_MC_w0();
    EXPECT_EQ(t.w0[0][1], 3000.0);
    struct Bad { std::string type, text; int status; std::string message; } cases[] = {
        {"x", "", 0, "INFO: MC chargetype = x\n\nERROR  transport : transport : line 3082 : \nCHARGETYPE IS NOT SET CORRECTLY!"},
        {"e", "", 255, "line 3090 : \nFailed to open input file WL01.dat"},
        {"h", "1 eV 2 1/s 3 A\r\n1 eV 2 1/s 3 A\r\n", 255,
         "line 3104 : \nUnmatched data in 'WH01.dat' - 4 lines in file, but 2 \\(nnei\\) lines are expected!\n"
         "Try to adjust the cutoff distance to make it agree."},
        {"h", "1 eV 2 1/s 3 A\n1 eV 2 1/s 3 A", 255, "Unmatched data in 'WH01.dat' - 1 lines"},
        {"h", "1 eV 2 1/s 3 A\n1 eV -2 1/s 3 A\n", 255, "line 3108 : \nThe hop rate -2 in line 2 of 'WH01.dat'"},
        {"h", "1 eV 2 1/s 3 A\n1 eV abc 1/s 3 A\n", 255, "line 3106 : \nLine 2 of 'WH01.dat' is not three"},
    };
    for (const Bad& c : cases) {
        t.mc_chargetype = c.type;
        EXPECT_EXIT((child_with_file("WH01.dat", c.text), t.read_MC_w0()), testing::ExitedWithCode(c.status), c.message);
    }
}

namespace {

// One carbon atom in a 5 A cubic cell: its neighbours are its six images
// along +-a, +-b, +-c, with rates k[0], k[1], k[2] (1/ns).
void stage_lattice(int nsimu, const double k[3], const std::string& extra = "")
{
    put_file("cubic.cif", cubic_cif(5, "x,y,z", "C1 C 0.5 0.5 0.5\n"));
    put_file("veska.inp", "&transport\n crystal = cubic.cif\n lat_cutoff = 5.5\n nei_scell = 1 1 1\n tsimu = 10\n"
                          " tsnap = 1\n nsimu = " + std::to_string(nsimu) + "\n" + extra + "/\n");
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
    const std::string one = dump("track");
    ASSERT_EQ(run("rm -r track; OMP_NUM_THREADS=2 hopmc_OMP.exe -seed 5"), 0);
    EXPECT_EQ(dump("track"), one);
    EXPECT_EQ(names("track").size(), 40 * 15 + 15u);  // track_0001.dat ... track_0040.dat, track_total.dat
    EXPECT_EQ(last_istep(read_text_file("track/track_total.dat")), 0);
    ASSERT_EQ(run("rm -r track; hopmc.exe -seed 5 -simu0 3 -nsimu 2"), 0);
    const std::string first = dump("track");
    ASSERT_EQ(run("hopmc.exe -seed 5 -simu0 3 -nsimu 2"), 0);
    EXPECT_EQ(dump("track"), first);
    ASSERT_EQ(names("track"), "track_0004.dat track_0005.dat track_total.dat");  // the average's istep is the integer mean
    EXPECT_EQ(last_istep(read_text_file("track/track_total.dat")),
              (last_istep(read_text_file("track/track_0004.dat")) + last_istep(read_text_file("track/track_0005.dat"))) / 2);
}

// Rates k along a, b, c. At every snapshot h = W t + 1 hops were made (W
// the rate sum) and <r2> = a^2 h, within four standard errors of a walk
// along one axis, the widest case. D = k a^2 per axis and mu = e D / (kB T),
// within three standard errors of the fitted slope: sqrt(6.5 / nsimu)
// relative per axis, about two thirds of that for the average of 1, 2, 4.
TEST(MonteCarloCommands, MeanSquareDisplacementAndMobilityOfACubicLattice)
{
    ScratchDir dir;
    const double k[3] = {1, 2, 4}, kT = 8.617333262e-5 * 250;
    const int nsimu = 12000;
    stage_lattice(nsimu, k);
    put_file("temp.inp", "250 K\n");
    std::string out;
    ASSERT_EQ(run("hopmc_OMP.exe -seed 1 && hopmob.exe", &out), 0) << out;
    std::istringstream track(read_text_file("track/track_total.dat"));
    std::string skipped;  // the header and the row of zeros
    std::getline(track, skipped) && std::getline(track, skipped);
    double t, x, y, z, r2, istep, W = 2 * (k[0] + k[1] + k[2]);
    int snapshots = 0;
    for (; track >> t >> x >> y >> z >> r2 >> istep; snapshots++) {
        double h = W * t + 1;
        EXPECT_NEAR(r2, 25 * h, 4 * 25 * std::sqrt(2 * h * (h - 1) / nsimu)) << "t = " << t;
    }
    EXPECT_EQ(snapshots, 10);
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
                              "\n nsimu = 1000\n tsimu = 0.2\n tsnap = 0.005\n sched_type = local\n/\n");
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
    std::string total = read_text_file("track/track_total.dat");
    EXPECT_EQ(std::count(total.begin(), total.end(), '\n'), 42);
    EXPECT_NEAR(mob_value("av", 2) / (sum / 6 * 1e-7), 1.0, 4 * std::sqrt(6.5 / 1000 / 3)) << out;
    EXPECT_GT(mob_value("a", 3), 0.0);
}
