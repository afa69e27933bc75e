#include "fileio.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fstream>
#include <vector>

#include "mmutil.h"
#include "structure_common.h"

// Far more atoms than any molecule of this workflow; a count above it is
// treated as a damaged file instead of an allocation that cannot succeed.
static const long kMaxMolAtoms = 10000000;

// ---- small text helpers -------------------------------------------------

static bool read_line(std::istream& in, std::string& line)
{
    if (!std::getline(in, line)) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return true;
}

// Columns [first, first + len) of a fixed-column line, 1-based; short lines
// give what is there.
static std::string columns(const std::string& line, size_t first, size_t len)
{
    if (line.size() < first) return std::string();
    return line.substr(first - 1, len);
}

static long column_int(const std::string& line, size_t first, size_t len)
{
    return std::strtol(columns(line, first, len).c_str(), nullptr, 10);
}

static double column_double(const std::string& line, size_t first, size_t len)
{
    return std::strtod(columns(line, first, len).c_str(), nullptr);
}

static bool whole_long(const std::string& s, long& v)
{
    if (s.empty()) return false;
    char* end = nullptr;
    errno = 0;
    v = std::strtol(s.c_str(), &end, 10);
    return errno == 0 && *end == '\0';
}

static bool whole_double(const std::string& s, double& v)
{
    if (s.empty()) return false;
    char* end = nullptr;
    v = std::strtod(s.c_str(), &end);
    return *end == '\0';
}

// ---- per-molecule storage -----------------------------------------------

static bool has_molecule_storage(const FileIO& f, int m)
{
    return f.natoms_mol && f.atypes_mol && f.x_mol && f.x_s_mol && m >= 0 && m < f.nmols;
}

static void store_atom(FileIO& f, int m, int pos, int atype, double x, double y, double z)
{
    f.atypes_mol[m][pos] = atype;
    f.x_mol[m][3 * pos] = x;
    f.x_mol[m][3 * pos + 1] = y;
    f.x_mol[m][3 * pos + 2] = z;
}

// ---- V2000 --------------------------------------------------------------

static void read_v2000_atoms(FileIO& f, std::istream& in, int m, int natoms)
{
    allocate_molecule(f, m, natoms);
    std::string line;
    for (int i = 0; i < natoms; i++) {
        if (!read_line(in, line))
            veska_fatal("fileio", 501, 1, stdout,
                        "WARNING: Problems reading a MDL file\n"
                        "         Not enough atoms to match atom count (%d) in counts line\n",
                        natoms);
        std::string symbol = columns(line, 32, 3);
        trim(symbol);
        store_atom(f, m, i, f.find_element_index_from_name(symbol.c_str()),
                   column_double(line, 1, 10), column_double(line, 11, 10),
                   column_double(line, 21, 10));
    }
}

// Checks the counts line; returns the atom count.
static int check_counts_line(const std::string& counts, const char* path)
{
    if (counts.size() < 6)
        veska_fatal("fileio", 502, 1, stdout,
                    "WARNING: Problems reading a MDL file\n"
                    "         Cannot read atom and bond count\n"
                    "         Expected standard 6 character atom and bond count\n");
    long natoms = column_int(counts, 1, 3);
    if (natoms < 0)
        veska_fatal("fileio", 503, 1, stdout,
                    "WARNING: Problems reading a MDL file\n"
                    "         Negative atom count (%ld) in the counts line of \"%s\"\n",
                    natoms, path);
    if (counts.size() > 14) {
        long chiral = column_int(counts, 13, 3);
        if (chiral != 0 && chiral != 1)
            printf("WARNING: The Chiral Flag should be either 0 or 1. The value of %ld will be "
                   "ignored.\n",
                   chiral);
    }
    if (column_int(counts, 7, 3) > 0)
        veska_fatal("fileio", 504, 1, stdout,
                    "WARNING: Problems reading the Count line of an MDL file\n"
                    "         There may be erroneous addition spaces or\n"
                    "         the file may contains Atom Lists, which are ignored\n");
    return (int)natoms;
}

void FileIO::read_data_mol(const char* path, int m, bool verbose)
{
    std::ifstream in(path);
    if (!in)
        veska_fatal("fileio", 505, -1, stderr, "Failed to open input file \"%s\"\n", path);
    if (!has_molecule_storage(*this, m))
        veska_fatal("fileio", 506, -1, stdout,
                    "No storage for molecule %d (of %d) to read \"%s\" into\n", m + 1, nmols,
                    path);
    if (verbose) printf("Reading molecular file \"%s\" ... \n", path);
    release_molecule(*this, m);  // a file that stops early leaves no arrays

    std::string line, counts;
    for (int i = 0; i < 4; i++)
        if (!read_line(in, line)) line.clear();
    counts = line;
    int natoms = check_counts_line(counts, path);
    if (counts.find("V3000") != std::string::npos) {
        v3000_atom_map.clear();
        if (!ReadV3000Block(in, m, verbose))
            printf("WARNING: The V3000 blocks of \"%s\" do not follow the format; "
                   "molecule %d keeps the %d atoms read\n",
                   path, m + 1, natoms_mol[m]);
    } else {
        read_v2000_atoms(*this, in, m, natoms);
    }
}

// ---- V3000 --------------------------------------------------------------

static bool valid_v3000_tokens(const std::vector<std::string>& v)
{
    return v.size() >= 2 && v[0] == "M" && (v[1] == "V30" || v[1] == "END");
}

bool FileIO::ReadV3000Line(std::istream& in, std::vector<std::string>& tokens)
{
    static const char* kBlanks = " \t\n\r";
    std::string line;
    tokens.clear();
    if (!read_line(in, line)) return false;
    tokenize(tokens, line.c_str(), kBlanks);
    if (!valid_v3000_tokens(tokens)) return false;
    // Continuation lines are joined in a loop, not by recursion, so that a
    // long run of them cannot exhaust the stack.
    std::vector<std::string> more;
    while (line.back() == '-') {
        if (!read_line(in, line)) return false;
        tokenize(more, line.c_str(), kBlanks);
        if (!valid_v3000_tokens(more)) return false;
        if (more.size() > 3) tokens.insert(tokens.end(), more.begin() + 3, more.end());
    }
    return true;
}

// Token k (1-based) of the last V3000 line, or "" when the line is shorter.
static const std::string& token(const std::vector<std::string>& v, size_t k)
{
    static const std::string none;
    return v.size() >= k ? v[k - 1] : none;
}

// Every option token must be key=value; the values never change what is
// stored, the property setters are kept for their calls.
static bool read_atom_options(FileIO& f, const std::vector<std::string>& v)
{
    for (size_t k = 8; k < v.size(); k++) {
        size_t eq = v[k].find('=');
        if (eq == std::string::npos) return false;
        std::string key = v[k].substr(0, eq);
        int value = (int)std::strtol(v[k].c_str() + eq + 1, nullptr, 10);
        if (key == "CHG")
            f.SetFormalCharge(value);
        else if (key == "RAD")
            f.SetSpinMultiplicity(value);
        else if (key == "MASS")
            f.SetIsotope(value);
    }
    return true;
}

// The atoms of one ATOM block as read, kept apart from the molecule until the
// block ends so that a count alone never sizes an allocation.
struct V3000Atoms {
    std::vector<int> types;
    std::vector<double> xyz;
};

// Reads atom lines up to "END"; false when the block breaks the format.
static bool read_atom_lines(FileIO& f, std::istream& in, V3000Atoms& atoms)
{
    for (;;) {
        if (!f.ReadV3000Line(in, f.v3000_names)) return false;
        const std::vector<std::string>& v = f.v3000_names;
        if (token(v, 3) == "END") return true;
        long number;
        double x, y, z;
        if (v.size() < 7 || !whole_long(v[2], number) || number < INT_MIN || number > INT_MAX ||
            !whole_double(v[4], x) || !whole_double(v[5], y) || !whole_double(v[6], z))
            return false;
        int pos = (int)atoms.types.size() + 1;
        if (pos > f.v3000_count) return false;  // more atoms than COUNTS announced
        f.v3000_atom_map[(int)number] = pos;
        if (v[3].compare(0, 2, "R#") == 0) {
            printf("WARNING: A molecule contains an R group which is not implemented!\n");
            x = y = z = 0.0;  // the position stays a dummy atom
            atoms.types.push_back(0);
        } else {
            std::string type = v[3].substr(0, 5);
            trim(type);
            atoms.types.push_back(f.find_element_index_from_name(type.c_str()));
        }
        atoms.xyz.insert(atoms.xyz.end(), {x, y, z});
        if (!read_atom_options(f, v)) return false;
    }
}

bool FileIO::ReadAtomBlock(std::istream& in)
{
    const int m = v3000_mol;
    if (!has_molecule_storage(*this, m)) return false;
    V3000Atoms atoms;
    bool ok = read_atom_lines(*this, in, atoms);
    // The molecule keeps exactly the atoms read, also when the block broke off.
    int n = (int)atoms.types.size();
    allocate_molecule(*this, m, n);
    for (int i = 0; i < n; i++)
        store_atom(*this, m, i, atoms.types[i], atoms.xyz[3 * i], atoms.xyz[3 * i + 1],
                   atoms.xyz[3 * i + 2]);
    return ok;
}

bool FileIO::ReadBondBlock(std::istream& in)
{
    for (;;) {
        if (!ReadV3000Line(in, v3000_names)) return false;
        const std::vector<std::string>& v = v3000_names;
        if (token(v, 3) == "END") return true;
        if (v.size() < 6) return false;
        for (size_t k = 6; k < v.size(); k++)
            if (v[k].find('=') == std::string::npos) return false;
        auto a = v3000_atom_map.find((int)std::strtol(v[4].c_str(), nullptr, 10));
        auto b = v3000_atom_map.find((int)std::strtol(v[5].c_str(), nullptr, 10));
        int order = (int)std::strtol(v[3].c_str(), nullptr, 10);
        AddBond(a == v3000_atom_map.end() ? 0 : a->second,
                b == v3000_atom_map.end() ? 0 : b->second, order, 0);
    }
}

// Skips lines up to the one whose third token is "END" and, when given,
// whose fourth token is `name`.
static bool skip_block(FileIO& f, std::istream& in, const char* name)
{
    for (;;) {
        if (!f.ReadV3000Line(in, f.v3000_names)) return false;
        if (token(f.v3000_names, 3) == "END" && (!name || token(f.v3000_names, 4) == name))
            return true;
    }
}

bool FileIO::ReadRGroupBlock(std::istream& in)
{
    if (debug_print)
        printf("WARNING: RGROUP and RLOGIC blocks are not currently implemented and their "
               "contents are ignored.\n");
    return skip_block(*this, in, "RGROUP");
}

bool FileIO::ReadUnimplementedBlock(std::istream& in, std::string& name)
{
    if (debug_print)
        printf("WARNING: %s blocks are not currently implemented and their contents are "
               "ignored.\n",
               name.c_str());
    return skip_block(*this, in, nullptr);
}

// A CTAB: its COUNTS line, the molecule's arrays, then its blocks one level
// down up to its "END CTAB" line.
static bool read_ctab(FileIO& f, std::istream& in, int m, bool verbose, int depth);

static bool read_blocks(FileIO& f, std::istream& in, int m, bool verbose, int depth)
{
    // Real files nest a CTAB once; a deep nest is a damaged file.
    if (depth > 8) return false;
    std::vector<std::string>& v = f.v3000_names;
    for (;;) {
        if (!f.ReadV3000Line(in, v)) return false;
        if (v[1] == "END") return true;
        if (token(v, 3) == "LINKNODE") continue;
        if (token(v, 3) != "BEGIN") return false;
        std::string name = token(v, 4);
        bool ok;
        if (name == "CTAB")
            ok = read_ctab(f, in, m, verbose, depth);
        else if (name == "ATOM")
            ok = f.ReadAtomBlock(in);
        else if (name == "BOND")
            ok = f.ReadBondBlock(in);
        else if (name == "RGROUP")
            ok = f.ReadRGroupBlock(in);
        else
            ok = f.ReadUnimplementedBlock(in, name);
        if (!ok || in.fail()) return false;
    }
}

static bool read_ctab(FileIO& f, std::istream& in, int m, bool verbose, int depth)
{
    std::vector<std::string>& v = f.v3000_names;
    if (!f.ReadV3000Line(in, v) || token(v, 3) != "COUNTS") return false;
    long natoms;
    if (!whole_long(token(v, 4), natoms) || natoms < 0 || natoms > kMaxMolAtoms) return false;
    // The count only bounds the ATOM block; the atoms themselves size the molecule.
    f.v3000_count = (int)natoms;
    release_molecule(f, m);
    read_blocks(f, in, m, verbose, depth + 1);
    bool ended = token(v, 3) == "END" || token(v, 4) == "CTAB";
    return ended && f.natoms_mol[m] == natoms;
}

bool FileIO::ReadV3000Block(std::istream& in, int m, bool verbose)
{
    if (!has_molecule_storage(*this, m)) return false;
    v3000_mol = m;
    v3000_count = 0;
    bool ok = read_blocks(*this, in, m, verbose, 0);
    if (debug_print) {
        printf("V3000 molecule %d: %d atoms\n", m + 1, natoms_mol[m]);
        for (int i = 0; i < natoms_mol[m]; i++)
            printf("  %3d %12.6f %12.6f %12.6f\n", atypes_mol[m][i], x_mol[m][3 * i],
                   x_mol[m][3 * i + 1], x_mol[m][3 * i + 2]);
    }
    return ok;
}

// ---- XYZ ----------------------------------------------------------------

void FileIO::read_data_xyz(const char* path)
{
    std::ifstream in(path);
    if (!in)
        veska_fatal("fileio", 507, -1, stderr, "Failed to open input file \"%s\"\n", path);
    const bool bverbose_local = debug_print;
    if (bverbose_local) printf("Reading file \"%s\" ...\n", path);

    std::string line;
    long count = read_line(in, line) ? std::strtol(line.c_str(), nullptr, 10) : 0;
    if (count < 0 || count > kMaxMolAtoms)
        veska_fatal("fileio", 508, -1, stdout, "Cannot use the atom count %ld of \"%s\"\n",
                    count, path);
    read_line(in, line);

    std::vector<int> types;
    std::vector<double> xyz;
    std::vector<std::string> words;
    for (int lineno = 3; (long)types.size() < count && read_line(in, line); lineno++) {
        tokenize(words, line.c_str(), " \t");
        if (words.size() < 4)
            veska_fatal("fileio", 509, -1, stdout,
                        "Cannot read atom %d of \"%s\" at line %d: expected a symbol and x, y, z\n",
                        (int)types.size() + 1, path, lineno);
        types.push_back(find_element_index_from_name(words[0].c_str()));
        for (int k = 1; k <= 3; k++) xyz.push_back(std::strtod(words[k].c_str(), nullptr));
    }
    if ((long)types.size() < count)
        printf("WARNING: \"%s\" ends after %d of its %ld atoms\n", path, (int)types.size(), count);

    free_cif_atom_arrays();
    natoms_cif = (int)types.size();
    cif_atypes = new int[types.size() + 1];
    cif_x = new double[xyz.size() + 1];
    std::copy(types.begin(), types.end(), cif_atypes);
    std::copy(xyz.begin(), xyz.end(), cif_x);
}
