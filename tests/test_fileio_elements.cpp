#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "fileio.h"

TEST(FileioElements, TableShapeAndSpotValues)
{
    EXPECT_STREQ(element_table[0].symbol, "  ");
    EXPECT_EQ(element_table[0].radius, 180);
    EXPECT_STREQ(element_table[6].symbol, "C ");
    EXPECT_DOUBLE_EQ(element_table[6].mass, 12.011);
    EXPECT_STREQ(element_table[26].symbol, "Fe");
    EXPECT_DOUBLE_EQ(element_radius_nw[26], 1.165);
    EXPECT_STREQ(element_table[103].symbol, "Lr");
    EXPECT_DOUBLE_EQ(element_table[103].mass, 260);
    EXPECT_EQ(element_table[103].radius, 210);
    EXPECT_DOUBLE_EQ(element_radius_nw[0], 99999.99);
    EXPECT_DOUBLE_EQ(element_radius_nw[103], 1.34);
    EXPECT_DOUBLE_EQ(element_radius_nw[104], 1.3);
    EXPECT_DOUBLE_EQ(element_radius_nw[105], 1.3);
    // Every symbol is upper case then lower case or blank, and unique.
    for (int i = 1; i < 104; i++) {
        const char* s = element_table[i].symbol;
        EXPECT_TRUE(isupper((unsigned char)s[0])) << i;
        EXPECT_TRUE(s[1] == ' ' || islower((unsigned char)s[1])) << i;
        EXPECT_EQ(s[2], '\0');
        for (int j = 0; j < i; j++) EXPECT_STRNE(s, element_table[j].symbol) << i << " " << j;
    }
    // Masses grow with the element number except for the known inversions.
    // (K, Ni, I, Pa, Np, Am), a cheap guard against a shifted row.
    std::vector<int> inversions;
    for (int i = 2; i < 104; i++)
        if (element_table[i].mass < element_table[i - 1].mass) inversions.push_back(i);
    EXPECT_EQ(inversions, (std::vector<int>{19, 28, 53, 91, 93, 95}));
}

TEST(FileioElements, SymbolMatch)
{
    FileIO f;
    EXPECT_EQ(f.find_element_index_from_name("cl"), 17);
    EXPECT_EQ(f.find_element_index_from_name("CL"), 17);
    EXPECT_EQ(f.find_element_index_from_name("Cl"), 17);
    EXPECT_EQ(f.find_element_index_from_name("C"), 6);
    EXPECT_EQ(f.find_element_index_from_name("c"), 6);
    EXPECT_EQ(f.find_element_index_from_name("Ca2+"), 20);
    EXPECT_EQ(f.find_element_index_from_name("C1"), -1);
    EXPECT_EQ(f.find_element_index_from_name("Xx"), -1);
    EXPECT_EQ(f.find_element_index_from_name(" "), 0);
    EXPECT_EQ(f.find_element_index_from_name(""), -1);
    EXPECT_DOUBLE_EQ(f.find_element_radius_from_name("Xx"), 9999.99);
    EXPECT_DOUBLE_EQ(f.find_element_radius_from_name("s"), 1.04);
}

TEST(FileioElements, NamesMassesRadii)
{
    FileIO f;
    char out[8];
    std::memset(out, 'z', sizeof out);
    const struct {
        int index;
        const char* name;
    } by_index[] = {{6, "C"}, {17, "Cl"}, {1, "H"}, {103, "Lr"}};
    for (auto& c : by_index) {
        f.find_element_name_from_index(c.index, out);
        EXPECT_STREQ(out, c.name);
    }
    // A one-letter symbol writes two bytes only (callers pass char[2]).
    std::memset(out, 'z', sizeof out);
    f.find_element_name_from_index(7, out);
    EXPECT_EQ(std::string(out, 3), std::string("N\0z", 3));
    // The blank of one-letter symbols is kept; nothing near 0.05 or 500.
    const struct {
        double mass;
        const char* name;
    } by_mass[] = {{12.0, "C "}, {0.05, "A "}, {35.45, "Cl"}, {500.0, "A "}, {1.1, "H "}};
    for (auto& c : by_mass) {
        f.find_element_name_from_mass(c.mass, out);
        EXPECT_STREQ(out, c.name) << c.mass;
    }
    EXPECT_DOUBLE_EQ(f.find_element_mass_from_index(1), 1.00794);
    EXPECT_DOUBLE_EQ(f.find_element_radius_from_index(6), 0.72);
    EXPECT_DOUBLE_EQ(f.find_element_radius_from_index(0), 0.72);
    EXPECT_DOUBLE_EQ(f.find_element_radius_from_index_nw(6), 0.77);
}

TEST(FileioCell, CubicCell)
{
    FileIO f;
    double cell[6] = {10, 10, 10, 90, 90, 90};
    double latt[3][3];
    f.cell_cell6_to_latt3x3(cell, latt);
    for (int r = 0; r < 3; r++)
        for (int c = 0; c < 3; c++) {
            EXPECT_NEAR(latt[r][c], r == c ? 10.0 : 0.0, 1e-12);
            EXPECT_NEAR(f.latt3x3[r][c], r == c ? 10.0 : 0.0, 1e-12);
            EXPECT_NEAR(f.latt3x3_inv[r][c], r == c ? 0.1 : 0.0, 1e-12);
        }
    double x = 0.5, y = 0.5, z = 0.5;
    f.coord_f2c(x, y, z);
    EXPECT_NEAR(x, 5, 1e-12);
    EXPECT_NEAR(y, 5, 1e-12);
    EXPECT_NEAR(z, 5, 1e-12);
    f.coord_c2f(x, y, z);
    EXPECT_NEAR(x, 0.5, 1e-12);
}

TEST(FileioCell, TriclinicRoundTripAndVectors)
{
    FileIO f;
    double abc[3] = {7.9, 6.0, 11.1};
    f.set_cell_lattice(abc, 101.9, 112.6, 85.8);
    EXPECT_DOUBLE_EQ(f.get_cell_latt()[4], 112.6);
    double latt[3][3];
    f.cell_cell6_to_latt3x3(f.cell_latt, latt);
    // Column lengths are a, b, c; the angle between columns b and c is alpha.
    double a[3], b[3], c[3];
    f.get_cif_lattice_vectors(a, b, c);
    auto norm = [](const double* v) { return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]); };
    auto dot = [](const double* u, const double* v) { return u[0] * v[0] + u[1] * v[1] + u[2] * v[2]; };
    EXPECT_NEAR(norm(a), 7.9, 1e-10);
    EXPECT_NEAR(norm(b), 6.0, 1e-10);
    EXPECT_NEAR(norm(c), 11.1, 1e-10);
    EXPECT_NEAR(std::acos(dot(b, c) / (6.0 * 11.1)) * 180 / M_PI, 101.9, 1e-9);
    EXPECT_NEAR(std::acos(dot(a, c) / (7.9 * 11.1)) * 180 / M_PI, 112.6, 1e-9);
    EXPECT_NEAR(std::acos(dot(a, b) / (7.9 * 6.0)) * 180 / M_PI, 85.8, 1e-9);
    EXPECT_EQ(a[1], 0.0);
    EXPECT_EQ(a[2], 0.0);
    EXPECT_EQ(b[2], 0.0);
    // Inverse times matrix is the identity.
    for (int r = 0; r < 3; r++)
        for (int cc = 0; cc < 3; cc++) {
            double s = 0;
            for (int k = 0; k < 3; k++) s += f.latt3x3_inv[r][k] * f.latt3x3[k][cc];
            EXPECT_NEAR(s, r == cc ? 1.0 : 0.0, 1e-12);
        }
    double in[3] = {0.2, -0.3, 0.7}, out[3];
    f.coord_f2c(in, out);
    f.coord_c2f(out, out);  // same vector in and out
    for (int k = 0; k < 3; k++) EXPECT_NEAR(out[k], in[k], 1e-12);
}

TEST(FileioCell, PeriodicWraps)
{
    FileIO f;
    double s[3] = {-0.2, 1.0, -1.2};
    f.PBC_scaled_x_wrap(s);
    EXPECT_NEAR(s[0], 0.8, 1e-15);
    EXPECT_EQ(s[1], 0.0);
    EXPECT_NEAR(s[2], -0.2, 1e-15);
    double d[3] = {0.7, -0.5, 0.5};
    f.PBC_scaled_disp_wrap(d);
    EXPECT_NEAR(d[0], -0.3, 1e-15);
    EXPECT_EQ(d[1], -0.5);
    EXPECT_EQ(d[2], 0.5);
    double e[3] = {1.7, -1.7, 0.0};
    f.PBC_scaled_disp_wrap(e);
    EXPECT_NEAR(e[0], 0.7, 1e-15);
    EXPECT_NEAR(e[1], -0.7, 1e-15);
}

TEST(FileioDefaults, OrcaOutputBlock)
{
    FileIO f;
    EXPECT_EQ(f.orca_output_block,
              "%output\n  PrintLevel=Normal\n  Print[ P_Basis       ] 2\n"
              "  Print[ P_Overlap     ] 1\n  Print[ P_OrbEn       ] 1\n"
              "  Print[ P_MOs         ] 1\nend\n");
}
