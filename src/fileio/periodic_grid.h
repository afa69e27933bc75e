#ifndef VESKA_PERIODIC_GRID_H
#define VESKA_PERIODIC_GRID_H

#include <vector>

// Bins fractional positions into a periodic grid of g[0] x g[1] x g[2]
// cells (positions taken modulo 1), so that a search for close pairs only
// visits neighbouring cells. The grid only proposes candidates: callers
// still apply their own exact test to every pair, which keeps the results
// identical to a plain pairwise scan as long as every pair passing that
// test lies in the same or adjacent cells.
struct PeriodicGrid {
    int g[3] = {1, 1, 1};
    std::vector<int> cell_of;  // cell of each position
    std::vector<int> start;    // offsets into items, one per cell plus one
    std::vector<int> items;    // position numbers, ascending within a cell

    // cells[k] is the number of cells along axis k (at least 1).
    void build(const double* x_s, int n, const int cells[3]);
    // The distinct cells around cell c (itself included); returns how many.
    int neighbour_cells(int c, int out[27]) const;
};

#endif
