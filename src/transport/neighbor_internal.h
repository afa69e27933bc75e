#ifndef VESKA_NEIGHBOR_INTERNAL_H
#define VESKA_NEIGHBOR_INTERNAL_H

// Pieces shared by the neighbour list, its output and the unique analysis;
// not part of the workspace's public face.

#include <string>

#include "transport.h"

// Builds the neighbour list. With `prefilter` a molecule pair whose centre
// distance, less both molecular radii, already reaches the cut-off skips the
// atom loop; without it every pair is scanned atom by atom. Both give the
// same list: the plain scan is the reference the fast one is checked against.
void build_neighbor_list_scan(Transport& t, bool verbose, bool prefilter);

// Ends the process with a clear message when `op` runs before the list exists.
void require_neighbor_list(Transport& t, const char* op);

// Writes a whole output file or ends the process under the error header
// with `line`: "Failed to open output file " or, when writing fails part
// way, "Failed to write output file ", then the path (in double quotes when
// `quoted`).
void write_output_file(const std::string& path, const std::string& text, int line, bool quoted);

// From the dimer eigenvalues already computed: the pair map, the unique
// pair list and its count, unique_id_map.dat and the duplicate-pair print.
void find_unique_pairs(Transport& t);

// Cell offset of molecule i's neighbour k.
inline void neighbor_cell(const Transport& t, int i, int k, int* cell)
{
    for (int d = 0; d < 3; d++) cell[d] = t.nei_cell[d][i][k];
}

// The search cells, -n to +n along each axis with x fastest and z slowest:
// start at (-n[0], -n[1], -n[2]) unless the range is empty (a negative
// count), then step until next_search_cell returns false.
inline bool search_range_empty(const int* n)
{
    return n[0] < 0 || n[1] < 0 || n[2] < 0;
}
inline bool next_search_cell(const int* n, int* cell)
{
    for (int d = 0; d < 3; d++) {
        if (++cell[d] <= n[d]) return true;
        cell[d] = -n[d];
    }
    return false;
}
inline bool is_home_cell_of(int i, int j, const int* cell)
{
    return i == j && cell[0] == 0 && cell[1] == 0 && cell[2] == 0;
}

#endif
