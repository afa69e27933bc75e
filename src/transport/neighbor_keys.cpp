#include "transport.h"

#include <cstdio>

#include "mmutil.h"

// Keys number the neighbours of all unit-cell molecules one after another,
// molecule 0's first.

void Transport::neighbor_map_key_2d_to_1d(int i, int j, int* key)
{
    if (nmols < 1) return;
    if (i < 1) {
        *key = j;
        return;
    }
    int sum = 0, m = 0;
    for (; m < i && m < nmols; m++) sum += nnei[m];
    if (i >= nmols) return;  // no such molecule: the output keeps its value
    *key = sum + j;
}

void Transport::neighbor_map_key_1d_to_2d(int key, int* i, int* j)
{
    if (nmols < 1) return;
    int first = 0;  // first key of molecule m
    for (int m = 0; m < nmols; m++) {
        if (key < first + nnei[m]) {
            *i = m;
            *j = key - first;
            return;
        }
        first += nnei[m];
    }
}

int Transport::neighbor_map_key_1d_to_uc_id(int key)
{
    int first = 0;
    for (int m = 0; m < nmols; m++) {
        if (key < first + nnei[m]) return m;
        first += nnei[m];
    }
    veska_fatal("transport", 4100, -1, stdout, "neighbor key mapping error!\n");
}

int Transport::check_if_key_in_keylist(int key)
{
    for (int u = 0; u < unique_pair_count; u++)
        if (unique_pair_list[u] == key) return 1;
    return 0;
}
