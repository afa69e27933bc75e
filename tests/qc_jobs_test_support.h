#ifndef VESKA_QC_JOBS_TEST_SUPPORT_H
#define VESKA_QC_JOBS_TEST_SUPPORT_H

// A small hand-made crystal for the job generators: in a monoclinic cell,
// molecule 1 (C, H) has three neighbours (molecule 2 twice, in two cells,
// and its own image), molecule 2 (N) none. Unique lists out of walk order.

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "mmutil.h"
#include "structure_common.h"
#include "test_support.h"
#include "transport.h"

inline void small_crystal(Transport& t)
{
    double cell[6] = {5, 6, 7, 90, 100, 90};
    t.cell_cell6_to_latt3x3(cell, t.latt3x3);
    const std::vector<std::vector<double>> mols = {{6, .1, .2, .3, 1, .15, .25, .35}, {7, .6, .55, .4}};
    t.nmols = t.neighbor_nmols = 2;
    t.natoms_mol = new int[2]();
    t.atypes_mol = new int*[2]();
    t.x_mol = new double*[2]();
    t.x_s_mol = new double*[2]();
    for (int m = 0; m < 2; m++) {
        allocate_molecule(t, m, (int)mols[m].size() / 4);
        for (int a = 0; a < t.natoms_mol[m]; a++) {
            t.atypes_mol[m][a] = (int)mols[m][4 * a];
            std::copy(&mols[m][4 * a + 1], &mols[m][4 * a + 4], &t.x_s_mol[m][3 * a]);
            mat_vec_mul(t.latt3x3, &t.x_s_mol[m][3 * a], &t.x_mol[m][3 * a]);
        }
    }
    t.nnei = new int[2]{3, 0};
    t.nei_mol = new int*[2]{new int[3]{1, 0, 1}, new int[1]};
    t.nei_cell[0] = new int*[2]{new int[3]{0, 1, 0}, new int[1]};
    t.nei_cell[1] = new int*[2]{new int[3]{0, 0, -1}, new int[1]};
    t.nei_cell[2] = new int*[2]{new int[3]{0, 0, 1}, new int[1]};
    t.hl_unique_count = t.re_unique_count = t.unique_pair_count = 2;
    t.hl_unique_list = new int[2]{2, 1};
    t.re_unique_list = new int[2]{2, 1};
    t.unique_pair_list = new int[2]{3, 1};
}

// The distribution's python where there is one (the one the suite's readers use).
inline std::string test_python() { return access("/usr/bin/python3", X_OK) == 0 ? "/usr/bin/python3" : "python3"; }

// Every job script below the current directory passes bash -n and shellcheck
// at error level, every driver py_compile. Without shellcheck the lint is
// skipped with a note, except under CI.
inline void expect_scripts_pass_checkers()
{
    const char* jobs = "$(find . -path '*/jobs/*' -type f)";
    if (system("command -v shellcheck >/dev/null") == 0)
        EXPECT_EQ(system((std::string("for f in ") + jobs + "; do bash -n $f || exit 1; done; shellcheck -S error -s bash " + jobs).c_str()), 0);
    else if (getenv("CI") && std::string(getenv("CI")) == "true")
        ADD_FAILURE() << "shellcheck is missing";
    else
        printf("note: shellcheck is not installed; the generated job scripts are not linted\n");
    EXPECT_EQ(system((test_python() + " -m py_compile $(find . -path '*/scr/*.py')").c_str()), 0);
}

#endif
