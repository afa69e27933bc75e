#ifndef VESKA_FILEIO_TEST_CELL_H
#define VESKA_FILEIO_TEST_CELL_H

// Test cells, and the plain scans of the structure stage that the faster
// searches must match bit for bit.

#include <string>
#include <vector>

#include "fileio.h"

// Replaces the cell atoms by carbon atoms at the given fractional
// positions, all with the given separation radius.
inline void load_test_cell(FileIO& f, const std::vector<double>& xs, double radius)
{
    int n = (int)xs.size() / 3;
    f.free_cif_atom_arrays();
    f.natoms_cif = n;
    f.cif_atypes = new int[n];
    f.cif_radius = new double[n];
    f.cif_x_s = new double[3 * n];
    f.cif_x = new double[3 * n]();
    for (int i = 0; i < n; i++) {
        f.cif_atypes[i] = 6;
        f.cif_radius[i] = radius;
    }
    for (int k = 0; k < 3 * n; k++) f.cif_x_s[k] = xs[k];
}

// The images of the atoms under each operator in turn, wrapped once, with
// every image that coincides with an unflagged earlier one dropped by the
// plain pairwise scan.
inline std::vector<double> plain_p1_cell(const std::vector<std::string>& ops,
                                         const std::vector<double>& xs)
{
    std::vector<double> img, kept;
    for (const std::string& op : ops) {
        double R[3][3] = {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}, t[3] = {0, 0, 0};
        FileIO().ParseTransformString(op, R, t);
        for (size_t i = 0; i < xs.size(); i += 3)
            for (int r = 0; r < 3; r++) {
                double v = R[r][0] * xs[i] + R[r][1] * xs[i + 1] + R[r][2] * xs[i + 2] + t[r];
                img.push_back(v < 0 ? v + 1 : (v >= 1 ? v - 1 : v));
            }
    }
    const size_t n = img.size() / 3;
    std::vector<char> flag(n, 0);
    for (size_t a = 0; a < n; a++) {
        if (flag[a]) continue;
        kept.insert(kept.end(), img.begin() + 3 * a, img.begin() + 3 * a + 3);
        for (size_t b = a + 1; b < n; b++) {
            double s = 0;
            for (int k = 0; k < 3; k++) {
                double d = img[3 * b + k] - img[3 * a + k];
                d = d > 0.5 ? d - 1 : (d < -0.5 ? d + 1 : d);
                s += d * d;
            }
            if (!flag[b] && s < 1e-6) flag[b] = 1;
        }
    }
    return kept;
}

// find_bond_atom repeated over the cell: molecule sizes and atoms in order.
inline void plain_molecules(FileIO& f, std::vector<int>& counts, std::vector<int>& order)
{
    const int n = f.natoms_cif;
    std::vector<int> avail(n, 1), members(n);
    counts.clear();
    order.clear();
    for (int in_mol = 0;;) {
        int atom, partner;
        double dist;
        f.find_bond_atom(n, avail.data(), in_mol, members.data(), &atom, &partner, &dist);
        if (atom >= 0) {
            avail[atom] = 0;
            members[in_mol++] = atom;
            continue;
        }
        if (in_mol == 0) return;
        counts.push_back(in_mol);
        order.insert(order.end(), members.begin(), members.begin() + in_mol);
        in_mol = 0;
    }
}

// find_bond_atom_one repeated from atom 0, then the mass-weighted centre
// (the plain mean for massless atoms) brought into the cell one step per
// component; returns how many joined.
inline int plain_whole(FileIO& f, int n, const int* types, double* x)
{
    std::vector<double> radii(n);
    for (int i = 0; i < n; i++) radii[i] = f.find_element_radius_from_index(types[i] < 0 ? 0 : types[i]);
    std::vector<int> avail(n, 1), members(n, 0);
    avail[0] = 0;
    int joined = 1;
    while (joined < n) {
        int atom, partner;
        double dist;
        f.find_bond_atom_one(n, x, radii.data(), avail.data(), joined, members.data(), &atom,
                             &partner, &dist);
        if (atom < 0 || !((radii[partner] + radii[atom]) * f.bond_dis_scale >= dist)) return joined;
        avail[atom] = 0;
        members[joined++] = atom;
    }
    double c[3] = {0, 0, 0}, mean[3] = {0, 0, 0}, total = 0;
    for (int i = 0; i < n; i++) {
        double w = element_table[types[i] < 0 ? 0 : types[i]].mass;
        total += w;
        for (int k = 0; k < 3; k++) c[k] += w * x[3 * i + k], mean[k] += x[3 * i + k];
    }
    for (int k = 0; k < 3; k++) {
        c[k] = total > 0 ? c[k] / total : mean[k] / n;
        double shift = c[k] < -5.96046448e-08 ? 1.0 : (c[k] > 1.0000000596046448 ? -1.0 : 0.0);
        if (shift != 0.0)
            for (int i = 0; i < n; i++) x[3 * i + k] += shift;
    }
    return joined;
}

#endif
