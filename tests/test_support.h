#ifndef VESKA_TEST_SUPPORT_H
#define VESKA_TEST_SUPPORT_H

// Helpers shared by the tests: a scratch directory to work in, small files,
// commands run through the shell, the bundled data and the expected outputs
// under data/golden.

#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "mmutil.h"
#include "structure_common.h"
#include "transport.h"

namespace fs = std::filesystem;

// Creates a fresh directory, changes into it and back out on destruction.
class ScratchDir {
public:
    ScratchDir() : old_(fs::current_path().string())
    {
        std::string tmpl = (fs::temp_directory_path() / "veska_rd_XXXXXX").string();
        path_ = mkdtemp(&tmpl[0]) && chdir(tmpl.c_str()) == 0 ? tmpl : std::string();
    }
    ~ScratchDir()
    {
        std::error_code ec;
        if (chdir(old_.c_str()) == 0 && ok()) fs::remove_all(path_, ec);
    }
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;
    bool ok() const { return !path_.empty(); }

private:
    std::string path_, old_;
};

// A test that runs inside its own fresh temporary directory.
class ScratchDirTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(scratch.ok()); }
    ScratchDir scratch;
};

inline void put_file(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

inline std::string read_text_file(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

// In a death test's child: standard output joins standard error (the error
// header goes to standard output) and `text` is written to `path`.
inline void child_with_file(const std::string& path, const std::string& text)
{
    dup2(2, 1);
    put_file(path, text);
}

// In a death test's child: writes past `bytes` fail as on a full disk. The
// limit is lifted again at exit, before coverage data are written.
inline void limit_file_size(rlim_t bytes)
{
    static struct rlimit saved;
    getrlimit(RLIMIT_FSIZE, &saved);
    atexit([] { setrlimit(RLIMIT_FSIZE, &saved); });
    signal(SIGXFSZ, SIG_IGN);
    struct rlimit limit = {bytes, saved.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
}

inline std::string data_file(const std::string& name) { return std::string(VESKA_TEST_DATA_DIR) + "/" + name; }
inline std::string golden(const std::string& name)
{
    std::string path = data_file("golden/" + name);
    EXPECT_TRUE(fs::is_regular_file(path)) << path;
    return read_text_file(path);
}

// The distribution's python where there is one (the one the suite's readers use).
inline const std::string kPython = access("/usr/bin/python3", X_OK) == 0 ? "/usr/bin/python3" : "python3";

// Runs `line` in the shell with the build's commands first on PATH; returns
// the exit status, with standard output and error in *out.
inline int run(const std::string& line, std::string* out = nullptr)
{
    FILE* p = popen(("export PATH=" VESKA_MC_BIN_DIR ":$PATH; { " + line + "\n} 2>&1").c_str(), "r");
    std::string text;
    for (int ch; (ch = fgetc(p)) != EOF;) text += static_cast<char>(ch);
    int rc = pclose(p);
    if (out) *out = text;
    return WIFEXITED(rc) ? WEXITSTATUS(rc) : -1;
}

// The entries of `dir`, sorted, separated by blanks.
inline std::string names(const std::string& dir)
{
    std::set<std::string> all;
    for (const auto& e : fs::directory_iterator(dir)) all.insert(e.path().filename().string());
    std::string text;
    for (const std::string& n : all) text += (text.empty() ? "" : " ") + n;
    return text;
}

// Every file below `dir`, sorted, each after a line naming it; the text of
// those whose path holds `with_text` ("" : all).
inline std::string dump(const std::string& dir, const std::string& with_text = "")
{
    std::set<std::string> all;
    for (const auto& e : fs::recursive_directory_iterator(dir))
        if (e.is_regular_file()) all.insert(e.path().string());
    std::string text;
    for (const std::string& p : all)
        text += "=== " + p + "\n" + (p.find(with_text) != std::string::npos ? read_text_file(p) : "");
    return text;
}

// A cubic cell with the given operators and atom rows.
inline std::string cubic_cif(double edge, const std::string& ops, const std::string& rows)
{
    return format_string("data_t\n_cell_length_a %g\n_cell_length_b %g\n_cell_length_c %g\n"
                         "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n",
                         edge, edge, edge) +
           "loop_\n_symmetry_equiv_pos_as_xyz\n" + ops + "\nloop_\n_atom_site_label\n" +
           "_atom_site_type_symbol\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n" + rows;
}

// Element numbers, then fractional coordinates, three per atom.
struct Mol {
    std::vector<int> types;
    std::vector<double> frac;
};

// A workspace holding `mols` in the cell `cell6`, their centres still to be
// found; a rectangular cell's matrix is set exactly, so that whole numbers
// of angstrom stay whole.
inline void place_molecules(Transport& t, const std::vector<double>& cell6, const std::vector<Mol>& mols)
{
    std::copy(cell6.begin(), cell6.end(), t.cell_latt);
    t.cell_cell6_to_latt3x3(t.cell_latt, t.latt3x3);
    if (cell6[3] == 90 && cell6[4] == 90 && cell6[5] == 90)
        for (int r = 0; r < 3; r++)
            for (int c = 0; c < 3; c++) t.latt3x3[r][c] = t.latt_vec[r][c] = r == c ? cell6[r] : 0;
    const int n = t.nmols = (int)mols.size();
    t.natoms_mol = new int[n]();
    t.atypes_mol = new int*[n]();
    t.x_mol = new double*[n]();
    t.x_s_mol = new double*[n]();
    for (int m = 0; m < n; m++) {
        allocate_molecule(t, m, (int)mols[m].types.size());
        std::copy(mols[m].types.begin(), mols[m].types.end(), t.atypes_mol[m]);
        std::copy(mols[m].frac.begin(), mols[m].frac.end(), t.x_s_mol[m]);
        for (int a = 0; a < t.natoms_mol[m]; a++) mat_vec_mul(t.latt3x3, &t.x_s_mol[m][3 * a], &t.x_mol[m][3 * a]);
    }
    t.mol_mass = new double[n]();
    t.x_com = new double[3 * n]();
    t.x_s_com = new double[3 * n]();
}

// C, H and Cl: one- and two-letter symbols; -12.34567 rounds at four decimals.
inline int types3[3] = {6, 1, 17};
inline double coords3[9] = {0.0, 1.5, -12.34567, 10.25, -0.5, 2.0, 3.14159, 2.71828, -1.0};

#endif
