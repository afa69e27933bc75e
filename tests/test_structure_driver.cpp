// The structure driver: per-molecule arrays from a CIF or from MOL files,
// whole molecules, the cell from the lattice vectors, and the bond files.

#include <gtest/gtest.h>

#include <cmath>

#include "test_support.h"
#include "veska_inp.h"

using StructureDriver = ScratchDirTest;

// A 20 Å cubic P1 cell with two molecules: a C-C pair 1.54 Å apart and a
// C-C-H chain that straddles the a face (C at x = 0.98 and 0.02).
static void read_two_molecules(VeskaInp& v, const char* data_dir)
{
    put_file("two.cif", "_cell_length_a 20\n_cell_length_b 20\n_cell_length_c 20\n_cell_angle_alpha 90\n"
                        "_cell_angle_beta 90\n_cell_angle_gamma 90\nloop_\n_symmetry_equiv_pos_as_xyz\nx,y,z\n\n"
                        "loop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n_atom_site_fract_y\n"
                        "_atom_site_fract_z\nC1 C 0.98 0.5 0.5\nA1 C 0.1 0.1 0.1\nC2 C 0.02 0.5 0.5\n"
                        "A2 C 0.177 0.1 0.1\nH2 H 0.0745 0.5 0.5\n");
    v.set_varables_default();
    v.data_dir = data_dir;
    testing::internal::CaptureStdout();
    v.read_data_cif("two.cif", false);
    v.input_kind = 2;
    v.read_crystal_strcuture_files(false, true);
    testing::internal::GetCapturedStdout();
}

TEST_F(StructureDriver, CifAndMolMoleculesAndTheirBondFiles)
{
    VeskaInp v;
    read_two_molecules(v, "out");
    ASSERT_EQ(v.nmols, 2);  // molecule 1 holds atom 0 (the straddling chain), in joining order
    ASSERT_EQ(v.natoms_mol[0] * 10 + v.natoms_mol[1], 32);
    EXPECT_NEAR(fabs(v.x_mol[0][3] - v.x_mol[0][0]), 0.8, 1e-9);  // made whole
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(v.x_mol[0][3 * i], 20.0 * v.x_s_mol[0][3 * i], 1e-9);
    EXPECT_EQ(read_text_file("out/mol1_bonds.dat"), "2\n  1   2  0  0\n  2   3  0  0\n");
    EXPECT_EQ(read_text_file("out/mol2_bonds.dat"), "1\n  1   2  0  0\n");

    // MOL input: covalent radii, no images: C-C 1.54 Å is a bond (1.44 x 1.15 = 1.656), 1.70 Å is not.
    put_file("three.mol", "three\n  test\n\n  3  0  0  0  0  0  0  0  0  0999 V2000\n"
                          "    0.0000    0.0000    0.0000 C   0\n    1.5400    0.0000    0.0000 C   0\n"
                          "    0.0000    1.7000    0.0000 C   0\nM  END\n");
    VeskaInp m;
    m.set_varables_default();
    m.input_kind = 1;
    m.nmols = 2;
    m.mol_files = {"three.mol", "three.mol"};
    m.read_crystal_strcuture_files(false, true);
    EXPECT_EQ(read_text_file("data/mol2_bonds.dat"), "1\n  1   2  0  0\n");
    // The cell of MOL input comes from the configured lattice vectors.
    EXPECT_NEAR(m.latt_len[0], 8.098, 1e-12);
    EXPECT_NEAR(m.cell_latt[2], std::hypot(4.888095, 7.138882), 1e-12);
    EXPECT_NEAR(m.cell_latt[4], acos(-4.888095 / m.cell_latt[2]) * 180.0 / M_PI, 1e-9);
    EXPECT_NEAR(m.latt3x3[0][2], -4.888095, 1e-12);  // column c
    EXPECT_NEAR(m.latt3x3_inv[0][0], 1.0 / 8.098, 1e-12);
}

TEST_F(StructureDriver, BadKindShortNameListAndUnwritableBondFile)
{
    VeskaInp v;
    v.input_kind = 0;
    EXPECT_EXIT((dup2(2, 1), v.read_crystal_strcuture_files(false, false)), testing::ExitedWithCode(255),
                "^\nERROR  transport : fileio : line [0-9]+ : \nNo input molecule data is available. \\(0\\)\n$");
    v.input_kind = 1;
    v.nmols = 2;
    v.mol_files = {"a.mol"};
    EXPECT_EXIT((dup2(2, 1), v.read_crystal_strcuture_files(false, false)), testing::ExitedWithCode(255),
                "2 molecules are expected but 1 MOL file names");
    put_file("notadir", "x");
    VeskaInp w;
    EXPECT_EXIT(read_two_molecules(w, "notadir"), testing::ExitedWithCode(255),
                "Failed to open output file notadir/mol1_bonds.dat\n");
    VeskaInp e;  // MOL input without molecules: the bond directory is still made
    e.set_varables_default();
    e.input_kind = 1;
    e.data_dir = "bonds";
    e.read_crystal_strcuture_files(false, true);
    EXPECT_TRUE(std::filesystem::is_directory("bonds"));
}
