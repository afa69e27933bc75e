// XYZ, MDL MOL and P1 CIF output of the cell and of single molecules.

#include <cstdio>
#include <string>

#include "fatal.h"
#include "fileio.h"
#include "mmutil.h"
#include "writer_text.h"

// ---- XYZ and MOL ----------------------------------------------------------

// The open failure of the cell-form XYZ writer carries an "ERROR: " prefix
// that the given-atoms writers do not.
static void write_or_die(const char* path, const std::string& text, int number,
                         const char* prefix)
{
    if (!write_whole_file(path, text))
        veska_fatal("fileio", number, -1, stderr, "%sFailed to open output file \"%s\"\n", prefix,
                    path);
}

static std::string xyz_text(FileIO& fio, const char* path, int natoms, int* atypes, double* x)
{
    std::string text;
    text += format_string("%d\nmol xyz file\n", natoms);
    for (int a = 0; a < natoms; a++) {
        const std::string sym = output_element_symbol(fio, atypes[a], a, path);
        const double* r = x + 3 * a;
        text += format_string("%2s %14.10f %14.10f %14.10f\n", sym.c_str(), r[0], r[1], r[2]);
    }
    return text;
}

void FileIO::write_data_xyz(const char* path)
{
    announce_output("Writing file ", path, true);
    write_or_die(path, xyz_text(*this, path, natoms_cif, cif_atypes, cif_x), 3611, "ERROR: ");
}

void FileIO::write_data_xyz(const char* path, int natoms, int* atypes, double* x)
{
    announce_output("Writing file ", path, true);
    write_or_die(path, xyz_text(*this, path, natoms, atypes, x), 3612, "");
}

void FileIO::write_data_mol(const char* path)
{
    write_data_mol(path, natoms_cif, cif_atypes, cif_x);
}

void FileIO::write_data_mol(const char* path, int natoms, int* atypes, double* x)
{
    announce_output("Writing file ", path, true);
    std::string text = "Molecule\nCreated by VESKA\n\n";
    text += format_string("%3d  0  0  0  0  0  0  0  0  0999 V2000\n", natoms);
    for (int a = 0; a < natoms; a++) {
        const std::string sym = output_element_symbol(*this, atypes[a], a, path);
        const double* r = x + 3 * a;
        text += format_string(" %9.4f %9.4f %9.4f %-2s  0  0  0  0  0  0  0  0  0  0\n", r[0],
                              r[1], r[2], sym.c_str());
    }
    text += "M  END\n";
    write_or_die(path, text, 3613, "");
}

// ---- P1 CIF ---------------------------------------------------------------

static void append_cif_header(FileIO& fio, std::string& text, int na, int nb, int nc)
{
    int month = 0, day = 0, year = 0;
    get_date(&month, &day, &year);
    text += format_string("data_%s\n", fio.identifier.c_str());
    text += format_string("_audit_creation_date              %4d-%02d-%02d\n", year, month, day);
    text += "_audit_creation_method            'VESKA'\n"
            "_symmetry_space_group_name_H-M    'P1'\n"
            "_symmetry_Int_Tables_number       1\n"
            "_symmetry_cell_setting            triclinic\n"
            "loop_\n"
            "_symmetry_equiv_pos_as_xyz\n"
            "  x,y,z\n";
    static const char* const names[6] = {"length_a",    "length_b",   "length_c",
                                         "angle_alpha", "angle_beta", "angle_gamma"};
    const double scale[6] = {double(na), double(nb), double(nc), 1, 1, 1};
    for (int i = 0; i < 6; i++)
        text += format_string("_cell_%-28s%.4f\n", names[i], fio.cell_latt[i] * scale[i]);
}

static const char* const cif_atom_loop_header =
    "loop_\n"
    "_atom_site_label\n"
    "_atom_site_type_symbol\n"
    "_atom_site_fract_x\n"
    "_atom_site_fract_y\n"
    "_atom_site_fract_z\n"
    "_atom_site_U_iso_or_equiv\n"
    "_atom_site_adp_type\n"
    "_atom_site_occupancy\n";

// One image (i, j, k) of every molecule; `label` runs on across calls.
static void append_cell_image(FileIO& fio, std::string& text, const char* path, int& label,
                              int nmols, int* natoms, int** atypes, double** x_s,
                              const int image[3], const int n[3])
{
    for (int m = 0; m < nmols; m++) {
        for (int a = 0; a < natoms[m]; a++) {
            const std::string sym = output_element_symbol(fio, atypes[m][a], a, path);
            const double* s = x_s[m] + 3 * a;
            const std::string name = sym + std::to_string(++label);
            text += format_string("%-5s %2s %10.6f %10.6f %10.6f  0.00000  Uiso   1.00\n",
                                  name.c_str(), sym.c_str(), (image[0] + s[0]) / n[0],
                                  (image[1] + s[1]) / n[1], (image[2] + s[2]) / n[2]);
        }
    }
}

void FileIO::write_supercell_cif(const char* path, int nmols, int* natoms, int** atypes,
                                 double** x_s, int na, int nb, int nc)
{
    std::string text;
    append_cif_header(*this, text, na, nb, nc);
    if (nc >= 1) text += cif_atom_loop_header;
    const int n[3] = {na, nb, nc};
    int label = 0;
    for (int k = 0; k < nc; k++)
        for (int j = 0; j < nb; j++)
            for (int i = 0; i < na; i++) {
                const int image[3] = {i, j, k};
                append_cell_image(*this, text, path, label, nmols, natoms, atypes, x_s, image, n);
            }
    if (!write_whole_file(path, text)) veska_fatal_open_output("fileio", 3614, path);
}

void FileIO::write_unitcell_cif(const char* path, int nmols, int* natoms, int** atypes,
                                double** x_s)
{
    write_supercell_cif(path, nmols, natoms, atypes, x_s, 1, 1, 1);
}

void FileIO::write_cif_mol_one(FILE* out, int first_label, int natoms, int* atypes, double* x_s,
                               double* shift, double scale, int group)
{
    if (!out) return;
    std::string text;
    for (int a = 0; a < natoms; a++) {
        const std::string sym = output_element_symbol(*this, atypes[a], a, "the open CIF file");
        const double* s = x_s + 3 * a;
        const std::string name = sym + std::to_string(first_label + a + 1);
        text += format_string("%-6s %2s %10.6f %10.6f %10.6f  0.00000  %d\n", name.c_str(),
                              sym.c_str(), (s[0] + shift[0] + 1.0) / scale,
                              (s[1] + shift[1] + 1.0) / scale, (s[2] + shift[2] + 1.0) / scale,
                              group);
    }
    fputs(text.c_str(), out);
}

// ---- per-molecule files and moments -----------------------------------------

void FileIO::write_mol_files()
{
    write_supercell_cif((data_dir + "/supercell.cif").c_str(), nmols, natoms_mol, atypes_mol,
                        x_s_mol, super_cell[0], super_cell[1], super_cell[2]);
    if (mol_files.size() < static_cast<size_t>(nmols))
        veska_fatal("fileio", 3615, -1, stdout, "%d molecules but %zu MOL file names in %s\n",
                    nmols, mol_files.size(), data_dir.c_str());
    for (int m = 0; m < nmols; m++) {
        const std::string path = data_dir + "/" + mol_files[m];
        write_data_mol(path.c_str(), natoms_mol[m], atypes_mol[m], x_mol[m]);
    }
    write_unitcell_cif((data_dir + "/unitcell.cif").c_str(), nmols, natoms_mol, atypes_mol,
                       x_s_mol);
}

void FileIO::output_prin_moment_inertia(const char* path, double* eigval, double* eigvec)
{
    std::string text =
        "#eigval[3]                    eigvec1[3]                   eigvec2[3]                  "
        "eigvec3[3]\n";
    const double* v = eigvec;
    text += format_string(
        "%8.6f %8.6f %8.6f  %8.4f %8.4f %8.4f  %8.4f %8.4f %8.4f  %8.4f %8.4f %8.4f\n", eigval[0],
        eigval[1], eigval[2], v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7], v[8]);
    write_whole_file(path, text);  // an unwritable file is silently skipped
}
