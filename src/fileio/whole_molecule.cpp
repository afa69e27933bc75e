// Making one molecule whole: atoms joined to the first one bond by bond,
// each moved to the periodic image next to its partner, then the molecule's
// centre of mass put into the cell.

#include "fileio.h"

#include <cstdio>
#include <vector>

#include "bond_search.h"
#include "mmutil.h"
#include "structure_common.h"

// The bond test of making whole between member m and free atom i: the raw
// difference first, then the minimum image. Returns 0 for no bond, 1 for a
// bond as the atoms lie, 2 for a bond to i's image next to m (left in d).
static int whole_bond(const FileIO& f, const double* x_s, const double* radii, int m, int i,
                      const double reach[3], double* d)
{
    const double* xi = x_s + 3 * (size_t)i;
    const double* xm = x_s + 3 * (size_t)m;
    double limit = (radii[m] + radii[i]) * f.bond_dis_scale;
    if (within_reach(xi, xm, false, reach, d) && limit > cell_norm(f.latt3x3, d)) return 1;
    // No component beyond a half: the minimum image is the raw difference.
    if (std::fabs(d[0]) <= 0.5 && std::fabs(d[1]) <= 0.5 && std::fabs(d[2]) <= 0.5) return 0;
    if (within_reach(xi, xm, true, reach, d) && limit > cell_norm(f.latt3x3, d)) return 2;
    return 0;
}

void FileIO::find_bond_atom_one(int natoms, double* x_s, double* radii, int* avail, int n_in_mol,
                                int* mol_atoms, int* atom, int* partner, double* dist)
{
    first_bonded_atom(natoms, avail, n_in_mol, mol_atoms, atom, partner, dist,
                      [&](int m, int i, double* r) {
                          double d[3];
                          int bond = whole_bond(*this, x_s, radii, m, i, kAnyReach, d);
                          if (bond == 2)
                              for (int c = 0; c < 3; c++)
                                  x_s[3 * (size_t)i + c] = x_s[3 * (size_t)m + c] - d[c];
                          *r = cell_norm(latt3x3, d);
                          return bond != 0;
                      });
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

// The covalent radius of each atom, a dummy's for an unknown element.
static std::vector<double> bond_radii(FileIO& f, int natoms, const int* atypes)
{
    std::vector<double> radii((size_t)natoms);
    for (int i = 0; i < natoms; i++)
        radii[i] = f.find_element_radius_from_index(element_or_dummy(atypes[i]));
    return radii;
}

// Joins atoms to atom 0 by bonds, moving each to the image next to its
// partner; returns how many joined. Same joins, partners and moves as
// repeating find_bond_atom_one: the next atom is the lowest-index free atom
// bonded to any member and its partner the earliest-joined such member.
// Members never move after joining, so each member's bonds are found once,
// when it joins, and the first member to find an atom is its partner.
static int join_molecule(FileIO& f, int natoms, const int* atypes, double* x_s)
{
    std::vector<double> radii = bond_radii(f, natoms, atypes);
    PeriodicGrid grid;
    build_bond_grid(f, x_s, radii.data(), natoms, grid);
    std::vector<int> partner((size_t)natoms, -1), heap;
    heap.reserve((size_t)natoms);
    grid.remove(0);
    int joined = 0;
    for (int m = 0;;) {
        joined++;
        grid.claim_near(x_s + 3 * (size_t)m, [&](int i) {
            double d[3];
            if (!whole_bond(f, x_s, radii.data(), m, i, grid.reach, d)) return false;
            partner[i] = m;
            heap_push(heap, i);
            return true;
        });
        if (heap.empty()) break;
        m = heap_pop(heap);
        double d[3];
        if (whole_bond(f, x_s, radii.data(), partner[m], m, grid.reach, d) == 2)
            for (int c = 0; c < 3; c++) x_s[3 * (size_t)m + c] = x_s[3 * (size_t)partner[m] + c] - d[c];
    }
    return joined;
}

// find_bond_atom_one repeated from atom 0: the search join_molecule
// stands in for.
static int join_molecule_plain(FileIO& f, int natoms, const int* atypes, double* x_s)
{
    std::vector<double> radii = bond_radii(f, natoms, atypes);
    std::vector<int> avail((size_t)natoms, 1), members((size_t)natoms, 0);
    avail[0] = 0;
    int joined = 1, atom = 0, partner;
    double dist;
    while (joined < natoms) {
        f.find_bond_atom_one(natoms, x_s, radii.data(), avail.data(), joined, members.data(), &atom,
                             &partner, &dist);
        if (atom < 0) break;
        avail[atom] = 0;
        members[joined++] = atom;
    }
    return joined;
}

// Brings the centre of mass of a whole molecule into the cell, one step
// per component.
static void centre_in_cell(int mol_number, int natoms, const int* atypes, double* x_s,
                           bool verbose)
{
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

void FileIO::make_whole_molecule(int mol_number, int natoms, int* atypes, double* x_s,
                                 bool verbose)
{
    if (natoms <= 0) return;
    int joined = plain_scans ? join_molecule_plain(*this, natoms, atypes, x_s)
                             : join_molecule(*this, natoms, atypes, x_s);
    if (joined < natoms)
        veska_fatal("fileio", 401, 1, stdout,
                    "Not all atoms are bonded in the molecule!\nnat_bonded = %d, natoms = %d\n",
                    joined, natoms);
    centre_in_cell(mol_number, natoms, atypes, x_s, verbose);
}
