// Quantum-chemistry input layouts against data/golden, and their failures.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>

#include "fileio.h"
#include "test_support.h"

using QcInputTest = ScratchDirTest;

TEST_F(QcInputTest, LayoutsLineByLine)
{
    const std::string extra = "--Link1--\nno final line end";
    using Write = std::function<void(FileIO&, const char*)>;
    const std::pair<const char*, Write> cases[] = {
        {"gaussian_hl.com", [&](FileIO& f, const char* p) {
             f.write_gau_mol_com_HL(p, 3, types3, coords3, "pair 1", "dimer_1", "b3lyp/6-31g*", 2000, 3, 8, extra); }},
        {"gaussian_re.com", [](FileIO& f, const char* p) {
             f.write_gau_mol_com_RE(p, 3, types3, coords3, "cation", "mol_1_c", "1 2", "b3lyp/6-31g*", 4000, 1, 16, ""); }},
        {"orca_hl.inp", [&](FileIO& f, const char* p) {
             f.write_orca_mol_inp_HL(p, 3, types3, coords3, 3000, 4, "B3LYP", "def2-SVP", extra); }},
        {"orca_re.inp", [](FileIO& f, const char* p) {
             f.write_orca_mol_inp_RE(p, 3, types3, coords3, 500, 2, "-1 2", "PBE0", "def2-TZVP", "tail\n"); }},
        {"qchem_hl.qcin", [&](FileIO& f, const char* p) {
             f.write_qchem_mol_inp_HL(p, 3, types3, coords3, 7, 24, "wb97x-d", "6-31g*", extra); }},
        {"qchem_re.qcin", [](FileIO& f, const char* p) {
             f.write_qchem_mol_inp_RE(p, 3, types3, coords3, 1, 1, "1 2", "b3lyp", "6-31g*", ""); }},
    };
    FileIO fio;
    for (const auto& [name, write] : cases) {
        write(fio, name);
        EXPECT_EQ(read_text_file(name), golden(name)) << name;
    }
    fio.write_gau_mol_com_HL("empty.com", 0, nullptr, nullptr, "t", "c", "m", 1, 1, 1, "X");
    EXPECT_EQ(read_text_file("empty.com"),
              "%chk=c.chk\n%mem=1MB\n%nprocs=1\n#P m iop(3/33=1,5/33=2) pop=full nosymm\n\nt\n\n0 1\n\nX");
    std::string path = ".";  // paths of any length
    for (char d = 'a'; d < 'f'; d++) {
        path += "/" + std::string(120, d);
        ASSERT_EQ(mkdir(path.c_str(), 0750), 0);
    }
    cases[1].second(fio, (path += "/re.com").c_str());
    EXPECT_EQ(read_text_file(path), golden("gaussian_re.com"));
}

// A write that fails half way (the file-size limit stands in for a full disk).
static void write_past_size_limit(FileIO& fio)
{
    limit_file_size(4096);
    fio.write_qchem_mol_inp_RE("big.qcin", 3, types3, coords3, 1, 1, "0 1", "m", "b", std::string(100000, '!'));
}

TEST_F(QcInputTest, OpenAndWriteFailuresAreFatal)
{
    FileIO fio;
    EXPECT_EXIT(fio.write_orca_mol_inp_RE("no_such_dir/x.inp", 3, types3, coords3, 1, 1, "0 1", "m", "b", ""),
                ::testing::ExitedWithCode(255), "^Failed to open output file no_such_dir/x.inp\n$");
    EXPECT_EXIT(write_past_size_limit(fio), ::testing::ExitedWithCode(255), "Failed to write output file big.qcin");
}
