#include "mmutil.h"

void swap_int(int* a, int* b)
{
    int t = *a;
    *a = *b;
    *b = t;
}

void swap_dbl(double* a, double* b)
{
    double t = *a;
    *a = *b;
    *b = t;
}

void quickSort_i(int* keys, int* index, int n) { q_sort(keys, index, 0, n); }

// Range [left, right). The first key is the pivot; greater keys are swapped
// to the back, the pivot then goes to the boundary. Recursing only into the
// smaller side and looping on the larger keeps the stack shallow on sorted
// input without changing the swaps made.
void q_sort(int* keys, int* index, int left, int right)
{
    while (right > left + 1) {
        int pivot = keys[left], l = left + 1, r = right;
        while (l < r) {
            if (keys[l] <= pivot) {
                ++l;
            } else {
                --r;
                swap_int(&keys[l], &keys[r]);
                swap_int(&index[l], &index[r]);
            }
        }
        --l;
        swap_int(&keys[l], &keys[left]);
        swap_int(&index[l], &index[left]);
        if (l - left < right - r) {
            q_sort(keys, index, left, l);
            left = r;
        } else {
            q_sort(keys, index, r, right);
            right = l;
        }
    }
}

void quickSort_d(double* keys, int* index, int n)
{
    if (n > 1) q_sort2(keys, index, 0, n - 1);
}

// Range [left, right] of the index; keys stay where they are. Two positions
// close in on the key of the middle entry, which keeps sorted and all-equal
// input balanced.
void q_sort2(double* keys, int* index, int left, int right)
{
    int i = left, j = right;
    double pivot = keys[index[left + (right - left) / 2]];
    while (i <= j) {
        while (keys[index[i]] < pivot) ++i;
        while (keys[index[j]] > pivot) --j;
        if (i <= j) {
            swap_int(&index[i], &index[j]);
            ++i;
            --j;
        }
    }
    if (left < j) q_sort2(keys, index, left, j);
    if (i < right) q_sort2(keys, index, i, right);
}
