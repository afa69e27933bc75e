#include "fileio.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <locale>
#include <sstream>

#include "mmutil.h"
#include "periodic_grid.h"
#include "structure_common.h"

// ---- operator text ----------------------------------------------------

// "1 0 0 0.5  0 1 0 0  0 0 1 0": rotation rows with the translation as the
// fourth number of each row. Only the numbers actually present are stored.
static void parse_numeric_operator(const std::string& op, double R[3][3], double* t)
{
    std::istringstream in(op);
    in.imbue(std::locale::classic());
    for (int k = 0; k < 12; k++) {
        double v;
        if (!(in >> v)) return;
        int row = k / 4, col = k % 4;
        if (col == 3)
            t[row] = v;
        else
            R[row][col] = v;
    }
}

// One field of the symbolic form, e.g. "-x+1/2", into row r of R and t[r].
static void parse_symbolic_field(const char* f, int r, double R[3][3], double* t,
                                 double& numerator)
{
    double sign = 1.0;
    bool fraction = false;
    const char* p = f;
    while (*p) {
        char c = *p;
        if (c == '+' || c == '-') {
            sign = c == '+' ? 1.0 : -1.0;
        } else if (c == 'x' || c == 'X' || c == 'y' || c == 'Y' || c == 'z' || c == 'Z') {
            R[r][(c | 0x20) - 'x'] = sign;
        } else if (c == '/') {
            fraction = true;
        } else if ((c >= '0' && c <= '9') || c == '.') {
            char* end = nullptr;
            double v = std::strtod(p, &end);
            if (end == p) end = const_cast<char*>(p) + 1;  // a lone "." reads nothing
            if (c != '0' && c != '.' && fraction) {
                t[r] = sign * (numerator / v);
                fraction = false;
            } else {
                if (c != '0' && c != '.') numerator = std::fabs(v);
                t[r] = sign * v;
            }
            p = end;
            continue;
        }
        p++;
    }
}

void FileIO::ParseTransformString(const std::string& op, double R[3][3], double* t)
{
    if (op.find(',') == std::string::npos) {
        if (op.find(' ') == std::string::npos) return;
        parse_numeric_operator(op, R, t);
    } else {
        std::string s = RemoveWhiteSpaceUnderscore(op);
        double numerator = 0.0;
        size_t start = 0;
        for (int r = 0; r < 3 && start <= s.size(); r++) {
            size_t comma = s.find(',', start);
            size_t len = comma == std::string::npos ? std::string::npos : comma - start;
            parse_symbolic_field(s.substr(start, len).c_str(), r, R, t, numerator);
            if (comma == std::string::npos) break;
            start = comma + 1;
        }
    }
    PBC_scaled_x_wrap(t);
}

// ---- expansion --------------------------------------------------------

static void print_operator(const std::string& op, double R[3][3], const double* t)
{
    std::cout << ">> operations: " << op << "\n" << "matrix:\n";
    for (int r = 0; r < 3; r++) {
        for (int c = 0; c < 3; c++) std::cout << std::setw(4) << R[r][c];
        std::cout << "\n";
    }
    std::cout << "vector: ";
    for (int k = 0; k < 3; k++) std::cout << "  " << t[k];
    std::cout << "\n-------------------\n";
    std::cout.flush();
}

// The image arrays the expansion builds before the overlap filter.
struct ImageArrays {
    int* atypes;
    double* radius;
    double* x;
    double* x_s;
};

// The caller fills every entry; only the Cartesian coordinates, which the
// expansion leaves to the reader, start as zeros.
static ImageArrays new_image_arrays(int n)
{
    size_t un = (size_t)n;
    return {new int[un], new double[un], new double[3 * un](), new double[3 * un]};
}

// Fills images o*n .. o*n+n-1 for one operator applied to every atom.
static void apply_operator(double R[3][3], const double* t, int n, const int* atypes,
                           const double* radius, const double* src, int o, ImageArrays& img)
{
    for (int i = 0; i < n; i++) {
        size_t j = (size_t)o * n + i;
        img.atypes[j] = atypes[i];
        img.radius[j] = radius ? radius[i] : (atypes[i] >= 0 ? element_radius_nw[atypes[i]] : 9999.99);
        const double* s = src + 3 * (size_t)i;
        double* d = img.x_s + 3 * j;
        for (int r = 0; r < 3; r++) {
            d[r] = wrap_into_cell(R[r][0] * s[0] + R[r][1] * s[1] + R[r][2] * s[2] + t[r]);
        }
    }
}

// Coincidence of two images: minimum image per component (one step), sum
// of squares in fractional units.
static inline bool images_coincide(const double* a, const double* b)
{
    double s = 0.0;
    for (int k = 0; k < 3; k++) {
        double d = min_image_step(b[k] - a[k]);
        s += d * d;
    }
    return s < 1e-6;
}

// Cells along one axis that can hold a position within the coincidence
// tolerance of v (modulo 1): one, or two next to a cell face. A coincident
// pair differs by less than 1e-3 per component modulo 1; the wider window
// leaves room for rounding, and cells are at least 1/64 wide.
static int tolerance_cells(double v, int gk, int out[2])
{
    const double window = 1.5e-3;
    double f = v - floor_of(v);
    int lo = (int)floor_of((f - window) * gk), hi = (int)floor_of((f + window) * gk);
    out[0] = (lo % gk + gk) % gk;
    out[1] = (hi % gk + gk) % gk;
    return out[1] == out[0] ? 1 : 2;
}

// Flags every image that coincides with an unflagged earlier one, exactly
// as a plain pairwise scan in image order does: the first image of a group
// survives. Each image is looked up only in the cells its tolerance window
// touches, and leaves the grid once it was dealt with. Returns the number
// flagged.
static int flag_overlaps(const double* x_s, int n, std::vector<char>& flagged)
{
    flagged.assign((size_t)n, 0);
    PeriodicGrid grid;
    grid.plan_for_count(n);
    grid.build(x_s, n);
    const int* g = grid.g;
    int nflag = 0;
    for (int a = 0; a + 1 < n; a++) {
        if (flagged[a]) continue;
        const double* pa = x_s + 3 * (size_t)a;
        grid.remove(a);
        // An image with a coordinate that is not finite coincides with none.
        if (!(std::isfinite(pa[0]) && std::isfinite(pa[1]) && std::isfinite(pa[2]))) continue;
        int span[3][2], nspan[3];
        for (int k = 0; k < 3; k++) nspan[k] = tolerance_cells(pa[k], g[k], span[k]);
        for (int i = 0; i < nspan[0]; i++)
            for (int j = 0; j < nspan[1]; j++)
                for (int l = 0; l < nspan[2]; l++) {
                    int cell = (span[0][i] * g[1] + span[1][j]) * g[2] + span[2][l];
                    int k = grid.cells[cell].first;
                    while (k < grid.cells[cell].first + grid.cells[cell].count) {
                        int b = grid.items[k];
                        if (images_coincide(pa, x_s + 3 * (size_t)b)) {
                            flagged[b] = 1;
                            nflag++;
                            grid.remove(b);
                        } else {
                            k++;
                        }
                    }
                }
    }
    return nflag;
}

// The pairwise scan flag_overlaps stands in for.
static int flag_overlaps_plain(const double* x_s, int n, std::vector<char>& flagged)
{
    flagged.assign((size_t)n, 0);
    int nflag = 0;
    for (int a = 0; a + 1 < n; a++)
        for (int b = a + 1; b < n && !flagged[a]; b++)
            if (!flagged[b] && images_coincide(x_s + 3 * (size_t)a, x_s + 3 * (size_t)b)) {
                flagged[b] = 1;
                nflag++;
            }
    return nflag;
}

// Keeps the unflagged images in image order.
static ImageArrays compact_images(const ImageArrays& img, int n, const std::vector<char>& flagged,
                                  int keep)
{
    ImageArrays out = new_image_arrays(keep);
    int m = 0;
    for (int j = 0; j < n; j++) {
        if (flagged[j]) continue;
        out.atypes[m] = img.atypes[j];
        out.radius[m] = img.radius[j];
        for (int k = 0; k < 3; k++) {
            out.x[3 * m + k] = img.x[3 * j + k];
            out.x_s[3 * m + k] = img.x_s[3 * j + k];
        }
        m++;
    }
    return out;
}

static void delete_image_arrays(ImageArrays& img)
{
    delete[] img.atypes;
    delete[] img.radius;
    delete[] img.x;
    delete[] img.x_s;
}

// Drops every image that overlaps an earlier one, with the three warning
// lines; returns the number of images kept.
static int remove_overlapped_images(ImageArrays& img, int N, bool plain)
{
    std::vector<char> flagged;
    int nflag = plain ? flag_overlaps_plain(img.x_s, N, flagged) : flag_overlaps(img.x_s, N, flagged);
    if (nflag == 0) return N;
    printf("WARNING: Overlapped atoms detected and to be removed\n");
    printf("         Number of overlapped atoms is %d\n", nflag);
    printf("         Number of remaining atoms is %d\n", N - nflag);
    ImageArrays kept = compact_images(img, N, flagged, N - nflag);
    delete_image_arrays(img);
    img = kept;
    return N - nflag;
}

void FileIO::make_spacegroup_P1(int use_fractional)
{
    const int n = natoms_cif;
    const long long total = (long long)symm_ops.size() * (n > 0 ? n : 0);
    if (total > INT_MAX)
        veska_fatal("fileio", 301, -1, stdout,
                    "Too many atoms after symmetry expansion of %s: %lld\n", crystal_file.c_str(),
                    total);
    const int N = (int)total;

    // A Cartesian source is converted first so that images are always
    // built and wrapped in fractional units.
    std::vector<double> src;
    if (!use_fractional && n > 0) {
        src.assign(cif_x, cif_x + 3 * (size_t)n);
        for (int i = 0; i < n; i++) coord_c2f(&src[3 * (size_t)i], &src[3 * (size_t)i]);
    }
    const double* from = use_fractional ? cif_x_s : src.data();
    if (n > 0 && (from == nullptr || cif_atypes == nullptr))
        veska_fatal("fileio", 302, -1, stdout, "No atom coordinates to expand for %s\n",
                    crystal_file.c_str());

    ImageArrays img = new_image_arrays(N);
    for (size_t o = 0; o < symm_ops.size() && n > 0; o++) {
        double R[3][3] = {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}};
        double t[3] = {0, 0, 0};
        ParseTransformString(symm_ops[o], R, t);
        if (debug_print) print_operator(symm_ops[o], R, t);
        apply_operator(R, t, n, cif_atypes, cif_radius, from, (int)o, img);
    }

    int kept = remove_overlapped_images(img, N, plain_scans);
    free_cif_atom_arrays();
    cif_atypes = img.atypes;
    cif_radius = img.radius;
    cif_x = img.x;
    cif_x_s = img.x_s;
    natoms_cif = kept;
}
