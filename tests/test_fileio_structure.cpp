// From atoms to molecules: the element table, cell geometry, symmetry
// operators and the P1 expansion, molecule separation and unwrapping,
// duplicate molecules, and the structure driver with its bond files. The
// fast expansion, separation and make-whole are checked bit for bit against
// plain scans: on random cells, the shared crystals and hostile cells.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <random>

#include "mmutil.h"
#include "test_support.h"
#include "veska_inp.h"

namespace {

// Replaces the cell atoms by carbon atoms at the given fractional positions,
// all with the given separation radius, and sets the operators.
void load_cell(FileIO& f, const std::vector<double>& xs, double radius = 0.77, std::vector<std::string> ops = {})
{
    int n = (int)xs.size() / 3;
    f.free_cif_atom_arrays();
    f.natoms_cif = n;
    f.cif_atypes = new int[n];
    f.cif_radius = new double[n];
    f.cif_x_s = new double[3 * n];
    f.cif_x = new double[3 * n]();
    std::fill(f.cif_atypes, f.cif_atypes + n, 6);
    std::fill(f.cif_radius, f.cif_radius + n, radius);
    std::copy(xs.begin(), xs.end(), f.cif_x_s);
    f.symm_ops = ops;
}

void cubic(FileIO& f, double a)
{
    double cell[6] = {a, a, a, 90, 90, 90}, latt[3][3];
    f.cell_cell6_to_latt3x3(cell, latt);
}

// Bit for bit: NaNs from a coordinate out of range included.
bool same_bits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// Reads a CIF through the pipeline with the searches (f[0]) and with the
// plain scans (f[1]) and checks every stage bit for bit: the P1 cell, the
// molecules, each molecule whole.
void read_pipeline(const std::string& path, int* natoms, int* nmols)
{
    SCOPED_TRACE(path);
    FileIO f[2];
    f[1].plain_scans = true;
    testing::internal::CaptureStdout();
    for (FileIO& each : f) each.read_data_cif(path.c_str(), false);
    testing::internal::GetCapturedStdout();
    *natoms = f[0].natoms_cif;
    ASSERT_EQ(f[1].natoms_cif, f[0].natoms_cif);
    for (int k = 0; k < 3 * f[0].natoms_cif; k++) ASSERT_TRUE(same_bits(f[1].cif_x_s[k], f[0].cif_x_s[k])) << k;
    ASSERT_EQ(f[1].mol_natoms_list, f[0].mol_natoms_list);
    ASSERT_EQ(f[1].mol_atom_list, f[0].mol_atom_list);
    for (FileIO& each : f) {
        each.input_kind = 2;
        each.read_crystal_strcuture_files(false, false);
    }
    *nmols = f[0].nmols;
    for (int m = 0; m < f[0].nmols; m++)
        for (int k = 0; k < 3 * f[0].natoms_mol[m]; k++)
            ASSERT_TRUE(same_bits(f[1].x_s_mol[m][k], f[0].x_s_mol[m][k])) << m << " " << k;
}

// side^2 operators translating by 1/side along a and b, and side^2 atoms at
// random in the first 1/side of a and b: side^4 images, all in one molecule.
std::string hostile_cif(const char* symbol, double edge, int side)
{
    std::string ops, rows;
    auto shift = [side](int i) { return i ? format_string("+%d/%d", i, side) : std::string(); };
    for (int i = 0; i < side; i++)
        for (int j = 0; j < side; j++) ops += "x" + shift(i) + ",y" + shift(j) + ",z\n";
    std::mt19937 rng(side);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    for (int k = 0; k < side * side; k++) {
        double x = u(rng) / side, y = u(rng) / side;
        rows += format_string("%s%d %s %.6f %.6f %.6f\n", symbol, k, symbol, x, y, u(rng));
    }
    return cubic_cif(edge, ops, rows);
}

}  // namespace

TEST(FileioElements, TableRowsAndLookUps)
{
    // Masses grow with the element number except for the known inversions
    // (K, Ni, I, Pa, Np, Am): a guard against a shifted row.
    std::vector<int> inversions;
    for (int i = 2; i < 104; i++)
        if (element_table[i].mass < element_table[i - 1].mass) inversions.push_back(i);
    EXPECT_EQ(inversions, (std::vector<int>{19, 28, 53, 91, 93, 95}));
    EXPECT_STREQ(element_table[103].symbol, "Lr");
    EXPECT_DOUBLE_EQ(element_radius_nw[105], 1.3);
    FileIO f;
    const struct { const char* name; int index; } by_name[] = {
        {"cl", 17}, {"CL", 17}, {"C", 6}, {"c", 6}, {"Ca2+", 20}, {"C1", -1}, {"Xx", -1}, {" ", 0}, {"", -1}};
    for (auto& c : by_name) EXPECT_EQ(f.find_element_index_from_name(c.name), c.index) << c.name;
    EXPECT_EQ(std::vector<double>({f.find_element_radius_from_name("Xx"), f.find_element_radius_from_name("s"),
                                   f.find_element_radius_from_index(0), f.find_element_radius_from_index_nw(6)}),
              (std::vector<double>{9999.99, 1.04, 0.72, 0.77}));
    // A one-letter symbol writes two bytes only (callers pass char[2]).
    char out[8];
    std::memset(out, 'z', sizeof out);
    f.find_element_name_from_index(7, out);
    EXPECT_EQ(std::string(out, 3), std::string("N\0z", 3));
    // By mass the blank of one-letter symbols is kept; nothing near 0.05 or 500.
    const struct { double mass; const char* name; } by_mass[] = {{12.0, "C "}, {0.05, "A "}, {35.45, "Cl"}, {500.0, "A "}};
    for (auto& c : by_mass) {
        f.find_element_name_from_mass(c.mass, out);
        EXPECT_STREQ(out, c.name) << c.mass;
    }
}

TEST(FileioCell, TriclinicVectorsRoundTripAndWraps)
{
    FileIO f;
    double abc[3] = {7.9, 6.0, 11.1};
    f.set_cell_lattice(abc, 101.9, 112.6, 85.8);
    double latt[3][3], a[3], b[3], c[3];
    f.cell_cell6_to_latt3x3(f.cell_latt, latt);
    f.get_cif_lattice_vectors(a, b, c);
    auto dot = [](const double* u, const double* v) { return u[0] * v[0] + u[1] * v[1] + u[2] * v[2]; };
    auto angle = [&](const double* u, const double* v) { return std::acos(dot(u, v) / std::sqrt(dot(u, u) * dot(v, v))) * 180 / M_PI; };
    for (const auto& [got, want] : {std::pair{std::sqrt(dot(a, a)), 7.9}, {std::sqrt(dot(b, b)), 6.0}, {std::sqrt(dot(c, c)), 11.1},
                                    {angle(b, c), 101.9}, {angle(a, c), 112.6}, {angle(a, b), 85.8}})
        EXPECT_NEAR(got, want, 1e-9);
    EXPECT_EQ(std::vector<double>({a[1], a[2], b[2]}), std::vector<double>(3, 0.0));
    double in[3] = {0.2, -0.3, 0.7}, out[3];
    f.coord_f2c(in, out);
    f.coord_c2f(out, out);  // same vector in and out
    double x = 0.2, y = -0.3, z = 0.7;
    f.coord_f2c(x, y, z);
    EXPECT_NEAR(x, latt[0][0] * 0.2 - latt[0][1] * 0.3 + latt[0][2] * 0.7, 1e-12);  // columns a, b, c
    f.coord_c2f(x, y, z);
    // Positions wrap once into [0, 1); displacements to the nearest image.
    double s[3] = {-0.2, 1.0, -1.2}, d[3] = {0.7, -0.5, 0.5}, e[3] = {1.7, -1.7, 0.0};
    f.PBC_scaled_x_wrap(s);
    f.PBC_scaled_disp_wrap(d);
    f.PBC_scaled_disp_wrap(e);
    const double got[13] = {out[0], out[1], out[2], y, s[0], s[1], s[2], d[0], d[1], d[2], e[0], e[1], e[2]};
    const double want[13] = {0.2, -0.3, 0.7, -0.3, 0.8, 0.0, -0.2, -0.3, -0.5, 0.5, 0.7, -0.7, 0.0};
    for (int k = 0; k < 13; k++) EXPECT_NEAR(got[k], want[k], 1e-12) << k;
}

TEST(Symmetry, SymbolicAndNumericOperators)
{
    const struct { const char* text; std::vector<double> rows, t; } cases[] = {
        {"-x+1/2,y+1/2,-z+1/2", {-1, 0, 0, 0, 1, 0, 0, 0, -1}, {0.5, 0.5, 0.5}},
        {"x,y-1/4,z", {1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 0.75, 0}},  // wrapped once
        {"x+0.5,y,z", {1, 0, 0, 0, 1, 0, 0, 0, 1}, {0.5, 0, 0}},
        {"x-1,y,z", {1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 0, 0}},
        {" 'X', -Y _ ,\tZ+3/4 ", {1, 0, 0, 0, -1, 0, 0, 0, 1}, {0, 0, 0.75}},
        {"1/2+x,-1/3-y,z", {1, 0, 0, 0, -1, 0, 0, 0, 1}, {0.5, 2.0 / 3.0, 0}},
        {"x-y,x,z+5/6", {1, -1, 0, 1, 0, 0, 0, 0, 1}, {0, 0, 5.0 / 6.0}},
        {"x,y,z+0.25", {1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 0, 0.25}},  // a leading 0 is no fraction
        {"y,x", {0, 1, 0, 1, 0, 0, 0, 0, 0}, {0, 0, 0}},            // third row stays zero
        {"1 0 0 0.5 0 1 0 0 0 0 1 0", {1, 0, 0, 0, 1, 0, 0, 0, 1}, {0.5, 0, 0}},
        {"0 -1 0 0 1 0 0 0.25 0 0 -1 -0.5", {0, -1, 0, 1, 0, 0, 0, 0, -1}, {0, 0.25, 0.5}},
        {"0 1 0 0 1", {0, 1, 0, 1, 0, 0, 0, 0, 0}, {0, 0, 0}},  // only what is there
    };
    for (const auto& c : cases) {
        double R[3][3] = {}, t[3] = {};
        FileIO().ParseTransformString(c.text, R, t);
        EXPECT_EQ(std::vector<double>(&R[0][0], &R[0][0] + 9), c.rows) << c.text;
        for (int k = 0; k < 3; k++) EXPECT_NEAR(t[k], c.t[k], 1e-15) << c.text << k;
    }
    double R[3][3] = {{7}}, t[3] = {};  // no comma and no blank: nothing is parsed, the caller's values stay
    FileIO().ParseTransformString("xyz", R, t);
    EXPECT_EQ(R[0][0], 7);
}

TEST(Symmetry, OverlapsImageOrderAndNoOperators)
{
    FileIO f;
    load_cell(f, {0, 0, 0, 0.1, 0.2, 0.3}, 0.77, {"x,y,z", "-x,-y,-z"});
    testing::internal::CaptureStdout();
    f.make_spacegroup_P1(3);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "WARNING: Overlapped atoms detected and to be removed\n"
              "         Number of overlapped atoms is 1\n         Number of remaining atoms is 3\n");
    // Image order: operator by operator; image 2 (origin again) is gone.
    EXPECT_EQ(std::vector<double>(f.cif_x_s, f.cif_x_s + 3 * f.natoms_cif),
              (std::vector<double>{0, 0, 0, 0.1, 0.2, 0.3, 1 - 0.1, 1 - 0.2, 1 - 0.3}));
    EXPECT_DOUBLE_EQ(f.cif_atypes[2] + f.cif_radius[2], 6.77);
    // Across the face with the minimum image the first image survives; just
    // outside the limit (1.1e-3 apart in x alone) both stay.
    load_cell(f, {0.9999999, 0.5, 0.5, 0.0000001, 0.5, 0.5, 0.5, 0.5, 0.5, 0.2, 0.5, 0.5, 0.2011, 0.5, 0.5}, 0.77, {"x,y,z"});
    testing::internal::CaptureStdout();
    f.make_spacegroup_P1(3);
    EXPECT_NE(testing::internal::GetCapturedStdout().find("Number of overlapped atoms is 1\n"), std::string::npos);
    ASSERT_EQ(f.natoms_cif, 4);
    EXPECT_EQ(std::vector<double>({f.cif_x_s[0], f.cif_x_s[3], f.cif_x_s[6], f.cif_x_s[9]}),
              (std::vector<double>{0.9999999, 0.5, 0.2, 0.2011}));
    load_cell(f, {0.1, 0.2, 0.3});
    f.make_spacegroup_P1(3);
    EXPECT_EQ(f.natoms_cif, 0);
}

TEST(Separation, InterleavedAcrossTheFaceAndAtTheLimit)
{
    FileIO f;
    cubic(f, 10.0);
    // Molecule A: atoms 0, 4, 2 form a chain along x (1.5 A steps);
    // molecule B: atoms 1, 3. They interleave in the atom list.
    load_cell(f, {0.1, 0.1, 0.1, 0.1, 0.6, 0.6, 0.4, 0.1, 0.1, 0.25, 0.6, 0.6, 0.25, 0.1, 0.1});
    testing::internal::CaptureStdout();
    f.separate_cif_molecules(true);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "  Unit cell nmols  = 2\n  Unit cell natoms = 3 2\n");
    f.separate_cif_molecules(false);  // again: the same lists, not doubled ones
    EXPECT_EQ(f.mol_natoms_list, (std::vector<int>{3, 2}));
    EXPECT_EQ(f.mol_atom_list, (std::vector<int>{0, 4, 2, 1, 3}));
    load_cell(f, {0.98, 0.5, 0.5, 0.5, 0.5, 0.5, 0.02, 0.5, 0.5}, 0.35);
    f.separate_cif_molecules(false);
    EXPECT_EQ(f.mol_atom_list, (std::vector<int>{0, 2, 1}));
    cubic(f, 4.0);  // a power of two keeps 4 * (L / 4) == L exactly
    double limit = (0.77 + 0.77) * f.bond_dis_scale;
    load_cell(f, {0.0, 0.1, 0.1, limit / 4.0, 0.1, 0.1});
    ASSERT_EQ(4 * (f.cif_x_s[3] - f.cif_x_s[0]), limit);
    f.separate_cif_molecules(false);
    EXPECT_EQ(f.mol_natoms_list, (std::vector<int>{1, 1}));
    f.cif_x_s[3] = std::nextafter(f.cif_x_s[3], 0.0);
    f.separate_cif_molecules(false);
    EXPECT_EQ(f.mol_natoms_list, (std::vector<int>{2}));
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
        load_cell(f, xs);
        for (int i = 0; i < f.natoms_cif; i++) f.cif_radius[i] = radii[(i * 7 + trial) % 4];
        if (trial == 5) f.cif_radius[3] = 9999.99;
        if (trial == 6) f.cif_x_s[4] = 3.0e6;
        f.plain_scans = true;
        f.separate_cif_molecules(false);
        const std::vector<int> counts = f.mol_natoms_list, order = f.mol_atom_list;
        f.plain_scans = false;
        f.separate_cif_molecules(false);
        EXPECT_EQ(f.mol_natoms_list, counts) << trial;
        EXPECT_EQ(f.mol_atom_list, order) << trial;
        split_cells += counts.size() > 3;
    }
    EXPECT_GE(split_cells, 6);  // the cases are not all one big molecule
}

TEST(MakeWhole, StraddlingMoleculesMassWeightedCentresAndTheExactLimit)
{
    FileIO f;
    cubic(f, 10.0);
    int cc[2] = {6, 6}, oh[2] = {8, 1};
    double x[6] = {0.98, 0.5, 0.5, 0.02, 0.5, 0.5}, y[6] = {0.99, 0.5, 0.5, 0.07, 0.5, 0.5};
    testing::internal::CaptureStdout();
    f.make_whole_molecule(1, 2, cc, x, true);
    f.make_whole_molecule(2, 2, cc, y, true);  // centre at 1.03 once whole: the molecule moves by -1
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "  molecule 1 COM =  1.000000  0.500000  0.500000\n"
                                                      "  molecule 2 COM =  1.030000  0.500000  0.500000\n"
                                                      "  molecule 2 COM =  0.030000  0.500000  0.500000 (wrapped)\n");
    // O at 0.005 and H unwrapped to -0.07 have their mass centre above zero
    // (a plain mean would be below and move them).
    double w[6] = {0.5, 0.5, 0.005, 0.5, 0.5, 0.93};
    f.make_whole_molecule(4, 2, oh, w, false);
    const double got[6] = {x[0], x[3], y[0], y[3], w[2], w[5]}, want[6] = {0.98, 1.02, -0.01, 0.07, 0.005, -0.07};
    for (int k = 0; k < 6; k++) EXPECT_NEAR(got[k], want[k], 1e-12) << k;
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
}

using StructureDriver = ScratchDirTest;

// A 20 Å cubic P1 cell with two molecules: a C-C pair 1.54 Å apart and a
// C-C-H chain that straddles the a face (C at x = 0.98 and 0.02).
static void read_two_molecules(VeskaInp& v, const char* data_dir)
{
    put_file("two.cif", cubic_cif(20, "x,y,z", "C1 C 0.98 0.5 0.5\nA1 C 0.1 0.1 0.1\nC2 C 0.02 0.5 0.5\n"
                                                "A2 C 0.177 0.1 0.1\nH2 H 0.0745 0.5 0.5\n"));
    v.set_varables_default();
    v.data_dir = data_dir;
    testing::internal::CaptureStdout();
    v.read_data_cif("two.cif", false);
    v.input_kind = 2;
    v.read_crystal_strcuture_files(false, true);
    testing::internal::GetCapturedStdout();
}

TEST_F(StructureDriver, CifAndMolMoleculesAndTheirBondFiles)
{
    VeskaInp v;
    read_two_molecules(v, "out");
    ASSERT_EQ(v.nmols, 2);  // molecule 1 holds atom 0 (the straddling chain), in joining order
    ASSERT_EQ(v.natoms_mol[0] * 10 + v.natoms_mol[1], 32);
    EXPECT_NEAR(fabs(v.x_mol[0][3] - v.x_mol[0][0]), 0.8, 1e-9);  // made whole
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(v.x_mol[0][3 * i], 20.0 * v.x_s_mol[0][3 * i], 1e-9);
    EXPECT_EQ(dump("out"), "=== out/mol1_bonds.dat\n2\n  1   2  0  0\n  2   3  0  0\n=== out/mol2_bonds.dat\n1\n  1   2  0  0\n");
    // MOL input: covalent radii, no images: C-C 1.54 Å is a bond (1.44 x 1.15 = 1.656), 1.70 Å is not.
    put_file("three.mol", "three\n  test\n\n  3  0  0  0  0  0  0  0  0  0999 V2000\n"
                          "    0.0000    0.0000    0.0000 C   0\n    1.5400    0.0000    0.0000 C   0\n"
                          "    0.0000    1.7000    0.0000 C   0\nM  END\n");
    VeskaInp m;
    m.set_varables_default();
    m.input_kind = 1;
    m.nmols = 2;
    m.mol_files = {"three.mol", "three.mol"};
    m.read_crystal_strcuture_files(false, true);
    EXPECT_EQ(read_text_file("data/mol2_bonds.dat"), "1\n  1   2  0  0\n");
    // The cell of MOL input comes from the configured lattice vectors.
    EXPECT_NEAR(m.latt_len[0], 8.098, 1e-12);
    EXPECT_NEAR(m.cell_latt[2], std::hypot(4.888095, 7.138882), 1e-12);
    EXPECT_NEAR(m.cell_latt[4], acos(-4.888095 / m.cell_latt[2]) * 180.0 / M_PI, 1e-9);
    EXPECT_NEAR(m.latt3x3[0][2], -4.888095, 1e-12);  // column c
    EXPECT_NEAR(m.latt3x3_inv[0][0], 1.0 / 8.098, 1e-12);
}

TEST_F(StructureDriver, BadKindShortNameListAndUnwritableBondFile)
{
    VeskaInp v;
    v.input_kind = 0;
    EXPECT_EXIT((dup2(2, 1), v.read_crystal_strcuture_files(false, false)), testing::ExitedWithCode(255),
                "^\nERROR  transport : fileio : line [0-9]+ : \nNo input molecule data is available. \\(0\\)\n$");
    v.input_kind = 1;
    v.nmols = 2;
    v.mol_files = {"a.mol"};
    EXPECT_EXIT((dup2(2, 1), v.read_crystal_strcuture_files(false, false)), testing::ExitedWithCode(255),
                "2 molecules are expected but 1 MOL file names");
    put_file("notadir", "x");
    VeskaInp w;
    EXPECT_EXIT(read_two_molecules(w, "notadir"), testing::ExitedWithCode(255),
                "Failed to open output file notadir/mol1_bonds.dat\n");
    VeskaInp e;  // MOL input without molecules: the bond directory is still made
    e.set_varables_default();
    e.input_kind = 1;
    e.data_dir = "bonds";
    e.read_crystal_strcuture_files(false, true);
    EXPECT_TRUE(fs::is_directory("bonds"));
}

// The shared crystals; cells whose images all bond into one molecule
// (carbon in a 0.5 Å cell, and an unknown element, which bonds to everything
// in the separation); coordinates in every form a file may hold; and images
// within a hair of the overlap limit.
TEST(StructurePipeline, CrystalsHostileCellsNumbersAndNearOverlapsAsThePlainScans)
{
    int natoms, nmols;
    for (const auto& e : std::filesystem::directory_iterator(VESKA_TEST_DATA_DIR))
        if (e.path().extension() == ".cif") read_pipeline(e.path().string(), &natoms, &nmols);
    ScratchDir dir;
    ASSERT_TRUE(dir.ok());
    for (const auto& [symbol, edge, side] : {std::tuple{"C", 0.5, 10}, {"Q", 4.0, 4}}) {
        put_file("hostile.cif", hostile_cif(symbol, edge, side));
        read_pipeline("hostile.cif", &natoms, &nmols);
        EXPECT_EQ(natoms * 10 + nmols, side * side * side * side * 10 + 1) << symbol << edge;
    }

    std::vector<std::string> numbers = {"-.5", "1.", "0.5(3)", "7E-1", "+0.25", "0x1p-2", "1e400",
                                        "4e-320", "-0", "12345678901234567890.5", "9007199254740993"};
    std::mt19937 rng(3);
    for (int i = 0; i < 300; i++)  // up to 22 digits, some negative, some with exponents
        numbers.push_back(format_string(rng() % 4 ? "%.*f" : "-%.*fe-%d", (int)(rng() % 12),
                                        (rng() % 100000) * std::pow(10.0, (int)(rng() % 11) - 5),
                                        (int)(rng() % 30)));
    std::string rows;  // 1.1e-3 (2.2 Å) apart along b: no two coincide or bond
    for (size_t i = 0; i < numbers.size(); i++)
        rows += format_string("C%zu C %s %.4f 0.5\n", i, numbers[i].c_str(), 0.0011 * i);
    put_file("numbers.cif", cubic_cif(2000.0, "x,y,z", rows));
    read_pipeline("numbers.cif", &natoms, &nmols);
    ASSERT_EQ(natoms, (int)numbers.size());
    FileIO f;  // each atom its own image, x + 0 wrapped once: as strtod reads it
    testing::internal::CaptureStdout();
    f.read_data_cif("numbers.cif", false);
    testing::internal::GetCapturedStdout();
    for (int i = 0; i < natoms; i++) {
        double x = strtod(numbers[i].c_str(), nullptr) + 0.0;
        ASSERT_TRUE(same_bits(f.cif_x_s[3 * i], x < 0 ? x + 1 : (x >= 1 ? x - 1 : x))) << numbers[i];
    }

    // Many images within a hair of the limit, on the faces, and (x+y+z) left
    // outside [0, 1) by the single wrap.
    std::uniform_int_distribution<int> grid(0, 7);
    std::uniform_real_distribution<double> jitter(-6e-4, 6e-4);
    rows.clear();
    for (int i = 0; i < 300; i++) {
        double x[3];
        for (int k = 0; k < 3; k++) x[k] = grid(rng) / 8.0 + (i % 3 ? jitter(rng) : 0.0);
        rows += format_string("C%d C %.17g %.17g %.17g\n", i, x[0], x[1], x[2]);
    }
    put_file("jitter.cif", cubic_cif(20.0, "x,y,z\n-x,-y,-z\n-x+1/2,y+1/2,-z+1/2\nx+1/2,-y+1/2,z+1/2\n"
                                           "x+y+z,y,-z", rows));
    read_pipeline("jitter.cif", &natoms, &nmols);
    EXPECT_LT(natoms, 1500);
}

// Branched random chains of up to 1,200 atoms winding through small cells
// or alone in a large one, their atoms slightly out of order; and with an
// atom that bonds to none, making whole stops where the plain search stops.
TEST(MakeWhole, LargeRandomMoleculesAsThePlainSearch)
{
    double cases[][7] = {{12, 12, 12, 90, 90, 90, 1200}, {9, 11, 14, 100, 110, 95, 800},
                         {30, 30, 8, 90, 90, 120, 400},  {6, 6, 40, 80, 90, 90, 600},
                         {70, 60, 80, 90, 95, 90, 500}};
    std::mt19937 rng(15);
    std::normal_distribution<double> g(0.0, 1.0);
    for (auto& c : cases) {
        FileIO f;
        double latt[3][3];
        f.cell_cell6_to_latt3x3(c, latt);
        const int natoms = (int)c[6];
        std::vector<double> cart(3, 0.0), x(3 * natoms);
        std::vector<int> types(natoms, 6);
        for (int i = 1; i < natoms; i++) {
            int from = i - 1 - (int)(rng() % std::min(i, 4));
            double d[3] = {g(rng), g(rng), g(rng)}, r = std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
            for (int k = 0; k < 3; k++) cart.push_back(cart[3 * from + k] + 1.3 * d[k] / r);
            types[i] = i % 5 ? 6 : 8;  // an oxygen every fifth atom
            if (i % 7 == 3) {          // out of order
                std::swap_ranges(cart.end() - 6, cart.end() - 3, cart.end() - 3);
                std::swap(types[i - 1], types[i]);
            }
        }
        for (int i = 0; i < natoms; i++) {
            f.coord_c2f(&cart[3 * i], &x[3 * i]);
            for (int k = 0; k < 3; k++) x[3 * i + k] -= std::floor(x[3 * i + k]);
        }
        std::vector<double> plain = x;
        f.plain_scans = true;
        f.make_whole_molecule(1, natoms, types.data(), plain.data(), false);
        f.plain_scans = false;
        f.make_whole_molecule(1, natoms, types.data(), x.data(), false);
        for (size_t k = 0; k < x.size(); k++) ASSERT_EQ(x[k], plain[k]) << natoms << " " << k;

        x[3 * natoms - 3] = NAN;  // the last atom placed bonds to none: both stop one short
        for (bool p : {true, false}) {
            f.plain_scans = p;
            EXPECT_EXIT((dup2(2, 1), f.make_whole_molecule(1, natoms, types.data(), x.data(), false)),
                        testing::ExitedWithCode(1), format_string("nat_bonded = %d, natoms = %d\n", natoms - 1, natoms));
        }
    }
}
