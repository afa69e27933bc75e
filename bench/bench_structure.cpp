// Symmetry expansion and molecule separation on a synthetic cubic cell:
// 48 operators (every permutation and sign change of x, y, z) applied to
// 200 atoms, 9600 images, separated into 192 molecules of 50 atoms.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>
#include <vector>

#include "fileio.h"

namespace {

std::vector<std::string> cubic_operators()
{
    std::vector<std::string> ops;
    int perm[3] = {0, 1, 2};
    const char* axis = "xyz";
    do {
        for (int signs = 0; signs < 8; signs++) {
            std::string op;
            for (int r = 0; r < 3; r++) {
                if (r) op += ",";
                if (signs & (1 << r)) op += "-";
                op += axis[perm[r]];
            }
            ops.push_back(op);
        }
    } while (std::next_permutation(perm, perm + 3));
    return ops;
}

// Four compact 5 x 5 x 2 carbon blocks (1.4 A spacing) inside the cell's
// fundamental region 0 < z < y < x < 1/2, clear of its faces, so that no
// two images bond.
std::vector<double> asymmetric_unit(double edge)
{
    const double centres[4][3] = {
        {0.43, 0.22, 0.07}, {0.42, 0.33, 0.19}, {0.27, 0.12, 0.05}, {0.32, 0.20, 0.12}};
    std::vector<double> xs;
    for (auto& c : centres)
        for (int i = 0; i < 5; i++)
            for (int j = 0; j < 5; j++)
                for (int k = 0; k < 2; k++) {
                    xs.push_back(c[0] + (i - 2) * 1.4 / edge);
                    xs.push_back(c[1] + (j - 2) * 1.4 / edge);
                    xs.push_back(c[2] + (k - 0.5) * 1.4 / edge);
                }
    return xs;
}

struct SyntheticCell {
    FileIO f;
    std::vector<double> xs;

    SyntheticCell()
    {
        const double edge = 80.0;
        double cell[6] = {edge, edge, edge, 90, 90, 90};
        double latt[3][3];
        f.cell_cell6_to_latt3x3(cell, latt);
        f.symm_ops = cubic_operators();
        xs = asymmetric_unit(edge);
    }

    void reset_atoms()
    {
        int n = (int)xs.size() / 3;
        f.free_cif_atom_arrays();
        f.natoms_cif = n;
        f.cif_atypes = new int[n];
        f.cif_radius = new double[n];
        f.cif_x = new double[3 * n]();
        f.cif_x_s = new double[3 * n];
        std::fill(f.cif_atypes, f.cif_atypes + n, 6);
        std::fill(f.cif_radius, f.cif_radius + n, element_radius_nw[6]);
        std::copy(xs.begin(), xs.end(), f.cif_x_s);
    }
};

void BM_ExpandAndSeparate(benchmark::State& state)
{
    SyntheticCell cell;
    for (auto _ : state) {
        cell.reset_atoms();
        cell.f.make_spacegroup_P1(3);
        cell.f.separate_cif_molecules(false);
        benchmark::DoNotOptimize(cell.f.mol_atom_list.data());
    }
    state.counters["images"] = cell.f.natoms_cif;
    state.counters["molecules"] = (double)cell.f.mol_natoms_list.size();
}
BENCHMARK(BM_ExpandAndSeparate)->Unit(benchmark::kMillisecond);

void BM_ExpandOnly(benchmark::State& state)
{
    SyntheticCell cell;
    for (auto _ : state) {
        cell.reset_atoms();
        cell.f.make_spacegroup_P1(3);
        benchmark::DoNotOptimize(cell.f.cif_x_s);
    }
    state.counters["images"] = cell.f.natoms_cif;
}
BENCHMARK(BM_ExpandOnly)->Unit(benchmark::kMillisecond);

}  // namespace
