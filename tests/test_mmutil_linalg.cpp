#include <gtest/gtest.h>

#include <random>
#include <unistd.h>

#include "mmutil.h"

TEST(MmutilLinalg, ProductsInPlaceRoundingAndInverse)
{
    double a[3][3] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 10}};
    double x[3] = {1, -1, 2};
    mat_vec_mul(a, x, x);
    EXPECT_EQ(std::vector<double>(x, x + 3), (std::vector<double>{5, 11, 19}));
    EXPECT_DOUBLE_EQ(det(a), -3.0);
    double r0[2] = {1, 2}, r1[2] = {3, 4}, s0[2] = {0, 1}, s1[2] = {1, 0}, c0[2] = {9, 9}, c1[2] = {9, 9};
    double *ma[2] = {r0, r1}, *mb[2] = {s0, s1}, *mc[2] = {c0, c1};
    mat_mat_mul_nxn(ma, mb, mc, 2);  // c is cleared first
    EXPECT_EQ(std::vector<double>({c0[0], c0[1], c1[0], c1[1]}), (std::vector<double>{2, 1, 4, 3}));
    EXPECT_EQ(std::vector<double>({anint(2.5), anint(-2.5), anint(-0.4)}), (std::vector<double>{3, -3, 0}));

    double cell[3][3] = {{7.1, 1.3, -0.8}, {0, 9.4, 2.2}, {0.5, 0, 11.7}}, out[3][3];
    invert(cell, out);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) {
            double s = 0;
            for (int k = 0; k < 3; ++k) s += cell[i][k] * out[k][j];
            EXPECT_NEAR(s, i == j ? 1.0 : 0.0, 1e-14);
        }
    EXPECT_EXIT((dup2(2, 1), invert(cell, cell)), testing::ExitedWithCode(255),
                "^\nERROR  transport : mmutil : line 536 : \ninvert - Result matrix overlaps input\n$");
    double tiny[3][3] = {{1e-11, 0, 0}, {0, 1e-10, 0}, {0, 0, 1e-10}};
    EXPECT_EXIT((dup2(2, 1), invert(tiny, out)), testing::ExitedWithCode(255),
                "^\nERROR  transport : mmutil : line 543 : \nDeterminant of matrix is zero.\n$");
}

TEST(MmutilJacobi, RandomSymmetricMatricesAreDiagonalised)
{
    std::mt19937 gen(20240611);
    std::uniform_real_distribution<double> U(-10, 10);
    for (int trial = 0; trial < 300; ++trial) {
        SCOPED_TRACE(trial);
        int n = 1 + trial % 3, nrot = 0;
        double a[3][3] = {}, work[3][3], d[3], v[3][3];
        for (int i = 0; i < n; ++i)
            for (int j = 0; j <= i; ++j) work[i][j] = work[j][i] = a[i][j] = a[j][i] = U(gen);
        if (trial % 7 == 0) work[0][0] = a[0][0] = a[n - 1][n - 1];  // repeated diagonal entries
        if (trial % 11 == 0)  // already diagonal
            for (int i = 0; i < n; ++i)
                for (int j = 0; j < n; ++j) work[i][j] = a[i][j] = i == j ? a[i][j] : 0.0;
        jacobi_nr(work, n, d, v, nrot);
        for (int i = 0; i < n; ++i)
            for (int j = 0; j < n; ++j) {
                double vtav = 0, vtv = 0;
                for (int k = 0; k < n; ++k) {
                    vtv += v[k][i] * v[k][j];
                    for (int l = 0; l < n; ++l) vtav += v[k][i] * a[k][l] * v[l][j];
                }
                EXPECT_NEAR(vtv, i == j ? 1.0 : 0.0, 1e-13);
                EXPECT_NEAR(vtav, i == j ? d[i] : 0.0, 1e-11);
            }
        eigsrt_nr(d, v, n);
        for (int i = 1; i < n; ++i) EXPECT_GE(d[i - 1], d[i]);
    }
}

TEST(MmutilJacobi, SortTiesGoToTheLaterIndex)
{
    double d[3] = {1, 3, 3};
    double v[3][3] = {{10, 11, 12}, {20, 21, 22}, {30, 31, 32}};
    eigsrt_nr(d, v, 3);
    EXPECT_EQ(std::vector<double>(d, d + 3), (std::vector<double>{3, 3, 1}));
    // Former column 2 comes first.
    EXPECT_EQ(std::vector<double>(&v[0][0], &v[0][0] + 9), (std::vector<double>{12, 11, 10, 22, 21, 20, 32, 31, 30}));
    double e[3] = {2, 5, 1};
    eigsrt_nr(e, nullptr, 3);  // without vectors
    EXPECT_EQ(std::vector<double>(e, e + 3), (std::vector<double>{5, 2, 1}));
}
