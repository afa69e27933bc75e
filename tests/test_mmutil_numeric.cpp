#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <pthread.h>
#include <tuple>

#include "mmutil.h"

// Expected permutations come from a separate transcription of the two
// partitioning schemes; equal keys show that neither sort is stable.
template <class Key>
static std::vector<int> sort_index(std::vector<Key>& keys, void (*sort)(Key*, int*, int))
{
    std::vector<int> index(keys.size());
    std::iota(index.begin(), index.end(), 0);
    sort(keys.data(), index.data(), static_cast<int>(keys.size()));
    return index;
}

TEST(MmutilSort, IndexPermutations)
{
    struct Case { std::vector<int> keys, sorted, index; } cases[] = {
        {{2, 1, 2, 0}, {0, 1, 2, 2}, {3, 1, 2, 0}}, {{5, 5, 5, 5}, {5, 5, 5, 5}, {1, 2, 3, 0}},
        {{4, 1, 3, 1, 4, 2, 1}, {1, 1, 1, 2, 3, 4, 4}, {1, 3, 6, 5, 2, 4, 0}}, {{7}, {7}, {0}}, {{}, {}, {}}};
    for (Case& c : cases) {
        EXPECT_EQ(sort_index(c.keys, quickSort_i), c.index);
        EXPECT_EQ(c.keys, c.sorted);
    }
    const std::pair<std::vector<double>, std::vector<int>> dcases[] = {
        {{3, 1, 3, 2, 3}, {1, 3, 4, 0, 2}}, {{1, 1, 1}, {2, 1, 0}}, {{1}, {0}}, {{}, {}}};
    for (const auto& [keys, index] : dcases) {
        std::vector<double> moved = keys;
        EXPECT_EQ(sort_index(moved, quickSort_d), index);
        EXPECT_EQ(moved, keys);  // only the index moves
    }
}

// Sorted and all-equal keys on a 128 KiB stack: a sort that recurses once
// per key overflows it. (std::thread cannot choose a stack size.)
TEST(MmutilSort, SortedAndAllEqualKeysKeepTheStackShallow)
{
    pthread_attr_t attr;
    pthread_t thread;
    bool ok = false;
    pthread_attr_init(&attr);
    pthread_attr_setstacksize(&attr, 128 * 1024);
    auto sort_degenerate_inputs = [](void* result) -> void* {
        std::vector<int> keys(8000), index(8000), expected(8000);
        std::iota(expected.begin(), expected.end(), 0);
        keys = index = expected;
        bool sorted = sort_index(keys, quickSort_i) == expected && keys == expected;
        std::fill(keys.begin(), keys.end(), 1);
        index = sort_index(keys, quickSort_i);
        std::sort(index.begin(), index.end());  // still a permutation
        *static_cast<bool*>(result) = sorted && index == expected;
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attr, sort_degenerate_inputs, &ok), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attr);
    EXPECT_TRUE(ok);
}

// Expected numbers come from an independent transcription of the generator
// (integer arithmetic, truncating division), not from this code.
static const double kSequenceFrom1000[8] = {
    0.6554163483485531, 0.20099518545185716, 0.8936223876466522, 0.2818865431288053,
    0.5250003829714993, 0.31412677499501773, 0.4446156782993733, 0.2994744556282315,
};

TEST(MmutilRandom, SequenceSeedsAndDistributions)
{
    ran2_reset_state();
    for (double expected : kSequenceFrom1000) EXPECT_EQ(randUniform(), expected);
    // Zero and -1 initialise with seed 1, -5 with seed 5; a positive seed
    // only advances (5 * 40014).
    const std::tuple<long, double, long> seeds[] = {{5, kSequenceFrom1000[0], 200070},
                                                    {-5, 0.005088107861806251, 830243691},
                                                    {-1, 0.2853808990946861, 1454538876},
                                                    {0, 0.2853808990946861, 1454538876}};
    long seed = 0;
    for (const auto& [start, first, after] : seeds) {
        ran2_reset_state();
        seed = start;
        EXPECT_EQ(ran2(&seed), first);
        EXPECT_EQ(seed, after);
    }
    EXPECT_EQ(ran2(&seed), 0.2533581892659171);  // from the table the initialisation filled
    // rand() is never negative, so reseeding keeps the (empty) shuffle table.
    ran2_reset_state();
    init_random_seed();
    EXPECT_EQ(randUniform(), kSequenceFrom1000[0]);

    ran2_reset_state();
    EXPECT_DOUBLE_EQ(randGaussian(), 0.5794037719352104);
    EXPECT_DOUBLE_EQ(randGaussian(), -1.1147123144821651);
    EXPECT_EQ(randUniform(), kSequenceFrom1000[2]);  // the pair used two uniforms
    ran2_reset_state();
    EXPECT_DOUBLE_EQ(randExponential(), 0.4224845989507776);
}

TEST(MmutilRandom, SelectReactionBoundaries)
{
    double rates[3] = {1, 1, 2}, zero_first[2] = {0, 3};
    // At 0.25 of 4 the running sum 1 is not above 1: the second reaction.
    const std::tuple<double*, int, double, double, int> cases[] = {
        {rates, 3, 0.0, 4, 0}, {rates, 3, 0.25, 4, 1}, {rates, 3, 0.6, 4, 2}, {rates, 3, 1.0, 4, -1},
        {nullptr, 0, 0.1, 4, -1}, {zero_first, 2, 0.0, 3, 1}};
    for (const auto& [r, n, u, total, want] : cases) EXPECT_EQ(select_reaction(r, n, u, total), want) << u;
}

static double cubic(double x, double) { return x * x * x; }
static double* oscillator(double, int n, double* y)  // y0' = y1, y1' = -y0
{
    double* d = new double[n];
    d[0] = y[1];
    d[1] = -y[0];
    return d;
}

TEST(MmutilIntegrate, RungeKuttaAndLinearRegression)
{
    EXPECT_NEAR(rk4_one(1, 2, 1, cubic), 2 + (16 - 1) / 4.0, 1e-14);  // Simpson: exact for a cubic
    double y[2] = {1, 0};
    double* r = rk4_vec(0, 2, y, 0.1, oscillator);
    // One step: the fourth-order Taylor sums of cos and -sin; y untouched.
    EXPECT_NEAR(r[0], 1 - 0.01 / 2 + 0.0001 / 24, 1e-15);
    EXPECT_NEAR(r[1], -(0.1 - 0.001 / 6), 1e-15);
    EXPECT_EQ(y[0], 1);
    delete[] r;

    double x[4] = {0, 1, 2, 3}, v[4] = {1, 3, 5, 0}, same[3] = {2, 2, 2}, a, b, s;
    // Four points: a = 2.4, b = -0.1, residual sum of squares 14.7 over 2.
    EXPECT_EQ(LinearRegression(x, v, 4, &a, &b, &s), 0);
    EXPECT_NEAR(a, 2.4, 1e-13);
    EXPECT_NEAR(b, -0.1, 1e-13);
    EXPECT_NEAR(s, sqrt(14.7 / 2), 1e-13);
    EXPECT_EQ(LinearRegression(same, v, 3, &a, &b, &s), 0);
    EXPECT_EQ(std::vector<double>({a, b, s}), std::vector<double>(3, 0.0));
    a = b = s = 9;
    testing::internal::CaptureStderr();
    EXPECT_EQ(LinearRegression(x, v, 2, &a, &b, &s), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Not enough data [2] (at least n > 2)!\n");
    EXPECT_EQ(std::vector<double>({a, b, s}), std::vector<double>(3, 0.0));
}
