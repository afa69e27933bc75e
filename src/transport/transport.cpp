#include "transport.h"

#include "mmutil.h"

// The bases (FileIO, then Jobscript, then the configuration's own members)
// are complete when this body runs; the workspace's own state follows.
Transport::Transport()
{
    input_kind = -1;
    get_workdir(work_dir);
    re_same_flag = false;
    hl_same_flag = true;
    // From the configuration as constructed; reading veska.inp sets them again.
    unique_uc_mol_one_calc_flag = HL_unique_mol != 0;
    unique_nei_mol_one_calc_flag = HL_unique_mol != 0;
    unique_2mol_calc_flag = HL_unique_mol != 0;
    unique_RE_calc_flag = RE_unique_mol != 0;
}

// The workspace's arrays go first; the VeskaInp, Jobscript and FileIO parts
// are released after this body, in that order.
Transport::~Transport()
{
    free_molecule_arrays();
}
