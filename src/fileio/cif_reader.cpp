// CIF reader: a line scanner over a fixed subset of tags and three kinds of
// loop (symmetry operators, atom sites, bonds; anisotropic displacements are
// checked and dropped). The atoms are then expanded to the P1 cell and
// separated into molecules.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string_view>

#include "fileio.h"
#include "mmutil.h"
#include "structure_common.h"

// Numbers identifying the places where a CIF read stops.
enum {
    CIF_ERR_OPEN = 1061,
    CIF_ERR_ROW_COLUMNS = 1236,
    CIF_ERR_NO_CELL = 1390,
};

static const char* const kCifUnit = "fileio";

// ---- the file as lines -------------------------------------------------

// The whole file in one buffer; false when it cannot be opened or read (a
// directory included). Plain system calls, as few as a regular file allows:
// a read asks for one byte more than the size, so a short read ends it.
static bool read_whole_file(const char* path, std::string& text)
{
    if (!path) return false;
    int fd = open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    struct stat st;
    bool ok = fstat(fd, &st) == 0 && !S_ISDIR(st.st_mode);
    size_t used = 0;
    text.assign(st.st_size > 0 ? (size_t)st.st_size + 1 : 4096, '\0');
    while (ok) {
        if (used == text.size()) text.resize(2 * text.size());
        ssize_t got = read(fd, &text[used], text.size() - used);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) {
            ok = got == 0;
            break;
        }
        used += (size_t)got;
    }
    close(fd);
    text.resize(used);
    return ok;
}

// Lines as getline gives them: split at each '\n' (kept '\r's included), no
// empty line after a final line end.
static std::vector<std::string_view> split_lines(std::string_view text)
{
    std::vector<std::string_view> lines;
    lines.reserve(text.size() / 40 + 1);
    size_t pos = 0;
    while (pos < text.size()) {
        size_t end = text.find('\n', pos);
        if (end == std::string_view::npos) end = text.size();
        lines.push_back(text.substr(pos, end - pos));
        pos = end + 1;
    }
    return lines;
}

// ---- small text tests --------------------------------------------------

static inline bool is_blank(char c) { return c == ' ' || c == '\t'; }
static inline bool is_blank_or_end(char c)
{
    // blanks, tabs and line ends: ' ' is the highest of the four
    return (unsigned char)c <= ' ' && (c == ' ' || c == '\t' || c == '\n' || c == '\r');
}

// Blanks and tabs off the left; blanks, tabs and line ends off the right.
static std::string_view trimmed_view(std::string_view s)
{
    size_t first = 0, last = s.size();
    while (first < last && is_blank(s[first])) ++first;
    if (first == last) return {};
    while (last > first && is_blank_or_end(s[last - 1])) --last;
    return s.substr(first, last - first);
}

static bool starts_with(std::string_view s, std::string_view prefix)
{
    return s.substr(0, prefix.size()) == prefix;
}

static bool contains(std::string_view s, const char* tag) { return s.find(tag) != std::string_view::npos; }

static bool is_comment(std::string_view t) { return !t.empty() && t[0] == '#'; }

// "data_" in any case: only letters have a case, and setting bit 5 lowers
// exactly the upper-case letters among them.
static bool starts_data_block(std::string_view t)
{
    return t.size() >= 5 && (t[0] | 0x20) == 'd' && (t[1] | 0x20) == 'a' &&
           (t[2] | 0x20) == 't' && (t[3] | 0x20) == 'a' && t[4] == '_';
}

// Position of the first blank or tab, the split between a tag and its value.
static size_t first_blank(std::string_view t)
{
    for (size_t k = 0; k < t.size(); ++k)
        if (is_blank(t[k])) return k;
    return std::string_view::npos;
}

// The words of a row between blanks, tabs and line ends; a NUL byte ends
// the row, as it ends a C string.
static void split_row(std::string_view t, std::vector<std::string_view>& words)
{
    words.clear();
    size_t pos = 0, n = t.size();
    for (;;) {
        while (pos < n && is_blank_or_end(t[pos])) ++pos;
        if (pos == n || t[pos] == '\0') return;
        size_t begin = pos;
        while (pos < n && (unsigned char)t[pos] > ' ') ++pos;  // the common case
        while (pos < n && !is_blank_or_end(t[pos]) && t[pos] != '\0') ++pos;
        words.push_back(t.substr(begin, pos - begin));
    }
}

using Lines = std::vector<std::string_view>;

// ---- loops ---------------------------------------------------------------

// One kind of tagged loop: the tags whose column numbers are needed (all of
// them must be present for the rows to be read), the fewest tokens a row may
// hold, whether an empty line ends the rows, and where the columns go.
struct CifLoopKind {
    const char* tags[5];
    int ntags;
    size_t min_tokens;
    bool empty_line_ends;
};

static const CifLoopKind kAtomSiteLoop = {
    {"_atom_site_label", "_atom_site_type_symbol", "_atom_site_fract_x", "_atom_site_fract_y",
     "_atom_site_fract_z"},
    5, 5, true};
static const CifLoopKind kAnisoLoop = {
    {"_atom_site_aniso_label", "_atom_site_aniso_U_11", "_atom_site_aniso_U_22",
     "_atom_site_aniso_U_33", nullptr},
    4, 4, false};
static const CifLoopKind kBondLoop = {
    {"_geom_bond_atom_site_label_1", "_geom_bond_atom_site_label_2", "_geom_bond_distance",
     "_geom_bond_site_symmetry_2", "_ccdc_geom_bond_type"},
    5, 5, false};

// Numbers the header lines (those beginning with "_") from 1 and records, for
// each, the first needed tag it contains. Returns the index of the first row.
static size_t read_loop_header(const Lines& lines, size_t r, const CifLoopKind& kind, int* cols)
{
    int number = 0;
    for (; r < lines.size(); ++r) {
        std::string_view t = trimmed_view(lines[r]);
        if (t.empty() || t[0] != '_') break;
        ++number;
        for (int k = 0; k < kind.ntags; ++k) {
            if (contains(t, kind.tags[k])) {
                cols[k] = number;
                break;
            }
        }
    }
    return r;
}

// What a trimmed line is to a tagged loop: a row, a line to skip, or the
// end of the rows. Rows end at a "loop_" line, and also at an empty line
// when the kind says so; for an atom-site loop empty lines before the first
// row are skipped (a loop has at least one row).
enum RowStep { ROW_READ, ROW_SKIP, ROW_END };

static RowStep row_step(std::string_view t, const CifLoopKind& kind, bool any_row)
{
    if (is_comment(t)) return ROW_SKIP;
    if (starts_with(t, "loop_")) return ROW_END;
    if (t.empty() && kind.empty_line_ends) return any_row ? ROW_END : ROW_SKIP;
    return ROW_READ;
}

// Reads the rows of a tagged loop into `dest` (null entries drop the column),
// up to the end of the rows or of the file. Returns the row index where
// reading stopped.
static size_t read_loop_rows(const Lines& lines, size_t r, const CifLoopKind& kind,
                             const int* cols, std::vector<std::string>* const* dest)
{
    size_t needed = kind.min_tokens;
    for (int k = 0; k < kind.ntags; ++k) needed = std::max(needed, static_cast<size_t>(cols[k]));
    // Find the rows first so that each column is allocated once.
    std::vector<std::string_view> rows;
    for (; r < lines.size(); ++r) {
        std::string_view t = trimmed_view(lines[r]);
        RowStep step = row_step(t, kind, !rows.empty());
        if (step == ROW_END) break;
        if (step == ROW_READ) rows.push_back(t);
    }
    for (int k = 0; k < kind.ntags; ++k)
        if (dest[k]) dest[k]->reserve(dest[k]->size() + rows.size());
    std::vector<std::string_view> tokens;
    for (std::string_view t : rows) {
        split_row(t, tokens);
        if (tokens.size() < needed) {
            veska_fatal(kCifUnit, CIF_ERR_ROW_COLUMNS, -1, stdout,
                        "Not enough columns: %s\nAt least %zu columns are expected!\n",
                        std::string(t).c_str(),
                        tokens.size() < kind.min_tokens ? kind.min_tokens : needed);
        }
        for (int k = 0; k < kind.ntags; ++k)
            if (dest[k]) dest[k]->emplace_back(tokens[cols[k] - 1]);
    }
    return r;
}

// A tagged loop whose header starts at line `r`. Returns where scanning goes
// on; `ended_scan` is set when the rows were read and the kind ends the scan.
static size_t read_tagged_loop(const Lines& lines, size_t r, const CifLoopKind& kind,
                               std::vector<std::string>* const* dest, bool* rows_read)
{
    int cols[5] = {0, 0, 0, 0, 0};
    size_t first_row = read_loop_header(lines, r, kind, cols);
    *rows_read = false;
    for (int k = 0; k < kind.ntags; ++k)
        if (cols[k] == 0) return first_row;
    *rows_read = true;
    return read_loop_rows(lines, first_row, kind, cols, dest);
}

// Operator rows after the operator header at line `r - 1`. Rows end at an
// empty line (once a row was read), a tag, "loop_", "data_" or the end of
// the file; scanning resumes at that line.
static size_t read_operator_rows(const Lines& lines, size_t r, bool id_column,
                                 std::vector<std::string>& symm_ops)
{
    bool any_row = false;
    for (; r < lines.size(); ++r) {
        std::string_view t = trimmed_view(lines[r]);
        if (is_comment(t)) continue;
        if (t.empty()) {
            if (any_row) break;
            continue;
        }
        if (t[0] == '_' || starts_with(t, "loop_") || starts_data_block(t)) break;
        any_row = true;
        std::string op;
        if (id_column) {
            size_t b = first_blank(t);
            if (b != std::string_view::npos) op = t.substr(b + 1);
        } else {
            op = t;
        }
        sg_trim(op);
        if (!op.empty()) symm_ops.push_back(op);
    }
    return r;
}

static bool is_operator_tag(std::string_view t)
{
    return contains(t, "_symmetry_equiv_pos_as_xyz") ||
           contains(t, "_space_group_symop_operation_xyz");
}

// ---- the scanner -----------------------------------------------------------

struct CifScanner {
    FileIO& io;
    const Lines& lines;
    const char* path;
    size_t unclosed_text_field = 0;  // 1-based line of a text field never closed
    bool atom_loop_read = false;

    size_t handle_loop(size_t loop_line);
    size_t skip_text_field(size_t r);
    bool apply_tag_rules(std::string_view t, unsigned tags);
    void scan();
};

// Skips the text field opened at line r; returns the line after its end.
size_t CifScanner::skip_text_field(size_t r)
{
    for (size_t k = r + 1; k < lines.size(); ++k)
        if (!lines[k].empty() && lines[k][0] == ';') return k + 1;
    unclosed_text_field = r + 1;
    return lines.size();
}

size_t CifScanner::handle_loop(size_t loop_line)
{
    size_t h = loop_line + 1;
    if (h >= lines.size()) return h;
    std::string_view head = trimmed_view(lines[h]);

    bool id_column = contains(head, "_symmetry_equiv_pos_site_id");
    size_t op_header = id_column ? h + 1 : h;
    if (op_header < lines.size() && is_operator_tag(trimmed_view(lines[op_header])))
        return read_operator_rows(lines, op_header + 1, id_column, io.symm_ops);

    bool rows_read = false;
    if (contains(head, "_atom_site_aniso")) {
        std::vector<std::string>* dest[5] = {nullptr, nullptr, nullptr, nullptr, nullptr};
        return read_tagged_loop(lines, h, kAnisoLoop, dest, &rows_read);
    }
    if (contains(head, "_atom_site")) {
        Atoms& a = io.cif_atoms;
        std::vector<std::string>* dest[5] = {&a.label, &a.type_symbol, &a.fract_x, &a.fract_y,
                                             &a.fract_z};
        size_t next = read_tagged_loop(lines, h, kAtomSiteLoop, dest, &rows_read);
        atom_loop_read = rows_read;
        return next;
    }
    if (contains(head, "_geom_bond") || contains(head, "_ccdc_geom")) {
        Bonds& b = io.cif_bonds;
        std::vector<std::string>* dest[5] = {&b.atom_label_1, &b.atom_label_2, &b.distance,
                                             &b.site_symmetry_2, &b.bond_type};
        return read_tagged_loop(lines, h, kBondLoop, dest, &rows_read);
    }
    return h;  // any other loop: its lines go through the ordinary rules
}

// The tags of rules 4 to 7, in the order the rules try them, and "loop_".
enum {
    TAG_CHEMICAL_NAME,
    TAG_IT_NUMBER,
    TAG_HM_OLD,
    TAG_HM_NEW,
    TAG_CELL,  // then the five other cell parameters
    TAG_COUNT = TAG_CELL + 6,
    TAG_LOOP = TAG_COUNT
};
static const std::string_view kRuleTags[TAG_COUNT] = {
    "_chemical_name_common",    "_space_group_IT_number", "_symmetry_space_group_name_H-M",
    "_space_group_name_H-M_alt", "_cell_length_a",         "_cell_length_b",
    "_cell_length_c",            "_cell_angle_alpha",      "_cell_angle_beta",
    "_cell_angle_gamma"};

// Which rule tags and whether "loop_" occur anywhere in t, one bit each,
// from the underscores of t: every rule tag starts with one followed by "c"
// or "s", and "loop_" ends with one.
static unsigned tags_in(std::string_view t)
{
    unsigned found = 0;
    for (size_t p = t.find('_'); p != std::string_view::npos; p = t.find('_', p + 1)) {
        if (p >= 4 && t.substr(p - 4, 4) == "loop") found |= 1u << TAG_LOOP;
        if (p + 1 == t.size() || (t[p + 1] != 'c' && t[p + 1] != 's')) continue;
        for (int k = 0; k < TAG_COUNT; ++k)
            if (t.substr(p, kRuleTags[k].size()) == kRuleTags[k]) found |= 1u << k;
    }
    return found;
}

// Rules 3 to 7 of the scanner, tried in order on a trimmed line with the
// given tags; false when none applies.
bool CifScanner::apply_tag_rules(std::string_view t, unsigned tags)
{
    if (starts_data_block(t)) {
        io.identifier = t.substr(5);
        return true;
    }
    if (!(tags & ((1u << TAG_COUNT) - 1))) return false;
    size_t b = first_blank(t);
    const std::string value(b == std::string_view::npos ? t : t.substr(b + 1));
    if (tags & (1u << TAG_CHEMICAL_NAME)) {
        std::string name = value;
        sg_trimr(sg_triml(name));
        io.chemical_name = name;
        io.identifier = name;
    } else if (tags & (1u << TAG_IT_NUMBER)) {
        io.space_group_number = static_cast<int>(strtol(value.c_str(), nullptr, 10));
    } else if (tags & (1u << TAG_HM_OLD | 1u << TAG_HM_NEW)) {
        std::string name = value;
        io.space_group_name = trim(name);
    } else {
        int k = 0;
        while (!(tags & (1u << (TAG_CELL + k)))) ++k;
        io.cell_latt[k] = strtod(value.c_str(), nullptr);
    }
    return true;
}

void CifScanner::scan()
{
    size_t r = 0;
    while (r < lines.size() && !atom_loop_read) {
        std::string_view t = trimmed_view(lines[r]);
        if (t.empty() || t[0] == '#') {
            ++r;
        } else if (t[0] == ';') {
            r = skip_text_field(r);
        } else if (t.find('_') == std::string_view::npos) {
            ++r;  // no tag, "data_" and "loop_" included, lacks an underscore
        } else if (unsigned tags = tags_in(t);
                   !apply_tag_rules(t, tags) && (tags & (1u << TAG_LOOP))) {
            r = handle_loop(r);
        } else {
            ++r;
        }
    }
}

// ---- after the scan ----------------------------------------------------------

static void print_cif_summary(FileIO& io)
{
    std::cout << "  Identifier: " << io.identifier << "\n";
    std::cout << "  Spacegroup name: " << io.space_group_name << "\n";
    std::cout << "  Spacegroup operations: " << "\n";
    for (const std::string& op : io.symm_ops) std::cout << "    " << op << "\n";
    static const char* const names[6] = {"  Cell lattice a = ",     "  Cell lattice b = ",
                                         "  Cell lattice c = ",     "  Cell lattice alpha = ",
                                         "  Cell lattice beta  = ", "  Cell lattice gamma = "};
    for (int k = 0; k < 6; ++k) std::cout << names[k] << io.cell_latt[k] << "\n";
    std::cout.flush();
}

static void print_atom(const Atoms& a, const char* title, size_t i)
{
    std::cout << title << a.label[i] << " " << a.type_symbol[i] << " " << a.fract_x[i] << " "
              << a.fract_y[i] << " " << a.fract_z[i] << "\n";
}

// A cell whose matrix can be built: positive lengths and angles that close.
static bool cell_is_valid(const double* cell)
{
    for (int k = 0; k < 3; ++k)
        if (!(cell[k] > 0.0)) return false;
    const double deg = kCellPi / 180.0;
    double c[3];
    for (int k = 0; k < 3; ++k) {
        if (!(cell[3 + k] > 0.0 && cell[3 + k] < 180.0)) return false;
        c[k] = cos(cell[3 + k] * deg);
    }
    return 1.0 - c[0] * c[0] - c[1] * c[1] - c[2] * c[2] + 2.0 * c[0] * c[1] * c[2] > 1e-12;
}

// What strtod reads at the start of s. A plain decimal whose digits form an
// integer below 2^53, with at most 22 of them after the point, is an exact
// integer divided by an exact power of ten: one correctly rounded division,
// the value strtod gives. Other decimal forms go through from_chars; blanks,
// '+', hexadecimal, infinities, NaN and out-of-range values through strtod.
static double leading_number(const std::string& s)
{
    static const double kTens[23] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                     1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                     1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    const char* p = s.c_str();
    const char* end = p + s.size();
    const bool negative = *p == '-';
    const char* q = p + negative;
    unsigned long long mantissa = 0;  // wraps when too long; then unused
    const char* digits_start = q;
    while (q < end && (unsigned)(*q - '0') < 10u) mantissa = mantissa * 10 + (unsigned)(*q++ - '0');
    int digits = (int)(q - digits_start), decimals = -1;
    if (q < end && *q == '.') {
        const char* fraction = ++q;
        while (q < end && (unsigned)(*q - '0') < 10u)
            mantissa = mantissa * 10 + (unsigned)(*q++ - '0');
        decimals = (int)(q - fraction);
        digits += decimals;
    }
    const bool plain = q == end || !(*q == 'e' || *q == 'E' || *q == 'x' || *q == 'X');
    if (digits > 0 && digits <= 19 && mantissa <= (1ull << 53) && decimals <= 22 && plain) {
        double v = (double)mantissa / kTens[decimals < 0 ? 0 : decimals];
        return negative ? -v : v;
    }
    if (digits > 0 && !(q < end && (*q == 'x' || *q == 'X'))) {
        double v;
        std::from_chars_result r = std::from_chars(p, end, v);
        if (r.ec == std::errc()) return v;
    }
    return strtod(p, nullptr);
}

// Element indexes, radii and coordinates of the atoms as read.
static void build_cif_atom_arrays(FileIO& io)
{
    io.free_cif_atom_arrays();
    int n = io.natoms_cif;
    io.cif_atypes = new int[n];
    io.cif_radius = new double[n];
    io.cif_x_s = new double[3 * n];
    io.cif_x = new double[3 * n];
    const Atoms& a = io.cif_atoms;
    for (int i = 0; i < n; ++i) {
        const char* symbol = a.type_symbol[i].c_str();
        io.cif_atypes[i] = io.find_element_index_from_name(symbol);
        // find_element_radius_from_name(symbol), without a second look-up
        io.cif_radius[i] = io.cif_atypes[i] < 0 ? 9999.99 : element_radius_nw[io.cif_atypes[i]];
        io.cif_x_s[3 * i] = leading_number(a.fract_x[i]);
        io.cif_x_s[3 * i + 1] = leading_number(a.fract_y[i]);
        io.cif_x_s[3 * i + 2] = leading_number(a.fract_z[i]);
        io.coord_f2c(io.cif_x_s + 3 * i, io.cif_x + 3 * i);
    }
}

// The atom summary of the verbose print, and a warning when the cell would
// silently end up empty.
static void report_atom_sites(FileIO& io, const char* path, bool verbose)
{
    if (verbose) {
        std::cout << "  natoms_cif = " << io.natoms_cif << "\n";
        if (io.natoms_cif > 0) {
            print_atom(io.cif_atoms, "  First atom: ", 0);
            std::cout << "  ..." << "\n";
            print_atom(io.cif_atoms, "  Last  atom: ", io.natoms_cif - 1);
        }
        std::cout.flush();
    }
    if (io.natoms_cif == 0)
        printf("WARNING: no atom site was read from crystal file \"%s\"\n", path);
    else if (io.symm_ops.empty())
        printf("WARNING: no symmetry operator was recognised in crystal file \"%s\"; the unit "
               "cell is left without atoms\n",
               path);
}

void FileIO::read_data_cif(const char* path, bool verbose)
{
    std::string text;
    if (!read_whole_file(path, text))
        veska_fatal(kCifUnit, CIF_ERR_OPEN, -1, stderr, "Failed to open input file \"%s\"\n", path);
    const Lines lines = split_lines(text);
    crystal_file = path;
    if (verbose) std::cout << "Reading crystal file \"" << path << "\" ... " << std::endl;

    CifScanner scanner{*this, lines, path};
    scanner.scan();
    if (scanner.unclosed_text_field)
        printf("WARNING: the text field opened at line %zu of crystal file \"%s\" is never "
               "closed; the rest of the file was not read\n",
               scanner.unclosed_text_field, path);

    if (verbose) print_cif_summary(*this);
    if (!cell_is_valid(cell_latt))
        veska_fatal(kCifUnit, CIF_ERR_NO_CELL, -1, stdout,
                    "No valid cell in crystal file \"%s\": a = %g, b = %g, c = %g, alpha = %g, "
                    "beta = %g, gamma = %g\n",
                    path, cell_latt[0], cell_latt[1], cell_latt[2], cell_latt[3], cell_latt[4],
                    cell_latt[5]);
    double latt[3][3];
    cell_cell6_to_latt3x3(cell_latt, latt);

    natoms_cif = static_cast<int>(cif_atoms.label.size());
    report_atom_sites(*this, path, verbose);
    build_cif_atom_arrays(*this);
    make_spacegroup_P1(3);
    for (int i = 0; i < natoms_cif; ++i) coord_f2c(cif_x_s + 3 * i, cif_x + 3 * i);

    separate_cif_molecules(verbose);
    delete[] cif_radius;
    cif_radius = nullptr;
    cif_loaded = true;
    if (verbose) std::cout << "Crystal file " << crystal_file << " parsing done." << std::endl;
}
