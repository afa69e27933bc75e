// The transfer-integral and reorganisation-energy inputs of a real crystal,
// for check_qc_jobs.py: the Gaussian set into <out-dir>/gaussian, the Q-Chem
// set into <out-dir>/qchem, and on standard output one line per neighbour
// pair, "i j m ta tb tc" (one-based molecules, cell offset of m).

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "transport.h"

int main(int argc, char** argv)
{
    if (argc != 3) {
        fprintf(stderr, "usage: %s <cif> <out-dir>\n", argv[0]);
        return 2;
    }
    const std::string cif = std::filesystem::absolute(argv[1]).string();
    for (int engine : {1, 3}) {
        const std::string dir = std::string(argv[2]) + (engine == 1 ? "/gaussian" : "/qchem");
        std::filesystem::create_directories(dir);
        if (chdir(dir.c_str()) != 0) return 1;
        Transport t;
        t.read_data_cif(cif.c_str(), false);
        t.input_kind = 2;
        t.read_crystal_strcuture_files(false, false);
        t.post_data_read_treatment();
        t.build_neighbor_list(false);
        t.set_compute_engine(engine);
        t.unique_uc_mol_one_calc_flag = t.unique_nei_mol_one_calc_flag = t.unique_2mol_calc_flag = false;
        t.unique_RE_calc_flag = false;
        t.write_HL_inputs_and_jobs();
        t.write_RE_inputs_and_jobs();
        for (int i = 0; engine == 1 && i < t.nmols; i++)
            for (int j = 0; j < t.nnei[i]; j++)
                printf("%d %d %d %d %d %d\n", i + 1, j + 1, t.nei_mol[i][j] + 1, t.nei_cell[0][i][j],
                       t.nei_cell[1][i][j], t.nei_cell[2][i][j]);
    }
    return 0;
}
