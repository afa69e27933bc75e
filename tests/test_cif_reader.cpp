// The CIF line scanner: rule order, the three loop kinds, the end of the
// scan at the atom-site loop, fatal rows and bad files.

#include <gtest/gtest.h>

#include <unistd.h>

#include "fileio.h"
#include "reader_test_util.h"

static const char* kCell =
    "_cell_length_a 10.0\n_cell_length_b 10.0\n_cell_length_c 10.0\n"
    "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n";

static const char* kOneAtom =
    "loop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n"
    "_atom_site_fract_y\n_atom_site_fract_z\nC1 C 0.1 0.2 0.3\n";

static const char* kIdentity = "loop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\n";

// A bond loop headed by a tag that contains "_atom_site", and one that is not.
static const char* kBondsByLabel =
    "loop_\n_geom_bond_atom_site_label_1\n_geom_bond_atom_site_label_2\n"
    "_geom_bond_distance\n_geom_bond_site_symmetry_2\n_ccdc_geom_bond_type\n";
static const char* kBondsByType =
    "loop_\n_ccdc_geom_bond_type\n_geom_bond_atom_site_label_1\n"
    "_geom_bond_atom_site_label_2\n_geom_bond_distance\n_geom_bond_site_symmetry_2\n";

// Reads `text` as a CIF in a scratch directory; returns what was printed.
static std::string read_cif_text(FileIO& io, const std::string& text, bool verbose = false)
{
    ScratchDir dir;
    write_text_file("t.cif", text);
    testing::internal::CaptureStdout();
    io.read_data_cif("t.cif", verbose);
    return testing::internal::GetCapturedStdout();
}

TEST(CifScanner, TagsValuesAndUncertainties)
{
    FileIO io;
    read_cif_text(io, std::string("data_abc\n") +
                          "_symmetry_space_group_name_H-M 'P 21/c'\n"
                          "_space_group_IT_number 14\n"
                          "_cell_length_a 10.123(4)\n_cell_length_b 5.5(1)\n_cell_length_c 7\n"
                          "_cell_angle_alpha 90\n_cell_angle_beta 101.25(3)\n"
                          "_cell_angle_gamma 90.000(5)\n" +
                          kIdentity + kOneAtom);
    EXPECT_EQ(io.identifier, "abc");
    EXPECT_EQ(io.space_group_name, "'P 21/c'");
    EXPECT_EQ(io.space_group_number, 14);
    EXPECT_DOUBLE_EQ(io.cell_latt[0], 10.123);
    EXPECT_DOUBLE_EQ(io.cell_latt[1], 5.5);
    EXPECT_DOUBLE_EQ(io.cell_latt[4], 101.25);
    EXPECT_EQ(io.natoms_cif, 1);
    EXPECT_TRUE(io.cif_loaded);
    EXPECT_EQ(io.crystal_file, "t.cif");
}

TEST(CifScanner, RuleOrderDecidesBetweenTagsThatContainOneAnother)
{
    FileIO io;
    read_cif_text(io, std::string("DATA_abc\n") +
                          "_chemical_name_common 'pentacene'\n" +
                          // rule 4 wins over rules 7 and 8 on the same line
                          "_chemical_name_common '_cell_length_a 3 loop_'\n" +
                          "_symmetry_space_group_name_H-M_alt 'P 1 21/c 1'\n" + kCell +
                          kIdentity + kOneAtom);
    EXPECT_EQ(io.chemical_name, "_cell_length_a 3 loop_");
    EXPECT_EQ(io.identifier, "_cell_length_a 3 loop_");
    EXPECT_EQ(io.space_group_name, "'P 1 21/c 1'");
    EXPECT_DOUBLE_EQ(io.cell_latt[0], 10.0);

    FileIO named;
    read_cif_text(named, std::string("data_abc\n_chemical_name_common \"pentacene\" \n") + kCell +
                             kIdentity + kOneAtom);
    EXPECT_EQ(named.identifier, "pentacene");
    EXPECT_EQ(named.chemical_name, "pentacene");

    // "data_" wins over the cell tag that follows it on the line.
    FileIO data;
    read_cif_text(data, std::string("data__cell_length_a 3\n") + kCell + kIdentity + kOneAtom);
    EXPECT_EQ(data.identifier, "_cell_length_a 3");
    EXPECT_DOUBLE_EQ(data.cell_latt[0], 10.0);
}

TEST(CifScanner, OperatorLoopsOfEveryDialect)
{
    FileIO with_id;
    read_cif_text(with_id, std::string(kCell) +
                               "loop_\n_symmetry_equiv_pos_site_id\n_symmetry_equiv_pos_as_xyz\n"
                               "1 x,y,z\n2 '-x, y+1/2, -z'\n\n" + kOneAtom);
    ASSERT_EQ(with_id.symm_ops.size(), 2u);
    EXPECT_EQ(with_id.symm_ops[1], "-x,y+1/2,-z");

    FileIO quoted;
    read_cif_text(quoted, std::string(kCell) +
                              "loop_\n_space_group_symop_operation_xyz\n'x, y, z'\n"
                              "  'x, y+1/2, -z'  \r\n" + kOneAtom);
    ASSERT_EQ(quoted.symm_ops.size(), 2u);
    EXPECT_EQ(quoted.symm_ops[1], "x,y+1/2,-z");
    EXPECT_EQ(quoted.natoms_cif, 2);

    // Rows followed directly by the next loop: "loop_" is not an operator.
    FileIO direct;
    read_cif_text(direct, std::string(kCell) + "loop_\n_symmetry_equiv_pos_as_xyz\n'x, y, z'\n" +
                              "'-x, -y, -z'\n" + kOneAtom);
    EXPECT_EQ(direct.symm_ops.size(), 2u);
    EXPECT_EQ(direct.natoms_cif, 2);

    // An empty line between the header and the first row does not end the loop.
    FileIO gap;
    read_cif_text(gap, std::string(kCell) + "loop_\n_symmetry_equiv_pos_as_xyz\n\r\nx,y,z\n" +
                           "-x,-y,-z\n\n" + kOneAtom);
    EXPECT_EQ(gap.symm_ops.size(), 2u);
}

TEST(CifScanner, SymopIdFirstLoopIsNotAnOperatorLoopAndIsReported)
{
    FileIO io;
    std::string out = read_cif_text(
        io, std::string(kCell) +
                "loop_\n_space_group_symop_id\n_space_group_symop_operation_xyz\n1 x,y,z\n\n" +
                kOneAtom);
    EXPECT_TRUE(io.symm_ops.empty());
    EXPECT_EQ(io.natoms_cif, 0);
    EXPECT_EQ(io.cif_atoms.label.size(), 1u);
    EXPECT_NE(out.find("WARNING: no symmetry operator was recognised in crystal file \"t.cif\""),
              std::string::npos);
    EXPECT_TRUE(io.cif_loaded);
}

TEST(CifScanner, AtomLoopEndsTheScanAtItsEmptyLine)
{
    FileIO io;
    read_cif_text(io, std::string(kCell) + kIdentity + kOneAtom + "\n" + kBondsByType +
                          "S C1 C2 1.5 .\n_space_group_IT_number 99\n");
    EXPECT_TRUE(io.cif_bonds.atom_label_1.empty());
    EXPECT_EQ(io.space_group_number, -1);

    // Before the atom-site loop a bond loop with all five columns is read.
    FileIO bonds;
    read_cif_text(bonds, std::string(kCell) + kIdentity + kBondsByType + "S C1 C2 1.5(2) 1_555\n" +
                             kOneAtom);
    ASSERT_EQ(bonds.cif_bonds.distance.size(), 1u);
    EXPECT_EQ(bonds.cif_bonds.distance[0], "1.5(2)");
    EXPECT_EQ(bonds.cif_bonds.atom_label_2[0], "C2");
    EXPECT_EQ(bonds.cif_bonds.bond_type[0], "S");
    EXPECT_EQ(bonds.natoms_cif, 1);
}

TEST(CifScanner, BondLoopHeadedByAnAtomSiteLabelIsTakenAsAtomSiteLoop)
{
    // "_geom_bond_atom_site_label_1" contains "_atom_site": the atom-site rule
    // comes first, finds none of its columns and leaves the rows to the
    // ordinary rules, so the row below is neither a bond nor fatal.
    FileIO io;
    read_cif_text(io, std::string(kCell) + kIdentity + kBondsByLabel + "C1 C2\n" + kOneAtom);
    EXPECT_TRUE(io.cif_bonds.distance.empty());
    EXPECT_EQ(io.natoms_cif, 1);
}

TEST(CifScanner, AtomColumnsInAnyOrderCommentsAndCrLf)
{
    FileIO io;
    read_cif_text(io, std::string(kCell) + kIdentity +
                          "loop_\r\n_atom_site_type_symbol\r\n_atom_site_label\r\n"
                          "_atom_site_occupancy\r\n_atom_site_fract_x\r\n_atom_site_fract_y\r\n"
                          "_atom_site_fract_z\r\n"
                          "Cl Cl1 1 0.1234(5) .5 -0.25\r\n"
                          "\tH H7A* 0.5 0.1 0.2 0.3\t\r\n"
                          "#END\r\n"
                          "Xx Q1 1 0 0 0\r\n"
                          " \t\r\n"
                          "N N9 1 0 0 0\r\n");
    ASSERT_EQ(io.cif_atoms.label.size(), 3u);
    EXPECT_EQ(io.cif_atoms.label[0], "Cl1");
    EXPECT_EQ(io.cif_atoms.fract_x[0], "0.1234(5)");
    EXPECT_EQ(io.cif_atoms.label[1], "H7A*");
    ASSERT_EQ(io.natoms_cif, 3);
    EXPECT_EQ(io.cif_atypes[0], 17);
    EXPECT_EQ(io.cif_atypes[1], 1);
    EXPECT_EQ(io.cif_atypes[2], -1);
    EXPECT_DOUBLE_EQ(io.cif_x_s[0], 0.1234);
    EXPECT_DOUBLE_EQ(io.cif_x_s[2], 0.75);  // -0.25 brought into the cell
    EXPECT_NEAR(io.cif_x[1], 5.0, 1e-9);    // Cartesian from the expanded cell
}

TEST(CifScanner, AtomLoopWithoutTypeSymbolIsSkipped)
{
    FileIO io;
    std::string out = read_cif_text(
        io, std::string(kCell) + kIdentity +
                "loop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n"
                "_atom_site_fract_z\nC1 0.1 0.2 0.3\n");
    EXPECT_EQ(io.natoms_cif, 0);
    EXPECT_NE(out.find("WARNING: no atom site was read from crystal file \"t.cif\""),
              std::string::npos);
}

TEST(CifScanner, TextFieldsAndLongLines)
{
    std::string longline(100000, 'x');
    FileIO io;
    read_cif_text(io, std::string("data_t\n;\n_cell_length_a 99\n loop_\n") + longline +
                          "\n;\n_chemical_name_common " + longline + "\n" + kCell + kIdentity +
                          kOneAtom);
    EXPECT_DOUBLE_EQ(io.cell_latt[0], 10.0);
    EXPECT_EQ(io.chemical_name.size(), longline.size());
    EXPECT_EQ(io.natoms_cif, 1);

    FileIO open;
    std::string out =
        read_cif_text(open, std::string(kCell) + kIdentity + "\n;never closed\n" + kOneAtom);
    EXPECT_EQ(open.natoms_cif, 0);
    EXPECT_NE(out.find("WARNING: the text field opened at line 11 of crystal file \"t.cif\""),
              std::string::npos);
}

TEST(CifScanner, VerbosePrints)
{
    FileIO io;
    std::string out =
        read_cif_text(io,
                      std::string("data_q\n_symmetry_space_group_name_H-M 'P 1'\n") +
                          "_cell_length_a 9.3056(6)\n_cell_length_b 5.9879(3)\n"
                          "_cell_length_c 8.4252(5)\n_cell_angle_alpha 90\n"
                          "_cell_angle_beta 102.620(6)\n_cell_angle_gamma 90\n" +
                          kIdentity + std::string(kOneAtom) + "H1 H 0.4 0.5 0.6\n",
                      true);
    const char* expected =
        "Reading crystal file \"t.cif\" ... \n"
        "  Identifier: q\n"
        "  Spacegroup name: 'P 1'\n"
        "  Spacegroup operations: \n"
        "    x,y,z\n"
        "  Cell lattice a = 9.3056\n"
        "  Cell lattice b = 5.9879\n"
        "  Cell lattice c = 8.4252\n"
        "  Cell lattice alpha = 90\n"
        "  Cell lattice beta  = 102.62\n"
        "  Cell lattice gamma = 90\n"
        "  natoms_cif = 2\n"
        "  First atom: C1 C 0.1 0.2 0.3\n"
        "  ...\n"
        "  Last  atom: H1 H 0.4 0.5 0.6\n";
    EXPECT_EQ(out.substr(0, strlen(expected)), expected);
    EXPECT_NE(out.find("Crystal file t.cif parsing done.\n"), std::string::npos);
}

// ---- fatal cases ------------------------------------------------------------

static void read_quietly(const std::string& text)
{
    child_with_file("bad.cif", text);
    FileIO io;
    io.read_data_cif("bad.cif", false);
}

TEST(CifScannerDeathTest, ShortRowsAreFatal)
{
    ScratchDir dir;
    ASSERT_TRUE(dir.ok());
    EXPECT_EXIT(read_quietly(std::string(kCell) + kIdentity + kOneAtom + "C2 C 0.1 0.2\n"),
                testing::ExitedWithCode(255),
                "ERROR  transport : fileio : line [0-9]+ : \nNot enough columns: C2 C 0.1 "
                "0.2\nAt least 5 columns are expected!\n");
    const std::string aniso =
        "loop_\n_atom_site_aniso_label\n_atom_site_aniso_U_11\n_atom_site_aniso_U_22\n"
        "_atom_site_aniso_U_33\n_atom_site_aniso_U_12\nC1 .1 .2 .3 .4\n";
    EXPECT_EXIT(read_quietly(std::string(kCell) + kIdentity + aniso + "C2 .1 .2\n" + kOneAtom),
                testing::ExitedWithCode(255),
                "Not enough columns: C2 .1 .2\nAt least 4 columns are expected!\n");
    // an empty line is a row of an aniso loop
    EXPECT_EXIT(read_quietly(std::string(kCell) + kIdentity + aniso + "\n" + kOneAtom),
                testing::ExitedWithCode(255), "Not enough columns: \nAt least 4 columns");
    const std::string bonds = kBondsByType;
    EXPECT_EXIT(read_quietly(std::string(kCell) + kIdentity + bonds + "S C1 C2 1.5\n" + kOneAtom),
                testing::ExitedWithCode(255),
                "Not enough columns: S C1 C2 1.5\nAt least 5 columns are expected!\n");
    EXPECT_EXIT(read_quietly(std::string(kCell) + kIdentity + bonds + "S C1 C2 1.5 .\n\n" +
                             kOneAtom),
                testing::ExitedWithCode(255), "Not enough columns: \nAt least 5 columns");
    // a row shorter than the column of its type symbol
    EXPECT_EXIT(read_quietly(std::string(kCell) + kIdentity +
                             "loop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n"
                             "_atom_site_fract_z\n_atom_site_U_iso_or_equiv\n"
                             "_atom_site_type_symbol\nC1 0.1 0.2 0.3 0.05\n"),
                testing::ExitedWithCode(255), "At least 6 columns are expected!\n");
}

TEST(CifScannerDeathTest, MissingFileDirectoryAndMissingCell)
{
    ScratchDir dir;
    ASSERT_TRUE(dir.ok());
    FileIO io;
    EXPECT_EXIT(io.read_data_cif("none.cif", false), testing::ExitedWithCode(255),
                "Failed to open input file \"none.cif\"\n");
    EXPECT_EXIT(io.read_data_cif(".", false), testing::ExitedWithCode(255),
                "Failed to open input file \".\"\n");
    EXPECT_EXIT(read_quietly(std::string(kIdentity) + kOneAtom), testing::ExitedWithCode(255),
                "No valid cell in crystal file \"bad.cif\"");
    EXPECT_EXIT(read_quietly("_cell_length_a 5\n_cell_length_b 5\n_cell_length_c 5\n"
                             "_cell_angle_alpha 150\n_cell_angle_beta 150\n"
                             "_cell_angle_gamma 150\n"),
                testing::ExitedWithCode(255), "No valid cell in crystal file");
}
