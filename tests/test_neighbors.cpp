// Neighbour list, its files, and the unique molecules and pairs: on small
// hand-made cells whose distances are exact in binary, and on real crystals
// against the plain all-atom-pairs scan.

#include <map>

#include "neighbor_internal.h"
#include "test_support.h"

using Rows = std::vector<std::vector<int>>;

// A cubic cell of the given edge with its molecules (Cartesian, in Å) and
// their centres.
static void set_cell(Transport& t, double edge, std::vector<Mol> mols)
{
    for (Mol& m : mols)
        for (double& x : m.frac) x /= edge;
    place_molecules(t, {edge, edge, edge, 90, 90, 90}, mols);
    t.post_data_read_treatment();
}

// In a 16 Å cell: A (C) touches the image of C (C) in cell -1 at 3.61 Å and
// B (C, O) at 2 Å, but B's centre lies farther; D (H) is exactly 4 Å from A.
static void four_molecules(Transport& t, double rcut)
{
    set_cell(t, 16, {{{6}, {1, 8, 8}}, {{6, 8}, {3, 8, 8, 11, 8, 8}}, {{6}, {15, 8, 11}}, {{1}, {1, 12, 8}}});
    t.lat_cutoff = rcut;
    t.nei_scell[0] = t.nei_scell[1] = t.nei_scell[2] = 1;
}

// Molecule i's neighbours as rows (molecule, cell x, y, z).
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
    Transport odd;  // a molecule without atoms and one with an unknown element pass
    set_cell(odd, 16, {{{}, {}}, {{-1, 6}, {1, 8, 8, 2, 8, 8}}});
    EXPECT_DOUBLE_EQ(odd.mol_mass[1], 12.011);  // the unknown element weighs nothing
    odd.build_neighbor_list(false);
    EXPECT_EQ(odd.nnei[0] + odd.nnei[1], 0);
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

// The table, the first neighbour CIF, the closest-atom listing (B at 2 Å
// before C), and the unique analysis: A-C and A-B come back reversed as B-A
// and C-A, two unique pairs, both owned by molecule 1, the only unique one.
TEST_F(NeighborFiles, TablesAndUniquePairsAndMolecules)
{
    Transport t;
    four_molecules(t, 4.0);
    t.identifier = "fixture";
    t.output_eigval = 1;
    t.build_neighbor_list(false);
    t.output_neighbor_data();
    EXPECT_EQ(read_text_file("data/neighbor.dat"), golden("neighbors_fixture.dat"));
    EXPECT_EQ(read_text_file("data/mol1_neighbors.cif"), golden("neighbors_fixture_mol1.cif"));
    fs::remove_all("data");
    t.calc_HL_uc_mol_eigval_eigvec();
    testing::internal::CaptureStdout();
    t.find_neighbor_molecules_min_distance(true);
    t.calc_HL_2mol_eigval_eigvec_and_unique_pairs();
    EXPECT_EQ(t.HL_check_unitcell_unique_mols(true), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout() + dump("data"), golden("neighbors_fixture_unique.txt"));
    EXPECT_EQ(std::vector<int>(t.unique_pair_map, t.unique_pair_map + 4), (std::vector<int>{0, 1, 1, 0}));
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
    t.data_dir = "data/neighbor.dat/x";
    EXPECT_EXIT((dup2(2, 1), t.output_neighbor_data()), ::testing::ExitedWithCode(255),
                "line 2818 : \n+Failed to open output file \"data/neighbor.dat/x/neighbor.dat\"");
}

static void read_crystal(Transport& t, const std::string& file)
{
    t.set_varables_default();
    testing::internal::CaptureStdout();
    t.read_data_cif(data_file(file).c_str(), false);
    t.input_kind = 2;
    t.read_crystal_strcuture_files(false, false);
    testing::internal::GetCapturedStdout();
    t.post_data_read_treatment();
}

// The fast list is the plain scan's on real crystals. In a centrosymmetric
// one a dimer and its reverse hold the same atoms, so the later key maps to
// the earlier one's representative: at most half the pairs stay unique.
TEST(NeighborList, RealCrystalsAsThePlainScanAndPairsMergeWithTheirReverse)
{
    for (const char* file : {"anthracene_antcen24.cif", "benzene_cod2100348.cif", "hydantoin_pahyon01.cif",
                             "naphthalene_cod2100603_0.4GPa.cif", "steroid_cod2007008_zprime2.cif",
                             "thiophene_2tfac_cod1516419.cif", "pentacene_pencen01.cif"}) {
        Transport t;
        read_crystal(t, file);
        build_neighbor_list_scan(t, false, false);
        std::vector<Rows> plain;
        for (int i = 0; i < t.nmols; i++) plain.push_back(neighbor_rows(t, i));
        t.build_neighbor_list(false);
        for (int i = 0; i < t.nmols; i++) EXPECT_EQ(neighbor_rows(t, i), plain[i]) << file << " molecule " << i + 1;
        EXPECT_GT(t.nnei[0], 0) << file;
    }
    Transport t;
    read_crystal(t, "pentacene_pencen01.cif");
    t.build_neighbor_list(false);
    t.unique_2mol_calc_flag = false;  // no table, no print
    t.calc_HL_2mol_eigval_eigvec_and_unique_pairs();
    std::map<std::vector<int>, int> key_of;  // (i, j, cell) -> pair key
    for (int i = 0, key = 0; i < t.nmols; i++)
        for (auto& r : neighbor_rows(t, i)) key_of[{i, r[0], r[1], r[2], r[3]}] = key++;
    ASSERT_EQ(t.nkey, 24);
    for (const auto& [r, key] : key_of) {
        auto back = key_of.find({r[1], r[0], -r[2], -r[3], -r[4]});
        ASSERT_NE(back, key_of.end()) << key;
        EXPECT_EQ(t.unique_pair_map[std::max(key, back->second)], t.unique_pair_map[std::min(key, back->second)]);
    }
    EXPECT_LE(2 * t.unique_pair_count, t.nkey);
}
