// Writes one file of every structure and input layout into <out-dir> for
// check_readback.py to read back with programs from outside the project.
// Standard input: "a b c alpha beta gamma na", then molecules, each a count
// and "Z x y z" rows; the first is Cartesian, the others are fractional and
// fill the cell (the supercell is na x 1 x 1). Each <cif> argument n is
// also unwrapped into <out-dir>/unwrap_<n>.cif.

#include <cstdio>
#include <string>
#include <vector>

#include "fileio.h"

struct Molecule {
    std::vector<int> z;
    std::vector<double> x;
};

static bool read_molecule(Molecule& m)
{
    int n = 0;
    if (scanf("%d", &n) != 1 || n < 0) return false;
    m.z.resize(n);
    m.x.resize(3 * static_cast<size_t>(n));
    for (size_t a = 0; a < m.z.size(); a++)
        if (scanf("%d %lf %lf %lf", &m.z[a], &m.x[3 * a], &m.x[3 * a + 1], &m.x[3 * a + 2]) != 4)
            return false;
    return true;
}

int main(int argc, char** argv)
{
    FileIO fio;
    double* c = fio.cell_latt;
    int na = 0;
    std::vector<Molecule> mols(1);
    if (argc >= 2 && scanf("%lf %lf %lf %lf %lf %lf %d", c, c + 1, c + 2, c + 3, c + 4, c + 5,
                           &na) == 7)
        while (read_molecule(mols.back())) mols.emplace_back();
    mols.pop_back();
    if (mols.size() < 2) {
        fprintf(stderr, "usage: %s <out-dir> [<cif> ...] < cell-and-molecules\n", argv[0]);
        return 2;
    }
    const std::string dir = std::string(argv[1]) + "/";
    auto at = [&](const char* name) { return dir + name; };

    const int n = static_cast<int>(mols[0].z.size());
    int* z = mols[0].z.data();
    double* x = mols[0].x.data();
    fio.write_data_xyz(at("molecule.xyz").c_str(), n, z, x);
    fio.write_data_mol(at("molecule.mol").c_str(), n, z, x);
    fio.write_gau_mol_com_HL(at("hl.com").c_str(), n, z, x, "transfer integral", "hl",
                             "b3lyp/6-31g(d)", 2000, 1, 4, "\n");
    fio.write_gau_mol_com_RE(at("re.com").c_str(), n, z, x, "cation", "re", "1 2",
                             "b3lyp/6-31g(d)", 2000, 1, 4, "\n");
    fio.write_qchem_mol_inp_HL(at("hl.qcin").c_str(), n, z, x, 1, 4, "b3lyp", "6-31g*", "");
    fio.write_qchem_mol_inp_RE(at("re.qcin").c_str(), n, z, x, 1, 4, "-1 2", "b3lyp", "6-31g*", "");

    std::vector<int> counts;
    std::vector<int*> zs;
    std::vector<double*> xs;
    for (size_t m = 1; m < mols.size(); m++) {
        counts.push_back(static_cast<int>(mols[m].z.size()));
        zs.push_back(mols[m].z.data());
        xs.push_back(mols[m].x.data());
    }
    const int nm = static_cast<int>(counts.size());
    fio.identifier = "readback";
    fio.write_unitcell_cif(at("unitcell.cif").c_str(), nm, counts.data(), zs.data(), xs.data());
    fio.write_supercell_cif(at("supercell.cif").c_str(), nm, counts.data(), zs.data(), xs.data(),
                            na, 1, 1);
    for (int i = 2; i < argc; i++) {
        const std::string out = dir + "unwrap_" + std::to_string(i - 1) + ".cif";
        FileIO().write_cif_unwrap(argv[i], out.c_str(), false, false);
    }
    return 0;
}
