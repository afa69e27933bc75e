#include "fileio.h"

#include <cmath>

#include "structure_common.h"

void FileIO::get_cif_lattice_vectors(double* a, double* b, double* c)
{
    for (int r = 0; r < 3; r++) {
        a[r] = latt3x3[r][0];
        b[r] = latt3x3[r][1];
        c[r] = latt3x3[r][2];
    }
}

// Upper-triangular cell matrix: a along x, b in the xy plane.
static void cell_matrix(const double* cell6, double m[3][3])
{
    double a = cell6[0], b = cell6[1], c = cell6[2];
    double ca = std::cos(cell6[3] * kCellPi / 180.0);
    double cb = std::cos(cell6[4] * kCellPi / 180.0);
    double cg = std::cos(cell6[5] * kCellPi / 180.0);
    double sg = std::sin(cell6[5] * kCellPi / 180.0);
    m[0][0] = a;
    m[0][1] = b * cg;
    m[0][2] = c * cb;
    m[1][0] = 0.0;
    m[1][1] = b * sg;
    m[1][2] = c * (ca - cb * cg) / sg;
    m[2][0] = 0.0;
    m[2][1] = 0.0;
    m[2][2] = (c / sg) * std::sqrt(1.0 - ca * ca - cb * cb - cg * cg + 2.0 * ca * cb * cg);
}

// Back substitution on the upper-triangular matrix.
static void upper_triangular_inverse(const double m[3][3], double inv[3][3])
{
    inv[0][0] = 1.0 / m[0][0];
    inv[0][1] = -m[0][1] / (m[0][0] * m[1][1]);
    inv[0][2] = -(m[0][2] / m[0][0] - m[0][1] * m[1][2] / (m[0][0] * m[1][1])) / m[2][2];
    inv[1][0] = 0.0;
    inv[1][1] = 1.0 / m[1][1];
    inv[1][2] = -(m[1][2] / m[1][1]) / m[2][2];
    inv[2][0] = 0.0;
    inv[2][1] = 0.0;
    inv[2][2] = 1.0 / m[2][2];
}

void FileIO::cell_cell6_to_latt3x3(double* cell6, double latt[3][3])
{
    cell_matrix(cell6, latt);
    for (int r = 0; r < 3; r++)
        for (int c = 0; c < 3; c++) latt3x3[r][c] = latt[r][c];
    upper_triangular_inverse(latt3x3, latt3x3_inv);
}

void FileIO::set_cell_lattice(double* abc, double alpha, double beta, double gamma)
{
    cell_latt[0] = abc[0];
    cell_latt[1] = abc[1];
    cell_latt[2] = abc[2];
    cell_latt[3] = alpha;
    cell_latt[4] = beta;
    cell_latt[5] = gamma;
}

// out := m in; safe when in and out are the same vector.
static void apply_matrix(const double m[3][3], const double* in, double* out)
{
    double x = in[0], y = in[1], z = in[2];
    for (int r = 0; r < 3; r++) out[r] = m[r][0] * x + m[r][1] * y + m[r][2] * z;
}

static void apply_matrix(const double m[3][3], double& x, double& y, double& z)
{
    double v[3] = {x, y, z};
    apply_matrix(m, v, v);
    x = v[0];
    y = v[1];
    z = v[2];
}

void FileIO::coord_f2c(double& x, double& y, double& z)
{
    apply_matrix(latt3x3, x, y, z);
}

void FileIO::coord_c2f(double& x, double& y, double& z)
{
    apply_matrix(latt3x3_inv, x, y, z);
}

void FileIO::coord_f2c(double* in, double* out)
{
    apply_matrix(latt3x3, in, out);
}

void FileIO::coord_c2f(double* in, double* out)
{
    apply_matrix(latt3x3_inv, in, out);
}

void FileIO::PBC_scaled_x_wrap(double* s)
{
    for (int k = 0; k < 3; k++) s[k] = wrap_into_cell(s[k]);
}

void FileIO::PBC_scaled_disp_wrap(double* d)
{
    for (int k = 0; k < 3; k++) d[k] = min_image_step(d[k]);
}
