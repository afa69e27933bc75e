// The workspace itself: pair keys, post-read treatment and release of what
// was (and was not) built.

#include "test_support.h"
#include "transport.h"

TEST(TransportKeys, MapBothWaysAndStopBeyondTheLastMolecule)
{
    // Neighbour counts, molecule i, neighbour j and their key; i = 2 is
    // beyond the last molecule of {2, 3}: no key either way.
    struct Case { std::vector<int> nnei; int i, j, key; };
    const Case cases[] = {{{2, 3}, 1, 0, 2}, {{2, 3}, 1, 2, 4}, {{2, 3}, 0, 1, 1},
                          {{0, 2}, 1, 0, 0}, {{4, 0, 3}, 2, 2, 6}, {{2, 3}, 2, 0, 5}};
    for (const Case& c : cases) {
        Transport t;
        t.nmols = t.neighbor_nmols = (int)c.nnei.size();
        t.nnei = new int[c.nnei.size()];
        std::copy(c.nnei.begin(), c.nnei.end(), t.nnei);
        t.neighbor_list_built = true;
        int key = -7, i = -7, j = -7;
        t.neighbor_map_key_2d_to_1d(c.i, c.j, &key);
        t.neighbor_map_key_1d_to_2d(c.key, &i, &j);
        const bool beyond = c.i == t.nmols;
        EXPECT_EQ(std::vector<int>({key, i, j}), beyond ? std::vector<int>(3, -7) : std::vector<int>({c.key, c.i, c.j}));
        if (beyond) {
            EXPECT_EXIT((dup2(2, 1), t.neighbor_map_key_1d_to_uc_id(c.key)), ::testing::ExitedWithCode(255),
                        "ERROR  transport : transport : line 4100 : \n+neighbor key mapping error!");
        } else {
            EXPECT_EQ(t.neighbor_map_key_1d_to_uc_id(c.key), c.i);
        }
    }
}

// Methane and a lone hydrogen in a cubic 10 Å cell.
static void two_molecules(Transport& t)
{
    place_molecules(t, {10, 10, 10, 90, 90, 90},
                    {{{6, 1, 1, 1, 1}, {0.1, 0.1, 0.1, 0.2, 0.1, 0.1, 0.0, 0.1, 0.1, 0.1, 0.2, 0.1, 0.1, 0.0, 0.1}},
                     {{1}, {0.5, 0.5, 0.5}}});
    t.mol_id = new int[2]{1, 2};
}

TEST(TransportWorkspace, PostReadTreatmentAndItsStops)
{
    struct Case { double tsimu, tsnap; int nsnap; };
    for (Case c : {Case{1000, 5, 200}, Case{12, 5, 2}, Case{13, 5, 3}}) {
        Transport t;
        two_molecules(t);
        t.tsimu = c.tsimu;
        t.tsnap = c.tsnap;
        t.sched_type = "SLURM";
        t.post_data_read_treatment();
        EXPECT_EQ(t.nsnap, c.nsnap);
        EXPECT_EQ(t.homo_index[0] * 10 + t.homo_index[1], 50);  // one electron rounds down
        EXPECT_NEAR(t.mol_mass[1], 1.008, 0.01);
        EXPECT_NEAR(t.x_s_com[0], (12.011 * 0.1 + 1.008 * 0.4) / (12.011 + 4 * 1.008), 1e-3);
        EXPECT_NEAR(t.x_com[3], 5.0, 1e-9);
    }
    Transport t;
    two_molecules(t);
    t.lumo_adjustment = {1, 2, 3};
    EXPECT_EXIT(t.post_data_read_treatment(), ::testing::ExitedWithCode(255),
                "lumo_adjustment: Number of input parameters \\(3\\) is NOT equal to nmols_uc \\(2\\)");
    t.lumo_adjustment = {};
    t.homo_adjustment = {1};
    EXPECT_EXIT(t.post_data_read_treatment(), ::testing::ExitedWithCode(255),
                "homo_adjustment: Number of input parameters \\(1\\) is NOT equal to nmols_uc");
    t.homo_adjustment = {};
    t.tsnap = 0;  // no snapshot count to round
    EXPECT_EXIT((dup2(2, 1), t.post_data_read_treatment()), ::testing::ExitedWithCode(255),
                "tsnap = 0 ns: the snapshot interval must be positive");
    // Molecules announced that no driver read: nothing is released that was
    // never allocated, and the treatment stops clearly.
    auto announced = std::make_unique<Transport>();
    announced->nmols = 3;
    EXPECT_EXIT(announced->post_data_read_treatment(), ::testing::ExitedWithCode(255),
                "3 molecules are announced but no structure was read");
    announced.reset();
}
