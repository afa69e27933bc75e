// Writes one file of every structure and input layout into a directory,
// with expected.json describing the atoms in full precision, for
// check_readback.py to read back with programs from outside the project.
//
// usage: veska_readback_generate <out-dir> [<cif> ...]
// Each CIF given is also converted to its unwrapped P1 form, written as
// <out-dir>/unwrap_<n>.cif with n counting the CIFs from 1.

#include <cstdio>
#include <string>
#include <vector>

#include "fileio.h"

namespace {

// A molecule mixing one- and two-letter symbols; coordinates with more
// decimals than any layout writes, negative ones and wide ones.
std::vector<int> mol_types = {6, 6, 16, 1, 17, 35, 7, 8, 9, 1};  // 106 electrons
std::vector<double> mol_cart = {
    0.123456789,  -1.987654321, 12.3456789,   1.5,          0.25,          -0.125,
    -3.14159265,  2.71828183,   0.70710678,   10.0000049,   -10.0000051,   99.99994,
    -0.00004,     0.00005,      1.23456789,   2.34567891,   3.45678912,    -4.56789123,
    5.67891234,   -6.78912345,  7.89123456,   -8.91234567,  9.12345678,    -11.1111111,
    22.2222222,   -33.3333333,  44.4444444,   -0.99999999,  0.333333333,   0.666666667};

// Two molecules in fractional coordinates; the second is unwrapped and
// reaches past the cell (x = 1.02).
std::vector<int> cell_types_a = {6, 6, 1};
std::vector<int> cell_types_b = {7, 1, 35};
std::vector<double> cell_frac_a = {0.1, 0.2, 0.3, 0.2123456, 0.2876543, 0.3456789,
                                   0.05, 0.15, 0.25};
std::vector<double> cell_frac_b = {0.95, 0.6, 0.7, 1.02, 0.65, 0.75, 0.88, 0.5, 0.62};
const double cell[6] = {7.1234, 9.87654, 11.5, 88.5, 101.25, 92.0};
const int supercell[3] = {2, 1, 1};

void write_list(FILE* out, const char* name, const std::vector<double>& v, bool last = false)
{
    fprintf(out, "  \"%s\": [", name);
    for (size_t i = 0; i < v.size(); i++) fprintf(out, "%s%.17g", i ? ", " : "", v[i]);
    fprintf(out, "]%s\n", last ? "" : ",");
}

void write_list(FILE* out, const char* name, const std::vector<int>& v)
{
    fprintf(out, "  \"%s\": [", name);
    for (size_t i = 0; i < v.size(); i++) fprintf(out, "%s%d", i ? ", " : "", v[i]);
    fprintf(out, "],\n");
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        fprintf(stderr, "usage: %s <out-dir> [<cif> ...]\n", argv[0]);
        return 2;
    }
    const std::string dir = argv[1];
    auto at = [&](const char* name) { return dir + "/" + name; };

    FileIO fio;
    const int n = static_cast<int>(mol_types.size());
    int* types = mol_types.data();
    double* x = mol_cart.data();
    fio.write_data_xyz(at("molecule.xyz").c_str(), n, types, x);
    fio.write_data_mol(at("molecule.mol").c_str(), n, types, x);
    fio.write_gau_mol_com_HL(at("hl.com").c_str(), n, types, x, "transfer integral", "hl",
                             "b3lyp/6-31g(d)", 2000, 1, 4, "\n");
    fio.write_gau_mol_com_RE(at("re.com").c_str(), n, types, x, "cation", "re", "1 2",
                             "b3lyp/6-31g(d)", 2000, 1, 4, "\n");
    fio.write_qchem_mol_inp_HL(at("hl.qcin").c_str(), n, types, x, 1, 4, "b3lyp", "6-31g*", "");
    fio.write_qchem_mol_inp_RE(at("re.qcin").c_str(), n, types, x, 1, 4, "-1 2", "b3lyp",
                               "6-31g*", "");

    fio.identifier = "readback";
    for (int i = 0; i < 6; i++) fio.cell_latt[i] = cell[i];
    int natoms[2] = {3, 3};
    int* cell_types[2] = {cell_types_a.data(), cell_types_b.data()};
    double* cell_frac[2] = {cell_frac_a.data(), cell_frac_b.data()};
    fio.write_unitcell_cif(at("unitcell.cif").c_str(), 2, natoms, cell_types, cell_frac);
    fio.write_supercell_cif(at("supercell.cif").c_str(), 2, natoms, cell_types, cell_frac,
                            supercell[0], supercell[1], supercell[2]);

    FILE* out = fopen(at("expected.json").c_str(), "w");
    if (!out) {
        perror("expected.json");
        return 1;
    }
    fprintf(out, "{\n");
    write_list(out, "mol_types", mol_types);
    write_list(out, "mol_cart", mol_cart);
    std::vector<int> all_types = cell_types_a;
    all_types.insert(all_types.end(), cell_types_b.begin(), cell_types_b.end());
    std::vector<double> all_frac = cell_frac_a;
    all_frac.insert(all_frac.end(), cell_frac_b.begin(), cell_frac_b.end());
    write_list(out, "cell_types", all_types);
    write_list(out, "cell_frac", all_frac);
    write_list(out, "supercell", std::vector<int>(supercell, supercell + 3));
    write_list(out, "cell", std::vector<double>(cell, cell + 6), true);
    fprintf(out, "}\n");
    fclose(out);

    for (int i = 2; i < argc; i++) {
        FileIO crystal;
        const std::string name = dir + "/unwrap_" + std::to_string(i - 1) + ".cif";
        crystal.write_cif_unwrap(argv[i], name.c_str(), false, false);
    }
    return 0;
}
