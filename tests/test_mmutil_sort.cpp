#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "mmutil.h"

// Expected permutations come from a separate transcription of the two
// partitioning schemes; equal keys show that neither sort is stable.
TEST(MmutilSort, IntegerSortPermutesIndexAlong)
{
    struct Case {
        std::vector<int> keys, sorted, index;
    } cases[] = {
        {{2, 1, 2, 0}, {0, 1, 2, 2}, {3, 1, 2, 0}},
        {{5, 5, 5, 5}, {5, 5, 5, 5}, {1, 2, 3, 0}},
        {{4, 1, 3, 1, 4, 2, 1}, {1, 1, 1, 2, 3, 4, 4}, {1, 3, 6, 5, 2, 4, 0}},
    };
    for (Case& c : cases) {
        std::vector<int> index(c.keys.size());
        std::iota(index.begin(), index.end(), 0);
        quickSort_i(c.keys.data(), index.data(), static_cast<int>(c.keys.size()));
        EXPECT_EQ(c.keys, c.sorted);
        EXPECT_EQ(index, c.index);
    }
    int one = 7, idx = 3;
    quickSort_i(&one, &idx, 1);
    EXPECT_EQ(one, 7);
    EXPECT_EQ(idx, 3);
    quickSort_i(nullptr, nullptr, 0);

    // q_sort on a sub-range [left, right) leaves the rest alone.
    int keys[5] = {9, 3, 2, 1, 0}, index[5] = {0, 1, 2, 3, 4};
    q_sort(keys, index, 1, 4);
    EXPECT_EQ(std::vector<int>(keys, keys + 5), (std::vector<int>{9, 1, 2, 3, 0}));
    EXPECT_EQ(std::vector<int>(index, index + 5), (std::vector<int>{0, 3, 2, 1, 4}));
}

TEST(MmutilSort, DoubleSortReordersIndexOnly)
{
    struct Case {
        std::vector<double> keys;
        std::vector<int> index;
    } cases[] = {
        {{3, 1, 3, 2, 3}, {1, 3, 4, 0, 2}},
        {{1, 1, 1}, {2, 1, 0}},
        {{0.5, -2, 0.5, 7, -2, 0.5}, {4, 1, 5, 0, 2, 3}},
    };
    for (Case& c : cases) {
        std::vector<double> keys = c.keys;
        std::vector<int> index(keys.size());
        std::iota(index.begin(), index.end(), 0);
        quickSort_d(keys.data(), index.data(), static_cast<int>(keys.size()));
        EXPECT_EQ(keys, c.keys);
        EXPECT_EQ(index, c.index);
    }
    double k = 1;
    int idx = 0;
    quickSort_d(&k, &idx, 1);
    EXPECT_EQ(idx, 0);
    quickSort_d(nullptr, nullptr, 0);
}

TEST(MmutilSort, SortedAndAllEqualInputs)
{
    const int n = 30000;  // quadratic here, by design of the pivot choice
    std::vector<int> keys(n), index(n);
    std::iota(keys.begin(), keys.end(), 0);
    std::iota(index.begin(), index.end(), 0);
    quickSort_i(keys.data(), index.data(), n);
    EXPECT_EQ(index[n - 1], n - 1);
    std::fill(keys.begin(), keys.end(), 1);
    quickSort_i(keys.data(), index.data(), n);
    std::sort(index.begin(), index.end());  // still a permutation
    std::iota(keys.begin(), keys.end(), 0);
    EXPECT_EQ(index, keys);
}
