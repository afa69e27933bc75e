// XYZ, MOL and P1 CIF layouts against texts typed from the format tables,
// and a real crystal read back by the project's own readers.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <string>

#include "fileio.h"
#include "writers_test_support.h"

namespace {

// Molecules of 3 and 2 atoms; the first is unwrapped past the cell (x = 1.02),
// which the second image of the supercell places at 1.01.
int natoms2[2] = {3, 2};
int types_a[3] = {6, 6, 1}, types_b[2] = {6, 1};
int* types2[2] = {types_a, types_b};
double frac_a[9] = {0.1, 0.2, 0.3, 0.25, 0.5, 0.75, 1.02, 0.0, -0.05};
double frac_b[6] = {0.5, 0.5, 0.5, 0.9, 0.1, 0.2};
double* frac2[2] = {frac_a, frac_b};

class StructureWriterTest : public WriterDirTest {
protected:
    FileIO fio;
    void SetUp() override
    {
        WriterDirTest::SetUp();
        fio.identifier = "testcell";
        const double cell[6] = {10, 12, 14.5, 90, 100.5, 90};
        std::copy(cell, cell + 6, fio.cell_latt);
    }
};
using StructureWriterDeathTest = StructureWriterTest;

std::string cif_header(const char* a, const char* c)
{
    char date[16];
    const time_t now = time(nullptr);
    strftime(date, sizeof date, "%Y-%m-%d", localtime(&now));
    return std::string("data_testcell\n_audit_creation_date              ") + date +
           "\n_audit_creation_method            'VESKA'\n"
           "_symmetry_space_group_name_H-M    'P1'\n"
           "_symmetry_Int_Tables_number       1\n"
           "_symmetry_cell_setting            triclinic\n"
           "loop_\n_symmetry_equiv_pos_as_xyz\n  x,y,z\n"
           "_cell_length_a                    " + a + "\n"
           "_cell_length_b                    12.0000\n"
           "_cell_length_c                    " + c + "\n"
           "_cell_angle_alpha                 90.0000\n"
           "_cell_angle_beta                  100.5000\n"
           "_cell_angle_gamma                 90.0000\n";
}

const std::string atom_loop =
    "loop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n_atom_site_fract_y\n"
    "_atom_site_fract_z\n_atom_site_U_iso_or_equiv\n_atom_site_adp_type\n_atom_site_occupancy\n";
const std::string uiso = "  0.00000  Uiso   1.00\n";

}  // namespace

TEST_F(StructureWriterTest, XyzAndMolLayouts)
{
    fio.write_data_xyz("g.xyz", 3, types3, coords3);
    EXPECT_EQ(read_text_file("g.xyz"), "3\nmol xyz file\n"
                              " C   0.0000000000   1.5000000000 -12.3456700000\n"
                              " H  10.2500000000  -0.5000000000   2.0000000000\n"
                              "Cl   3.1415900000   2.7182800000  -1.0000000000\n");
    fio.natoms_cif = 1;
    fio.cif_atypes = new int[1]{8};
    fio.cif_x = new double[3]{1, 2, 3};
    fio.write_data_xyz("cell.xyz");
    EXPECT_EQ(read_text_file("cell.xyz"),
              "1\nmol xyz file\n O   1.0000000000   2.0000000000   3.0000000000\n");

    const std::string mol_head = "Molecule\nCreated by VESKA\n\n";
    fio.write_data_mol("g.mol", 3, types3, coords3);
    EXPECT_EQ(read_text_file("g.mol"), mol_head + "  3  0  0  0  0  0  0  0  0  0999 V2000\n"
                              "    0.0000    1.5000  -12.3457 C   0  0  0  0  0  0  0  0  0  0\n"
                              "   10.2500   -0.5000    2.0000 H   0  0  0  0  0  0  0  0  0  0\n"
                              "    3.1416    2.7183   -1.0000 Cl  0  0  0  0  0  0  0  0  0  0\n"
                              "M  END\n");
    fio.natoms_cif = 0;
    fio.write_data_mol("none.mol");
    EXPECT_EQ(read_text_file("none.mol"), mol_head + "  0  0  0  0  0  0  0  0  0  0999 V2000\nM  END\n");
}

TEST_F(StructureWriterTest, CifLabelsRunOnAcrossMoleculesAndImages)
{
    fio.write_supercell_cif("sc.cif", 2, natoms2, types2, frac2, 2, 1, 1);
    EXPECT_EQ(read_text_file("sc.cif"), cif_header("20.0000", "14.5000") + atom_loop +
                                   "C1     C   0.050000   0.200000   0.300000" + uiso +
                                   "C2     C   0.125000   0.500000   0.750000" + uiso +
                                   "H3     H   0.510000   0.000000  -0.050000" + uiso +
                                   "C4     C   0.250000   0.500000   0.500000" + uiso +
                                   "H5     H   0.450000   0.100000   0.200000" + uiso +
                                   "C6     C   0.550000   0.200000   0.300000" + uiso +
                                   "C7     C   0.625000   0.500000   0.750000" + uiso +
                                   "H8     H   1.010000   0.000000  -0.050000" + uiso +
                                   "C9     C   0.750000   0.500000   0.500000" + uiso +
                                   "H10    H   0.950000   0.100000   0.200000" + uiso);
    fio.write_supercell_cif("flat.cif", 2, natoms2, types2, frac2, 2, 1, 0);
    EXPECT_EQ(read_text_file("flat.cif"), cif_header("20.0000", "0.0000"));
}

TEST_F(StructureWriterTest, CifRowsIntoOpenFileAndPrincipalMoments)
{
    FILE* out = fopen("rows.cif", "w");
    ASSERT_NE(out, nullptr);
    double shift[3] = {-1, 0, 1};
    fio.write_cif_mol_one(out, 10, 2, types_b, frac_a, shift, 3.0, 4);
    fclose(out);
    EXPECT_EQ(read_text_file("rows.cif"), "C11     C   0.033333   0.400000   0.766667  0.00000  4\n"
                                 "H12     H   0.083333   0.500000   0.916667  0.00000  4\n");

    double eigval[3] = {12.5, 345.678901, 1000.25};
    double eigvec[9] = {1, 0, 0, 0, 0.70710678, -0.70710678, 0, 0.70710678, 0.70710678};
    fio.output_prin_moment_inertia("moments.dat", eigval, eigvec);
    EXPECT_EQ(read_text_file("moments.dat"),
              "#eigval[3]                    eigvec1[3]                   eigvec2[3]        "
              "          eigvec3[3]\n"
              "12.500000 345.678901 1000.250000    1.0000   0.0000   0.0000    0.0000   0.7071"
              "  -0.7071    0.0000   0.7071   0.7071\n");
    fio.output_prin_moment_inertia("no_such_dir/m.dat", eigval, eigvec);  // silently skipped
}

TEST_F(StructureWriterDeathTest, OpenFailuresAndUnknownElementsAreFatal)
{
    EXPECT_EXIT(fio.write_data_xyz("no_such_dir/c.xyz"), ::testing::ExitedWithCode(255),
                "^ERROR: Failed to open output file \"no_such_dir/c.xyz\"\n$");
    EXPECT_EXIT(fio.write_data_mol("no_such_dir/g.mol", 3, types3, coords3),
                ::testing::ExitedWithCode(255),
                "^Failed to open output file \"no_such_dir/g.mol\"\n$");
    EXPECT_EXIT(fio.write_unitcell_cif("no_such_dir/u.cif", 2, natoms2, types2, frac2),
                ::testing::ExitedWithCode(255), "^Failed to open output file no_such_dir/u.cif\n$");
    int bad[1] = {-1};
    EXPECT_EXIT((dup2(2, 1), fio.write_data_mol("bad.mol", 1, bad, coords3)),
                ::testing::ExitedWithCode(255),
                "Unknown element index -1 of atom 1 written to bad.mol");
}

// Anthracene unwrapped, split into MOL files and read back.
TEST_F(StructureWriterTest, RealCrystalReadsBackThroughOwnReaders)
{
    testing::internal::CaptureStdout();
    fio.write_cif_unwrap(VESKA_TEST_DATA_DIR "/anthracene_antcen24.cif", "unwrapped.cif", false,
                         false);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Writting crystal file \"unwrapped.cif\"\n");
    ASSERT_EQ(mkdir("data", 0750), 0);
    fio.super_cell[0] = fio.super_cell[2] = 1;
    fio.super_cell[1] = 2;
    fio.write_mol_files();
    ASSERT_EQ(fio.nmols, 2);
    for (int m = 0; m < 2; m++) {
        FileIO back;
        back.nmols = 1;
        back.natoms_mol = new int[1]{0};
        back.atypes_mol = new int*[1]{nullptr};
        back.x_mol = new double*[1]{nullptr};
        back.x_s_mol = new double*[1]{nullptr};
        back.read_data_mol(("data/" + fio.mol_files[m]).c_str(), 0, false);
        ASSERT_EQ(back.natoms_mol[0], fio.natoms_mol[m]);
        for (int a = 0; a < fio.natoms_mol[m]; a++)
            EXPECT_EQ(back.atypes_mol[0][a], fio.atypes_mol[m][a]) << "atom " << a;
        for (int i = 0; i < 3 * fio.natoms_mol[m]; i++)
            EXPECT_NEAR(back.x_mol[0][i], fio.x_mol[m][i], 0.5e-4 + 1e-12) << "coordinate " << i;
    }
    FileIO back;
    back.read_data_cif("data/unitcell.cif", false);
    EXPECT_EQ(back.natoms_cif, 48);
    EXPECT_EQ(back.mol_natoms_list.size(), 2u);
    FileIO super;
    super.read_data_cif("data/supercell.cif", false);
    EXPECT_EQ(super.natoms_cif, 96);
}
