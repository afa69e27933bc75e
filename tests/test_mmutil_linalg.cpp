#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <unistd.h>

#include "mmutil.h"

TEST(MmutilLinalg, VectorAndMatrixProducts)
{
    double a[3][3] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 10}};
    double x[3] = {1, -1, 2}, y[3];
    mat_vec_mul(a, x, y);
    EXPECT_EQ(y[0], 5);
    EXPECT_EQ(y[1], 11);
    EXPECT_EQ(y[2], 19);
    mat_vec_mul(a, x, x);  // in place gives the same
    EXPECT_EQ(x[0], 5);
    EXPECT_EQ(x[1], 11);
    EXPECT_EQ(x[2], 19);

    double pts[2][3] = {{1, 0, 0}, {0, 0, 1}};
    mat_vec_mul_n(a, pts, pts, 2);
    EXPECT_EQ(pts[0][1], 4);
    EXPECT_EQ(pts[1][2], 10);

    EXPECT_DOUBLE_EQ(det(a), -3.0);
    double v[3] = {3, 4, 12};
    EXPECT_DOUBLE_EQ(get_magnitude(v), 13.0);
    EXPECT_DOUBLE_EQ(get_dot(v, y), 15 + 44 + 228);

    transpose_matrix(a);
    EXPECT_EQ(a[0][1], 4);
    EXPECT_EQ(a[1][0], 2);
    EXPECT_EQ(a[2][2], 10);
}

TEST(MmutilLinalg, SquareMatricesByRowPointers)
{
    double ra[2][2] = {{1, 2}, {3, 4}}, rb[2][2] = {{0, 1}, {1, 0}}, rc[2][2] = {{9, 9}, {9, 9}};
    double* a[2] = {ra[0], ra[1]};
    double* b[2] = {rb[0], rb[1]};
    double* c[2] = {rc[0], rc[1]};
    mat_mat_mul_nxn(a, b, c, 2);
    EXPECT_EQ(rc[0][0], 2);
    EXPECT_EQ(rc[0][1], 1);
    EXPECT_EQ(rc[1][0], 4);
    EXPECT_EQ(rc[1][1], 3);
    transpose_matrix(a, 2);
    EXPECT_EQ(ra[0][1], 3);
    EXPECT_EQ(ra[1][0], 2);
}

TEST(MmutilLinalg, AnintRoundsHalvesAwayFromZero)
{
    EXPECT_EQ(anint(2.5), 3.0);
    EXPECT_EQ(anint(-2.5), -3.0);
    EXPECT_EQ(anint(2.49), 2.0);
    EXPECT_EQ(anint(-0.4), 0.0);
    EXPECT_EQ(anint(0.0), 0.0);
}

TEST(MmutilLinalg, InvertAndItsTwoExits)
{
    double id[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, out[3][3];
    invert(id, out);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) EXPECT_EQ(out[i][j], i == j ? 1.0 : 0.0);
    double dg[3][3] = {{2, 0, 0}, {0, 4, 0}, {0, 0, 8}};
    invert(dg, out);
    EXPECT_EQ(out[0][0], 0.5);
    EXPECT_EQ(out[1][1], 0.25);
    EXPECT_EQ(out[2][2], 0.125);
    EXPECT_EQ(out[0][1], 0.0);

    // A skew cell: a times its inverse is the identity.
    double cell[3][3] = {{7.1, 1.3, -0.8}, {0, 9.4, 2.2}, {0.5, 0, 11.7}};
    invert(cell, out);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) {
            double s = 0;
            for (int k = 0; k < 3; ++k) s += cell[i][k] * out[k][j];
            EXPECT_NEAR(s, i == j ? 1.0 : 0.0, 1e-14);
        }

    EXPECT_EXIT(
        {
            dup2(2, 1);
            invert(cell, cell);
        },
        testing::ExitedWithCode(255),
        "^\nERROR  transport : mmutil : line 536 : \ninvert - Result matrix overlaps input\n$");
    double tiny[3][3] = {{1e-11, 0, 0}, {0, 1e-10, 0}, {0, 0, 1e-10}};
    EXPECT_EXIT(
        {
            dup2(2, 1);
            invert(tiny, out);
        },
        testing::ExitedWithCode(255),
        "^\nERROR  transport : mmutil : line 543 : \nDeterminant of matrix is zero.\n$");
}

static void copy3(const double src[3][3], double dst[3][3])
{
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) dst[i][j] = src[i][j];
}

TEST(MmutilJacobi, DiagonalMatrixNeedsNoRotation)
{
    double a[3][3] = {{4, 0, 0}, {0, -1, 0}, {0, 0, 2}}, d[3], v[3][3];
    int nrot = -7;
    jacobi_nr(a, 3, d, v, nrot);
    EXPECT_EQ(nrot, 0);
    EXPECT_EQ(d[0], 4);
    EXPECT_EQ(d[1], -1);
    EXPECT_EQ(d[2], 2);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) EXPECT_EQ(v[i][j], i == j ? 1.0 : 0.0);
}

TEST(MmutilJacobi, BlockMatrixSortedDescending)
{
    double a[3][3] = {{2, 1, 0}, {1, 2, 0}, {0, 0, 5}}, d[3], v[3][3];
    int nrot = 0;
    jacobi_nr(a, 3, d, v, nrot);
    EXPECT_GT(nrot, 0);
    // The strict upper triangle is consumed; diagonal and lower triangle stay.
    EXPECT_EQ(a[0][1], 0.0);
    EXPECT_EQ(a[1][0], 1.0);
    EXPECT_EQ(a[0][0], 2.0);
    eigsrt_nr(d, v, 3);
    EXPECT_NEAR(d[0], 5, 1e-14);
    EXPECT_NEAR(d[1], 3, 1e-14);
    EXPECT_NEAR(d[2], 1, 1e-14);
    EXPECT_NEAR(fabs(v[2][0]), 1.0, 1e-14);
    EXPECT_NEAR(v[0][0], 0.0, 1e-14);
    EXPECT_NEAR(v[1][0], 0.0, 1e-14);
}

TEST(MmutilJacobi, RandomSymmetricMatricesAreDiagonalised)
{
    std::mt19937 gen(20240611);
    std::uniform_real_distribution<double> U(-10, 10);
    for (int trial = 0; trial < 300; ++trial) {
        int n = 1 + trial % 3;
        double a[3][3] = {}, work[3][3], d[3], v[3][3];
        for (int i = 0; i < n; ++i)
            for (int j = 0; j <= i; ++j) a[i][j] = a[j][i] = U(gen);
        if (trial % 7 == 0) a[0][0] = a[n - 1][n - 1];  // repeated diagonal entries
        copy3(a, work);
        int nrot = 0;
        jacobi_nr(work, n, d, v, nrot);
        for (int i = 0; i < n; ++i) {
            for (int j = 0; j < n; ++j) {
                double vtav = 0, vtv = 0;
                for (int k = 0; k < n; ++k) {
                    vtv += v[k][i] * v[k][j];
                    for (int l = 0; l < n; ++l) vtav += v[k][i] * a[k][l] * v[l][j];
                }
                EXPECT_NEAR(vtv, i == j ? 1.0 : 0.0, 1e-13) << "trial " << trial;
                EXPECT_NEAR(vtav, i == j ? d[i] : 0.0, 1e-11) << "trial " << trial;
            }
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
    EXPECT_EQ(d[0], 3);
    EXPECT_EQ(d[1], 3);
    EXPECT_EQ(d[2], 1);
    for (int r = 0; r < 3; ++r) {
        EXPECT_EQ(v[r][0], 10 * (r + 1) + 2) << "former column 2 first";
        EXPECT_EQ(v[r][1], 10 * (r + 1) + 1);
        EXPECT_EQ(v[r][2], 10 * (r + 1) + 0);
    }
    double e[3] = {2, 5, 1};
    eigsrt_nr(e, nullptr, 3);  // without vectors
    EXPECT_EQ(e[0], 5);
    EXPECT_EQ(e[1], 2);
    EXPECT_EQ(e[2], 1);
    double one[1] = {4};
    eigsrt_nr(one, nullptr, 1);
    EXPECT_EQ(one[0], 4);
}
