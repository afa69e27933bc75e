// The structure stage's searches against the plain scans, bit for bit: the
// whole pipeline on the shared crystals and on hostile cells whose images
// all bond, large random molecules made whole, and coordinates read as
// strtod reads them.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <random>

#include "fileio_test_cell.h"
#include "mmutil.h"
#include "test_support.h"

namespace {

// Bit for bit: NaNs from a coordinate out of range included.
bool same_bits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// Reads a CIF through the pipeline and, when `plain`, checks every stage
// against the plain scans: the P1 cell, the molecules, each molecule whole.
void read_pipeline(const std::string& path, bool plain, int* natoms, int* nmols)
{
    SCOPED_TRACE(path);
    FileIO f;
    testing::internal::CaptureStdout();
    f.read_data_cif(path.c_str(), false);
    testing::internal::GetCapturedStdout();
    std::vector<double> xs, cell;
    for (size_t i = 0; plain && i < f.cif_atoms.label.size() && !f.symm_ops.empty(); i++)
        for (auto v : {f.cif_atoms.fract_x[i], f.cif_atoms.fract_y[i], f.cif_atoms.fract_z[i]})
            xs.push_back(strtod(v.c_str(), nullptr));
    const int n = *natoms = f.natoms_cif;
    std::vector<int> counts, order;
    if (plain) {
        cell = plain_p1_cell(f.symm_ops, xs);
        ASSERT_EQ(3 * n, (int)cell.size());
        for (int k = 0; k < 3 * n; k++) ASSERT_TRUE(same_bits(f.cif_x_s[k], cell[k])) << k;
        f.cif_radius = new double[n + 1];
        for (int i = 0; i < n; i++)
            f.cif_radius[i] = f.cif_atypes[i] < 0 ? 9999.99 : element_radius_nw[f.cif_atypes[i]];
        plain_molecules(f, counts, order);
        ASSERT_EQ(f.mol_natoms_list, counts);
        ASSERT_EQ(f.mol_atom_list, order);
    }
    f.input_kind = 2;
    f.read_crystal_strcuture_files(false, false);
    *nmols = f.nmols;
    for (int m = 0, next = 0; plain && m < f.nmols; next += f.natoms_mol[m++]) {
        std::vector<int> types;
        std::vector<double> x;
        for (int i = next; i < next + f.natoms_mol[m]; i++) {
            types.push_back(f.cif_atypes[order[i]]);
            x.insert(x.end(), &cell[3 * order[i]], &cell[3 * order[i]] + 3);
        }
        ASSERT_EQ(plain_whole(f, f.natoms_mol[m], types.data(), x.data()), f.natoms_mol[m]);
        for (size_t k = 0; k < x.size(); k++) ASSERT_TRUE(same_bits(f.x_s_mol[m][k], x[k])) << m << " " << k;
    }
}

// A cubic cell with the given operators and atom rows.
std::string cubic_cif(double edge, const std::string& ops, const std::string& rows)
{
    return format_string("data_t\n_cell_length_a %g\n_cell_length_b %g\n_cell_length_c %g\n"
                         "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n",
                         edge, edge, edge) +
           "loop_\n_symmetry_equiv_pos_as_xyz\n" + ops + "\nloop_\n_atom_site_label\n" +
           "_atom_site_type_symbol\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n" + rows;
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

// The shared crystals; 10,000 images that all bond (an unknown element
// bonds to everything in the separation) ending as one molecule, quickly
// and in linear memory; and coordinates in every form a file may hold.
TEST(StructurePipeline, CrystalsHostileCellsAndNumbersAsThePlainScans)
{
    int natoms, nmols;
    for (const auto& e : std::filesystem::directory_iterator(VESKA_TEST_DATA_DIR))
        if (e.path().extension() == ".cif") read_pipeline(e.path().string(), true, &natoms, &nmols);
    ScratchDir dir;
    ASSERT_TRUE(dir.ok());
    const struct {
        const char* symbol;
        double edge;
        int side;
        bool plain;  // the plain scans take minutes on the third
    } cases[] = {{"C", 0.5, 10, true}, {"Q", 4.0, 4, true}, {"Q", 10.0, 10, false}};
    for (const auto& c : cases) {
        put_file("hostile.cif", hostile_cif(c.symbol, c.edge, c.side));
        read_pipeline("hostile.cif", c.plain, &natoms, &nmols);
        EXPECT_EQ(natoms * 10 + nmols, c.side * c.side * c.side * c.side * 10 + 1) << c.symbol << c.edge;
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
    read_pipeline("numbers.cif", true, &natoms, &nmols);
    EXPECT_EQ(natoms, (int)numbers.size());
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
        ASSERT_EQ(plain_whole(f, natoms, types.data(), plain.data()), natoms);
        f.make_whole_molecule(1, natoms, types.data(), x.data(), false);
        for (size_t k = 0; k < x.size(); k++) ASSERT_EQ(x[k], plain[k]) << natoms << " " << k;

        x[3 * (natoms / 2)] = NAN;  // an atom that bonds to none
        plain = x;
        std::string stop = format_string("nat_bonded = %d, natoms = %d",
                                         plain_whole(f, natoms, types.data(), plain.data()), natoms);
        EXPECT_EXIT((dup2(2, 1), f.make_whole_molecule(1, natoms, types.data(), x.data(), false)),
                    testing::ExitedWithCode(1), stop);
    }
}
