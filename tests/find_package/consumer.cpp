// Reads a crystal through the installed library and prints its molecules
// and neighbour pairs.
#include <cstdio>

#include "transport.h"

int main(int argc, char** argv)
{
    if (argc != 2) return 2;
    Transport t;
    t.input_kind = 2;
    t.read_data_cif(argv[1], false);
    t.read_crystal_strcuture_files(false, false);
    t.post_data_read_treatment();
    t.build_neighbor_list(false);
    int pairs = 0;
    for (int i = 0; i < t.nmols; i++) pairs += t.nnei[i];
    printf("molecules %d pairs %d\n", t.nmols, pairs);
    return 0;
}
