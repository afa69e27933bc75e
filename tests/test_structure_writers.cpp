// XYZ, MOL and P1 CIF layouts against texts written from the format tables.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <sys/stat.h>

#include "fileio.h"
#include "writers_test_support.h"

namespace {

// Two molecules of 3 and 2 atoms; the hydrogen of the first sticks out of
// the cell (x = 1.02) as an unwrapped molecule may.
int natoms2[2] = {3, 2};
int types_a[3] = {6, 6, 1};
int types_b[2] = {6, 1};
int* types2[2] = {types_a, types_b};
double frac_a[9] = {0.1, 0.2, 0.3, 0.25, 0.5, 0.75, 1.02, 0.0, -0.05};
double frac_b[6] = {0.5, 0.5, 0.5, 0.9, 0.1, 0.2};
double* frac2[2] = {frac_a, frac_b};

int types3[3] = {6, 1, 17};
double coords3[9] = {0.0, 1.5, -12.34567, 10.25, -0.5, 2.0, 3.14159, 2.71828, -1.0};

class StructureWriterTest : public WriterDirTest {
protected:
    FileIO fio;
    void SetUp() override
    {
        WriterDirTest::SetUp();
        fio.identifier = "testcell";
        const double cell[6] = {10, 12, 14.5, 90, 100.5, 90};
        for (int i = 0; i < 6; i++) fio.cell_latt[i] = cell[i];
    }
    std::string header(const char* a, const char* b, const char* c) const
    {
        return std::string("data_testcell\n") +
               "_audit_creation_date              " + today_iso() + "\n" +
               "_audit_creation_method            'VESKA'\n"
               "_symmetry_space_group_name_H-M    'P1'\n"
               "_symmetry_Int_Tables_number       1\n"
               "_symmetry_cell_setting            triclinic\n"
               "loop_\n"
               "_symmetry_equiv_pos_as_xyz\n"
               "  x,y,z\n"
               "_cell_length_a                    " + a + "\n" +
               "_cell_length_b                    " + b + "\n" +
               "_cell_length_c                    " + c + "\n" +
               "_cell_angle_alpha                 90.0000\n"
               "_cell_angle_beta                  100.5000\n"
               "_cell_angle_gamma                 90.0000\n";
    }
};

const std::string atom_loop =
    "loop_\n"
    "_atom_site_label\n"
    "_atom_site_type_symbol\n"
    "_atom_site_fract_x\n"
    "_atom_site_fract_y\n"
    "_atom_site_fract_z\n"
    "_atom_site_U_iso_or_equiv\n"
    "_atom_site_adp_type\n"
    "_atom_site_occupancy\n";

const std::string tail = "  0.00000  Uiso   1.00\n";

}  // namespace

TEST_F(StructureWriterTest, XyzRightAlignsSymbolsWithTenDecimals)
{
    fio.write_data_xyz("g.xyz", 3, types3, coords3);
    EXPECT_EQ(slurp("g.xyz"),
              "3\n"
              "mol xyz file\n"
              " C   0.0000000000   1.5000000000 -12.3456700000\n"
              " H  10.2500000000  -0.5000000000   2.0000000000\n"
              "Cl   3.1415900000   2.7182800000  -1.0000000000\n");

    fio.natoms_cif = 1;
    fio.cif_atypes = new int[1]{8};
    fio.cif_x = new double[3]{1, 2, 3};
    fio.write_data_xyz("cell.xyz");
    EXPECT_EQ(slurp("cell.xyz"),
              "1\nmol xyz file\n O   1.0000000000   2.0000000000   3.0000000000\n");
}

TEST_F(StructureWriterTest, MolHasFixedHeaderAndNoBonds)
{
    fio.write_data_mol("g.mol", 3, types3, coords3);
    EXPECT_EQ(slurp("g.mol"),
              "Molecule\n"
              "Created by VESKA\n"
              "\n"
              "  3  0  0  0  0  0  0  0  0  0999 V2000\n"
              "    0.0000    1.5000  -12.3457 C   0  0  0  0  0  0  0  0  0  0\n"
              "   10.2500   -0.5000    2.0000 H   0  0  0  0  0  0  0  0  0  0\n"
              "    3.1416    2.7183   -1.0000 Cl  0  0  0  0  0  0  0  0  0  0\n"
              "M  END\n");

    fio.write_data_mol("cell.mol");  // no cell atoms
    EXPECT_EQ(slurp("cell.mol"),
              "Molecule\nCreated by VESKA\n\n  0  0  0  0  0  0  0  0  0  0999 V2000\nM  END\n");
}

TEST_F(StructureWriterTest, UnitCellLabelsRunAcrossMolecules)
{
    fio.write_unitcell_cif("uc.cif", 2, natoms2, types2, frac2);
    EXPECT_EQ(slurp("uc.cif"), header("10.0000", "12.0000", "14.5000") + atom_loop +
                                   "C1     C   0.100000   0.200000   0.300000" + tail +
                                   "C2     C   0.250000   0.500000   0.750000" + tail +
                                   "H3     H   1.020000   0.000000  -0.050000" + tail +
                                   "C4     C   0.500000   0.500000   0.500000" + tail +
                                   "H5     H   0.900000   0.100000   0.200000" + tail);
}

TEST_F(StructureWriterTest, SupercellListsImagesInOrder)
{
    fio.write_supercell_cif("sc.cif", 2, natoms2, types2, frac2, 2, 1, 1);
    EXPECT_EQ(slurp("sc.cif"), header("20.0000", "12.0000", "14.5000") + atom_loop +
                                   "C1     C   0.050000   0.200000   0.300000" + tail +
                                   "C2     C   0.125000   0.500000   0.750000" + tail +
                                   "H3     H   0.510000   0.000000  -0.050000" + tail +
                                   "C4     C   0.250000   0.500000   0.500000" + tail +
                                   "H5     H   0.450000   0.100000   0.200000" + tail +
                                   "C6     C   0.550000   0.200000   0.300000" + tail +
                                   "C7     C   0.625000   0.500000   0.750000" + tail +
                                   "H8     H   1.010000   0.000000  -0.050000" + tail +
                                   "C9     C   0.750000   0.500000   0.500000" + tail +
                                   "H10    H   0.950000   0.100000   0.200000" + tail);

    fio.write_supercell_cif("flat.cif", 2, natoms2, types2, frac2, 2, 1, 0);
    EXPECT_EQ(slurp("flat.cif"), header("20.0000", "12.0000", "0.0000"));
}

TEST_F(StructureWriterTest, CifRowsOfOneMoleculeIntoOpenFile)
{
    FILE* out = fopen("rows.cif", "wt");
    ASSERT_NE(out, nullptr);
    fputs("head\n", out);
    double shift[3] = {-1, 0, 1};
    fio.write_cif_mol_one(out, 10, 2, types_b, frac_a, shift, 3.0, 4);
    fclose(out);
    EXPECT_EQ(slurp("rows.cif"),
              "head\n"
              "C11     C   0.033333   0.400000   0.766667  0.00000  4\n"
              "H12     H   0.083333   0.500000   0.916667  0.00000  4\n");
}

TEST_F(StructureWriterTest, PrincipalMoments)
{
    double eigval[3] = {12.5, 345.678901, 1000.25};
    double eigvec[9] = {1, 0, 0, 0, 0.70710678, -0.70710678, 0, 0.70710678, 0.70710678};
    fio.output_prin_moment_inertia("moments.dat", eigval, eigvec);
    EXPECT_EQ(slurp("moments.dat"),
              "#eigval[3]                    eigvec1[3]                   eigvec2[3]        "
              "          eigvec3[3]\n"
              "12.500000 345.678901 1000.250000    1.0000   0.0000   0.0000    0.0000   0.7071"
              "  -0.7071    0.0000   0.7071   0.7071\n");
    fio.output_prin_moment_inertia("no_such_dir/m.dat", eigval, eigvec);  // silently skipped
    EXPECT_FALSE(file_exists_here("no_such_dir/m.dat"));
}

TEST_F(StructureWriterTest, MolFilesGoToDataDir)
{
    ASSERT_EQ(mkdir("out", 0750), 0);
    fio.data_dir = "out";
    fio.nmols = 2;
    fio.natoms_mol = new int[2]{3, 2};
    fio.atypes_mol = new int*[2]{new int[3]{6, 6, 1}, new int[2]{6, 1}};
    fio.x_s_mol = new double*[2]{new double[9](), new double[6]()};
    fio.x_mol = new double*[2]{new double[9](), new double[6]{1, 2, 3, 4, 5, 6}};
    fio.mol_files = {"mol1.mol", "mol2.mol"};
    fio.super_cell[0] = 1;
    fio.super_cell[1] = 2;
    fio.super_cell[2] = 1;
    fio.write_mol_files();
    EXPECT_NE(slurp("out/mol2.mol").find("  2  0  0  0  0  0  0  0  0  0999 V2000\n"
                                         "    1.0000    2.0000    3.0000 C "),
              std::string::npos);
    EXPECT_NE(slurp("out/mol1.mol").find("\n  3  0"), std::string::npos);
    EXPECT_NE(slurp("out/supercell.cif").find("_cell_length_b                    24.0000\n"),
              std::string::npos);
    EXPECT_NE(slurp("out/supercell.cif").find("H10 "), std::string::npos);
    EXPECT_NE(slurp("out/unitcell.cif").find("H5 "), std::string::npos);
    EXPECT_EQ(slurp("out/unitcell.cif").find("H6 "), std::string::npos);
}

TEST(StructureWriterDeathTest, OpenFailuresAreFatal)
{
    FileIO fio;
    EXPECT_EXIT(fio.write_data_xyz("no_such_dir/c.xyz"), ::testing::ExitedWithCode(255),
                "^ERROR: Failed to open output file \"no_such_dir/c.xyz\"\n$");
    EXPECT_EXIT(fio.write_data_xyz("no_such_dir/g.xyz", 3, types3, coords3),
                ::testing::ExitedWithCode(255),
                "^Failed to open output file \"no_such_dir/g.xyz\"\n$");
    EXPECT_EXIT(fio.write_data_mol("no_such_dir/g.mol", 3, types3, coords3),
                ::testing::ExitedWithCode(255),
                "^Failed to open output file \"no_such_dir/g.mol\"\n$");
    EXPECT_EXIT(fio.write_unitcell_cif("no_such_dir/u.cif", 2, natoms2, types2, frac2),
                ::testing::ExitedWithCode(255), "^Failed to open output file no_such_dir/u.cif\n$");
}

TEST(StructureWriterDeathTest, UnknownElementNamesTheFile)
{
    FileIO fio;
    int bad[1] = {-1};
    double x[3] = {0, 0, 0};
    EXPECT_EXIT(
        {
            dup2(2, 1);
            fio.write_data_mol("bad.mol", 1, bad, x);
        },
        ::testing::ExitedWithCode(255), "Unknown element index -1 of atom 1 written to bad.mol");
}
