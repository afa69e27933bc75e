#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "fileio.h"

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
    EXPECT_DOUBLE_EQ(f.find_element_radius_from_name("Xx"), 9999.99);
    EXPECT_DOUBLE_EQ(f.find_element_radius_from_name("s"), 1.04);
    EXPECT_DOUBLE_EQ(f.find_element_radius_from_index(0), 0.72);
    EXPECT_DOUBLE_EQ(f.find_element_radius_from_index_nw(6), 0.77);

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
    auto angle = [&](const double* u, const double* v) {
        return std::acos(dot(u, v) / std::sqrt(dot(u, u) * dot(v, v))) * 180 / M_PI;
    };
    EXPECT_NEAR(std::sqrt(dot(a, a)), 7.9, 1e-10);
    EXPECT_NEAR(std::sqrt(dot(b, b)), 6.0, 1e-10);
    EXPECT_NEAR(std::sqrt(dot(c, c)), 11.1, 1e-10);
    EXPECT_NEAR(angle(b, c), 101.9, 1e-9);
    EXPECT_NEAR(angle(a, c), 112.6, 1e-9);
    EXPECT_NEAR(angle(a, b), 85.8, 1e-9);
    EXPECT_EQ(std::vector<double>({a[1], a[2], b[2]}), std::vector<double>(3, 0.0));
    double in[3] = {0.2, -0.3, 0.7}, out[3];
    f.coord_f2c(in, out);
    f.coord_c2f(out, out);  // same vector in and out
    for (int k = 0; k < 3; k++) EXPECT_NEAR(out[k], in[k], 1e-12);
    double x = 0.2, y = -0.3, z = 0.7;
    f.coord_f2c(x, y, z);
    EXPECT_NEAR(x, latt[0][0] * 0.2 - latt[0][1] * 0.3 + latt[0][2] * 0.7, 1e-12);  // columns a, b, c
    f.coord_c2f(x, y, z);
    EXPECT_NEAR(y, -0.3, 1e-12);

    // Positions wrap once into [0, 1); displacements to the nearest image.
    double s[3] = {-0.2, 1.0, -1.2}, d[3] = {0.7, -0.5, 0.5}, e[3] = {1.7, -1.7, 0.0};
    f.PBC_scaled_x_wrap(s);
    f.PBC_scaled_disp_wrap(d);
    f.PBC_scaled_disp_wrap(e);
    const double want[9] = {0.8, 0.0, -0.2, -0.3, -0.5, 0.5, 0.7, -0.7, 0.0};
    for (int k = 0; k < 3; k++) {
        EXPECT_NEAR(s[k], want[k], 1e-15) << k;
        EXPECT_NEAR(d[k], want[3 + k], 1e-15) << k;
        EXPECT_NEAR(e[k], want[6 + k], 1e-15) << k;
    }
}
