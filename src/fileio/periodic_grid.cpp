#include "periodic_grid.h"

#include <cmath>

static int axis_cell(double v, int g)
{
    if (!std::isfinite(v)) return 0;
    double f = v - std::floor(v);
    int c = (int)(f * g);
    return c < 0 ? 0 : (c >= g ? g - 1 : c);
}

void PeriodicGrid::build(const double* x_s, int n, const int cells[3])
{
    for (int k = 0; k < 3; k++) g[k] = cells[k] < 1 ? 1 : cells[k];
    size_t ncell = (size_t)g[0] * g[1] * g[2];
    cell_of.assign((size_t)n, 0);
    start.assign(ncell + 1, 0);
    items.assign((size_t)n, 0);
    for (int i = 0; i < n; i++) {
        const double* p = x_s + 3 * (size_t)i;
        int c = (axis_cell(p[0], g[0]) * g[1] + axis_cell(p[1], g[1])) * g[2] +
                axis_cell(p[2], g[2]);
        cell_of[i] = c;
        start[c + 1]++;
    }
    for (size_t c = 0; c < ncell; c++) start[c + 1] += start[c];
    std::vector<int> fill(start.begin(), start.end() - 1);
    for (int i = 0; i < n; i++) items[fill[cell_of[i]]++] = i;
}

// Offsets along one axis that name distinct cells.
static int axis_offsets(int g, int out[3])
{
    if (g == 1) {
        out[0] = 0;
        return 1;
    }
    if (g == 2) {
        out[0] = 0;
        out[1] = 1;
        return 2;
    }
    out[0] = -1;
    out[1] = 0;
    out[2] = 1;
    return 3;
}

int PeriodicGrid::neighbour_cells(int c, int out[27]) const
{
    int at[3] = {c / (g[1] * g[2]), (c / g[2]) % g[1], c % g[2]};
    int off[3][3], noff[3];
    for (int k = 0; k < 3; k++) noff[k] = axis_offsets(g[k], off[k]);
    int n = 0;
    for (int a = 0; a < noff[0]; a++)
        for (int b = 0; b < noff[1]; b++)
            for (int d = 0; d < noff[2]; d++) {
                int x = (at[0] + off[0][a] + g[0]) % g[0];
                int y = (at[1] + off[1][b] + g[1]) % g[1];
                int z = (at[2] + off[2][d] + g[2]) % g[2];
                out[n++] = (x * g[1] + y) * g[2] + z;
            }
    return n;
}
