#ifndef VESKA_PERIODIC_GRID_H
#define VESKA_PERIODIC_GRID_H

#include <cmath>
#include <vector>

// std::floor, without the library's slow path for the magnitudes a grid
// sees.
inline double floor_of(double v)
{
    if (v > -1e15 && v < 1e15) {
        double t = (double)(long long)v;
        return t > v ? t - 1.0 : t;
    }
    return std::floor(v);
}

// A cell list over fractional positions taken modulo 1, shared by the pair
// searches of the structure stage: overlap removal, the separation's bonds
// and making a molecule whole. The grid only proposes candidates; callers
// apply their own exact test to every pair, so results stay identical to a
// plain pairwise scan as long as every pair passing that test lies in the
// same or adjacent cells. Positions can be taken out once they are dealt
// with, so that a search that claims atoms never looks at them again.
//
// Along each axis the cells either tile the whole period, or only the arc
// that holds every position when the positions leave a gap wider than the
// cut-off (a molecule in a large cell): then the cells stay about as wide
// as the cut-off however large the cell is.
struct PeriodicGrid {
    // Where a cell's positions start in items, and how many are still
    // there (side by side: a search reads both).
    struct CellRange {
        int first, count;
    };

    int g[3] = {1, 1, 1};                   // cells per axis
    bool periodic[3] = {true, true, true};  // the cells tile the whole period
    double origin[3] = {0, 0, 0};           // otherwise: start of the covered arc
    double span[3] = {1, 1, 1};             // and its length
    double scale[3] = {1, 1, 1};            // cells per unit along the arc
    // Per axis, the largest fractional component of a pair closer than the
    // cut-off; infinite when the grid was not planned for one.
    double reach[3] = {1e300, 1e300, 1e300};
    std::vector<CellRange> cells;  // one per cell
    std::vector<int> items;        // position numbers grouped by cell
    std::vector<int> cell_of;      // cell of each position
    std::vector<int> slot;         // where each position sits in items
    std::vector<int> found;        // room for the positions one gathering lists

    // Cells for pairs closer than `cutoff` Å, for a cell whose inverse
    // lattice matrix is `inv`: no cell narrower than the cut-off along its
    // axis (with a margin for rounding), and a few cells per position at
    // most. One cell (all pairs) for a handful of positions, and when the
    // cut-off or the coordinates make the bound meaningless.
    void plan_for_cutoff(const double inv[3][3], double cutoff, const double* x_s, int n);
    // The whole period in about one cell per position, at most 64 per axis,
    // for a search within a small fractional tolerance.
    void plan_for_count(int n);
    // Bins the positions into the planned cells.
    void build(const double* x_s, int n);

    int axis_cell(int k, double v) const;
    int cell_at(const double* p) const;
    // The distinct cells next to index c along axis k, itself included.
    int axis_neighbours(int k, int c, int out[3]) const;
    // Takes position i out of its cell.
    void remove(int i);
    // Lists at the start of `found` the positions still present in the
    // cells around the point p; returns how many.
    int gather_near(const double* p);
    // Calls f(j) for each position j still present in the cells around the
    // point p; when f returns true, j is taken out.
    template <class F>
    void claim_near(const double* p, F f);

private:
    void fit_arcs(const double* x_s, int n, const double h[3]);
    void limit_cells(int n);
};

template <class F>
void PeriodicGrid::claim_near(const double* p, F f)
{
    const int n = gather_near(p);
    for (int q = 0; q < n; q++)
        if (f(found[q])) remove(found[q]);
}

#endif
