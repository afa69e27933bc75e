#ifndef VESKA_FILEIO_TEST_CELL_H
#define VESKA_FILEIO_TEST_CELL_H

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

#endif
