// The structure driver: per-molecule arrays from a CIF or from MOL files,
// whole molecules, the cell's three forms, the ids and the bond files.

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cmath>

#include "test_support.h"
#include "veska_inp.h"

// A 20 Å cubic P1 cell with two molecules: a C-C pair 1.54 Å apart and a
// C-C-H chain that straddles the a face (C at x = 0.98 and 0.02).
static const char* kTwoMolecules =
    "data_two\n"
    "_cell_length_a 20\n_cell_length_b 20\n_cell_length_c 20\n"
    "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n"
    "loop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\n\n"
    "loop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n"
    "_atom_site_fract_y\n_atom_site_fract_z\n"
    "C1 C 0.98 0.5 0.5\n"
    "A1 C 0.1 0.1 0.1\n"
    "C2 C 0.02 0.5 0.5\n"
    "A2 C 0.177 0.1 0.1\n"
    "H2 H 0.0745 0.5 0.5\n";

static std::string run_cif_driver(VeskaInp& v, const char* text, bool write_bonds)
{
    put_file("two.cif", text);
    testing::internal::CaptureStdout();
    v.read_data_cif("two.cif", false);
    v.input_kind = 2;
    v.read_crystal_strcuture_files(false, write_bonds);
    return testing::internal::GetCapturedStdout();
}

TEST(StructureDriver, CifMoleculesAreWholeAndBondFilesListThePairs)
{
    ScratchDir dir;
    ASSERT_TRUE(dir.ok());
    VeskaInp v;
    v.set_varables_default();
    v.data_dir = "out";
    run_cif_driver(v, kTwoMolecules, true);

    ASSERT_EQ(v.nmols, 2);
    // molecule 1 holds atom 0 (the straddling chain), in joining order
    ASSERT_EQ(v.natoms_mol[0], 3);
    ASSERT_EQ(v.natoms_mol[1], 2);
    // made whole: the atom across the face sits next to its partner
    EXPECT_NEAR(fabs(v.x_mol[0][3] - v.x_mol[0][0]), 0.8, 1e-9);
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(v.x_mol[0][3 * i], 20.0 * v.x_s_mol[0][3 * i], 1e-9);
    EXPECT_DOUBLE_EQ(v.latt_vec[0][0], 20.0);

    EXPECT_EQ(read_text_file("out/mol2_bonds.dat"), "1\n  1   2  0  0\n");
    EXPECT_EQ(read_text_file("out/mol1_bonds.dat"), "2\n  1   2  0  0\n  2   3  0  0\n");
}

TEST(StructureDriver, MolInputWithoutMoleculesDerivesTheCellFromTheVectors)
{
    ScratchDir dir;
    ASSERT_TRUE(dir.ok());
    VeskaInp v;
    v.set_varables_default();
    v.input_kind = 1;
    v.data_dir = "bonds";
    v.read_crystal_strcuture_files(false, true);
    struct stat st;
    EXPECT_EQ(stat("bonds", &st), 0);  // created even without a molecule
    EXPECT_NEAR(v.latt_len[0], 8.098, 1e-12);
    EXPECT_NEAR(v.cell_latt[2], std::hypot(4.888095, 7.138882), 1e-12);
    EXPECT_NEAR(v.cell_latt[4], acos(-4.888095 / v.cell_latt[2]) * 180.0 / M_PI, 1e-9);
    EXPECT_NEAR(v.latt3x3[0][2], -4.888095, 1e-12);  // column c
    EXPECT_NEAR(v.latt3x3_inv[0][0], 1.0 / 8.098, 1e-12);
}

TEST(StructureDriverDeathTest, BadKindShortNameListAndUnwritableBondFile)
{
    ScratchDir dir;
    ASSERT_TRUE(dir.ok());
    VeskaInp v;
    v.input_kind = 0;
    EXPECT_EXIT((dup2(2, 1), v.read_crystal_strcuture_files(false, false)),
                testing::ExitedWithCode(255),
                "^\nERROR  transport : fileio : line [0-9]+ : \nNo input molecule data is "
                "available. \\(0\\)\n$");
    v.input_kind = 1;
    v.nmols = 2;
    v.mol_files = {"a.mol"};
    EXPECT_EXIT((dup2(2, 1), v.read_crystal_strcuture_files(false, false)),
                testing::ExitedWithCode(255), "2 molecules are expected but 1 MOL file names");

    put_file("notadir", "x");
    VeskaInp w;
    w.set_varables_default();
    w.data_dir = "notadir";
    EXPECT_EXIT((run_cif_driver(w, kTwoMolecules, true)), testing::ExitedWithCode(255),
                "Failed to open output file notadir/mol1_bonds.dat\n");
}

TEST(StructureDriver, MolBondFilesUseCovalentRadiiWithoutImages)
{
    ScratchDir dir;
    ASSERT_TRUE(dir.ok());
    // C-C 1.54 Å is a bond (1.44 x 1.15 = 1.656), C-C 1.70 Å is not.
    put_file("three.mol",
                    "three\n  test\n\n"
                    "  3  0  0  0  0  0  0  0  0  0999 V2000\n"
                    "    0.0000    0.0000    0.0000 C   0  0  0  0  0  0  0  0  0  0  0  0\n"
                    "    1.5400    0.0000    0.0000 C   0  0  0  0  0  0  0  0  0  0  0  0\n"
                    "    0.0000    1.7000    0.0000 C   0  0  0  0  0  0  0  0  0  0  0  0\n"
                    "M  END\n");
    VeskaInp v;
    v.set_varables_default();
    v.input_kind = 1;
    v.nmols = 2;
    v.mol_files = {"three.mol", "three.mol"};
    v.read_crystal_strcuture_files(false, true);
    EXPECT_EQ(read_text_file("data/mol2_bonds.dat"), "1\n  1   2  0  0\n");
}
