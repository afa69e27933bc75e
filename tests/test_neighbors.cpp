// Neighbour list, its files, and the unique molecules and pairs, on small
// hand-made cells whose distances are exact in binary.

#include <gtest/gtest.h>

#include "neighbor_internal.h"
#include "structure_common.h"
#include "test_support.h"

using Mol = std::pair<std::vector<int>, std::vector<double>>;  // types, Cartesian Å

// A cubic cell of the given edge (the matrix set exactly, so that whole
// numbers of ångström stay exact), with its molecules and their centres.
static void set_cell(Transport& t, double edge, const std::vector<Mol>& mols)
{
    for (int k = 0; k < 6; k++) t.cell_latt[k] = k < 3 ? edge : 90;
    for (int r = 0; r < 3; r++)
        for (int c = 0; c < 3; c++) t.latt3x3[r][c] = t.latt_vec[r][c] = r == c ? edge : 0;
    const int n = t.nmols = (int)mols.size();
    t.natoms_mol = new int[n];
    t.atypes_mol = new int*[n]();
    t.x_mol = new double*[n]();
    t.x_s_mol = new double*[n]();
    for (int m = 0; m < n; m++) {
        allocate_molecule(t, m, (int)mols[m].first.size());
        std::copy(mols[m].first.begin(), mols[m].first.end(), t.atypes_mol[m]);
        for (size_t k = 0; k < mols[m].second.size(); k++)
            t.x_s_mol[m][k] = (t.x_mol[m][k] = mols[m].second[k]) / edge;
    }
    t.mol_mass = new double[n];
    t.x_com = new double[3 * n];
    t.x_s_com = new double[3 * n];
    t.post_data_read_treatment();
}

// In a 16 Å cell: A (C) touches the image of C (C) in cell -1 at 3.61 Å and
// B (C, O) at 2 Å, but B's centre lies farther; D (H) is exactly 4 Å from A.
static void four_molecules(Transport& t, double rcut)
{
    set_cell(t, 16, {{{6}, {1, 8, 8}}, {{6, 8}, {3, 8, 8, 11, 8, 8}}, {{6}, {15, 8, 11}},
                     {{1}, {1, 12, 8}}});
    t.lat_cutoff = rcut;
    t.nei_scell[0] = t.nei_scell[1] = t.nei_scell[2] = 1;
}

using Rows = std::vector<std::vector<int>>;

static Rows neighbor_rows(Transport& t, int i)
{
    Rows rows;
    for (int k = 0; k < t.nnei[i]; k++)
        rows.push_back({t.nei_mol[i][k], t.nei_cell[0][i][k], t.nei_cell[1][i][k], t.nei_cell[2][i][k]});
    return rows;
}

TEST(NeighborList, CutOffIsStrictAndOrderFollowsTheCentres)
{
    struct Case { double rcut; Rows a, d; };
    const Case cases[] = {
        {4.0, {{2, -1, 0, 0}, {1, 0, 0, 0}}, {}},  // C's centre is nearer than B's
        {4.000001, {{2, -1, 0, 0}, {3, 0, 0, 0}, {1, 0, 0, 0}}, {{0, 0, 0, 0}}},
    };
    for (const Case& c : cases) {
        Transport t;
        four_molecules(t, c.rcut);
        t.build_neighbor_list(false);
        EXPECT_EQ(neighbor_rows(t, 0), c.a);
        EXPECT_EQ(neighbor_rows(t, 2), (Rows{{0, 1, 0, 0}}));
        EXPECT_EQ(neighbor_rows(t, 3), c.d);
        EXPECT_EQ(t.nei_mol_id[0][t.nnei[0] - 1], t.nnei[0]);
    }
}

// The diagnostic listing orders by closest atoms: B (2 Å) before C.
TEST(NeighborList, MinimumDistanceListing)
{
    Transport t;
    four_molecules(t, 4.0);
    testing::internal::CaptureStdout();
    t.find_neighbor_molecules_min_distance(true);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "\n**** Calculate minimum atomic distance with neighbors ****\n  molecule 1:\n"
              "    neighbor 2 [ 0  0  0]:    2.000\n    neighbor 3 [-1  0  0]:    3.606\n"
              "  molecule 2:\n    neighbor 1 [ 0  0  0]:    2.000\n  molecule 3:\n"
              "    neighbor 1 [ 1  0  0]:    3.606\n  molecule 4:\n"
              "**** End of Calculate minimum atomic distance with neighbors ****\n");
}

// One atom in a 5 Å cube: its only neighbours are its own six face images.
TEST(NeighborList, OwnImagesRangeAndCapacity)
{
    struct Case { int scell, nneimax, nnei; };
    for (Case c : {Case{1, 7, 6}, Case{0, 7, 0}, Case{1, 6, -1}}) {
        Transport t;
        set_cell(t, 5, {{{1}, {1, 1, 1}}});
        t.lat_cutoff = 5.5;
        t.nei_scell[0] = t.nei_scell[1] = t.nei_scell[2] = c.scell;
        t.NNEIMAX = c.nneimax;
        if (c.nnei < 0) {
            EXPECT_EXIT(t.build_neighbor_list(false), ::testing::ExitedWithCode(255),
                        "Need to boost NNEIMAX \\(NumNeigh=6\\)");
            continue;
        }
        t.build_neighbor_list(false);
        ASSERT_EQ(t.nnei[0], c.nnei);
        for (auto& row : neighbor_rows(t, 0))
            EXPECT_EQ(row[0] * 9 + abs(row[1]) + abs(row[2]) + abs(row[3]), 1);  // molecule 0, one step
    }
    int n[3] = {5, 0, 2}, a[5], c[2], *cells[3] = {a, nullptr, c};
    Transport().create_neighbor_cell_array(n, cells);
    EXPECT_EQ(std::vector<int>(a, a + 5), (std::vector<int>{0, -1, 1, -2, 2}));
    EXPECT_EQ(std::vector<int>(c, c + 2), (std::vector<int>{0, -1}));
}

class NeighborFiles : public ScratchDirTest {};

TEST_F(NeighborFiles, TableAndNeighbourCifAsWritten)
{
    Transport t;
    four_molecules(t, 4.0);
    t.identifier = "fixture";
    t.build_neighbor_list(false);
    t.output_neighbor_data();
    EXPECT_EQ(read_text_file("data/neighbor.dat"), golden("neighbors_fixture.dat"));
    EXPECT_EQ(read_text_file("data/mol1_neighbors.cif"),
              golden("neighbors_fixture_mol1.cif"));
    t.data_dir = "data/neighbor.dat/x";
    EXPECT_EXIT((dup2(2, 1), t.output_neighbor_data()), ::testing::ExitedWithCode(255),
                "line 2818 : \n+Failed to open output file \"data/neighbor.dat/x/neighbor.dat\"");
}

// A molecule without atoms and one with an unknown element pass.
TEST(NeighborList, OddMoleculesPass)
{
    Transport t;
    set_cell(t, 16, {{{}, {}}, {{-1, 6}, {1, 8, 8, 2, 8, 8}}});
    EXPECT_DOUBLE_EQ(t.mol_mass[1], 12.011);  // the unknown element weighs nothing
    t.build_neighbor_list(false);
    EXPECT_EQ(t.nnei[0] + t.nnei[1], 0);
}

class UniqueAnalysis : public ScratchDirTest {};

// A-C and A-B come back reversed as B-A and C-A: two unique pairs, both
// owned by molecule 1, which is then the only unique molecule.
TEST_F(UniqueAnalysis, PairsAndMolecules)
{
    Transport t;
    four_molecules(t, 4.0);
    t.output_eigval = 1;
    t.build_neighbor_list(false);
    t.calc_HL_uc_mol_eigval_eigvec();
    testing::internal::CaptureStdout();
    t.calc_HL_2mol_eigval_eigvec_and_unique_pairs();
    EXPECT_EQ(t.HL_check_unitcell_unique_mols(true), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "*** Check Duplicate 2mol pairs ***\n  Unique 2mol pairs: 2 out of 4\n"
              "      1   1   <=>    1\n      1   2   <=>    2\n*** End of Check Duplicate 2mol pairs ***\n\n"
              "**** Check HL Duplicate Molecules in Unit Cell ****\n  Unit cell unique molecule indexes: 1\n"
              "**** End of Check HL Duplicate Molecules in Unit Cell ****\n\n");
    EXPECT_EQ(std::vector<int>(t.unique_pair_map, t.unique_pair_map + 4), (std::vector<int>{0, 1, 1, 0}));
    EXPECT_EQ(read_text_file("data/unique_id_map.dat"),
              "# Unique ID mapping\n4\n  2\n      1   1    1\n      1   2    2\n"
              "  1\n      2   1    3\n  1\n      3   1    4\n  0\n");
    EXPECT_NE(read_text_file("data/eigval_1mol.dat").find("\n       0.0000   219.5399   219.5399\n"), std::string::npos);
    EXPECT_EQ(read_text_file("data/eigval_2mol.dat"),
              "# 2mol eigenvalues by principal moment of inertia\n4\n  1\n"
              "     1:    39.0358    39.0358    -0.0000\n     2:     0.0000   267.2965   267.2965\n"
              "  2\n     1:     0.0000   267.2965   267.2965\n"
              "  3\n     1:    39.0358    39.0358    -0.0000\n  4\n");
    // The other branch compares the molecules: A and C (one carbon each)
    // stay the same up to a moment difference of 0.1 inclusive.
    t.unique_2mol_calc_flag = false;
    t.prin_moment[2][2] = 0.1;
    EXPECT_EQ(t.HL_check_unitcell_unique_mols(false), 0);
    EXPECT_EQ(std::vector<int>(t.hl_unique_list, t.hl_unique_list + t.hl_unique_count), (std::vector<int>{1, 2, 4}));
    t.allocate_mol_id_indexes_array();  // identity indexes again
    t.prin_moment[2][2] = 0.2;
    EXPECT_EQ(t.HL_check_unitcell_unique_mols(false), 1);
    EXPECT_FALSE(t.hl_same_flag);

    // Pair eigenvalues exactly 1e-4 apart differ; the last earlier match decides.
    const double eig[4][3] = {{0, 0, 0}, {0, 0, 1e-4}, {0, 0, 0.5e-4}, {1, 0, 0}};
    const int slot[4][2] = {{0, 0}, {0, 1}, {1, 0}, {2, 0}};  // keys 0 to 3
    for (int k = 0; k < 4; k++) std::copy(eig[k], eig[k] + 3, t.eigval_2mol[slot[k][0]][slot[k][1]]);
    find_unique_pairs(t);
    EXPECT_EQ(std::vector<int>(t.unique_pair_map, t.unique_pair_map + 4), (std::vector<int>{0, 1, 1, 3}));
    EXPECT_EQ(std::vector<int>(t.unique_pair_list, t.unique_pair_list + t.unique_pair_count),
              (std::vector<int>{1, 2, 4}));
}
