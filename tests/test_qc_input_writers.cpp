// Quantum-chemistry input layouts, line by line, against hand-written texts.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>
#include <string>
#include <vector>

#include "fileio.h"
#include "writers_test_support.h"

namespace {

const std::string atoms3 = "C     0.0000    1.5000  -12.3457\n"
                           "H    10.2500   -0.5000    2.0000\n"
                           "Cl    3.1416    2.7183   -1.0000\n";
const std::string extra = "--Link1--\nno final line end";
const std::string orca_output = "%output\n  PrintLevel=Normal\n  Print[ P_Basis       ] 2\n"
                                "  Print[ P_Overlap     ] 1\n  Print[ P_OrbEn       ] 1\n"
                                "  Print[ P_MOs         ] 1\nend\n\n";
const std::string rem_end = "symmetry        off\nsym_ignore      true\n$end\n\n";

struct QcCase {
    const char* path;
    std::function<void(FileIO&, const char*)> write;
    std::string want;
};

using QcInputTest = WriterDirTest;
using QcInputDeathTest = WriterDirTest;

}  // namespace

TEST_F(QcInputTest, LayoutsLineByLine)
{
    const std::vector<QcCase> cases = {
        {"hl.com",
         [](FileIO& f, const char* p) {
             f.write_gau_mol_com_HL(p, 3, types3, coords3, "pair 1", "dimer_1", "b3lyp/6-31g*",
                                    2000, 3, 8, extra);
         },
         "%chk=dimer_1.chk\n%mem=2000MB\n%nprocs=8\n"
         "#P b3lyp/6-31g* iop(3/33=1,5/33=2) pop=full nosymm\n\npair 1\n\n0 1\n" + atoms3 + "\n" +
             extra},
        {"re.com",
         [](FileIO& f, const char* p) {
             f.write_gau_mol_com_RE(p, 3, types3, coords3, "cation", "mol_1_c", "1 2",
                                    "b3lyp/6-31g*", 4000, 1, 16, "");
         },
         "%mem=4000MB\n%nprocs=16\n%chk=mol_1_c.chk\n#P opt freq b3lyp/6-31g* pop=full nosymm\n"
         "scf=(maxcycle=100,xqc)\n\ncation\n\n1 2\n" + atoms3 + "\n"},
        {"empty.com",
         [](FileIO& f, const char* p) {
             f.write_gau_mol_com_HL(p, 0, nullptr, nullptr, "t", "c", "m", 1, 1, 1, "X");
         },
         "%chk=c.chk\n%mem=1MB\n%nprocs=1\n#P m iop(3/33=1,5/33=2) pop=full nosymm\n\nt\n\n"
         "0 1\n\nX"},
        {"hl.inp",
         [](FileIO& f, const char* p) {
             f.write_orca_mol_inp_HL(p, 3, types3, coords3, 3000, 4, "B3LYP", "def2-SVP", extra);
         },
         "! SP B3LYP def2-SVP NoUseSym\n\n%MaxCore 3000\n%PAL NPROCS 4 END\n\n" + orca_output +
             "*xyz 0 1\n" + atoms3 + "*\n" + extra},
        {"re.inp",
         [](FileIO& f, const char* p) {
             f.write_orca_mol_inp_RE(p, 3, types3, coords3, 500, 2, "-1 2", "PBE0", "def2-TZVP",
                                     "tail\n");
         },
         "! opt freq PBE0 def2-TZVP NoUseSym\n\n%MaxCore 500\n%PAL NPROCS 2 END\n\n*xyz -1 2\n" +
             atoms3 + "*\ntail\n"},
        {"hl.qcin",
         [](FileIO& f, const char* p) {
             f.write_qchem_mol_inp_HL(p, 3, types3, coords3, 7, 24, "wb97x-d", "6-31g*", extra);
         },
         "$molecule\n0 1\n" + atoms3 + "$end\n\n$rem\nJOBTYPE         SP\n"
         "METHOD          wb97x-d\nBASIS           6-31g*\nEXCHANGE        wb97x\n"
         "gui             2\n" + rem_end + extra},
        {"re.qcin",
         [](FileIO& f, const char* p) {
             f.write_qchem_mol_inp_RE(p, 3, types3, coords3, 1, 1, "1 2", "b3lyp", "6-31g*", "");
         },
         "$molecule\n1 2\n" + atoms3 + "$end\n\n$rem\nJOBTYPE         opt\n"
         "METHOD          b3lyp\nBASIS           6-31g*\n" + rem_end +
             "@@@\n\n$molecule\n  read\n$end\n\n$rem\nJOBTYPE         freq\n"
             "METHOD          b3lyp\nBASIS           6-31g*\niprint          10000000\n"
             "gui             2\n" + rem_end},
    };
    FileIO fio;
    for (const QcCase& c : cases) {
        SCOPED_TRACE(c.path);
        c.write(fio, c.path);
        EXPECT_EQ(read_text_file(c.path), c.want);
    }
    std::string path = ".";  // paths of any length
    for (char d = 'a'; d < 'f'; d++) {
        path += "/" + std::string(120, d);
        ASSERT_EQ(mkdir(path.c_str(), 0750), 0);
    }
    cases[1].write(fio, (path += "/re.com").c_str());
    EXPECT_EQ(read_text_file(path), cases[1].want);
}

TEST_F(QcInputDeathTest, OpenAndWriteFailuresAreFatal)
{
    FileIO fio;
    EXPECT_EXIT(fio.write_orca_mol_inp_RE("no_such_dir/x.inp", 3, types3, coords3, 1, 1, "0 1",
                                          "m", "b", ""),
                ::testing::ExitedWithCode(255), "^Failed to open output file no_such_dir/x.inp\n$");
    struct stat st;
    if (stat("/dev/full", &st) != 0 || !S_ISCHR(st.st_mode)) GTEST_SKIP() << "no /dev/full";
    EXPECT_EXIT(fio.write_qchem_mol_inp_RE("/dev/full", 3, types3, coords3, 1, 1, "0 1", "m", "b",
                                           std::string(100000, '!')),
                ::testing::ExitedWithCode(255), "Failed to write output file /dev/full");
    EXPECT_EQ(stat("/dev/full", &st), 0);
}
