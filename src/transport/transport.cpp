#include "transport.h"

#include "mmutil.h"

Transport::Transport()
{
    input_kind = -1;
    hl_same_flag = true;
    re_same_flag = false;
    get_workdir(work_dir);
}

Transport::~Transport()
{
    free_molecule_arrays();
}
