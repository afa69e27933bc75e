#include "mmutil.h"

#include <climits>
#include <cmath>
#include <utility>

void mat_vec_mul(double a[3][3], double* x, double* y)
{
    // Through a copy, so that x and y may be the same vector.
    double r[3];
    for (int i = 0; i < 3; ++i) r[i] = a[i][0] * x[0] + a[i][1] * x[1] + a[i][2] * x[2];
    for (int i = 0; i < 3; ++i) y[i] = r[i];
}

void mat_vec_mul_n(double a[3][3], double (*x)[3], double (*y)[3], int n)
{
    for (int i = 0; i < n; ++i) mat_vec_mul(a, x[i], y[i]);
}

void mat_mat_mul_nxn(double** a, double** b, double** c, int n)
{
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            c[i][j] = 0.0;
            for (int k = 0; k < n; ++k) c[i][j] += a[i][k] * b[k][j];
        }
    }
}

double det(double a[3][3])
{
    return a[0][0] * (a[1][1] * a[2][2] - a[2][1] * a[1][2]) +
           a[0][1] * (a[1][2] * a[2][0] - a[2][2] * a[1][0]) +
           a[0][2] * (a[1][0] * a[2][1] - a[2][0] * a[1][1]);
}

void invert(double a[3][3], double b[3][3])
{
    if (a == b) veska_fatal("mmutil", 536, -1, stderr, "%s - Result matrix overlaps input\n", "invert");
    double d = det(a);
    if (fabs(d) < 1e-30) veska_fatal("mmutil", 543, -1, stderr, "Determinant of matrix is zero.\n");
    // b[i][j] = cofactor of a[j][i] / D; the cyclic indexes give the signs.
    for (int i = 0; i < 3; ++i) {
        int i1 = (i + 1) % 3, i2 = (i + 2) % 3;
        for (int j = 0; j < 3; ++j) {
            int j1 = (j + 1) % 3, j2 = (j + 2) % 3;
            b[i][j] = (a[j1][i1] * a[j2][i2] - a[j1][i2] * a[j2][i1]) / d;
        }
    }
}

void transpose_matrix(double a[3][3])
{
    for (int i = 0; i < 3; ++i)
        for (int j = i + 1; j < 3; ++j) std::swap(a[i][j], a[j][i]);
}

void transpose_matrix(double** a, int n)
{
    for (int i = 0; i < n; ++i)
        for (int j = i + 1; j < n; ++j) std::swap(a[i][j], a[j][i]);
}

double get_dot(double* x, double* y) { return x[0] * y[0] + x[1] * y[1] + x[2] * y[2]; }

double get_magnitude(double* x) { return sqrt(get_dot(x, x)); }

double anint(double x)
{
    double shifted = x > 0 ? x + 0.5 : x - 0.5;
    // Outside the int range the cast would be undefined; truncate as a double.
    if (shifted >= static_cast<double>(INT_MAX) + 1.0 || shifted <= static_cast<double>(INT_MIN) - 1.0)
        return trunc(shifted);
    return static_cast<double>(static_cast<int>(shifted));
}

// ---- symmetric eigenproblem ----------------------------------------------

static const double kEps = 2.220446e-16;

static void check_order(const char* fn, int n, int number)
{
    if (n > 3) veska_fatal("mmutil", number, -1, stderr, "%s - matrix order %d is above 3\n", fn, n);
}

static inline void rotate(double& g_ref, double& h_ref, double s, double tau)
{
    double g = g_ref, h = h_ref;
    g_ref = g - s * (h + g * tau);
    h_ref = h + s * (g - h * tau);
}

// One Jacobi rotation that annihilates a[p][q].
static void jacobi_rotate(double a[][3], int n, double* d, double* z, double v[][3], int p, int q,
                          double g)
{
    double h = d[q] - d[p];
    double t;
    if (kEps * fabs(h) >= g) {
        t = a[p][q] / h;
    } else {
        double theta = 0.5 * h / a[p][q];
        t = 1.0 / (fabs(theta) + sqrt(1.0 + theta * theta));
        if (theta < 0.0) t = -t;
    }
    double c = 1.0 / sqrt(1 + t * t), s = t * c, tau = s / (1.0 + c);
    h = t * a[p][q];
    z[p] -= h;
    z[q] += h;
    d[p] -= h;
    d[q] += h;
    a[p][q] = 0.0;
    for (int j = 0; j < p; ++j) rotate(a[j][p], a[j][q], s, tau);
    for (int j = p + 1; j < q; ++j) rotate(a[p][j], a[j][q], s, tau);
    for (int j = q + 1; j < n; ++j) rotate(a[p][j], a[q][j], s, tau);
    for (int j = 0; j < n; ++j) rotate(v[j][p], v[j][q], s, tau);
}

void jacobi_nr(double a[][3], int n, double* d, double v[][3], int& nrot)
{
    check_order("jacobi_nr", n, 1180);
    double b[3], z[3];
    for (int p = 0; p < n; ++p) {
        for (int q = 0; q < n; ++q) v[p][q] = (p == q) ? 1.0 : 0.0;
        b[p] = d[p] = a[p][p];
        z[p] = 0.0;
    }
    nrot = 0;
    for (int sweep = 1; sweep <= 50; ++sweep) {
        double sm = 0.0;
        for (int p = 0; p < n - 1; ++p)
            for (int q = p + 1; q < n; ++q) sm += fabs(a[p][q]);
        if (sm == 0.0) return;
        double tresh = sweep < 4 ? 0.2 * sm / (n * n) : 0.0;
        for (int p = 0; p < n - 1; ++p) {
            for (int q = p + 1; q < n; ++q) {
                double g = 100.0 * fabs(a[p][q]);
                if (sweep > 4 && kEps * fabs(d[p]) >= g && kEps * fabs(d[q]) >= g) {
                    a[p][q] = 0.0;
                } else if (fabs(a[p][q]) > tresh) {
                    jacobi_rotate(a, n, d, z, v, p, q, g);
                    ++nrot;
                }
            }
        }
        for (int p = 0; p < n; ++p) {
            b[p] += z[p];
            d[p] = b[p];
            z[p] = 0.0;
        }
    }
    printf("ERROR: Too many iterations in routine jacobi\n");
}

void eigsrt_nr(double* d, double v[][3], int n)
{
    check_order("eigsrt_nr", n, 1250);
    for (int i = 0; i < n - 1; ++i) {
        int k = i;
        for (int j = i + 1; j < n; ++j)
            if (d[j] >= d[k]) k = j;
        if (k == i) continue;
        std::swap(d[i], d[k]);
        if (v)
            for (int j = 0; j < n; ++j) std::swap(v[j][i], v[j][k]);
    }
}
