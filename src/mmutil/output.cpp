#include "mmutil.h"

// The table is built in memory first so that the file is written whole.
static void write_table(const char* path, const std::string& text, int number)
{
    int rc = write_text_file(path, text);
    if (rc == WRITE_OPEN_FAILED)
        veska_fatal("mmutil", number, 1, stderr, "Failed to create file %s\n", path ? path : "(null)");
    if (rc == WRITE_FAILED) veska_fatal("mmutil", number, 1, stderr, "Failed to write file %s\n", path);
}

void output_matrix(double** m, int n, int per_block, const char* path)
{
    // A non-positive block width would never advance: one block then.
    if (per_block <= 0) per_block = n > 0 ? n : 1;
    std::string text;
    for (int c0 = 0; c0 < n; c0 += per_block) {
        int c1 = c0 + per_block < n ? c0 + per_block : n;
        text += "        ";
        for (int c = c0; c < c1; ++c) text += format_string("%13d", c);
        text += '\n';
        for (int r = 0; r < n; ++r) {
            text += format_string("%7d    ", r);
            for (int c = c0; c < c1; ++c) text += format_string("%13.8f", m[r][c]);
            text += '\n';
        }
    }
    write_table(path, text, 1456);
}

void output_vector(double* v, int n, int per_line, const char* path)
{
    std::string text;
    for (int i = 0; i < n; ++i) {
        text += format_string("%14.7f", v[i]);
        if (per_line > 0 && (i + 1) % per_line == 0) text += '\n';
    }
    text += '\n';
    write_table(path, text, 1522);
}

void output_vvector(std::vector<std::vector<double>> columns, const char* path)
{
    size_t ncols = columns.size();
    size_t nrows = ncols ? columns[0].size() : 0;
    printf("ncols = %zu\n", ncols);
    printf("nrows = %zu\n", nrows);
    for (size_t c = 1; c < ncols; ++c) {
        if (columns[c].size() < nrows)
            veska_fatal("mmutil", 1548, 1, stderr,
                        "output_vvector: column %zu has %zu rows, fewer than the first one's %zu; file %s not written\n",
                        c, columns[c].size(), nrows, path ? path : "(null)");
    }
    std::string text;
    for (size_t r = 0; r < nrows; ++r) {
        for (const std::vector<double>& col : columns) text += format_string(" %14.7f", col[r]);
        text += '\n';
    }
    write_table(path, text, 1548);
}
