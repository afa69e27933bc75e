// MDL MOL (V2000 and V3000) and XYZ readers: columns, symbols, line ends,
// blocks, continuation lines, and damaged or hostile files.

#include <sstream>

#include "fileio.h"
#include "test_support.h"

namespace {

const std::string kHeader = "name\n  program\n\n";
const std::string kV3000 = kHeader + "  0  0  0     0  0            999 V3000\n";

std::string v3000(const std::string& body) { return kV3000 + "M  V30 BEGIN CTAB\n" + body + "M  V30 END CTAB\nM  END\n"; }
std::string atoms(const std::string& rows, int n = 1)
{
    return v3000("M  V30 COUNTS " + std::to_string(n) + " 0 0 0 0\nM  V30 BEGIN ATOM\n" + rows + "M  V30 END ATOM\n");
}

class MolReader : public ScratchDirTest {
protected:
    FileIO f;
    MolReader()  // per-molecule storage as the structure driver provides it
    {
        f.nmols = 2;
        f.natoms_mol = new int[2]();
        f.atypes_mol = new int*[2]();
        f.x_mol = new double*[2]();
        f.x_s_mol = new double*[2]();
    }
    // Reads `text` into slot m (the reader releases what the slot held); returns what was printed.
    std::string read_mol(const std::string& text, int m = 0, bool verbose = false)
    {
        put_file("a.mol", text);
        testing::internal::CaptureStdout();
        f.read_data_mol("a.mol", m, verbose);
        return testing::internal::GetCapturedStdout();
    }
    void expect_atom(int m, int i, int type, std::vector<double> x)
    {
        EXPECT_EQ(f.atypes_mol[m][i], type) << i;
        EXPECT_EQ(std::vector<double>(f.x_mol[m] + 3 * i, f.x_mol[m] + 3 * i + 3), x) << i;
    }
};

}  // namespace

TEST_F(MolReader, V2000ColumnsSymbolsLineEndsAndChiralFlag)
{
    // Numbers that touch: only the fixed columns separate them.
    EXPECT_EQ(read_mol(kHeader + "  3  2  0  0  0  0  0  0  0  0999 V2000\n"
                                 "1.23456789-2.3456789 3.4567890 Cl  0  0\n"
                                 "    0.0000    1.0000    2.0000 CL  0  0  0  0\n   -1.0000   -2.0000   -3.0000 C\n"
                                 "  1  2  1  0\n  2  3  1  0\nM  END\n", 1, true),
              "Reading molecular file \"a.mol\" ... \n");
    ASSERT_EQ(f.natoms_mol[1], 3);
    expect_atom(1, 0, 17, {1.23456789, -2.3456789, 3.456789});
    expect_atom(1, 1, 17, {0, 1, 2});
    expect_atom(1, 2, 6, {-1, -2, -3});
    ASSERT_NE(f.x_s_mol[1], nullptr);
    read_mol("a\r\nb\r\n\r\n  1  0  0  0  0  0  0  0  0  0999 V2000\r\n    1.0000    2.0000    3.0000 Xx  0\r\n");
    expect_atom(0, 0, -1, {1, 2, 3});
    EXPECT_EQ(read_mol(kHeader + "  1  0  0  0  2  0\n    1.0000    2.0000    3.0000 N \n"),
              "WARNING: The Chiral Flag should be either 0 or 1. The value of 2 will be ignored.\n");
    EXPECT_EQ(f.atypes_mol[0][0], 7);
}

// Damaged and hostile files: the fatal ones exit with their message, the
// others are read as far as they hold together (natoms -1: only no crash).
TEST_F(MolReader, DamagedFiles)
{
    const std::string err = "\nERROR  transport : fileio : line [0-9]+ : \n", problems = "WARNING: Problems reading a MDL file\n";
    std::string nest = kV3000;
    for (int i = 0; i < 5000; i++) nest += "M  V30 BEGIN CTAB\nM  V30 COUNTS 1 0 0 0 0\n";
    const struct { std::string text; int status, natoms, type0; std::string message = ""; } cases[] = {
        {kHeader + "  1  0  1  0  0  0\n", 1, 0, 0, err + "WARNING: Problems reading the Count line of an MDL file\n"
         "         There may be erroneous addition spaces or\n         the file may contains Atom Lists, which are ignored\n"},
        {kHeader + " 1  0\n", 1, 0, 0, err + problems + "         Cannot read atom and bond count\n"
                                               "         Expected standard 6 character atom and bond count\n"},
        {kHeader + "  3  0  0  0  0  0\n    1.0000    2.0000    3.0000 N \n", 1, 0, 0,
         err + problems + "         Not enough atoms to match atom count \\(3\\) in counts line\n"},
        {kHeader + " -5  0  0  0  0  0\n", 1, 0, 0, "Negative atom count"},
        {atoms("M  V30 1 C 1 2 3 0\nM  V30 2 C 4 5 6 0\n"), 0, 1, 6},  // more atoms than COUNTS
        {atoms("M  V30 1 C 1 2 zz 0\n"), 0, 0, 0},
        {atoms("M  V30 1 C 1 2\n"), 0, 0, 0},  // short: its coordinates never read
        {atoms("M  V30 1 C 1 2 3 0 " + std::string(100000, 'A') + "=1\n"), 0, 1, 6},
        {v3000("M  V30 BEGIN ATOM\nM  V30 1 C 1 2 3 0\nM  V30 END ATOM\n"), 0, 0, 0},  // no COUNTS
        {v3000("M  V30 COUNTS 99999999999 0 0 0 0\n"), 0, 0, 0},
        {v3000("M  V30 COUNTS\n"), 0, 0, 0},
        // A count never makes atoms: only those read are kept, and counted.
        {v3000("M  V30 COUNTS 100000 0 0 0 0\n"), 0, 0, 0, "molecule 1 keeps the 0 atoms read"},
        {atoms("M  V30 1 N 1 2 3 0\nM  V30 2 C 4 5 6 0\n", 3), 0, 2, 7, "keeps the 2 atoms read"},
        {nest + "M  END\n", 0, -1, 0},
        {v3000("M  V30 COUNTS 1 1 0 0 0\nM  V30 BEGIN ATOM\nM  V30 1 C 1 2 3 0\nM  V30 END ATOM\n"  // bond to a missing atom
               "M  V30 BEGIN BOND\nM  V30 1 1 1 9 CFG=2\nM  V30 END BOND\n"), 0, 1, 6},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text.substr(0, 200));
        if (c.status) {
            EXPECT_EXIT((child_with_file("a.mol", c.text), f.read_data_mol("a.mol", 0, false)),
                        testing::ExitedWithCode(c.status), c.message);
            continue;
        }
        EXPECT_NE(read_mol(c.text).find(c.message), std::string::npos);
        if (c.natoms < 0) continue;
        ASSERT_EQ(f.natoms_mol[0], c.natoms);
        if (c.natoms > 0) { EXPECT_EQ(f.atypes_mol[0][0], c.type0); }
    }
    EXPECT_EXIT(f.read_data_mol("none.mol", 0, false), testing::ExitedWithCode(255), "^Failed to open input file \"none.mol\"\n$");
    FileIO bare;  // block readers without per-molecule storage
    std::istringstream in("M  V30 1 C 1 2 3 0\nM  V30 END ATOM\n"), ctab("M  V30 BEGIN CTAB\nM  V30 COUNTS 1 0 0 0 0\n"),
        bond("M  V30 1 1 1 2 CFG\nM  V30 END BOND\n");
    EXPECT_FALSE(bare.ReadAtomBlock(in) || bare.ReadV3000Block(ctab, 0, false) || f.ReadBondBlock(bond));
}

TEST_F(MolReader, V3000AtomOptionsRGroupsBlocksContinuationsAndFullPrecision)
{
    read_mol(atoms("M  V30 1 C 0.0 1.0 2.0 0 CHG=1\nM  V30 7 Cl 1.5 -1 0 0 MASS=37 RAD=2\n", 2));
    ASSERT_EQ(f.natoms_mol[0], 2);
    expect_atom(0, 1, 17, {1.5, -1, 0});
    EXPECT_EQ(f.v3000_atom_map.at(7), 2);
    // An option without "=" fails the block, naming the file; the atom
    // before it is kept, the one after it never read.
    EXPECT_NE(read_mol(atoms("M  V30 1 N 0.0 1.0 2.0 0 CHG\nM  V30 2 O 0.0 1.0 2.0 0\n", 2))
                  .find("WARNING: The V3000 blocks of \"a.mol\""), std::string::npos);
    ASSERT_EQ(f.natoms_mol[0], 1);
    EXPECT_EQ(f.atypes_mol[0][0], 7);
    EXPECT_EQ(read_mol(atoms("M  V30 1 R# 1 1 1 0 RGROUPS=(1)\nM  V30 2 O 4 5 6 0\n", 2)),
              "WARNING: A molecule contains an R group which is not implemented!\n");
    EXPECT_EQ(f.atypes_mol[0][0], 0);
    expect_atom(0, 1, 8, {4, 5, 6});
    read_mol(read_text_file(data_file("trifluoroacetate_precision_v3000.mol")));
    expect_atom(0, 0, 8, {0.40201265, -0.13299436, 1.00000017});
    // Blocks the reader skips, an RGROUP up to its own END only; with debug
    // output each says so, and the molecule read is listed.
    const std::string skipped = v3000("M  V30 COUNTS 1 0 0 0 0\nM  V30 LINKNODE 1 2 2 1 2 1 3\n"
                                      "M  V30 BEGIN RGROUP 1\nM  V30 END CTAB\nM  V30 END RGROUP\n"
                                      "M  V30 BEGIN ATOM\nM  V30 1 S 0 0 1.5 0\nM  V30 END ATOM\n"
                                      "M  V30 BEGIN SGROUP\nM  V30 1 SUP 0 ATOMS=(1 1) -\nM  V30 LABEL=x\nM  V30 END SGROUP\n");
    EXPECT_EQ(read_mol(skipped), "");
    f.debug_print = true;
    EXPECT_EQ(read_mol(skipped),
              "WARNING: RGROUP and RLOGIC blocks are not currently implemented and their contents are ignored.\n"
              "WARNING: SGROUP blocks are not currently implemented and their contents are ignored.\n"
              "V3000 molecule 1: 1 atoms\n   16     0.000000     0.000000     1.500000\n");
    expect_atom(0, 0, 16, {0, 0, 1.5});

    // Continuation lines: the "-" ends a line that goes on in the next.
    std::vector<std::string> t;
    std::istringstream in("M  V30 1 C 0 1 -\nM  V30 x 2 0 -\nM  V30 y CHG=1\nM  V30 next\n");
    ASSERT_TRUE(f.ReadV3000Line(in, t));
    EXPECT_EQ(t, (std::vector<std::string>{"M", "V30", "1", "C", "0", "1", "-", "2", "0", "-", "CHG=1"}));
    ASSERT_TRUE(f.ReadV3000Line(in, t));
    EXPECT_EQ(t.size(), 3u);
    for (const char* text : {"M  V30 1 C -\nX  V30 2\n", "M\n"}) {
        std::istringstream bad(text);
        EXPECT_FALSE(f.ReadV3000Line(bad, t)) << text;
    }
    std::string many = "M  V30 1 -\n";  // thousands of continuations, joined without recursion
    for (int i = 0; i < 200000; i++) many += "M  V30 a b -\n";
    std::istringstream longrun(many + "M  V30 a b\n");
    ASSERT_TRUE(f.ReadV3000Line(longrun, t));
    EXPECT_EQ(t.size(), 4u + 2u * 200000u + 1u);
}

TEST_F(MolReader, XyzFiles)
{
    put_file("b.xyz", "3\ncomment\n  C 0.0 1.0 2.0\nCl -1 -2 -3\nXx 1 1 1\n");
    f.read_data_xyz("b.xyz");
    ASSERT_EQ(f.natoms_cif, 3);
    EXPECT_EQ(std::vector<int>(f.cif_atypes, f.cif_atypes + 3), (std::vector<int>{6, 17, -1}));
    EXPECT_EQ(f.cif_x[2] + f.cif_x[5], -1.0);
    put_file("b.xyz", "5\n\nH 0 0 0\nH 0 0 0.74\n");  // shorter than its count: kept, the file named
    testing::internal::CaptureStdout();
    f.read_data_xyz("b.xyz");
    EXPECT_NE(testing::internal::GetCapturedStdout().find("b.xyz"), std::string::npos);
    EXPECT_EQ(f.natoms_cif, 2);
    EXPECT_DOUBLE_EQ(f.cif_x[5], 0.74);
    put_file("b.xyz", "2\n\nH 0 0 0\nH 0\n");
    EXPECT_EXIT(f.read_data_xyz("b.xyz"), testing::ExitedWithCode(255), "");
    EXPECT_EXIT(f.read_data_xyz("none.xyz"), testing::ExitedWithCode(255), "Failed to open input file \"none.xyz\"");
}
