// The hop loop against its per-hop reference and the physics of a random
// walk, the snapshot rule, the track files, and the rate files.

#include <gtest/gtest.h>

#include <cmath>
#include <random>

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
        for (double r : std::vector<double>(rs))
            rs.insert(rs.end(), {std::nextafter(r, 0.0), std::nextafter(r, 2.0)});
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

TEST(MonteCarloHops, SnapshotRuleAndDisplacements)
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
    EXPECT_EQ(table.pick(0, 0.2499), 0);
    EXPECT_EQ(table.pick(0, 0.25), 1);
    // forth and back through (1, 0, 0) and (-1, 0, 0): X alternates a and 0
    Transport two;
    set_hops(two, {{{1, 1, 0, 0, 4.0}}, {{0, -1, 0, 0, 4.0}}});
    Walk x = simulate(two, false, 1.0, 0.25, 4, 1);
    EXPECT_EQ(x.x, (std::vector<double>{5, 0, 0, 0, 0, 0, 5, 0, 0, 0, 0, 0, 5, 0, 0}));
    EXPECT_EQ(x.r2, (std::vector<double>{25, 0, 25, 0, 25}));
}

// Rate k along +-a, +-b, +-c of a cubic cell: after h hops <r2> = a^2 h,
// with variance 2 h (h - 1) a^4 / 3, and h = W t + 1 at a snapshot.
TEST(MonteCarloHops, RandomWalkMeanSquareDisplacement)
{
    const double k = 2.0, W = 6 * k, a = 5.0;
    const int nsimu = 2000, nsnap = 10;
    Transport t;
    set_hops(t, {{{0, 1, 0, 0, k}, {0, -1, 0, 0, k}, {0, 0, 1, 0, k}, {0, 0, -1, 0, k}, {0, 0, 0, 1, k}, {0, 0, 0, -1, k}}});
    std::vector<double> sum(nsnap);
    Walk w;
    for (int s = 0; s < nsimu; s++) {
        w = simulate(t, false, 10.0, 1.0, nsnap, 100 + s);
        for (int i = 0; i < nsnap; i++) sum[i] += w.r2[i];
    }
    for (int i = 0; i < nsnap; i++) {
        double h = W * w.t[i] + 1, sigma = a * a * std::sqrt(2 * h * (h - 1) / 3 / nsimu);
        EXPECT_NEAR(h, w.istep[i] + 1, 1e-9);
        EXPECT_NEAR(sum[i] / nsimu, a * a * h, 4 * sigma) << "snapshot " << i;
    }
}

// The first row is zeros whatever the simulation did; slot nsnap is not written.
TEST(MonteCarloTracks, FileNamesAndRows)
{
    ScratchDir dir;
    Transport t;
    t.nsnap = 1;
    double time[2] = {0.5, 9}, x[6] = {5, 0, -5, 7, 7, 7}, r2[2] = {50, 1};
    int istep[2] = {2, 9};
    for (int number : {1, 9999, 10000}) t.output_track("tr", number, time, x, r2, istep);
    t.output_track_ave("tr", time, x, r2, istep);
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
    EXPECT_EQ(read_text_file("w0_01.out"), "2\n   2.500000e+03 1/ns\n   7.000000e-09 1/ns\n");
    EXPECT_EQ(read_text_file("w0_02.out"), "0\n");
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
