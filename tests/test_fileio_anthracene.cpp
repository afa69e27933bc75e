// The structure chain on a real crystal: the asymmetric unit of anthracene
// (CSD ANTCEN24, tests/data/anthracene_antcen24.cif, P2_1/c) expanded, separated
// and made whole, against the independent figures of reference.json.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "fileio.h"
#include "fileio_test_cell.h"

TEST(StructureChain, AnthraceneCell)
{
    struct Site {
        const char* symbol;
        double x, y, z;
    } sites[] = {
        {"C", 0.58950, 0.36625, 0.62036}, {"C", 0.68314, 0.2371, 0.74332},
        {"H", 0.6486, 0.094, 0.7692},     {"C", 0.81698, 0.3147, 0.82163},
        {"H", 0.8792, 0.222, 0.903},      {"C", 0.86753, 0.5265, 0.78125},
        {"H", 0.9696, 0.579, 0.8432},     {"C", 0.78184, 0.6554, 0.66477},
        {"H", 0.8154, 0.807, 0.6335},     {"C", 0.63965, 0.5817, 0.58077},
        {"C", 0.54864, 0.71035, 0.46170}, {"H", 0.5853, 0.856, 0.4363},
    };
    FileIO f;
    double cell[6] = {9.3056, 5.9879, 8.4252, 90, 102.620, 90};
    double latt[3][3];
    f.cell_cell6_to_latt3x3(cell, latt);
    f.symm_ops = {"x,y,z", "-x,1/2+y,1/2-z", "-x,-y,-z", "x,1/2-y,1/2+z"};
    std::vector<double> xs;
    for (auto& site : sites) xs.insert(xs.end(), {site.x, site.y, site.z});
    load_test_cell(f, xs, 0.0);
    for (int i = 0; i < f.natoms_cif; i++) {
        f.cif_atypes[i] = f.find_element_index_from_name(sites[i].symbol);
        f.cif_radius[i] = f.find_element_radius_from_name(sites[i].symbol);
    }
    testing::internal::CaptureStdout();
    f.make_spacegroup_P1(3);
    f.separate_cif_molecules(true);
    std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(out, "  Unit cell nmols  = 2\n  Unit cell natoms = 24 24\n");
    ASSERT_EQ(f.natoms_cif, 48);
    ASSERT_EQ(f.mol_natoms_list, (std::vector<int>{24, 24}));

    // Each molecule made whole has the reference mass and centre (modulo 1).
    const double com_ref[2][3] = {{0.5, 0.5, 0.5}, {0.5, 0.0, 0.0}};
    size_t next = 0;
    for (int m = 0; m < 2; m++) {
        std::vector<int> types;
        std::vector<double> xs;
        for (int k = 0; k < 24; k++) {
            int a = f.mol_atom_list[next++];
            types.push_back(f.cif_atypes[a]);
            xs.insert(xs.end(), f.cif_x_s + 3 * a, f.cif_x_s + 3 * a + 3);
        }
        f.make_whole_molecule(m + 1, 24, types.data(), xs.data(), false);
        double mass = 0, c[3] = {0, 0, 0};
        for (int k = 0; k < 24; k++) {
            double w = f.find_element_mass_from_index(types[k]);
            mass += w;
            for (int d = 0; d < 3; d++) c[d] += w * xs[3 * k + d];
        }
        EXPECT_NEAR(mass, 178.2334, 1e-3);
        // Whole: without periodic images every atom has a bonded neighbour.
        for (int k = 0; k < 24; k++) {
            double nearest = 1e9, a[3], b[3];
            f.coord_f2c(&xs[3 * k], a);
            for (int l = 0; l < 24; l++) {
                if (l == k) continue;
                f.coord_f2c(&xs[3 * l], b);
                nearest = std::min(nearest, std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]));
            }
            EXPECT_LT(nearest, 1.6) << m << " " << k;
        }
        // Which reference molecule comes first is the cell's own order.
        bool matched = false;
        for (auto& ref : com_ref) {
            bool same = true;
            for (int d = 0; d < 3; d++) {
                double diff = c[d] / mass - ref[d];
                same = same && std::fabs(diff - std::round(diff)) < 1e-4;
            }
            matched = matched || same;
        }
        EXPECT_TRUE(matched) << m;
    }
}
