#include <gtest/gtest.h>

#include <cmath>
#include <unistd.h>

#include "mmutil.h"

static std::vector<double> calls;

static double grow(double x, double y)
{
    calls.push_back(x);
    return y;
}
static double cubic(double x, double) { return x * x * x; }

TEST(MmutilIntegrate, Rk4ScalarStep)
{
    calls.clear();
    EXPECT_NEAR(rk4_one(0, 1, 0.1, grow), 1.10517083333333, 1e-13);
    EXPECT_EQ(calls, (std::vector<double>{0, 0.05, 0.05, 0.1}));
    // Independent of y: Simpson's rule, exact for a cubic.
    EXPECT_NEAR(rk4_one(1, 2, 1, cubic), 2 + (16 - 1) / 4.0, 1e-14);
}

// y0' = y1, y1' = -y0 (harmonic oscillator).
static double* oscillator(double, int n, double* y)
{
    double* d = new double[n];
    d[0] = y[1];
    d[1] = -y[0];
    return d;
}

TEST(MmutilIntegrate, Rk4VectorStepLeavesInputAlone)
{
    double y[2] = {1, 0};
    double* r = rk4_vec(0, 2, y, 0.1, oscillator);
    // One step of the method: the fourth-order Taylor sums of cos and -sin.
    EXPECT_NEAR(r[0], 1 - 0.01 / 2 + 0.0001 / 24, 1e-15);
    EXPECT_NEAR(r[1], -(0.1 - 0.001 / 6), 1e-15);
    EXPECT_EQ(y[0], 1);
    EXPECT_EQ(y[1], 0);
    delete[] r;
}

TEST(MmutilIntegrate, LinearRegression)
{
    double x[4] = {0, 1, 2, 3}, y[4] = {1, 3, 5, 0};
    double a = 9, b = 9, s = 9;
    EXPECT_EQ(LinearRegression(x, y, 3, &a, &b, &s), 0);
    EXPECT_NEAR(a, 1, 1e-14);
    EXPECT_NEAR(b, 2, 1e-14);
    EXPECT_EQ(s, 0);

    // Four points: a = 2.4, b = -0.1, residual sum of squares 14.7 over 2.
    EXPECT_EQ(LinearRegression(x, y, 4, &a, &b, &s), 0);
    EXPECT_NEAR(a, 2.4, 1e-13);
    EXPECT_NEAR(b, -0.1, 1e-13);
    EXPECT_NEAR(s, sqrt(14.7 / 2), 1e-13);

    double same[3] = {2, 2, 2};
    a = b = s = 9;
    EXPECT_EQ(LinearRegression(same, y, 3, &a, &b, &s), 0);
    EXPECT_EQ(a, 0);
    EXPECT_EQ(b, 0);
    EXPECT_EQ(s, 0);

    testing::internal::CaptureStderr();
    a = b = s = 9;
    EXPECT_EQ(LinearRegression(x, y, 2, &a, &b, &s), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Not enough data [2] (at least n > 2)!\n");
    EXPECT_EQ(a, 0);
    EXPECT_EQ(b, 0);
    EXPECT_EQ(s, 0);
}
