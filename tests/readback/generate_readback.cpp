// One file of every structure and input layout, for check_readback.py. Input:
// "a b c alpha beta gamma na", then molecules as a count and "Z x y z" rows:
// the first Cartesian, the others fractional, filling the cell (and an
// na x 1 x 1 supercell). The n-th <cif> is unwrapped into unwrap_<n>.cif.

#include <cstdio>
#include <string>
#include <vector>

#include "fileio.h"

int main(int argc, char** argv)
{
    FileIO fio;
    double* c = fio.cell_latt;
    int na = 0, n = 0;
    std::vector<int> counts;
    std::vector<std::vector<int>> z;
    std::vector<std::vector<double>> x;
    bool ok = argc >= 2 && scanf("%lf %lf %lf %lf %lf %lf %d", c, c + 1, c + 2, c + 3, c + 4,
                                 c + 5, &na) == 7;
    while (ok && scanf("%d", &n) == 1 && n >= 0) {
        counts.push_back(n);
        z.emplace_back(n);
        x.emplace_back(3 * static_cast<size_t>(n));
        for (size_t a = 0; ok && a < z.back().size(); a++)
            ok = scanf("%d %lf %lf %lf", &z.back()[a], &x.back()[3 * a], &x.back()[3 * a + 1],
                       &x.back()[3 * a + 2]) == 4;
    }
    if (!ok || counts.size() < 2) {
        fprintf(stderr, "usage: %s <out-dir> [<cif> ...] < cell-and-molecules\n", argv[0]);
        return 2;
    }
    const std::string dir = std::string(argv[1]) + "/";
    auto at = [&](const std::string& name) { return dir + name; };
    int* z0 = z[0].data();
    double* x0 = x[0].data();
    fio.write_data_xyz(at("molecule.xyz").c_str(), counts[0], z0, x0);
    fio.write_data_mol(at("molecule.mol").c_str(), counts[0], z0, x0);
    fio.write_gau_mol_com_HL(at("hl.com").c_str(), counts[0], z0, x0, "transfer integral", "hl",
                             "b3lyp/6-31g(d)", 2000, 1, 4, "\n");
    fio.write_gau_mol_com_RE(at("re.com").c_str(), counts[0], z0, x0, "cation", "re", "1 2",
                             "b3lyp/6-31g(d)", 2000, 1, 4, "\n");
    fio.write_qchem_mol_inp_HL(at("hl.qcin").c_str(), counts[0], z0, x0, 1, 4, "b3lyp", "6-31g*",
                               "");
    fio.write_qchem_mol_inp_RE(at("re.qcin").c_str(), counts[0], z0, x0, 1, 4, "-1 2", "b3lyp",
                               "6-31g*", "");

    std::vector<int*> zs;
    std::vector<double*> xs;
    for (size_t m = 1; m < counts.size(); m++) {
        zs.push_back(z[m].data());
        xs.push_back(x[m].data());
    }
    const int nm = static_cast<int>(zs.size());
    fio.identifier = "readback";
    fio.write_unitcell_cif(at("unitcell.cif").c_str(), nm, &counts[1], zs.data(), xs.data());
    fio.write_supercell_cif(at("supercell.cif").c_str(), nm, &counts[1], zs.data(), xs.data(), na,
                            1, 1);
    for (int i = 2; i < argc; i++) {
        const std::string out = at("unwrap_" + std::to_string(i - 1) + ".cif");
        FileIO().write_cif_unwrap(argv[i], out.c_str(), false, false);
    }
    return 0;
}
