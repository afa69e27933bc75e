#include "fileio.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <vector>

#include "mmutil.h"
#include "periodic_grid.h"
#include "structure_common.h"

// ---- periodic distances -------------------------------------------------

// Minimum image of one fractional component by repeated steps of 1, as the
// bond searches have always done; absurd values get the closed form with
// the same result range so that a hostile file cannot stall the loop. Odd
// in d (min_image(-d) == -min_image(d)), so every bond test is symmetric.
static inline double min_image(double d)
{
    if (!std::isfinite(d)) return d;
    if (d > 64.0) return d - std::ceil(d - 0.5);
    if (d < -64.0) return d + std::ceil(-d - 0.5);
    while (d > 0.5) d -= 1.0;
    while (d < -0.5) d += 1.0;
    return d;
}

static inline double cell_norm(const double latt[3][3], const double* d)
{
    double s = 0.0;
    for (int r = 0; r < 3; r++) {
        double v = latt[r][0] * d[0] + latt[r][1] * d[1] + latt[r][2] * d[2];
        s += v * v;
    }
    return std::sqrt(s);
}

// d := x_b - x_a, optionally brought to the minimum image; returns |latt d|.
static inline double pair_distance(const double latt[3][3], const double* xa, const double* xb,
                                   bool wrap, double* d)
{
    for (int k = 0; k < 3; k++) {
        d[k] = xb[k] - xa[k];
        if (wrap) d[k] = min_image(d[k]);
    }
    return cell_norm(latt, d);
}

// ---- separation of the cell ---------------------------------------------

// The separation's bond test between molecule atom m and candidate i:
// second radii, periodic distance, strict comparison.
static inline bool cell_atoms_bonded(const FileIO& f, int m, int i, double* dist)
{
    double d[3];
    *dist = pair_distance(f.latt3x3, f.cif_x_s + 3 * (size_t)i, f.cif_x_s + 3 * (size_t)m, true, d);
    return (f.cif_radius[m] + f.cif_radius[i]) * f.bond_dis_scale > *dist;
}

void FileIO::find_bond_atom(int natoms, int* avail, int n_in_mol, int* mol_atoms, int* atom,
                            int* partner, double* dist)
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
            if (m != i && cell_atoms_bonded(*this, m, i, &r)) {
                *atom = i;
                *partner = m;
                *dist = r;
                return;
            }
        }
    }
}

// Cells per axis for the bond search: no narrower than the largest bond in
// fractional units along that axis (|f_k| <= |row k of the inverse| * |L f|),
// with a margin for rounding. A single cell (all pairs) when the cell or
// coordinates make the bound meaningless.
static void bond_grid_cells(const FileIO& f, int n, int cells[3])
{
    cells[0] = cells[1] = cells[2] = 1;
    double rmax = 0.0;
    for (int i = 0; i < n; i++) {
        if (!(std::fabs(f.cif_radius[i]) < 1e6)) return;
        rmax = std::max(rmax, std::fabs(f.cif_radius[i]));
        for (int k = 0; k < 3; k++)
            if (!(std::fabs(f.cif_x_s[3 * (size_t)i + k]) <= 1e6)) return;
    }
    double cutoff = 2.0 * rmax * std::fabs(f.bond_dis_scale);
    for (int k = 0; k < 3; k++) {
        const double* row = f.latt3x3_inv[k];
        double h = std::sqrt(row[0] * row[0] + row[1] * row[1] + row[2] * row[2]) * cutoff;
        h = h * (1.0 + 1e-6) + 1e-9;
        if (!std::isfinite(h)) return;
        cells[k] = h >= 0.5 ? 1 : std::min(64, (int)std::floor(1.0 / h));
    }
}

// The bond graph of the cell, every pair tested once (the test is symmetric).
struct BondGraph {
    std::vector<int> start, adj;
};

static void build_bond_graph(const FileIO& f, int n, BondGraph& graph)
{
    int cells[3];
    bond_grid_cells(f, n, cells);
    PeriodicGrid grid;
    grid.build(f.cif_x_s, n, cells);
    std::vector<int> ea, eb;
    ea.reserve(4 * (size_t)n);
    eb.reserve(4 * (size_t)n);
    int near[27];
    for (int a = 0; a < n; a++) {
        int nnear = grid.neighbour_cells(grid.cell_of[a], near);
        for (int c = 0; c < nnear; c++)
            for (int k = grid.start[near[c]]; k < grid.start[near[c] + 1]; k++) {
                int b = grid.items[k];
                double r;
                if (b > a && cell_atoms_bonded(f, a, b, &r)) {
                    ea.push_back(a);
                    eb.push_back(b);
                }
            }
    }
    graph.start.assign((size_t)n + 1, 0);
    for (size_t e = 0; e < ea.size(); e++) {
        graph.start[ea[e] + 1]++;
        graph.start[eb[e] + 1]++;
    }
    for (int i = 0; i < n; i++) graph.start[i + 1] += graph.start[i];
    graph.adj.assign(2 * ea.size(), 0);
    std::vector<int> fill(graph.start.begin(), graph.start.end() - 1);
    for (size_t e = 0; e < ea.size(); e++) {
        graph.adj[fill[ea[e]]++] = eb[e];
        graph.adj[fill[eb[e]]++] = ea[e];
    }
}

// Appends the molecule of `atom` to `out`, always taking next the
// lowest-index free atom bonded to any member (the top of a min-heap).
static void walk_molecule(const BondGraph& graph, int atom, std::vector<char>& avail,
                          std::vector<int>& heap, std::vector<int>& out)
{
    auto later = std::greater<int>();
    for (;;) {
        avail[atom] = 0;
        out.push_back(atom);
        for (int e = graph.start[atom]; e < graph.start[atom + 1]; e++)
            if (avail[graph.adj[e]]) {
                heap.push_back(graph.adj[e]);
                std::push_heap(heap.begin(), heap.end(), later);
            }
        while (!heap.empty() && !avail[heap.front()]) {
            std::pop_heap(heap.begin(), heap.end(), later);
            heap.pop_back();
        }
        if (heap.empty()) return;
        atom = heap.front();
    }
}

// Same molecules, in the same order and with the same atom order, as
// repeating find_bond_atom: each step takes the lowest-index free atom
// bonded to any member, which is the smallest entry of a min-heap of the
// members' free neighbours. The bonds are found once through a grid
// instead of once per step, which turns the quadratic scans into a walk
// over the bond graph.
void FileIO::separate_cif_molecules(bool verbose)
{
    const int n = natoms_cif > 0 ? natoms_cif : 0;
    if (n > 0 && (!cif_x_s || !cif_radius))
        veska_fatal("fileio", 402, -1, stdout,
                    "No fractional coordinates or radii to separate molecules of %s\n",
                    crystal_file.c_str());
    mol_natoms_list.clear();
    mol_atom_list.clear();
    mol_atom_list.reserve((size_t)n);
    BondGraph graph;
    build_bond_graph(*this, n, graph);
    std::vector<char> avail((size_t)n, 1);
    std::vector<int> heap;
    heap.reserve(graph.adj.size() + 1);
    int next_start = 0;
    for (;;) {
        while (next_start < n && !avail[next_start]) next_start++;
        if (next_start == n) break;
        size_t first = mol_atom_list.size();
        walk_molecule(graph, next_start, avail, heap, mol_atom_list);
        mol_natoms_list.push_back((int)(mol_atom_list.size() - first));
    }
    if (verbose) {
        printf("  Unit cell nmols  = %d\n", (int)mol_natoms_list.size());
        printf("  Unit cell natoms =");
        for (int c : mol_natoms_list) printf(" %d", c);
        printf("\n");
    }
}

// ---- making one molecule whole ------------------------------------------

void FileIO::find_bond_atom_one(int natoms, double* x_s, double* radii, int* avail, int n_in_mol,
                                int* mol_atoms, int* atom, int* partner, double* dist)
{
    *atom = -1;
    *partner = -1;
    *dist = 9999.99;
    double d[3];
    for (int i = 0; i < natoms; i++) {
        if (!avail[i]) continue;
        if (n_in_mol == 0) {
            *atom = i;
            *partner = 0;
            *dist = 0.0;
            return;
        }
        double* xi = x_s + 3 * (size_t)i;
        for (int k = 0; k < n_in_mol; k++) {
            int m = mol_atoms[k];
            if (m == i) continue;
            const double* xm = x_s + 3 * (size_t)m;
            double limit = (radii[m] + radii[i]) * bond_dis_scale;
            double r = pair_distance(latt3x3, xi, xm, false, d);
            if (limit > r) {
                *atom = i;
                *partner = m;
                *dist = r;
                return;
            }
            r = pair_distance(latt3x3, xi, xm, true, d);
            if (limit > r) {
                for (int c = 0; c < 3; c++) xi[c] = xm[c] - d[c];
                *atom = i;
                *partner = m;
                *dist = r;
                return;
            }
        }
    }
}

// Mass-weighted centre of the fractional coordinates; a molecule of
// massless dummies falls back to the plain mean so the centre stays finite.
static void mass_centre(int natoms, const int* atypes, const double* x_s, double* c)
{
    double total = 0.0, plain[3] = {0, 0, 0};
    c[0] = c[1] = c[2] = 0.0;
    for (int i = 0; i < natoms; i++) {
        double w = element_table[element_or_dummy(atypes[i])].mass;
        total += w;
        for (int k = 0; k < 3; k++) {
            c[k] += w * x_s[3 * i + k];
            plain[k] += x_s[3 * i + k];
        }
    }
    for (int k = 0; k < 3; k++) c[k] = total > 0.0 ? c[k] / total : plain[k] / natoms;
}

// Joins atoms to atom 0 by bonds, moving each to the image next to its
// partner; returns how many joined.
static int join_molecule(FileIO& f, int natoms, const int* atypes, double* x_s)
{
    std::vector<double> radii((size_t)natoms);
    for (int i = 0; i < natoms; i++)
        radii[i] = f.find_element_radius_from_index(element_or_dummy(atypes[i]));
    std::vector<int> avail((size_t)natoms, 1), members((size_t)natoms);
    avail[0] = 0;
    members[0] = 0;
    int joined = 1;
    while (joined < natoms) {
        int atom, partner;
        double dist;
        f.find_bond_atom_one(natoms, x_s, radii.data(), avail.data(), joined, members.data(),
                             &atom, &partner, &dist);
        if (atom < 0 || !((radii[partner] + radii[atom]) * f.bond_dis_scale >= dist)) break;
        avail[atom] = 0;
        members[joined++] = atom;
    }
    return joined;
}

void FileIO::make_whole_molecule(int mol_number, int natoms, int* atypes, double* x_s,
                                 bool verbose)
{
    if (natoms <= 0) return;
    int joined = join_molecule(*this, natoms, atypes, x_s);
    if (joined < natoms)
        veska_fatal("fileio", 401, 1, stdout,
                    "Not all atoms are bonded in the molecule!\nnat_bonded = %d, natoms = %d\n",
                    joined, natoms);

    double c[3];
    mass_centre(natoms, atypes, x_s, c);
    if (verbose) printf("  molecule %d COM = %9.6f %9.6f %9.6f\n", mol_number, c[0], c[1], c[2]);
    bool moved = false;
    for (int k = 0; k < 3; k++) {
        double shift = c[k] < -5.96046448e-08 ? 1.0 : (c[k] > 1.0000000596046448 ? -1.0 : 0.0);
        if (shift == 0.0) continue;
        for (int i = 0; i < natoms; i++) x_s[3 * i + k] += shift;
        moved = true;
    }
    if (moved) {
        mass_centre(natoms, atypes, x_s, c);
        if (verbose)
            printf("  molecule %d COM = %9.6f %9.6f %9.6f (wrapped)\n", mol_number, c[0], c[1],
                   c[2]);
    }
}

// ---- duplicate molecules ------------------------------------------------

bool FileIO::RE_mols_if_the_same(int i, int j)
{
    return natoms_mol[i] == natoms_mol[j] && std::fabs(mol_mass[i] - mol_mass[j]) <= 0.1;
}

bool FileIO::HL_mols_if_the_same(int i, int j)
{
    if (!RE_mols_if_the_same(i, j)) return false;
    for (int k = 0; k < 3; k++)
        if (std::fabs(prin_moment[i][k] - prin_moment[j][k]) > 0.1) return false;
    return true;
}

// What differs between the RE and the HL duplicate checks.
struct DuplicateCheck {
    const char* label;
    bool (FileIO::*same)(int, int);
    int*& index;
    int*& unique_list;
    int& unique_count;
};

// Gives each molecule the index of the earliest molecule it equals (a later
// i overwrites an earlier assignment) and lists the distinct indexes.
// Returns true when every molecule is unique.
static bool check_same_mols(FileIO& f, DuplicateCheck c, bool verbose)
{
    const int n = f.nmols;
    if (verbose) printf("**** Check %s Duplicate Molecules in Unit Cell ****\n", c.label);
    // The workspace normally provides these, numbered 1 to nmols.
    if (!c.index) {
        c.index = new int[n > 0 ? n : 1];
        for (int m = 0; m < n; m++) c.index[m] = m + 1;
    }
    if (!c.unique_list) c.unique_list = new int[n > 0 ? n : 1];
    for (int i = 0; i < n - 1; i++)
        for (int j = i + 1; j < n; j++)
            if ((f.*c.same)(i, j)) c.index[j] = c.index[i];
    if (verbose) {
        printf("  Unit cell molecule indexes: ");
        for (int m = 0; m < n; m++) printf(" %d", c.index[m]);
        printf("\n");
    }
    std::vector<int> sorted(c.index, c.index + (n > 0 ? n : 0));
    std::sort(sorted.begin(), sorted.end());
    c.unique_count = 0;
    for (int m = 0; m < n; m++)
        if (m == 0 || sorted[m] != sorted[m - 1]) c.unique_list[c.unique_count++] = sorted[m];
    if (verbose) {
        printf("  Unit cell unique molecule indexes:");
        for (int u = 0; u < c.unique_count; u++) printf(" %d", c.unique_list[u]);
        printf("\n");
        printf("**** End of Check %s Duplicate Molecules in Unit Cell ****\n\n", c.label);
    }
    return c.unique_count == n;
}

void FileIO::RE_check_unitcell_same_mols(bool verbose)
{
    check_same_mols(*this,
                    {"RE", &FileIO::RE_mols_if_the_same, re_mol_index, re_unique_list,
                     re_unique_count},
                    verbose);
}

bool FileIO::HL_check_unitcell_same_mols(bool verbose)
{
    bool all_unique = check_same_mols(*this,
                                      {"HL", &FileIO::HL_mols_if_the_same, hl_mol_index,
                                       hl_unique_list, hl_unique_count},
                                      verbose);
    if (all_unique) hl_same_flag = false;
    return all_unique;
}
