#include "fileio.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "mmutil.h"

// ---- periodic distances -------------------------------------------------

// Minimum image of one fractional component by repeated steps of 1, as the
// bond searches have always done; absurd values get the closed form so that
// a hostile file cannot stall the loop.
static inline double min_image(double d)
{
    if (!std::isfinite(d)) return d;
    if (std::fabs(d) > 64.0) return d - std::floor(d + 0.5);
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

void FileIO::find_bond_atom(int natoms, int* avail, int n_in_mol, int* mol_atoms, int* atom,
                            int* partner, double* dist)
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
        const double* xi = cif_x_s + 3 * (size_t)i;
        for (int k = 0; k < n_in_mol; k++) {
            int m = mol_atoms[k];
            if (m == i) continue;
            double r = pair_distance(latt3x3, xi, cif_x_s + 3 * (size_t)m, true, d);
            if ((cif_radius[m] + cif_radius[i]) * bond_dis_scale > r) {
                *atom = i;
                *partner = m;
                *dist = r;
                return;
            }
        }
    }
}

void FileIO::separate_cif_molecules(bool verbose)
{
    const int n = natoms_cif;
    mol_natoms_list.clear();
    mol_atom_list.clear();
    mol_atom_list.reserve((size_t)(n > 0 ? n : 0));
    std::vector<int> avail((size_t)(n > 0 ? n : 0), 1);
    std::vector<int> members(avail.size());
    int n_in_mol = 0;
    for (;;) {
        int atom, partner;
        double dist;
        find_bond_atom(n, avail.data(), n_in_mol, members.data(), &atom, &partner, &dist);
        if (atom >= 0) {
            avail[atom] = 0;
            members[n_in_mol++] = atom;
            continue;
        }
        if (n_in_mol == 0) break;
        mol_natoms_list.push_back(n_in_mol);
        mol_atom_list.insert(mol_atom_list.end(), members.begin(), members.begin() + n_in_mol);
        n_in_mol = 0;
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

// Unknown elements (-1) stand in with the dummy record 0.
static int element_or_dummy(int t)
{
    return t >= 0 && t < 104 ? t : 0;
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
