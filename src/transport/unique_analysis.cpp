// Unique molecules and unique dimers, told apart by the eigenvalues of a
// mass-weighted second-moment tensor about the centre of mass.
//
// The off-diagonal elements enter with a plus sign (the inertia tensor has
// a minus sign there), so the tensor is not invariant under a general
// rotation and its eigenvalues are compared position by position, unsorted.
// What it does detect: a dimer and its reverse (j, i, -cell) hold the same
// atoms and give the same tensor, so they always merge, and so do copies
// related by inversion or a pure translation (r -> -r leaves every product
// unchanged). What it misses: copies related by a proper rotation, such as
// the two molecules of a 2-fold screw axis, usually give other eigenvalues
// and count as distinct. The formula is kept as it stands so that earlier
// results stay reproducible.

#include <algorithm>
#include <cmath>
#include <vector>

#include "mmutil.h"
#include "neighbor_internal.h"
#include "transport.h"

namespace {

double element_mass(Transport& t, int type)
{
    return type >= 0 && type < 104 ? t.find_element_mass_from_index(type) : 0.0;
}

// Eigenvalues of the tensor of the atoms into eig (unsorted, as jacobi_nr
// leaves them); x_out gets the atoms centred and turned into the
// eigenvector frame. x and x_out may be the same array.
void moment_and_rotate(Transport& t, int natoms, int* atypes, double* x, double* x_out, double* eig)
{
    double c[3] = {0, 0, 0}, mass = 0;
    for (int a = 0; a < natoms; a++) {
        const double m = element_mass(t, atypes[a]);
        mass += m;
        for (int d = 0; d < 3; d++) c[d] += m * x[3 * a + d];
    }
    for (int d = 0; d < 3 && mass > 0; d++) c[d] /= mass;
    double T[3][3] = {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}};
    for (int a = 0; a < natoms; a++) {
        const double m = element_mass(t, atypes[a]);
        double* r = x_out + 3 * a;
        for (int d = 0; d < 3; d++) r[d] = x[3 * a + d] - c[d];
        T[0][0] += m * (r[1] * r[1] + r[2] * r[2]);
        T[1][1] += m * (r[2] * r[2] + r[0] * r[0]);
        T[2][2] += m * (r[0] * r[0] + r[1] * r[1]);
        T[0][1] += m * r[0] * r[1];
        T[0][2] += m * r[0] * r[2];
        T[1][2] += m * r[1] * r[2];
    }
    T[1][0] = T[0][1];
    T[2][0] = T[0][2];
    T[2][1] = T[1][2];
    for (int p = 0; p < 3 && natoms > 0; p++)
        for (int q = 0; q < 3; q++) T[p][q] /= natoms;
    double V[3][3];
    int nrot = 0;
    jacobi_nr(T, 3, eig, V, nrot);
    transpose_matrix(V);
    mat_vec_mul_n(V, reinterpret_cast<double(*)[3]>(x_out), reinterpret_cast<double(*)[3]>(x_out),
                  natoms);
}

int largest_molecule(Transport& t)
{
    int most = 0;
    for (int m = 0; m < t.nmols; m++) most = std::max(most, t.natoms_mol[m]);
    return most;
}

// Cartesian coordinates of molecule m's atoms shifted by whole cells.
void shifted_cartesian(Transport& t, int m, const int* cell, double* out)
{
    for (int a = 0; a < t.natoms_mol[m]; a++) {
        const double* s = t.x_s_mol[m] + 3 * a;
        double f[3] = {s[0] + cell[0], s[1] + cell[1], s[2] + cell[2]};
        mat_vec_mul(t.latt3x3, f, out + 3 * a);
    }
}

std::string eigval_1mol_text(Transport& t)
{
    std::string s = "# unitcell mol eigenvalues by principal moment of inertia\n";
    s += format_string("%d\n", t.nmols);
    for (int i = 0; i < t.nmols; i++) {
        const double* e = t.prin_moment[i];
        s += format_string("   %10.4f %10.4f %10.4f\n", e[0], e[1], e[2]);
    }
    return s;
}

std::string eigval_2mol_text(Transport& t)
{
    std::string s = "# 2mol eigenvalues by principal moment of inertia\n";
    s += format_string("%d\n", t.nmols);
    for (int i = 0; i < t.nmols; i++) {
        s += format_string("  %d\n", i + 1);
        for (int k = 0; k < t.nnei[i]; k++) {
            const double* e = t.eigval_2mol[i][k];
            s += format_string("    %2d: %10.4f %10.4f %10.4f\n", k + 1, e[0], e[1], e[2]);
        }
    }
    return s;
}

std::string unique_id_map_text(Transport& t)
{
    std::string s = format_string("# Unique ID mapping\n%d\n", t.nmols);
    for (int i = 0, key = 0; i < t.nmols; i++) {
        s += format_string("  %d\n", t.nnei[i]);
        for (int k = 0; k < t.nnei[i]; k++, key++)
            s += format_string("    %3d %3d  %3d\n", i + 1, k + 1, key + 1);
    }
    return s;
}

// Eigenvalues and rotated coordinates of every dimer (i, k): i's atoms,
// then those of its neighbour k in its cell.
void dimer_moments(Transport& t)
{
    std::vector<int> types(2 * (size_t)largest_molecule(t));
    for (int i = 0; i < t.nmols; i++) {
        const int ni = t.natoms_mol[i];
        const int home[3] = {0, 0, 0};
        std::copy(t.atypes_mol[i], t.atypes_mol[i] + ni, types.begin());
        for (int k = 0; k < t.nnei[i]; k++) {
            const int j = t.nei_mol[i][k], nj = t.natoms_mol[j];
            int cell[3];
            neighbor_cell(t, i, k, cell);
            std::copy(t.atypes_mol[j], t.atypes_mol[j] + nj, types.begin() + ni);
            delete[] t.x_2mol[i][k];
            double* x = t.x_2mol[i][k] = new double[3 * (size_t)(ni + nj)];
            t.natoms_2mol[i][k] = ni + nj;
            shifted_cartesian(t, i, home, x);
            shifted_cartesian(t, j, cell, x + 3 * ni);
            t.calc_2mol_moment_and_rotate_x_one(ni + nj, types.data(), x, x, i, k);
        }
    }
}

// map[b] = map[a] for every earlier key a whose three eigenvalues each lie
// strictly within 1e-4 of b's; the last such a decides.
void build_pair_map(Transport& t, const std::vector<double>& eig)
{
    for (int a = 0; a < t.nkey; a++) t.unique_pair_map[a] = a;
    for (int a = 0; a < t.nkey; a++) {
        const double* ea = &eig[3 * a];
        for (int b = a + 1; b < t.nkey; b++) {
            const double* eb = &eig[3 * b];
            if (std::fabs(eb[0] - ea[0]) < 1e-4 && std::fabs(eb[1] - ea[1]) < 1e-4 &&
                std::fabs(eb[2] - ea[2]) < 1e-4)
                t.unique_pair_map[b] = t.unique_pair_map[a];
        }
    }
}

void print_unique_pairs(Transport& t)
{
    printf("*** Check Duplicate 2mol pairs ***\n");
    printf("  Unique 2mol pairs: %d out of %d\n", t.unique_pair_count, t.nkey);
    for (int u = 0; u < t.unique_pair_count; u++) {
        int i = 0, k = 0;
        t.neighbor_map_key_1d_to_2d(t.unique_pair_list[u] - 1, &i, &k);
        printf("    %3d %3d   <=>  %3d\n", i + 1, k + 1, t.unique_pair_list[u]);
    }
    printf("*** End of Check Duplicate 2mol pairs ***\n\n");
}

// Sorted distinct values, stored into `out`; returns their number.
int sorted_distinct(std::vector<int> v, int* out)
{
    std::sort(v.begin(), v.end());
    v.erase(std::unique(v.begin(), v.end()), v.end());
    std::copy(v.begin(), v.end(), out);
    return (int)v.size();
}

}  // namespace

void Transport::calc_uc_mol_moment_and_rotate_x_one(int natoms, int* atypes, double* x,
                                                    double* x_out, int imol)
{
    moment_and_rotate(*this, natoms, atypes, x, x_out, prin_moment[imol]);
}

void Transport::calc_2mol_moment_and_rotate_x_one(int natoms, int* atypes, double* x,
                                                  double* x_out, int imol, int inei)
{
    moment_and_rotate(*this, natoms, atypes, x, x_out, eigval_2mol[imol][inei]);
}

void Transport::calc_HL_uc_mol_eigval_eigvec()
{
    require_neighbor_list(*this, "calc_HL_uc_mol_eigval_eigvec");
    const int home[3] = {0, 0, 0};
    std::vector<double> x(3 * (size_t)largest_molecule(*this));
    for (int i = 0; i < nmols; i++) {
        shifted_cartesian(*this, i, home, x.data());
        calc_uc_mol_moment_and_rotate_x_one(natoms_mol[i], atypes_mol[i], x.data(), x.data(), i);
    }
    if (!unique_uc_mol_one_calc_flag || !output_eigval) return;
    create_directory(data_dir.c_str());
    write_output_file(data_dir + "/eigval_1mol.dat", eigval_1mol_text(*this), 3792, false);
}

void Transport::calc_HL_2mol_eigval_eigvec_and_unique_pairs()
{
    require_neighbor_list(*this, "calc_HL_2mol_eigval_eigvec_and_unique_pairs");
    dimer_moments(*this);
    if (unique_2mol_calc_flag && output_eigval) {
        create_directory(data_dir.c_str());
        write_output_file(data_dir + "/eigval_2mol.dat", eigval_2mol_text(*this), 3903, false);
    }
    find_unique_pairs(*this);
}

void find_unique_pairs(Transport& t)
{
    t.nkey = 0;
    for (int i = 0; i < t.nmols; i++) t.nkey += t.nnei[i];
    std::vector<double> eig;  // three per key, in key order
    eig.reserve(3 * (size_t)t.nkey);
    for (int i = 0; i < t.nmols; i++)
        for (int k = 0; k < t.nnei[i]; k++)
            eig.insert(eig.end(), t.eigval_2mol[i][k], t.eigval_2mol[i][k] + 3);
    delete[] t.unique_pair_map;
    delete[] t.unique_pair_list;
    t.unique_pair_map = new int[t.nkey];
    t.unique_pair_list = new int[t.nkey];
    build_pair_map(t, eig);
    if (t.unique_2mol_calc_flag) {
        create_directory(t.data_dir.c_str());
        write_output_file(t.data_dir + "/unique_id_map.dat", unique_id_map_text(t), 3969, false);
    }
    std::vector<int> reps(t.unique_pair_map, t.unique_pair_map + t.nkey);
    for (int& r : reps) r += 1;
    t.unique_pair_count = sorted_distinct(reps, t.unique_pair_list);
    if (t.unique_2mol_calc_flag) print_unique_pairs(t);
    t.pair_data_built = true;
}

int Transport::HL_check_unitcell_unique_mols(bool verbose)
{
    require_neighbor_list(*this, "HL_check_unitcell_unique_mols");
    if (!unique_2mol_calc_flag) return HL_check_unitcell_same_mols(verbose) ? 1 : 0;
    if (!pair_data_built)
        veska_fatal("transport", 4010, -1, stdout,
                    "HL_check_unitcell_unique_mols: the unique pairs are not known "
                    "(calc_HL_2mol_eigval_eigvec_and_unique_pairs comes first)\n");
    if (verbose) printf("**** Check HL Duplicate Molecules in Unit Cell ****\n");
    std::vector<int> owners;
    for (int u = 0; u < unique_pair_count; u++)
        owners.push_back(neighbor_map_key_1d_to_uc_id(unique_pair_list[u] - 1) + 1);
    hl_unique_count = sorted_distinct(owners, hl_unique_list);
    if (verbose) {
        printf("  Unit cell unique molecule indexes:");
        for (int u = 0; u < hl_unique_count; u++) printf(" %d", hl_unique_list[u]);
        printf("\n");
    }
    const bool all_unique = hl_unique_count == nmols;
    if (all_unique) hl_same_flag = false;
    if (verbose) printf("**** End of Check HL Duplicate Molecules in Unit Cell ****\n\n");
    return all_unique ? 1 : 0;
}
