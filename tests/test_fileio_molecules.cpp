#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "fileio.h"
#include "fileio_test_cell.h"

static void cubic(FileIO& f, double a)
{
    double cell[6] = {a, a, a, 90, 90, 90}, latt[3][3];
    f.cell_cell6_to_latt3x3(cell, latt);
}

TEST(Separation, InterleavedAcrossTheFaceAndAtTheLimit)
{
    FileIO f;
    cubic(f, 10.0);
    // Molecule A: atoms 0, 4, 2 form a chain along x (1.5 A steps);
    // molecule B: atoms 1, 3. They interleave in the atom list.
    load_test_cell(f, {0.1, 0.1, 0.1, 0.1, 0.6, 0.6, 0.4, 0.1, 0.1, 0.25, 0.6, 0.6, 0.25, 0.1, 0.1}, 0.77);
    testing::internal::CaptureStdout();
    f.separate_cif_molecules(true);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "  Unit cell nmols  = 2\n  Unit cell natoms = 3 2\n");
    f.separate_cif_molecules(false);  // again: the same lists, not doubled ones
    EXPECT_EQ(f.mol_natoms_list, (std::vector<int>{3, 2}));
    EXPECT_EQ(f.mol_atom_list, (std::vector<int>{0, 4, 2, 1, 3}));
    load_test_cell(f, {0.98, 0.5, 0.5, 0.5, 0.5, 0.5, 0.02, 0.5, 0.5}, 0.35);
    f.separate_cif_molecules(false);
    EXPECT_EQ(f.mol_atom_list, (std::vector<int>{0, 2, 1}));
    f.cif_radius[1] = 9999.99;  // an unknown element reaches every atom
    f.separate_cif_molecules(false);
    EXPECT_EQ(f.mol_atom_list, (std::vector<int>{0, 1, 2}));

    cubic(f, 4.0);  // a power of two keeps 4 * (L / 4) == L exactly
    double limit = (0.77 + 0.77) * f.bond_dis_scale;
    load_test_cell(f, {0.0, 0.1, 0.1, limit / 4.0, 0.1, 0.1}, 0.77);
    ASSERT_EQ(4 * (f.cif_x_s[3] - f.cif_x_s[0]), limit);
    f.separate_cif_molecules(false);
    EXPECT_EQ(f.mol_natoms_list, (std::vector<int>{1, 1}));
    f.cif_x_s[3] = std::nextafter(f.cif_x_s[3], 0.0);
    f.separate_cif_molecules(false);
    EXPECT_EQ(f.mol_natoms_list, (std::vector<int>{2}));
}

TEST(MakeWhole, StraddlingMoleculesMassWeightedCentresAndTheExactLimit)
{
    FileIO f;
    cubic(f, 10.0);
    int cc[2] = {6, 6}, oh[2] = {8, 1}, unknown[2] = {-1, 6};
    double x[6] = {0.98, 0.5, 0.5, 0.02, 0.5, 0.5}, y[6] = {0.99, 0.5, 0.5, 0.07, 0.5, 0.5};
    testing::internal::CaptureStdout();
    f.make_whole_molecule(1, 2, cc, x, true);
    f.make_whole_molecule(2, 2, cc, y, true);  // centre at 1.03 once whole: the molecule moves by -1
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "  molecule 1 COM =  1.000000  0.500000  0.500000\n"
                                                      "  molecule 2 COM =  1.030000  0.500000  0.500000\n"
                                                      "  molecule 2 COM =  0.030000  0.500000  0.500000 (wrapped)\n");
    EXPECT_EQ(x[0], 0.98);
    EXPECT_NEAR(x[3], 1.02, 1e-12);
    EXPECT_NEAR(y[0], -0.01, 1e-12);
    EXPECT_NEAR(y[3], 0.07, 1e-12);
    // O at 0.005 and H unwrapped to -0.07 have their mass centre above zero
    // (a plain mean would be below and move them).
    double w[6] = {0.5, 0.5, 0.005, 0.5, 0.5, 0.93}, u[6] = {0.5, 0.5, 0.5, 0.64, 0.5, 0.5};
    f.make_whole_molecule(4, 2, oh, w, false);
    EXPECT_NEAR(w[2], 0.005, 1e-12);
    EXPECT_NEAR(w[5], -0.07, 1e-12);
    f.make_whole_molecule(1, 2, unknown, u, false);  // bonds with the dummy covalent radius 0.72
    EXPECT_NEAR(u[3], 0.64, 1e-15);

    cubic(f, 4.0);
    double limit = (0.72 + 0.72) * f.bond_dis_scale, z[6] = {0.0, 0.1, 0.1, limit / 4.0, 0.1, 0.1};
    ASSERT_EQ(4.0 * (z[3] - z[0]), limit);
    EXPECT_EXIT((dup2(2, 1), f.make_whole_molecule(1, 2, cc, z, false)), testing::ExitedWithCode(1),
                "ERROR  transport : fileio : line [0-9]+ : \nNot all atoms are bonded in the molecule!\n"
                "nat_bonded = 1, natoms = 2\n");
    z[3] = std::nextafter(z[3], 0.0);
    f.make_whole_molecule(1, 2, cc, z, false);
}

// Molecules by atom count, mass and principal moments.
static void set_molecules(FileIO& f, std::vector<int> natoms, std::vector<double> mass, std::vector<std::vector<double>> moments)
{
    f.nmols = (int)natoms.size();
    f.natoms_mol = new int[f.nmols];
    f.mol_mass = new double[f.nmols];
    f.prin_moment = new double*[f.nmols];
    for (int** list : {&f.hl_mol_index, &f.hl_unique_list, &f.re_mol_index, &f.re_unique_list}) *list = new int[f.nmols];
    for (int m = 0; m < f.nmols; m++) {
        f.natoms_mol[m] = natoms[m];
        f.mol_mass[m] = mass[m];
        f.prin_moment[m] = new double[3]{moments[m][0], moments[m][1], moments[m][2]};
        f.hl_mol_index[m] = f.re_mol_index[m] = m + 1;
    }
}

TEST(Duplicates, SameMoleculesByCountMassAndMoments)
{
    FileIO f;
    set_molecules(f, {10, 10, 10, 12}, {128.2, 128.2, 128.25, 160.0}, {{1, 2, 3}, {1, 2, 3.5}, {1.05, 2, 2.95}, {1, 2, 3}});
    testing::internal::CaptureStdout();
    EXPECT_FALSE(f.HL_check_unitcell_same_mols(true));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "**** Check HL Duplicate Molecules in Unit Cell ****\n  Unit cell molecule indexes:  1 2 1 4\n"
              "  Unit cell unique molecule indexes: 1 2 4\n**** End of Check HL Duplicate Molecules in Unit Cell ****\n\n");
    EXPECT_TRUE(f.hl_same_flag);
    EXPECT_EQ(f.hl_unique_count * 10 + f.hl_unique_list[2], 34);
    f.RE_check_unitcell_same_mols(false);  // the RE test ignores orientation: 0, 1, 2 are one molecule
    EXPECT_EQ(std::vector<int>(f.re_mol_index, f.re_mol_index + 4), (std::vector<int>{1, 1, 1, 4}));
    EXPECT_EQ(f.re_unique_count, 2);
    EXPECT_TRUE(f.RE_mols_if_the_same(0, 1) && !f.HL_mols_if_the_same(0, 1));

    FileIO g;  // 0~2 and 1~2 but not 0~1: the later i wins for molecule 2
    set_molecules(g, {5, 5, 5}, {10.0, 10.15, 10.08}, {{1, 1, 1}, {1, 1, 1}, {1, 1, 1}});
    EXPECT_FALSE(g.HL_check_unitcell_same_mols(false));
    EXPECT_EQ(g.hl_mol_index[2] * 10 + g.hl_unique_count, 22);
    FileIO h;  // different atom counts are never the same molecule
    set_molecules(h, {5, 6}, {10.0, 10.0}, {{1, 1, 1}, {1, 1, 1}});
    EXPECT_TRUE(h.HL_check_unitcell_same_mols(false));
    EXPECT_FALSE(h.hl_same_flag);
}

// The fast separation must give the molecules of the repeated plain search
// step, in the same order and with the same atom order, for any cell.
TEST(Separation, SameMoleculesAsThePlainSearch)
{
    std::mt19937 rng(11);
    std::uniform_real_distribution<double> u(-0.2, 1.2);
    const double cells[][6] = {{9.1, 7.3, 12.8, 101.9, 112.6, 85.8}, {4.0, 4.0, 30.0, 90, 90, 120},
                               {25, 25, 25, 90, 90, 90}, {18, 14, 22, 95, 100, 105},
                               {60, 50, 70, 90, 100, 90}};  // clusters in a corner of it
    const double radii[] = {0.35, 0.77, 1.04, 1.98};
    int split_cells = 0;
    for (int trial = 0; trial < 20; trial++) {
        FileIO f;
        double cell[6], latt[3][3];
        std::copy(cells[trial % 5], cells[trial % 5] + 6, cell);
        f.cell_cell6_to_latt3x3(cell, latt);
        if (trial >= 10) f.bond_dis_scale = 1.4;
        const double spread = trial % 5 == 4 ? 0.15 : 1.0;
        std::vector<double> xs;  // clusters of atoms so that molecules of many sizes form
        for (int c = 0; c < 12; c++) {
            double cx = spread * u(rng), cy = spread * u(rng), cz = spread * u(rng);
            for (int a = 0; a < 1 + c % 7; a++)
                for (double o : {cx, cy, cz}) xs.push_back(o + 0.05 * (u(rng) - 0.5));
        }
        load_test_cell(f, xs, 0.77);
        for (int i = 0; i < f.natoms_cif; i++) f.cif_radius[i] = radii[(i * 7 + trial) % 4];
        if (trial == 5) f.cif_radius[3] = 9999.99;
        if (trial == 6) f.cif_x_s[4] = 3.0e6;
        std::vector<int> counts, order;
        plain_molecules(f, counts, order);
        f.separate_cif_molecules(false);
        EXPECT_EQ(f.mol_natoms_list, counts) << trial;
        EXPECT_EQ(f.mol_atom_list, order) << trial;
        split_cells += counts.size() > 3;
    }
    EXPECT_GE(split_cells, 6);  // the cases are not all one big molecule
}
