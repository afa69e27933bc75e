#ifndef VESKA_BENCH_STRUCTURE_CASES_H
#define VESKA_BENCH_STRUCTURE_CASES_H

// Cells generated for the structure benchmarks: flat carbon flakes that
// straddle the cell faces, and the two hostile cells of 100 operators x 100
// atoms whose 10,000 images all bond into one molecule.

#include <cmath>
#include <cstdio>
#include <fstream>
#include <random>
#include <string>
#include <vector>

struct GeneratedCell {
    double cell[6] = {10, 10, 10, 90, 90, 90};
    std::vector<std::string> ops{"x,y,z"};
    std::vector<std::string> symbols;
    std::vector<double> xs;  // fractional, three per atom

    void add(const std::string& symbol, double x, double y, double z)
    {
        symbols.push_back(symbol);
        xs.insert(xs.end(), {x, y, z});
    }
};

inline void write_cif(const std::string& path, const GeneratedCell& c)
{
    std::ofstream out(path);
    static const char* const tags[6] = {"length_a",    "length_b",   "length_c",
                                        "angle_alpha", "angle_beta", "angle_gamma"};
    out << "data_generated\n";
    char line[160];
    for (int k = 0; k < 6; k++) {
        snprintf(line, sizeof line, "_cell_%s %.6f\n", tags[k], c.cell[k]);
        out << line;
    }
    out << "loop_\n_symmetry_equiv_pos_as_xyz\n";
    for (const std::string& op : c.ops) out << op << "\n";
    out << "\nloop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n"
           "_atom_site_fract_y\n_atom_site_fract_z\n";
    for (size_t i = 0; i < c.symbols.size(); i++) {
        snprintf(line, sizeof line, "%s%zu %s %.6f %.6f %.6f\n", c.symbols[i].c_str(), i + 1,
                 c.symbols[i].c_str(), c.xs[3 * i], c.xs[3 * i + 1], c.xs[3 * i + 2]);
        out << line;
    }
}

// A rectangular graphene flake of 4 x nx x ny carbon atoms (1.42 Å bonds)
// in a P1 cell with 10 Å of vacuum, centred on the cell corner so that it
// straddles the faces.
inline GeneratedCell carbon_flake(int nx, int ny)
{
    const double d = 1.42, w = d * std::sqrt(3.0), h = 3.0 * d;
    GeneratedCell c;
    c.cell[0] = nx * w + 10.0;
    c.cell[1] = ny * h + 10.0;
    const double basis[4][2] = {{0, 0}, {w / 2, d / 2}, {w / 2, 1.5 * d}, {0, 2 * d}};
    for (int i = 0; i < nx; i++)
        for (int j = 0; j < ny; j++)
            for (const auto& b : basis) {
                double x = (i * w + b[0] - nx * w / 2) / c.cell[0];
                double y = (j * h + b[1] - ny * h / 2) / c.cell[1];
                c.add("C", x - std::floor(x), y - std::floor(y), 0.5);
            }
    return c;
}

// 100 atoms of `symbol` at random in a tenth of a cubic cell along a and
// b, and the 100 operators that translate them by tenths: 10,000 images.
// In a 0.5 Å cell every image bonds to every other; atoms of an unknown
// symbol bond to everything in the separation whatever the cell.
inline GeneratedCell hostile_cell(const std::string& symbol, double edge)
{
    GeneratedCell c;
    c.cell[0] = c.cell[1] = c.cell[2] = edge;
    c.ops.clear();
    for (int i = 0; i < 10; i++)
        for (int j = 0; j < 10; j++)
            c.ops.push_back(std::string("x") + (i ? "+" + std::to_string(i) + "/10" : "") + ",y" +
                            (j ? "+" + std::to_string(j) + "/10" : "") + ",z");
    std::mt19937 rng(15);
    std::uniform_real_distribution<double> tenth(0.0, 0.1), whole(0.0, 1.0);
    for (int k = 0; k < 100; k++) {
        double x = tenth(rng), y = tenth(rng);
        c.add(symbol, x, y, whole(rng));
    }
    return c;
}

#endif
