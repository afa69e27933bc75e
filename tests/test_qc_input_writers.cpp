// Quantum-chemistry input layouts, line by line, against hand-written texts.

#include <gtest/gtest.h>

#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "fileio.h"
#include "writers_test_support.h"

namespace {

// C, H and Cl; the carbon's z checks four-decimal rounding in nine columns.
int types3[3] = {6, 1, 17};
double coords3[9] = {0.0, 1.5, -12.34567, 10.25, -0.5, 2.0, 3.14159, 2.71828, -1.0};

const std::string atoms3 =
    "C     0.0000    1.5000  -12.3457\n"
    "H    10.2500   -0.5000    2.0000\n"
    "Cl    3.1416    2.7183   -1.0000\n";

const std::string extra = "--Link1--\nno final line end";

class QcInputTest : public WriterDirTest {
protected:
    FileIO fio;
};

}  // namespace

TEST_F(QcInputTest, GaussianTransferIntegralLayout)
{
    fio.write_gau_mol_com_HL("hl.com", 3, types3, coords3, "pair 1", "dimer_1", "b3lyp/6-31g*",
                             2000, 3, 8, extra);
    EXPECT_EQ(slurp("hl.com"),
              "%chk=dimer_1.chk\n"
              "%mem=2000MB\n"
              "%nprocs=8\n"
              "#P b3lyp/6-31g* iop(3/33=1,5/33=2) pop=full nosymm\n"
              "\n"
              "pair 1\n"
              "\n"
              "0 1\n" +
                  atoms3 + "\n" + extra);
}

TEST_F(QcInputTest, GaussianReorganisationLayoutPutsChkLast)
{
    fio.write_gau_mol_com_RE("re.com", 3, types3, coords3, "cation", "mol_1_c", "1 2",
                             "b3lyp/6-31g*", 4000, 1, 16, "");
    EXPECT_EQ(slurp("re.com"),
              "%mem=4000MB\n"
              "%nprocs=16\n"
              "%chk=mol_1_c.chk\n"
              "#P opt freq b3lyp/6-31g* pop=full nosymm\n"
              "scf=(maxcycle=100,xqc)\n"
              "\n"
              "cation\n"
              "\n"
              "1 2\n" +
                  atoms3 + "\n");
}

TEST_F(QcInputTest, NoAtomsKeepTheFrame)
{
    fio.write_gau_mol_com_HL("empty.com", 0, nullptr, nullptr, "t", "c", "m", 1, 1, 1, "X");
    EXPECT_EQ(slurp("empty.com"),
              "%chk=c.chk\n%mem=1MB\n%nprocs=1\n#P m iop(3/33=1,5/33=2) pop=full nosymm\n\nt\n\n"
              "0 1\n\nX");
    fio.write_orca_mol_inp_HL("empty.inp", 0, nullptr, nullptr, 1, 1, "m", "b", "");
    const std::string orca = slurp("empty.inp");
    EXPECT_NE(orca.find("\n*xyz 0 1\n*\n"), std::string::npos) << orca;
}

TEST_F(QcInputTest, OrcaTransferIntegralLayoutCarriesOutputBlock)
{
    fio.write_orca_mol_inp_HL("hl.inp", 3, types3, coords3, 3000, 4, "B3LYP", "def2-SVP", extra);
    EXPECT_EQ(slurp("hl.inp"),
              "! SP B3LYP def2-SVP NoUseSym\n"
              "\n"
              "%MaxCore 3000\n"
              "%PAL NPROCS 4 END\n"
              "\n"
              "%output\n"
              "  PrintLevel=Normal\n"
              "  Print[ P_Basis       ] 2\n"
              "  Print[ P_Overlap     ] 1\n"
              "  Print[ P_OrbEn       ] 1\n"
              "  Print[ P_MOs         ] 1\n"
              "end\n"
              "\n"
              "*xyz 0 1\n" +
                  atoms3 + "*\n" + extra);
}

TEST_F(QcInputTest, OrcaReorganisationLayoutHasNoOutputBlock)
{
    fio.write_orca_mol_inp_RE("re.inp", 3, types3, coords3, 500, 2, "-1 2", "PBE0", "def2-TZVP",
                              "tail\n");
    EXPECT_EQ(slurp("re.inp"),
              "! opt freq PBE0 def2-TZVP NoUseSym\n"
              "\n"
              "%MaxCore 500\n"
              "%PAL NPROCS 2 END\n"
              "\n"
              "*xyz -1 2\n" +
                  atoms3 + "*\ntail\n");
}

TEST_F(QcInputTest, QchemTransferIntegralRemColumns)
{
    fio.write_qchem_mol_inp_HL("hl.qcin", 3, types3, coords3, 7, 24, "wb97x-d", "6-31g*", extra);
    EXPECT_EQ(slurp("hl.qcin"),
              "$molecule\n"
              "0 1\n" +
                  atoms3 +
                  "$end\n"
                  "\n"
                  "$rem\n"
                  "JOBTYPE         SP\n"
                  "METHOD          wb97x-d\n"
                  "BASIS           6-31g*\n"
                  "EXCHANGE        wb97x\n"
                  "gui             2\n"
                  "symmetry        off\n"
                  "sym_ignore      true\n"
                  "$end\n"
                  "\n" +
                  extra);
}

TEST_F(QcInputTest, QchemReorganisationHasTwoJobs)
{
    fio.write_qchem_mol_inp_RE("re.qcin", 3, types3, coords3, 1, 1, "1 2", "b3lyp", "6-31g*",
                               "");
    EXPECT_EQ(slurp("re.qcin"),
              "$molecule\n"
              "1 2\n" +
                  atoms3 +
                  "$end\n"
                  "\n"
                  "$rem\n"
                  "JOBTYPE         opt\n"
                  "METHOD          b3lyp\n"
                  "BASIS           6-31g*\n"
                  "symmetry        off\n"
                  "sym_ignore      true\n"
                  "$end\n"
                  "\n"
                  "@@@\n"
                  "\n"
                  "$molecule\n"
                  "  read\n"
                  "$end\n"
                  "\n"
                  "$rem\n"
                  "JOBTYPE         freq\n"
                  "METHOD          b3lyp\n"
                  "BASIS           6-31g*\n"
                  "iprint          10000000\n"
                  "gui             2\n"
                  "symmetry        off\n"
                  "sym_ignore      true\n"
                  "$end\n"
                  "\n");
}

TEST_F(QcInputTest, LongPathsAreWritten)
{
    std::string path = ".";
    for (int i = 0; i < 4; i++) {
        path += "/" + std::string(120, 'd' + i);
        ASSERT_EQ(mkdir(path.c_str(), 0750), 0);
    }
    path += "/" + std::string(100, 'f') + ".com";
    fio.write_gau_mol_com_HL(path.c_str(), 3, types3, coords3, "t", "c", "m", 1, 1, 1, "");
    EXPECT_NE(slurp(path).find(atoms3), std::string::npos);
}

TEST(QcInputDeathTest, OpenFailureIsFatal)
{
    FileIO fio;
    EXPECT_EXIT(fio.write_orca_mol_inp_RE("no_such_dir/x.inp", 3, types3, coords3, 1, 1, "0 1",
                                          "m", "b", ""),
                ::testing::ExitedWithCode(255), "Failed to open output file no_such_dir/x.inp\n");
    EXPECT_EXIT(fio.write_qchem_mol_inp_HL("no_such_dir/x.qcin", 0, nullptr, nullptr, 1, 1, "m",
                                           "b", ""),
                ::testing::ExitedWithCode(255), "Failed to open output file no_such_dir/x.qcin");
}

TEST(QcInputDeathTest, FullDiskIsReportedNotTruncated)
{
    struct stat st;
    if (stat("/dev/full", &st) != 0 || !S_ISCHR(st.st_mode)) GTEST_SKIP() << "no /dev/full";
    FileIO fio;
    EXPECT_EXIT(fio.write_qchem_mol_inp_RE("/dev/full", 3, types3, coords3, 1, 1, "0 1", "m", "b",
                                           std::string(100000, '!')),
                ::testing::ExitedWithCode(255), "Failed to write output file /dev/full");
    EXPECT_EQ(stat("/dev/full", &st), 0);
}
