// Structure driver: turns a crystal that was read (CIF) or the molecules'
// MOL files into the per-molecule arrays, whole molecules, the cell in its
// three forms, the molecule ids and, on request, one bond file per molecule.

#include <cmath>
#include <cstdio>
#include <iostream>

#include "fileio.h"
#include "mmutil.h"
#include "structure_common.h"

// Numbers identifying the places where the driver stops.
enum {
    DRIVER_ERR_INPUT_KIND = 1645,
    DRIVER_ERR_MOL_NAMES = 1660,
    DRIVER_ERR_BOND_FILE = 1741,
};

static const char* const kDriverUnit = "fileio";

// Arrays shared by both input kinds, one entry (or three) per molecule;
// per-molecule pointers start null so that a molecule left unread is safe.
static void allocate_molecule_arrays(FileIO& io)
{
    int n = io.nmols;
    io.natoms_mol = new int[n]();
    io.atypes_mol = new int*[n]();
    io.x_mol = new double*[n]();
    io.x_s_mol = new double*[n]();
    io.mol_id = new int[n]();
    io.mol_mass = new double[n]();
    io.x_com = new double[3 * n]();
    io.x_s_com = new double[3 * n]();
}

// CIF input: copy each separated molecule out of the cell arrays and make it
// whole across the cell faces.
static void build_molecules_from_cif(FileIO& io, bool verbose)
{
    io.free_molecule_arrays();
    io.nmols = static_cast<int>(io.mol_natoms_list.size());
    allocate_molecule_arrays(io);
    io.mol_files.assign(io.nmols, std::string());
    size_t next = 0;
    for (int m = 0; m < io.nmols; ++m) {
        int n = io.mol_natoms_list[m];
        io.mol_files[m] = "mol" + std::to_string(m + 1) + ".mol";
        allocate_molecule(io, m, n);
        for (int i = 0; i < n; ++i, ++next) {
            int a = io.mol_atom_list[next];
            io.atypes_mol[m][i] = io.cif_atypes[a];
            for (int k = 0; k < 3; ++k) {
                io.x_mol[m][3 * i + k] = io.cif_x[3 * a + k];
                io.x_s_mol[m][3 * i + k] = io.cif_x_s[3 * a + k];
            }
        }
    }
    if (verbose) std::cout << "Make whole molecules ..." << std::endl;
    for (int m = 0; m < io.nmols; ++m) {
        io.make_whole_molecule(m + 1, io.natoms_mol[m], io.atypes_mol[m], io.x_s_mol[m], verbose);
        for (int i = 0; i < io.natoms_mol[m]; ++i)
            io.coord_f2c(io.x_s_mol[m] + 3 * i, io.x_mol[m] + 3 * i);
    }
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c) io.latt_vec[r][c] = io.latt3x3[c][r];
}

// MOL input: one file per molecule, named by the configuration.
static void read_molecule_files(FileIO& io, bool verbose)
{
    if (io.nmols == 0) return;
    if (io.nmols < 0 || io.mol_files.size() < static_cast<size_t>(io.nmols))
        veska_fatal(kDriverUnit, DRIVER_ERR_MOL_NAMES, -1, stdout,
                    "%d molecules are expected but %zu MOL file names are given\n", io.nmols,
                    io.mol_files.size());
    allocate_molecule_arrays(io);
    for (int m = 0; m < io.nmols; ++m) io.read_data_mol(io.mol_files[m].c_str(), m, verbose);
}

// MOL input: fractional coordinates from the Cartesian ones, and the six
// cell parameters from the lattice vectors.
static void derive_fractional_and_cell(FileIO& io)
{
    for (int m = 0; m < io.nmols; ++m) {
        if (!io.x_mol[m] || !io.x_s_mol[m]) continue;
        for (int i = 0; i < io.natoms_mol[m]; ++i)
            mat_vec_mul(io.latt3x3_inv, io.x_mol[m] + 3 * i, io.x_s_mol[m] + 3 * i);
    }
    const double to_deg = 180.0 / kCellPi;
    double* v[3] = {io.latt_vec[0], io.latt_vec[1], io.latt_vec[2]};
    for (int k = 0; k < 3; ++k) io.cell_latt[k] = io.latt_len[k];
    // alpha between b and c, beta between a and c, gamma between a and b
    static const int pairs[3][2] = {{1, 2}, {0, 2}, {0, 1}};
    for (int k = 0; k < 3; ++k) {
        int p = pairs[k][0], q = pairs[k][1];
        io.cell_latt[3 + k] =
            acos(get_dot(v[p], v[q]) / (io.latt_len[p] * io.latt_len[q])) * to_deg;
    }
}

// Bonded pairs (i < j) of one whole molecule by covalent radii, no images.
static std::string molecule_bond_table(FileIO& io, int m)
{
    int n = io.natoms_mol[m];
    const int* types = io.atypes_mol[m];
    const double* x = io.x_mol[m];
    std::string body;
    int count = 0;
    for (int i = 0; i < n; ++i) {
        double ri = io.find_element_radius_from_index(element_or_dummy(types[i]));
        for (int j = i + 1; j < n; ++j) {
            double rj = io.find_element_radius_from_index(element_or_dummy(types[j]));
            double d[3] = {x[3 * j] - x[3 * i], x[3 * j + 1] - x[3 * i + 1],
                           x[3 * j + 2] - x[3 * i + 2]};
            if (get_magnitude(d) < (ri + rj) * io.bond_dis_scale) {
                body += format_string("%3d %3d  0  0\n", i + 1, j + 1);
                ++count;
            }
        }
    }
    return std::to_string(count) + "\n" + body;
}

static void write_bond_files(FileIO& io)
{
    create_directory(io.data_dir.c_str());
    for (int m = 0; m < io.nmols; ++m) {
        if (!io.x_mol[m]) continue;
        std::string path = io.data_dir + "/mol" + std::to_string(m + 1) + "_bonds.dat";
        std::string text = molecule_bond_table(io, m);
        if (write_text_file(path.c_str(), text) != WRITE_OK)
            veska_fatal_open_output(kDriverUnit, DRIVER_ERR_BOND_FILE, path.c_str());
    }
}

void FileIO::read_crystal_strcuture_files(bool verbose, bool write_bonds)
{
    if (input_kind == 2) {
        build_molecules_from_cif(*this, verbose);
    } else if (input_kind == 1) {
        read_molecule_files(*this, verbose);
    } else {
        veska_fatal(kDriverUnit, DRIVER_ERR_INPUT_KIND, -1, stdout,
                    "No input molecule data is available. (%d)\n", input_kind);
    }

    for (int k = 0; k < 3; ++k) latt_len[k] = get_magnitude(latt_vec[k]);
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c) latt3x3[r][c] = latt_vec[c][r];
    invert(latt3x3, latt3x3_inv);

    if (input_kind == 1) derive_fractional_and_cell(*this);
    for (int m = 0; m < nmols; ++m) mol_id[m] = m + 1;
    if (write_bonds) write_bond_files(*this);
}
