#ifndef VESKA_BOND_SEARCH_H
#define VESKA_BOND_SEARCH_H

// Pieces shared by the bond searches of the separation and of making a
// molecule whole: the periodic distance they have always used, a cheap
// bound that skips distances out of a grid's reach, the min-heap of
// candidate atoms and the cell list for a set of radii.

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "fileio.h"
#include "periodic_grid.h"

// Minimum image of one fractional component by repeated steps of 1, as the
// bond searches have always done; absurd values get the closed form with
// the same result range so that a hostile file cannot stall the loop. Odd
// in d (min_image(-d) == -min_image(d)), so every bond test is symmetric.
static inline double min_image(double d)
{
    if (d >= -0.5 && d <= 0.5) return d;
    if (!std::isfinite(d)) return d;
    if (d > 64.0) return d - std::ceil(d - 0.5);
    if (d < -64.0) return d + std::ceil(-d - 0.5);
    while (d > 0.5) d -= 1.0;
    while (d < -0.5) d += 1.0;
    return d;
}

// |latt d| in ångström for a fractional difference d.
static inline double cell_norm(const double latt[3][3], const double* d)
{
    double s = 0.0;
    for (int r = 0; r < 3; r++) {
        double v = latt[r][0] * d[0] + latt[r][1] * d[1] + latt[r][2] * d[2];
        s += v * v;
    }
    return std::sqrt(s);
}

// d := x_m - x_i, optionally brought to the minimum image; false as soon as
// a component exceeds the grid's reach: such a pair is farther apart than
// any bond the grid was planned for, and the distance need not be formed.
static inline bool within_reach(const double* xi, const double* xm, bool wrap,
                                const double reach[3], double* d)
{
    bool near = true;
    for (int k = 0; k < 3; k++) {
        d[k] = xm[k] - xi[k];
        if (wrap) d[k] = min_image(d[k]);
        near &= std::fabs(d[k]) <= reach[k];  // one branch for the three
    }
    return near;
}

// A reach that bounds nothing: every pair gets its distance formed.
static const double kAnyReach[3] = {HUGE_VAL, HUGE_VAL, HUGE_VAL};

// The plain search step of both searches: the first available atom, in
// index order, that `bonded(m, i, &dist)` joins to a member m (members in
// joining order); with no member yet, the first available atom. Atom and
// partner stay -1 when none is found.
template <class Bonded>
void first_bonded_atom(int natoms, const int* avail, int n_in_mol, const int* mol_atoms, int* atom,
                       int* partner, double* dist, Bonded bonded)
{
    *atom = -1;
    *partner = -1;
    *dist = 9999.99;
    for (int i = 0; i < natoms; i++) {
        if (!avail[i]) continue;
        if (n_in_mol == 0) {
            *atom = i;
            *partner = 0;
            *dist = 0.0;
            return;
        }
        for (int k = 0; k < n_in_mol; k++) {
            int m = mol_atoms[k];
            double r;
            if (m != i && bonded(m, i, &r)) {
                *atom = i;
                *partner = m;
                *dist = r;
                return;
            }
        }
    }
}

// A cell list for bonds between radii up to the largest of `radii` (all
// pairs at once when a radius is absurd).
inline void build_bond_grid(const FileIO& f, const double* x_s, const double* radii, int n,
                            PeriodicGrid& grid)
{
    double rmax = 0.0;
    for (int i = 0; i < n; i++)
        rmax = std::max(rmax, std::fabs(radii[i]) < 1e6 ? std::fabs(radii[i]) : HUGE_VAL);
    grid.plan_for_cutoff(f.latt3x3_inv, 2.0 * rmax * std::fabs(f.bond_dis_scale), x_s, n);
    grid.build(x_s, n);
}

// Smallest entry on top.
inline void heap_push(std::vector<int>& heap, int v)
{
    heap.push_back(v);
    std::push_heap(heap.begin(), heap.end(), std::greater<int>());
}

inline int heap_pop(std::vector<int>& heap)
{
    std::pop_heap(heap.begin(), heap.end(), std::greater<int>());
    int v = heap.back();
    heap.pop_back();
    return v;
}

#endif
