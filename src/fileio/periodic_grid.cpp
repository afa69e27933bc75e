#include "periodic_grid.h"

#include <algorithm>
#include <cmath>

// The most cells along one axis.
static const double kMaxAxisCells = 1024.0;

static double largest_coordinate(const double* x, size_t count)
{
    double m = 0.0;
    for (size_t k = 0; k < count; k++) {
        if (!std::isfinite(x[k])) return HUGE_VAL;
        m = std::max(m, std::fabs(x[k]));
    }
    return m;
}

static inline double wrapped(double v) { return v - floor_of(v); }

void PeriodicGrid::plan_for_count(int n)
{
    int gk = std::max(1, std::min(64, (int)std::cbrt((double)std::max(n, 1))));
    for (int k = 0; k < 3; k++) {
        g[k] = gk;
        reach[k] = HUGE_VAL;
        periodic[k] = true;
        origin[k] = 0.0;
        span[k] = 1.0;
    }
}

void PeriodicGrid::plan_for_cutoff(const double inv[3][3], double cutoff, const double* x_s, int n)
{
    for (int k = 0; k < 3; k++) {
        g[k] = 1;
        periodic[k] = true;
        origin[k] = 0.0;
        span[k] = 1.0;
        reach[k] = HUGE_VAL;
    }
    // Beyond a million the rounding of a fractional difference outgrows
    // the margin below.
    if (n <= 0 || !(largest_coordinate(x_s, 3 * (size_t)n) <= 1e6) || !(std::fabs(cutoff) < 1e12))
        return;
    // |f_k| <= |row k of the inverse| |L f|: the widest fractional reach of
    // a pair along each axis.
    double h[3];
    for (int k = 0; k < 3; k++) {
        const double* row = inv[k];
        h[k] = std::sqrt(row[0] * row[0] + row[1] * row[1] + row[2] * row[2]) * std::fabs(cutoff);
        h[k] = h[k] * (1.0 + 1e-6) + 1e-9;
        if (!std::isfinite(h[k])) return;
    }
    for (int k = 0; k < 3; k++) reach[k] = h[k];
    // A handful of atoms: testing them all is cheaper than binning them.
    if (n <= 32) return;
    fit_arcs(x_s, n, h);
    limit_cells(n);
}

// The widest circular run of clear bits in a non-zero 64-bit mask: its
// length, and in `after` the first set bit that follows it.
static int widest_gap(unsigned long long used, int* after)
{
    const int first = __builtin_ctzll(used);
    int prev = first, best = 0;
    *after = first;
    for (unsigned long long rest = used & (used - 1); rest; rest &= rest - 1) {
        int b = __builtin_ctzll(rest);
        if (b - prev - 1 > best) {
            best = b - prev - 1;
            *after = b;
        }
        prev = b;
    }
    if (first + 63 - prev > best) {
        best = first + 63 - prev;
        *after = first;
    }
    return best;
}

// Per axis: the shortest arc holding every position, from the widest run of
// empty bins in a 64-bin occupancy mask. An arc that leaves a gap of more
// than twice the reach gets its own cells with no wrap; otherwise the axis
// stays periodic.
void PeriodicGrid::fit_arcs(const double* x_s, int n, const double h[3])
{
    for (int k = 0; k < 3; k++) {
        unsigned long long used = 0;
        for (int i = 0; i < n; i++)
            used |= 1ull << std::min(63, (int)(wrapped(x_s[3 * (size_t)i + k]) * 64.0));
        int after;
        int gap = widest_gap(used, &after);
        double arc = (double)(64 - gap) / 64.0;
        if (gap > 0 && arc + 2.0 * h[k] < 1.0) {
            periodic[k] = false;
            origin[k] = after / 64.0;
            span[k] = arc;
            g[k] = arc >= h[k] ? (int)std::min(kMaxAxisCells, std::floor(arc / h[k])) : 1;
        } else {
            g[k] = h[k] >= 0.5 ? 1 : (int)std::min(kMaxAxisCells, std::floor(1.0 / h[k]));
        }
    }
}

// Fewer, wider cells until there are no more than a few cells per
// position (a molecular crystal fills about one cell in two at full
// resolution).
void PeriodicGrid::limit_cells(int n)
{
    const double limit = 4.0 * n + 8.0;
    double m[3] = {(double)g[0], (double)g[1], (double)g[2]};
    if (m[0] * m[1] * m[2] > limit) {
        double shrink = std::cbrt(limit / (m[0] * m[1] * m[2]));
        for (int k = 0; k < 3; k++) m[k] = std::max(1.0, std::floor(m[k] * shrink));
        while (m[0] * m[1] * m[2] > limit) *std::max_element(m, m + 3) -= 1.0;
    }
    for (int k = 0; k < 3; k++) g[k] = (int)m[k];
}

int PeriodicGrid::axis_cell(int k, double v) const
{
    if (!std::isfinite(v)) return 0;
    double u = wrapped(v);
    if (!periodic[k]) {
        u -= origin[k];
        if (u < 0.0) u += 1.0;
        // In the far half of the gap: just before the arc.
        if (u > 0.5 * (1.0 + span[k])) u -= 1.0;
    }
    double t = u * scale[k];
    int c = t < 0.0 ? 0 : (int)t;
    return c >= g[k] ? g[k] - 1 : c;
}

int PeriodicGrid::cell_at(const double* p) const
{
    return (axis_cell(0, p[0]) * g[1] + axis_cell(1, p[1])) * g[2] + axis_cell(2, p[2]);
}

int PeriodicGrid::axis_neighbours(int k, int c, int out[3]) const
{
    const int gk = g[k];
    int n = 0;
    if (!periodic[k]) {
        if (c > 0) out[n++] = c - 1;
        out[n++] = c;
        if (c + 1 < gk) out[n++] = c + 1;
    } else if (gk < 3) {  // offsets -1, 0, +1 would repeat a cell
        for (int o = 0; o < gk; o++) out[n++] = o;
    } else {
        out[n++] = c > 0 ? c - 1 : gk - 1;
        out[n++] = c;
        out[n++] = c + 1 < gk ? c + 1 : 0;
    }
    return n;
}

void PeriodicGrid::build(const double* x_s, int n)
{
    for (int k = 0; k < 3; k++) scale[k] = g[k] / span[k];
    const size_t ncell = (size_t)g[0] * g[1] * g[2];
    cell_of.resize((size_t)n);
    cells.assign(ncell, CellRange{0, 0});
    for (int i = 0; i < n; i++) {
        cell_of[i] = cell_at(x_s + 3 * (size_t)i);
        cells[cell_of[i]].count++;
    }
    int next = 0;
    for (CellRange& c : cells) {
        c.first = next;
        next += c.count;
        c.count = 0;
    }
    items.resize((size_t)n + 1);
    slot.resize((size_t)n);
    found.resize((size_t)n + 1);
    for (int i = 0; i < n; i++) {
        CellRange& c = cells[cell_of[i]];
        slot[i] = c.first + c.count++;
        items[slot[i]] = i;
    }
}

int PeriodicGrid::gather_near(const double* p)
{
    int nx[3], ny[3], nz[3];
    const int mx = axis_neighbours(0, axis_cell(0, p[0]), nx);
    const int my = axis_neighbours(1, axis_cell(1, p[1]), ny);
    const int mz = axis_neighbours(2, axis_cell(2, p[2]), nz);
    // Plain pointers and counts read once: the writes to `out` could
    // otherwise alias them for the compiler.
    int* out = found.data();
    const CellRange* range = cells.data();
    const int* item = items.data();
    int n = 0;
    for (int a = 0; a < mx; a++)
        for (int b = 0; b < my; b++) {
            const int row = (nx[a] * g[1] + ny[b]) * g[2];
            for (int d = 0; d < mz; d++) {
                const CellRange r = range[row + nz[d]];
                const int* from = item + r.first;
                // Most cells hold none or one: copy one whatever the count
                // (items and found have a spare slot) so that no branch
                // depends on it, and loop only for the rest.
                out[n] = from[0];
                for (int k = 1; k < r.count; k++) out[n + k] = from[k];
                n += r.count;
            }
        }
    return n;
}

void PeriodicGrid::remove(int i)
{
    CellRange& c = cells[cell_of[i]];
    int last = c.first + --c.count;
    int moved = items[last];
    items[slot[i]] = moved;
    slot[moved] = slot[i];
    items[last] = i;
    slot[i] = last;
}
