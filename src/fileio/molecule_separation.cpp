// Separating the cell into molecules by bonds under periodic boundaries,
// and the checks for molecules that are the same.

#include "fileio.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "bond_search.h"
#include "mmutil.h"
#include "structure_common.h"

// ---- separation of the cell ---------------------------------------------

// The separation's bond test between molecule atom m and candidate i:
// second radii, periodic distance, strict comparison. A pair beyond a
// grid's reach fails before its distance is formed.
static inline bool cell_atoms_bonded(const FileIO& f, int m, int i, const double reach[3],
                                     double* dist)
{
    double d[3];
    if (!within_reach(f.cif_x_s + 3 * (size_t)i, f.cif_x_s + 3 * (size_t)m, true, reach, d))
        return false;
    *dist = cell_norm(f.latt3x3, d);
    return (f.cif_radius[m] + f.cif_radius[i]) * f.bond_dis_scale > *dist;
}

void FileIO::find_bond_atom(int natoms, int* avail, int n_in_mol, int* mol_atoms, int* atom,
                            int* partner, double* dist)
{
    first_bonded_atom(natoms, avail, n_in_mol, mol_atoms, atom, partner, dist,
                      [this](int m, int i, double* r) {
                          return cell_atoms_bonded(*this, m, i, kAnyReach, r);
                      });
}

// find_bond_atom repeated until every atom is in a molecule.
static void separate_plain(FileIO& f, int n)
{
    std::vector<int> avail((size_t)n, 1), members((size_t)n);
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
        f.mol_natoms_list.push_back(in_mol);
        f.mol_atom_list.insert(f.mol_atom_list.end(), members.begin(), members.begin() + in_mol);
        in_mol = 0;
    }
}

// Same molecules, in the same order and with the same atom order, as
// repeating find_bond_atom: each step takes the lowest-index free atom
// bonded to any member, which is the smallest entry of a min-heap holding
// every free atom bonded to a member. When an atom joins, the atoms still
// unclaimed around it are tested once and the bonded ones claimed, so
// nothing but the cell list and the heap is stored, whatever the bonding.
static void separate_with_grid(FileIO& f, int n)
{
    PeriodicGrid grid;
    build_bond_grid(f, f.cif_x_s, f.cif_radius, n, grid);
    std::vector<char> claimed((size_t)n, 0);
    std::vector<int> heap;
    heap.reserve((size_t)n);
    for (int first = 0; first < n; first++) {
        if (claimed[first]) continue;
        size_t begin = f.mol_atom_list.size();
        claimed[first] = 1;
        grid.remove(first);
        heap_push(heap, first);
        while (!heap.empty()) {
            int a = heap_pop(heap);
            f.mol_atom_list.push_back(a);
            grid.claim_near(f.cif_x_s + 3 * (size_t)a, [&](int b) {
                double r;
                if (!cell_atoms_bonded(f, a, b, grid.reach, &r)) return false;
                claimed[b] = 1;
                heap_push(heap, b);
                return true;
            });
        }
        f.mol_natoms_list.push_back((int)(f.mol_atom_list.size() - begin));
    }
}

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
    plain_scans ? separate_plain(*this, n) : separate_with_grid(*this, n);
    if (verbose) {
        printf("  Unit cell nmols  = %d\n", (int)mol_natoms_list.size());
        printf("  Unit cell natoms =");
        for (int c : mol_natoms_list) printf(" %d", c);
        printf("\n");
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
