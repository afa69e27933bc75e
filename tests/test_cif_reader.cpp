// The CIF line scanner: rule order, the atom-site and bond loops, the end of
// the scan at the atom-site loop, fatal rows and bad files. The operator
// loops of every dialect come with the shared crystals (MANIFEST.md), which
// the end-to-end check reads against their reference figures.

#include "fileio.h"
#include "test_support.h"

static const std::string kCell = "_cell_length_a 10.0\n_cell_length_b 10.0\n_cell_length_c 10.0\n"
                                 "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n";
static const std::string kAtomTags = "loop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n"
                                     "_atom_site_fract_y\n_atom_site_fract_z\n";
static const std::string kOneAtom = kAtomTags + "C1 C 0.1 0.2 0.3\n";
static const std::string kHead = kCell + "loop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\n";
// A bond loop headed by a tag that is not an atom-site tag: a loop whose
// first tag holds "_atom_site" (as "_geom_bond_atom_site_label_1") is taken for atom sites.
static const std::string kBonds = "loop_\n_ccdc_geom_bond_type\n_geom_bond_atom_site_label_1\n"
                                  "_geom_bond_atom_site_label_2\n_geom_bond_distance\n_geom_bond_site_symmetry_2\n";

// Reads `text` as t.cif in a scratch directory; returns what was printed.
static std::string read_cif_text(FileIO& io, const std::string& text, bool verbose = false)
{
    ScratchDir dir;
    put_file("t.cif", text);
    testing::internal::CaptureStdout();
    io.read_data_cif("t.cif", verbose);
    return testing::internal::GetCapturedStdout();
}

TEST(CifScanner, RuleOrderTextFieldsAndLongLines)
{
    // The tags follow the cell lines: a cell tag read by mistake would show.
    FileIO io;  // the chemical-name rule wins over the cell and loop rules on its line
    read_cif_text(io, kHead + "DATA_abc\n_chemical_name_common 'pentacene'\n_chemical_name_common '_cell_length_a 3 loop_'\n"
                              "_symmetry_space_group_name_H-M_alt 'P 1 21/c 1'\n" + kOneAtom);
    EXPECT_EQ(io.chemical_name + "|" + io.identifier + "|" + io.space_group_name,
              "_cell_length_a 3 loop_|_cell_length_a 3 loop_|'P 1 21/c 1'");
    EXPECT_DOUBLE_EQ(io.cell_latt[0], 10.0);
    // "data_" wins over the cell tag on its line; text fields hide tags; no line is too long.
    const std::string longline(100000, 'x');
    FileIO text;
    read_cif_text(text, kHead + "_chemical_name_common " + longline + "\ndata__cell_length_a 3\n;\n_cell_length_a 99\n"
                                " loop_\n" + longline + "\n;\n" + kOneAtom);
    EXPECT_EQ(text.identifier, "_cell_length_a 3");
    EXPECT_EQ(text.chemical_name.size(), longline.size());
    EXPECT_DOUBLE_EQ(text.cell_latt[0], 10.0);
    EXPECT_EQ(text.natoms_cif, 1);
    FileIO open;
    EXPECT_NE(read_cif_text(open, kHead + "\n;never closed\n" + kOneAtom)
                  .find("WARNING: the text field opened at line 11 of crystal file \"t.cif\""), std::string::npos);
    EXPECT_EQ(open.natoms_cif, 0);
}

TEST(CifScanner, AtomAndBondLoops)
{
    // A bond loop with all five columns is read; the atom-site loop ends the
    // scan at its empty line, so nothing after it counts.
    FileIO bonds;
    read_cif_text(bonds, kHead + kBonds + "S C1 C2 1.5(2) 1_555\n" + kOneAtom + "\n" + kBonds + "D C3 C4 2 .\n"
                         "_space_group_IT_number 99\n");
    ASSERT_EQ(bonds.cif_bonds.distance.size(), 1u);
    EXPECT_EQ(bonds.cif_bonds.distance[0] + bonds.cif_bonds.atom_label_2[0] + bonds.cif_bonds.bond_type[0], "1.5(2)C2S");
    EXPECT_EQ(bonds.space_group_number, -1);

    FileIO any;  // columns in any order, comments, CR LF, unknown symbols
    read_cif_text(any, kHead + "loop_\r\n_atom_site_type_symbol\r\n_atom_site_label\r\n_atom_site_occupancy\r\n"
                               "_atom_site_fract_x\r\n_atom_site_fract_y\r\n_atom_site_fract_z\r\n"
                               "Cl Cl1 1 0.1234(5) .5 -0.25\r\n\tH H7A* 0.5 0.1 0.2 0.3\t\r\n#END\r\n"
                               "Xx Q1 1 0 0 0\r\n \t\r\nN N9 1 0 0 0\r\n");
    ASSERT_EQ(any.natoms_cif, 3);
    EXPECT_EQ(any.cif_atoms.label[1] + any.cif_atoms.fract_x[0], "H7A*0.1234(5)");
    EXPECT_EQ(std::vector<int>(any.cif_atypes, any.cif_atypes + 3), (std::vector<int>{17, 1, -1}));
    EXPECT_DOUBLE_EQ(any.cif_x_s[0], 0.1234);
    EXPECT_DOUBLE_EQ(any.cif_x_s[2], 0.75);  // -0.25 brought into the cell
    EXPECT_NEAR(any.cif_x[1], 5.0, 1e-9);    // Cartesian from the expanded cell
    FileIO untyped;
    EXPECT_NE(read_cif_text(untyped, kHead + "loop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n"
                                             "_atom_site_fract_z\nC1 0.1 0.2 0.3\n")
                  .find("WARNING: no atom site was read from crystal file \"t.cif\""), std::string::npos);
    EXPECT_EQ(untyped.natoms_cif, 0);
}

TEST(CifScanner, VerbosePrintsAndUncertainties)
{
    FileIO io;
    EXPECT_EQ(read_cif_text(io, read_text_file(data_file("inputs/cif_verbose.cif")), true), golden("cif_verbose.txt"));
    EXPECT_EQ(io.space_group_number, 14);
    EXPECT_TRUE(io.cif_loaded && io.crystal_file == "t.cif");
}

TEST(CifScannerDeathTest, FatalRowsAndFiles)
{
    ScratchDir dir;
    ASSERT_TRUE(dir.ok());
    const std::string aniso = "loop_\n_atom_site_aniso_label\n_atom_site_aniso_U_11\n_atom_site_aniso_U_22\n"
                              "_atom_site_aniso_U_33\n_atom_site_aniso_U_12\nC1 .1 .2 .3 .4\n";
    const std::pair<std::string, std::string> cases[] = {
        {kHead + kOneAtom + "C2 C 0.1 0.2\n", "ERROR  transport : fileio : line [0-9]+ : \n"
                                              "Not enough columns: C2 C 0.1 0.2\nAt least 5 columns are expected!\n"},
        {kHead + aniso + "C2 .1 .2\n" + kOneAtom, "Not enough columns: C2 .1 .2\nAt least 4 columns are expected!\n"},
        {kHead + aniso + "\n" + kOneAtom, "Not enough columns: \nAt least 4 columns"},  // an empty line is a row
        {kHead + kBonds + "S C1 C2 1.5\n" + kOneAtom, "Not enough columns: S C1 C2 1.5\nAt least 5 columns are expected!\n"},
        {kHead + "loop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n"  // short of
                 "_atom_site_U_iso_or_equiv\n_atom_site_type_symbol\nC1 0.1 0.2 0.3 0.05\n",  // its type column
         "At least 6 columns are expected!\n"},
        {"loop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\n" + kOneAtom, "No valid cell in crystal file \"bad.cif\""},
        {"_cell_length_a 5\n_cell_length_b 5\n_cell_length_c 5\n_cell_angle_alpha 150\n_cell_angle_beta 150\n"
         "_cell_angle_gamma 150\n", "No valid cell in crystal file"},
    };
    for (const auto& [text, message] : cases)
        EXPECT_EXIT((child_with_file("bad.cif", text), FileIO().read_data_cif("bad.cif", false)),
                    testing::ExitedWithCode(255), message) << text;
    for (const char* path : {"none.cif", "."})
        EXPECT_EXIT(FileIO().read_data_cif(path, false), testing::ExitedWithCode(255),
                    std::string("Failed to open input file \"") + path + "\"\n");
}
