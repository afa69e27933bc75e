// XYZ, MOL and P1 CIF layouts against data/golden, and a real crystal read
// back by the project's own readers.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>

#include "fileio.h"
#include "test_support.h"

namespace {

// Molecules of 3 and 2 atoms; the first is unwrapped past the cell (x = 1.02),
// which the second image of the supercell places at 1.01.
int natoms2[2] = {3, 2};
int types_a[3] = {6, 6, 1}, types_b[2] = {6, 1};
int* types2[2] = {types_a, types_b};
double frac_a[9] = {0.1, 0.2, 0.3, 0.25, 0.5, 0.75, 1.02, 0.0, -0.05};
double frac_b[6] = {0.5, 0.5, 0.5, 0.9, 0.1, 0.2};
double* frac2[2] = {frac_a, frac_b};

// The CIF header carries the date: pinned to 2000-01-02 for the goldens.
class StructureWriterTest : public ScratchDirTest {
protected:
    FileIO fio;
    void SetUp() override
    {
        ScratchDirTest::SetUp();
        setenv("SOURCE_DATE_EPOCH", "946771200", 1);
        fio.identifier = "testcell";
        const double cell[6] = {10, 12, 14.5, 90, 100.5, 90};
        std::copy(cell, cell + 6, fio.cell_latt);
    }
    void TearDown() override { unsetenv("SOURCE_DATE_EPOCH"); }
};

}  // namespace

TEST_F(StructureWriterTest, LayoutsAndTheirEmptyForms)
{
    fio.write_data_xyz("g.xyz", 3, types3, coords3);
    EXPECT_EQ(read_text_file("g.xyz"), golden("molecule.xyz"));
    fio.write_data_mol("g.mol", 3, types3, coords3);
    EXPECT_EQ(read_text_file("g.mol"), golden("molecule.mol"));
    fio.write_supercell_cif("sc.cif", 2, natoms2, types2, frac2, 2, 1, 1);
    const std::string cif = golden("supercell.cif");
    EXPECT_EQ(read_text_file("sc.cif"), cif);

    fio.write_supercell_cif("flat.cif", 2, natoms2, types2, frac2, 2, 1, 0);
    std::string flat = cif.substr(0, cif.find("loop_\n_atom_site_label"));  // no rows, no c length
    EXPECT_EQ(read_text_file("flat.cif"), flat.replace(flat.find("14.5000"), 7, "0.0000"));
    fio.natoms_cif = 0;  // the cell's own forms
    fio.write_data_mol("none.mol");
    EXPECT_EQ(read_text_file("none.mol"), "Molecule\nCreated by VESKA\n\n  0  0  0  0  0  0  0  0  0  0999 V2000\nM  END\n");
    fio.natoms_cif = 1;
    fio.cif_atypes = new int[1]{8};
    fio.cif_x = new double[3]{1, 2, 3};
    fio.write_data_xyz("cell.xyz");
    EXPECT_EQ(read_text_file("cell.xyz"), "1\nmol xyz file\n O   1.0000000000   2.0000000000   3.0000000000\n");
}

TEST_F(StructureWriterTest, CifRowsAndPrincipalMoments)
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
              "          eigvec3[3]\n12.500000 345.678901 1000.250000    1.0000   0.0000   0.0000"
              "    0.0000   0.7071  -0.7071    0.0000   0.7071   0.7071\n");
    // An unwritable moments file is skipped without a word and without a stop.
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    fio.output_prin_moment_inertia("no_such_dir/m.dat", eigval, eigvec);
    EXPECT_EQ(testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr(), "");
    EXPECT_FALSE(std::filesystem::exists("no_such_dir"));
}

TEST_F(StructureWriterTest, OpenFailuresAndUnknownElementsAreFatal)
{
    EXPECT_EXIT(fio.write_data_xyz("no_such_dir/c.xyz"), ::testing::ExitedWithCode(255),
                "^ERROR: Failed to open output file \"no_such_dir/c.xyz\"\n$");
    EXPECT_EXIT(fio.write_data_mol("no_such_dir/g.mol", 3, types3, coords3), ::testing::ExitedWithCode(255),
                "^Failed to open output file \"no_such_dir/g.mol\"\n$");
    EXPECT_EXIT(fio.write_unitcell_cif("no_such_dir/u.cif", 2, natoms2, types2, frac2),
                ::testing::ExitedWithCode(255), "^Failed to open output file no_such_dir/u.cif\n$");
    int bad[1] = {-1};
    EXPECT_EXIT((dup2(2, 1), fio.write_data_mol("bad.mol", 1, bad, coords3)), ::testing::ExitedWithCode(255),
                "Unknown element index -1 of atom 1 written to bad.mol");
}

// Anthracene unwrapped, split into MOL files and read back.
TEST_F(StructureWriterTest, RealCrystalReadsBackThroughOwnReaders)
{
    testing::internal::CaptureStdout();
    fio.write_cif_unwrap(data_file("anthracene_antcen24.cif").c_str(), "unwrapped.cif", false, false);
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
        for (int a = 0; a < fio.natoms_mol[m]; a++) EXPECT_EQ(back.atypes_mol[0][a], fio.atypes_mol[m][a]) << a;
        for (int i = 0; i < 3 * fio.natoms_mol[m]; i++)
            EXPECT_NEAR(back.x_mol[0][i], fio.x_mol[m][i], 0.5e-4 + 1e-12) << "coordinate " << i;
    }
    FileIO back, super;
    back.read_data_cif("data/unitcell.cif", false);
    super.read_data_cif("data/supercell.cif", false);
    EXPECT_EQ(back.natoms_cif, 48);
    EXPECT_EQ(back.mol_natoms_list.size(), 2u);
    EXPECT_EQ(super.natoms_cif, 96);
}
