// The neighbour list: for every unit-cell molecule, the molecules of the
// cells around it that come closer than the cut-off, sorted by centre
// distance.

#include <cmath>
#include <vector>

#include "mmutil.h"
#include "neighbor_internal.h"
#include "transport.h"

namespace {

inline double squared(const double* d)
{
    return d[0] * d[0] + d[1] * d[1] + d[2] * d[2];
}

// Squared length of latt3x3 (sb - sa + cell): the displacement from a to b.
inline double fractional_rsq(double latt[3][3], const double* sa, const double* sb, const int* cell)
{
    double f[3] = {sb[0] - sa[0] + cell[0], sb[1] - sa[1] + cell[1], sb[2] - sa[2] + cell[2]};
    double d[3];
    mat_vec_mul(latt, f, d);
    return squared(d);
}

// Each molecule's bounding sphere in Cartesian space: a centre (the plain
// mean of its atoms) and the largest distance of an atom from it. By the
// triangle inequality no atom pair of two molecules comes closer than the
// centre distance less both radii, so such a pair cannot be within the
// cut-off and the atom loop can be skipped without changing the result.
struct BoundingSpheres {
    std::vector<double> centre;  // 3 per molecule
    std::vector<double> radius;

    explicit BoundingSpheres(Transport& t) : centre(3 * (size_t)t.nmols, 0.0), radius(t.nmols, 0.0)
    {
        for (int m = 0; m < t.nmols; m++) {
            const int n = t.natoms_mol[m];
            double* c = &centre[3 * m];
            std::vector<double> x(3 * (size_t)n);
            for (int a = 0; a < n; a++) {
                mat_vec_mul(t.latt3x3, t.x_s_mol[m] + 3 * a, &x[3 * a]);
                for (int d = 0; d < 3; d++) c[d] += x[3 * a + d] / n;
            }
            double r2 = 0;
            for (int a = 0; a < n; a++) {
                double d[3] = {x[3 * a] - c[0], x[3 * a + 1] - c[1], x[3 * a + 2] - c[2]};
                r2 = std::fmax(r2, squared(d));
            }
            radius[m] = std::sqrt(r2);
        }
    }

    // True when molecule j shifted by `shift` (Cartesian) lies too far from
    // molecule i for any atom pair to come within rcut (the atom test squares
    // the cut-off, so its sign does not count). The small margin covers the
    // rounding of the two ways of computing positions.
    bool apart(int i, int j, const double* shift, double rcut) const
    {
        const double *ci = &centre[3 * i], *cj = &centre[3 * j];
        double d[3];
        for (int k = 0; k < 3; k++) d[k] = cj[k] + shift[k] - ci[k];
        const double reach = rcut + radius[i] + radius[j] + 1e-6;
        return squared(d) > reach * reach;
    }
};

// The candidates of one molecule, kept in search order until sorted.
struct Candidates {
    std::vector<int> mol, cell, index;
    std::vector<double> rsq;
    int count = 0;

    explicit Candidates(int capacity)
        : mol(capacity), cell(3 * (size_t)capacity), index(capacity), rsq(capacity)
    {
    }
};

void allocate_neighbor_arrays(Transport& t)
{
    const int n = t.nmols > 0 ? t.nmols : 0, cap = t.NNEIMAX;
    t.neighbor_nmols = n;
    t.nnei = new int[n]();
    t.nei_mol = new int*[n];
    for (int d = 0; d < 3; d++) t.nei_cell[d] = new int*[n];
    t.prin_moment = new double*[n];
    t.natoms_2mol = new int*[n];
    t.x_2mol = new double**[n];
    t.eigval_2mol = new double**[n];
    for (int i = 0; i < n; i++) {
        t.nei_mol[i] = new int[cap]();
        for (int d = 0; d < 3; d++) t.nei_cell[d][i] = new int[cap]();
        t.prin_moment[i] = new double[3]();
        t.natoms_2mol[i] = new int[cap]();
        t.x_2mol[i] = new double*[cap]();
        t.eigval_2mol[i] = new double*[cap];
        for (int k = 0; k < cap; k++) t.eigval_2mol[i][k] = new double[3]();
    }
}

void print_build_header(Transport& t)
{
    printf("\n**** VESKA Build Neighbor List ****\n");
    printf("  Neighbor rcutoff distance: %g\n", t.lat_cutoff);
    printf("  Neighbor search cell (-/+): %d %d %d\n", t.nei_scell[0], t.nei_scell[1],
           t.nei_scell[2]);
}

// Sorts molecule i's candidates by centre distance and stores them.
void store_sorted(Transport& t, int i, Candidates& c)
{
    for (int k = 0; k < c.count; k++) c.index[k] = k;
    quickSort_d(c.rsq.data(), c.index.data(), c.count);
    for (int k = 0; k < c.count; k++) {
        const int from = c.index[k];
        t.nei_mol[i][k] = c.mol[from];
        for (int d = 0; d < 3; d++) t.nei_cell[d][i][k] = c.cell[3 * from + d];
    }
    t.nnei[i] = c.count;
}

// Every search cell, and in each every molecule j, in that order.
void collect_candidates(Transport& t, int i, const BoundingSpheres* spheres, Candidates& c)
{
    const int* n = t.nei_scell;
    const double rcut = t.lat_cutoff, rcut2 = rcut * rcut;
    c.count = 0;
    int cell[3] = {-n[0], -n[1], -n[2]};
    if (search_range_empty(n)) return;
    do {
        double f[3] = {(double)cell[0], (double)cell[1], (double)cell[2]}, shift[3];
        mat_vec_mul(t.latt3x3, f, shift);
        for (int j = 0; j < t.nmols; j++) {
            if (is_home_cell_of(i, j, cell)) continue;
            if (spheres && spheres->apart(i, j, shift, std::fabs(rcut))) continue;
            double r2;
            if (!t.found_molecule_within_rcut(i, j, cell, rcut2, &r2)) continue;
            // The list keeps at most NNEIMAX - 1 neighbours.
            if (c.count + 1 >= t.NNEIMAX)
                veska_fatal("transport", 2561, -1, stderr, "Need to boost NNEIMAX (NumNeigh=%d)\n",
                            t.NNEIMAX);
            c.mol[c.count] = j;
            for (int d = 0; d < 3; d++) c.cell[3 * c.count + d] = cell[d];
            c.rsq[c.count++] = t.calc_neighbor_com_rsq(i, j, cell);
        }
    } while (next_search_cell(n, cell));
}

}  // namespace

void build_neighbor_list_scan(Transport& t, bool verbose, bool prefilter)
{
    if (t.nmols > 0 && !t.x_s_com)
        veska_fatal("transport", 2500, -1, stdout,
                    "build_neighbor_list: the centres of mass are not known yet "
                    "(post_data_read_treatment comes first)\n");
    t.free_pair_arrays();
    t.free_mol_id_indexes();
    t.free_neighbor_arrays();
    allocate_neighbor_arrays(t);
    if (verbose) print_build_header(t);
    {
        Candidates cand(t.NNEIMAX);
        BoundingSpheres spheres(t);
        for (int i = 0; i < t.nmols; i++) {
            collect_candidates(t, i, prefilter ? &spheres : nullptr, cand);
            store_sorted(t, i, cand);
        }
    }
    t.neighbor_list_built = true;
    if (verbose) printf("**** End of VESKA Build Neighbor List ****\n\n");
    t.allocate_mol_id_indexes_array();
}

void require_neighbor_list(Transport& t, const char* op)
{
    if (!t.neighbor_list_built)
        veska_fatal("transport", 2501, -1, stdout,
                    "%s: the neighbour list has not been built (build_neighbor_list comes first)\n",
                    op);
}

void Transport::build_neighbor_list(bool verbose)
{
    build_neighbor_list_scan(*this, verbose, true);
}

bool Transport::found_molecule_within_rcut(int i, int j, int* cell, double rcut2, double* r2)
{
    const double *si = x_s_mol[i], *sj = x_s_mol[j];
    for (int p = 0; p < natoms_mol[i]; p++)
        for (int q = 0; q < natoms_mol[j]; q++) {
            const double d2 = fractional_rsq(latt3x3, si + 3 * p, sj + 3 * q, cell);
            if (d2 < rcut2) {
                *r2 = d2;
                return true;
            }
        }
    return false;
}

bool Transport::found_molecule_within_rcut_x(int i, int j, int* cell, double rcut2, double* r2)
{
    const double *xi = x_mol[i], *xj = x_mol[j];
    for (int p = 0; p < natoms_mol[i]; p++)
        for (int q = 0; q < natoms_mol[j]; q++) {
            double d[3];
            for (int k = 0; k < 3; k++)
                d[k] = xj[3 * q + k] - xi[3 * p + k] + cell[0] * latt_vec[0][k] +
                       cell[1] * latt_vec[1][k] + cell[2] * latt_vec[2][k];
            const double d2 = squared(d);
            if (d2 < rcut2) {
                *r2 = d2;
                return true;
            }
        }
    return false;
}

double Transport::found_two_molecules_min_distance(int i, int j, int* cell)
{
    double best = 1e30;
    for (int p = 0; p < natoms_mol[i]; p++)
        for (int q = 0; q < natoms_mol[j]; q++)
            best = std::fmin(best, fractional_rsq(latt3x3, x_s_mol[i] + 3 * p,
                                                  x_s_mol[j] + 3 * q, cell));
    return std::sqrt(best);
}

double Transport::calc_neighbor_com_rsq(int i, int j, int* cell)
{
    return fractional_rsq(latt3x3, x_s_com + 3 * i, x_s_com + 3 * j, cell);
}

void Transport::allocate_mol_id_indexes_array()
{
    require_neighbor_list(*this, "allocate_mol_id_indexes_array");
    free_mol_id_indexes();
    const int n = nmols > 0 ? nmols : 0;
    // The duplicate checks may have made their own index arrays already.
    for (int** a : {&re_mol_index, &re_unique_list, &hl_mol_index, &hl_unique_list}) {
        delete[] *a;
        *a = new int[n]();
    }
    nei_mol_id = new int*[n];
    nei_unique_id = new int*[n];
    for (int i = 0; i < n; i++) {
        re_mol_index[i] = hl_mol_index[i] = i + 1;
        nei_mol_id[i] = new int[nnei[i]];
        nei_unique_id[i] = new int[nnei[i]]();
        for (int k = 0; k < nnei[i]; k++) nei_mol_id[i][k] = k + 1;
    }
    mol_id_indexes_allocated = true;
}

void Transport::create_neighbor_cell_array(int* n, int** cells)
{
    for (int d = 0; d < 3; d++)
        for (int m = 0; m < n[d]; m++) cells[d][m] = (m + 1) % 2 ? (m + 1) / 2 : -((m + 1) / 2);
}

