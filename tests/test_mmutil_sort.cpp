#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

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

TEST(MmutilSort, LargeAndSortedInputs)
{
    const int n = 200000;
    std::vector<int> ik(n), ii(n);
    std::vector<double> dk(n);
    std::vector<int> di(n);
    std::mt19937 gen(7);
    for (int i = 0; i < n; ++i) {
        ik[i] = static_cast<int>(gen() % 1000);
        dk[i] = ik[i] * 0.5;
    }
    std::vector<int> orig = ik;
    std::iota(ii.begin(), ii.end(), 0);
    std::iota(di.begin(), di.end(), 0);
    quickSort_i(ik.data(), ii.data(), n);
    quickSort_d(dk.data(), di.data(), n);
    EXPECT_TRUE(std::is_sorted(ik.begin(), ik.end()));
    for (int i = 0; i < n; ++i) {
        ASSERT_EQ(orig[ii[i]], ik[i]);
        if (i) {
            ASSERT_LE(dk[di[i - 1]], dk[di[i]]);
        }
    }
    // Already sorted input must not exhaust the stack.
    std::iota(ii.begin(), ii.end(), 0);
    quickSort_i(ik.data(), ii.data(), n);
    EXPECT_TRUE(std::is_sorted(ik.begin(), ik.end()));

    int a = 1, b = 2;
    swap_int(&a, &b);
    EXPECT_EQ(a, 2);
    double x = 1.5, y = -1;
    swap_dbl(&x, &y);
    EXPECT_EQ(x, -1);
    EXPECT_EQ(y, 1.5);
}
