#include <gtest/gtest.h>

#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "fileio.h"

namespace {

class MolReader : public testing::Test {
protected:
    std::string dir;
    FileIO f;

    void SetUp() override
    {
        std::string tmpl = testing::TempDir() + "veska_molXXXXXX";
        ASSERT_NE(mkdtemp(&tmpl[0]), nullptr);
        dir = tmpl;
        storage(2);
    }
    void TearDown() override
    {
        for (const char* name : {"a.mol", "b.xyz"}) ::unlink((dir + "/" + name).c_str());
        ::rmdir(dir.c_str());
    }
    // Per-molecule storage as the structure driver provides it.
    void storage(int n)
    {
        f.free_molecule_arrays();
        f.nmols = n;
        f.natoms_mol = new int[n]();
        f.atypes_mol = new int*[n]();
        f.x_mol = new double*[n]();
        f.x_s_mol = new double*[n]();
    }
    std::string write(const std::string& name, const std::string& text)
    {
        std::string path = dir + "/" + name;
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }
    // The reader fills a slot without releasing what it held before.
    void release(int m)
    {
        std::unique_ptr<int[]> types(f.atypes_mol[m]);
        std::unique_ptr<double[]> x(f.x_mol[m]), x_s(f.x_s_mol[m]);
        f.atypes_mol[m] = nullptr;
        f.x_mol[m] = f.x_s_mol[m] = nullptr;
    }
    std::string read_mol(const std::string& text, int m = 0, bool verbose = false)
    {
        release(m);
        std::string path = write("a.mol", text);
        testing::internal::CaptureStdout();
        f.read_data_mol(path.c_str(), m, verbose);
        return testing::internal::GetCapturedStdout();
    }
    void expect_atom(int m, int i, int type, double x, double y, double z)
    {
        EXPECT_EQ(f.atypes_mol[m][i], type) << i;
        EXPECT_DOUBLE_EQ(f.x_mol[m][3 * i], x) << i;
        EXPECT_DOUBLE_EQ(f.x_mol[m][3 * i + 1], y) << i;
        EXPECT_DOUBLE_EQ(f.x_mol[m][3 * i + 2], z) << i;
    }
};

const char* kHeader = "name\n  program\n\n";

std::string v3000(const std::string& body)
{
    return std::string(kHeader) + "  0  0  0     0  0            999 V3000\n" +
           "M  V30 BEGIN CTAB\n" + body + "M  V30 END CTAB\nM  END\n";
}

}  // namespace

TEST_F(MolReader, V2000ColumnsSymbolsAndBondsIgnored)
{
    // Numbers that touch: only the fixed columns separate them.
    std::string text = std::string(kHeader) +
                       "  3  2  0  0  0  0  0  0  0  0999 V2000\n"
                       "1.23456789-2.3456789 3.4567890 Cl  0  0\n"
                       "    0.0000    1.0000    2.0000 CL  0  0  0  0\n"
                       "   -1.0000   -2.0000   -3.0000 C\n"
                       "  1  2  1  0\n  2  3  1  0\nM  END\n";
    std::string out = read_mol(text, 1, true);
    EXPECT_EQ(out, "Reading molecular file \"" + dir + "/a.mol\" ... \n");
    ASSERT_EQ(f.natoms_mol[1], 3);
    expect_atom(1, 0, 17, 1.23456789, -2.3456789, 3.456789);
    expect_atom(1, 1, 17, 0, 1, 2);
    expect_atom(1, 2, 6, -1, -2, -3);
    ASSERT_NE(f.x_s_mol[1], nullptr);
    // CR LF line ends and an unknown symbol.
    std::string crlf = "a\r\nb\r\n\r\n  1  0  0  0  0  0  0  0  0  0999 V2000\r\n"
                       "    1.0000    2.0000    3.0000 Xx  0\r\n";
    read_mol(crlf, 0);
    ASSERT_EQ(f.natoms_mol[0], 1);
    expect_atom(0, 0, -1, 1, 2, 3);
}

TEST_F(MolReader, V2000ChiralFlagWarns)
{
    std::string out = read_mol(std::string(kHeader) + "  1  0  0  0  2  0\n"
                                                      "    1.0000    2.0000    3.0000 N \n");
    EXPECT_EQ(out, "WARNING: The Chiral Flag should be either 0 or 1. The value of 2 will be "
                   "ignored.\n");
    EXPECT_EQ(f.atypes_mol[0][0], 7);
}

TEST_F(MolReader, V2000FatalErrors)
{
    const std::string header = "\nERROR  transport : fileio : line [0-9]+ : \n";
    const struct {
        std::string text, message;
    } cases[] = {
        {std::string(kHeader) + "  1  0  1  0  0  0\n",
         header + "WARNING: Problems reading the Count line of an MDL file\n"
                  "         There may be erroneous addition spaces or\n"
                  "         the file may contains Atom Lists, which are ignored\n"},
        {std::string(kHeader) + " 1  0\n",
         header + "WARNING: Problems reading a MDL file\n"
                  "         Cannot read atom and bond count\n"
                  "         Expected standard 6 character atom and bond count\n"},
        {"only one line\n", "Cannot read atom and bond count"},
        {std::string(kHeader) + "  3  0  0  0  0  0\n    1.0000    2.0000    3.0000 N \n",
         header + "WARNING: Problems reading a MDL file\n"
                  "         Not enough atoms to match atom count \\(3\\) in counts line\n"},
        {std::string(kHeader) + " -5  0  0  0  0  0\n", "Negative atom count"},
    };
    for (auto& c : cases) {
        std::string path = write("a.mol", c.text);
        EXPECT_EXIT(
            {
                dup2(2, 1);
                f.read_data_mol(path.c_str(), 0, false);
            },
            testing::ExitedWithCode(1), c.message);
    }
    std::string missing = dir + "/none.mol";
    EXPECT_EXIT(f.read_data_mol(missing.c_str(), 0, false), testing::ExitedWithCode(255),
                "^Failed to open input file \"" + missing + "\"\n$");
}

TEST_F(MolReader, V3000AtomOptions)
{
    read_mol(v3000("M  V30 COUNTS 2 0 0 0 0\nM  V30 BEGIN ATOM\n"
                   "M  V30 1 C 0.0 1.0 2.0 0 CHG=1\n"
                   "M  V30 7 Cl 1.5 -1 0 0 MASS=37 RAD=2\n"
                   "M  V30 END ATOM\n"));
    ASSERT_EQ(f.natoms_mol[0], 2);
    expect_atom(0, 0, 6, 0, 1, 2);
    expect_atom(0, 1, 17, 1.5, -1, 0);
    EXPECT_EQ(f.v3000_atom_map.at(7), 2);

    // An option without "=" fails the block; the atom before it is kept.
    std::string out = read_mol(v3000("M  V30 COUNTS 2 0 0 0 0\nM  V30 BEGIN ATOM\n"
                                      "M  V30 1 N 0.0 1.0 2.0 0 CHG\n"
                                      "M  V30 2 O 0.0 1.0 2.0 0\n"
                                      "M  V30 END ATOM\n"));
    EXPECT_NE(out.find("WARNING: "), std::string::npos);
    EXPECT_NE(out.find("a.mol"), std::string::npos);
    EXPECT_EQ(f.atypes_mol[0][0], 7);
    EXPECT_EQ(f.atypes_mol[0][1], 0);  // never read
}

TEST_F(MolReader, V3000ContinuationLines)
{
    std::istringstream in("M  V30 1 C 0 1 -\nM  V30 x 2 0 -\nM  V30 y CHG=1\nM  V30 next\n");
    std::vector<std::string> t;
    ASSERT_TRUE(f.ReadV3000Line(in, t));
    EXPECT_EQ(t, (std::vector<std::string>{"M", "V30", "1", "C", "0", "1", "-", "2", "0", "-",
                                           "CHG=1"}));
    ASSERT_TRUE(f.ReadV3000Line(in, t));
    EXPECT_EQ(t.size(), 3u);

    std::istringstream bad("M  V30 1 C -\nX  V30 2\n");
    EXPECT_FALSE(f.ReadV3000Line(bad, t));
    std::istringstream shortline("M\n");
    EXPECT_FALSE(f.ReadV3000Line(shortline, t));
    std::istringstream end("M  END\n");
    EXPECT_TRUE(f.ReadV3000Line(end, t));

    // Thousands of continuation lines are joined without recursion.
    std::string many = "M  V30 1 -\n";
    for (int i = 0; i < 200000; i++) many += "M  V30 a b -\n";
    many += "M  V30 a b\n";
    std::istringstream longrun(many);
    ASSERT_TRUE(f.ReadV3000Line(longrun, t));
    EXPECT_EQ(t.size(), 4u + 2u * 200000u + 1u);
}

TEST_F(MolReader, V3000SkippedBlocksAndLinknode)
{
    f.debug_print = false;
    std::string out = read_mol(v3000("M  V30 COUNTS 1 0 0 0 0\n"
                                     "M  V30 LINKNODE 1 2 2 1 2 1 3\n"
                                     "M  V30 BEGIN ATOM\nM  V30 1 S 0 0 1.5 0\nM  V30 END ATOM\n"
                                     "M  V30 BEGIN SGROUP\nM  V30 1 SUP 0 ATOMS=(1 1) -\n"
                                     "M  V30 LABEL=x\nM  V30 END SGROUP\n"
                                     "M  V30 BEGIN COLLECTION\nM  V30 END COLLECTION\n"));
    EXPECT_EQ(out, "");
    expect_atom(0, 0, 16, 0, 0, 1.5);

    f.debug_print = true;
    std::istringstream rg("M  V30 x\nM  V30 END CTAB\nM  V30 END RGROUP\nM  V30 after\n");
    testing::internal::CaptureStdout();
    EXPECT_TRUE(f.ReadRGroupBlock(rg));
    std::string name = "SGROUP";
    std::istringstream sg("M  V30 x\nM  V30 END\n");
    EXPECT_TRUE(f.ReadUnimplementedBlock(sg, name));
    std::istringstream eof("M  V30 x\n");
    EXPECT_FALSE(f.ReadUnimplementedBlock(eof, name));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "WARNING: RGROUP and RLOGIC blocks are not currently implemented and their "
              "contents are ignored.\n"
              "WARNING: SGROUP blocks are not currently implemented and their contents are "
              "ignored.\n"
              "WARNING: SGROUP blocks are not currently implemented and their contents are "
              "ignored.\n");
    std::vector<std::string> t;
    EXPECT_TRUE(f.ReadV3000Line(rg, t));
    EXPECT_EQ(t[2], "after");
}

TEST_F(MolReader, V3000HostileFilesDoNotCrash)
{
    // More ATOM lines than COUNTS announced.
    read_mol(v3000("M  V30 COUNTS 1 0 0 0 0\nM  V30 BEGIN ATOM\n"
                   "M  V30 1 C 1 2 3 0\nM  V30 2 C 4 5 6 0\nM  V30 END ATOM\n"));
    ASSERT_EQ(f.natoms_mol[0], 1);
    expect_atom(0, 0, 6, 1, 2, 3);
    // Atom numbers and coordinates that are not numbers, too few tokens.
    for (const char* line : {"M  V30 one C 1 2 3 0\n", "M  V30 1 C 1 2 zz 0\n", "M  V30 1 C 1 2\n"}) {
        read_mol(v3000(std::string("M  V30 COUNTS 1 0 0 0 0\nM  V30 BEGIN ATOM\n") + line +
                       "M  V30 END ATOM\n"));
        EXPECT_EQ(f.atypes_mol[0][0], 0) << line;
    }
    // CTAB without COUNTS; ATOM block outside any CTAB; absurd counts.
    for (const char* body :
         {"M  V30 BEGIN ATOM\nM  V30 1 C 1 2 3 0\nM  V30 END ATOM\n",
          "M  V30 COUNTS -4 0 0 0 0\n", "M  V30 COUNTS 99999999999 0 0 0 0\n",
          "M  V30 COUNTS x 0 0 0 0\n", "M  V30 COUNTS\n"}) {
        read_mol(v3000(body));
        EXPECT_EQ(f.natoms_mol[0], 0) << body;
    }
    read_mol(std::string(kHeader) + "  0  0  0     0  0            999 V3000\n"
                                    "M  V30 BEGIN ATOM\nM  V30 1 C 1 2 3 0\nM  V30 END ATOM\nM  END\n");
    EXPECT_EQ(f.natoms_mol[0], 0);
    // Nested CTABs far deeper than any real file.
    std::string nest = std::string(kHeader) + "  0  0  0     0  0            999 V3000\n";
    for (int i = 0; i < 5000; i++) nest += "M  V30 BEGIN CTAB\nM  V30 COUNTS 1 0 0 0 0\n";
    read_mol(nest + "M  END\n");
    // A line far longer than any buffer, and a truncated file.
    read_mol(v3000("M  V30 COUNTS 1 0 0 0 0\nM  V30 BEGIN ATOM\nM  V30 1 C 1 2 3 0 " +
                   std::string(100000, 'A') + "=1\nM  V30 END ATOM\n"));
    expect_atom(0, 0, 6, 1, 2, 3);
    read_mol(std::string(kHeader) + "  0  0  0     0  0            999 V3000\nM  V30 BEGIN CTAB\n");
    // A bond to an atom that does not exist is read and dropped.
    read_mol(v3000("M  V30 COUNTS 1 1 0 0 0\nM  V30 BEGIN ATOM\nM  V30 1 C 1 2 3 0\n"
                   "M  V30 END ATOM\nM  V30 BEGIN BOND\nM  V30 1 1 1 9 CFG=2\nM  V30 END BOND\n"));
    expect_atom(0, 0, 6, 1, 2, 3);
    FileIO bare;  // no per-molecule storage at all
    std::istringstream atoms("M  V30 1 C 1 2 3 0\nM  V30 END ATOM\n");
    EXPECT_FALSE(bare.ReadAtomBlock(atoms));
    std::istringstream ctab("M  V30 BEGIN CTAB\nM  V30 COUNTS 1 0 0 0 0\n");
    EXPECT_FALSE(bare.ReadV3000Block(ctab, 0, false));
    std::istringstream bond("M  V30 1 1 1 2 CFG\nM  V30 END BOND\n");
    EXPECT_FALSE(f.ReadBondBlock(bond));
}

TEST_F(MolReader, RGroupAtomStoresNothing)
{
    std::string out = read_mol(v3000("M  V30 COUNTS 2 0 0 0 0\nM  V30 BEGIN ATOM\n"
                                     "M  V30 1 R# 1 1 1 0 RGROUPS=(1)\n"
                                     "M  V30 2 O 4 5 6 0\nM  V30 END ATOM\n"));
    EXPECT_EQ(out, "WARNING: A molecule contains an R group which is not implemented!\n");
    EXPECT_EQ(f.atypes_mol[0][0], 0);
    expect_atom(0, 1, 8, 4, 5, 6);
}

TEST_F(MolReader, RealFiles)
{
    struct Case {
        const char* file;
        int natoms;
        std::vector<int> first_types;
        double first[3], last[3];
    } cases[] = {
        {"culgi_00_v2000.mol", 34, {6, 6, 6, 6, 6, 6, 8}, {-1.2975, -0.767, 0.0108}, {-0.9001, 6.8739, 1.7063}},
        {"pentacene_dimer_0_0_0_v2000.mol", 104, {6, 6, 6}, {-7.5854, -5.5442, 2.9891}, {-4.7063, -1.6061, -1.7898}},
        {"isopentane_sgroup_v3000.mol", 5, {6, 6, 6, 6, 6}, {-6.38, 0.715, 0}, {-2.379, 1.485, 0}},
        {"trifluoroacetate_precision_v3000.mol", 7, {8, 6, 8, 6, 9, 9, 9}, {0.40201265, -0.13299436, 1.00000017}, {3.0077234, 0.37399312, -0.07713336}},
    };
    for (auto& c : cases) {
        std::string path = std::string(VESKA_TEST_DATA_DIR) + "/" + c.file;
        release(1);
        testing::internal::CaptureStdout();
        f.read_data_mol(path.c_str(), 1, false);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "") << c.file;
        ASSERT_EQ(f.natoms_mol[1], c.natoms) << c.file;
        for (size_t i = 0; i < c.first_types.size(); i++) EXPECT_EQ(f.atypes_mol[1][i], c.first_types[i]) << c.file;
        int n = c.natoms - 1;
        for (int k = 0; k < 3; k++) {
            EXPECT_NEAR(f.x_mol[1][k], c.first[k], 1e-9) << c.file;
            EXPECT_NEAR(f.x_mol[1][3 * n + k], c.last[k], 1e-9) << c.file;
        }
        double mass = 0;
        for (int i = 0; i < c.natoms; i++) mass += element_table[f.atypes_mol[1][i]].mass;
        if (c.natoms == 34) {
            EXPECT_NEAR(mass, 281.2878, 1e-3);
        }
        if (c.natoms == 104) {
            EXPECT_NEAR(mass, 831.0277, 1e-3);
        }
        release(1);
    }
}

TEST_F(MolReader, XyzFiles)
{
    std::string path = write("b.xyz", "3\ncomment\n  C 0.0 1.0 2.0\nCl -1 -2 -3\nXx 1 1 1\n");
    f.read_data_xyz(path.c_str());
    ASSERT_EQ(f.natoms_cif, 3);
    EXPECT_EQ(f.cif_atypes[0], 6);
    EXPECT_EQ(f.cif_atypes[1], 17);
    EXPECT_EQ(f.cif_atypes[2], -1);
    EXPECT_DOUBLE_EQ(f.cif_x[2], 2.0);
    EXPECT_DOUBLE_EQ(f.cif_x[5], -3.0);

    // Shorter than its count: what is there is kept and the file is named.
    path = write("b.xyz", "5\n\nH 0 0 0\nH 0 0 0.74\n");
    testing::internal::CaptureStdout();
    f.read_data_xyz(path.c_str());
    std::string out = testing::internal::GetCapturedStdout();
    EXPECT_NE(out.find("b.xyz"), std::string::npos);
    EXPECT_EQ(f.natoms_cif, 2);
    EXPECT_DOUBLE_EQ(f.cif_x[5], 0.74);

    path = write("b.xyz", "2\n\nH 0 0 0\nH 0\n");
    EXPECT_EXIT(f.read_data_xyz(path.c_str()), testing::ExitedWithCode(255), "");
    std::string missing = dir + "/none.xyz";
    EXPECT_EXIT(f.read_data_xyz(missing.c_str()), testing::ExitedWithCode(255),
                "Failed to open input file \"" + missing + "\"");
}
