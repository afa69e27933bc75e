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
    copy_unique_flags();  // reading veska.inp copies them again
}

// The workspace's arrays go first; the VeskaInp, Jobscript and FileIO parts
// are released after this body, in that order.
Transport::~Transport()
{
    free_molecule_arrays();
}

void Transport::get_workdir(std::string& dir)
{
    ::get_workdir(dir);
}
