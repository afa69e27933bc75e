// What the writers produce, read back by the project's own readers.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <sys/stat.h>

#include "fileio.h"
#include "writers_test_support.h"

namespace {

int types4[4] = {6, 17, 1, 35};
double coords4[12] = {0.123456789, -1.5, 12.3456789, -0.00004, 7.25, -3.14159265,
                      10.0, 0.0, -99.99996, 1.0, 2.0, 3.0};

// A fresh molecule slot for read_data_mol.
void prepare_one_molecule(FileIO& fio)
{
    fio.nmols = 1;
    fio.natoms_mol = new int[1]{0};
    fio.atypes_mol = new int*[1]{nullptr};
    fio.x_mol = new double*[1]{nullptr};
    fio.x_s_mol = new double*[1]{nullptr};
}

void expect_coords(const double* got, const double* want, int n, double tol)
{
    for (int i = 0; i < 3 * n; i++) EXPECT_NEAR(got[i], want[i], tol) << "coordinate " << i;
}

class RoundTripTest : public WriterDirTest {};

}  // namespace

TEST_F(RoundTripTest, MolAndXyzReadBackToWrittenPrecision)
{
    FileIO writer;
    writer.write_data_mol("m.mol", 4, types4, coords4);
    writer.write_data_xyz("m.xyz", 4, types4, coords4);

    FileIO mol;
    prepare_one_molecule(mol);
    mol.read_data_mol("m.mol", 0, false);
    ASSERT_EQ(mol.natoms_mol[0], 4);
    for (int a = 0; a < 4; a++) EXPECT_EQ(mol.atypes_mol[0][a], types4[a]);
    expect_coords(mol.x_mol[0], coords4, 4, 0.5e-4 + 1e-12);

    FileIO xyz;
    xyz.read_data_xyz("m.xyz");
    ASSERT_EQ(xyz.natoms_cif, 4);
    for (int a = 0; a < 4; a++) EXPECT_EQ(xyz.cif_atypes[a], types4[a]);
    expect_coords(xyz.cif_x, coords4, 4, 0.5e-10 + 1e-12);
}

TEST_F(RoundTripTest, UnwrappedCifKeepsMoleculesWhole)
{
    // Anthracene: 48 atoms, two molecules centred on inversion centres, so
    // the molecule at the origin reaches below 0 once it is whole.
    const std::string source = std::string(VESKA_TEST_DATA_DIR) + "/anthracene_antcen24.cif";
    FileIO fio;
    testing::internal::CaptureStdout();
    fio.write_cif_unwrap(source.c_str(), "unwrapped.cif", false, false);
    EXPECT_NE(testing::internal::GetCapturedStdout().find(
                  "Writting crystal file \"unwrapped.cif\""),
              std::string::npos);

    FileIO back;
    back.read_data_cif("unwrapped.cif", false);
    EXPECT_EQ(back.natoms_cif, 48);
    EXPECT_EQ(back.mol_natoms_list.size(), 2u);
    EXPECT_NEAR(back.cell_latt[1], 5.9879, 1e-9);
    bool outside = false;
    for (size_t i = 0; i < back.cif_atoms.fract_x.size(); i++)
        for (const std::string* t : {&back.cif_atoms.fract_x[i], &back.cif_atoms.fract_y[i],
                                     &back.cif_atoms.fract_z[i]}) {
            const double v = std::stod(*t);
            outside = outside || v < 0.0 || v >= 1.0;
        }
    EXPECT_TRUE(outside) << "no atom left the cell: the molecules were not unwrapped";
}

TEST_F(RoundTripTest, MolFilesOfACrystalReadBack)
{
    const std::string source = std::string(VESKA_TEST_DATA_DIR) + "/anthracene_antcen24.cif";
    FileIO fio;
    fio.read_data_cif(source.c_str(), false);
    fio.input_kind = 2;
    fio.read_crystal_strcuture_files(false, false);
    ASSERT_EQ(mkdir("data", 0750), 0);
    fio.super_cell[0] = fio.super_cell[1] = fio.super_cell[2] = 1;
    fio.write_mol_files();

    ASSERT_EQ(fio.nmols, 2);
    for (int m = 0; m < fio.nmols; m++) {
        FileIO back;
        prepare_one_molecule(back);
        back.read_data_mol(("data/" + fio.mol_files[m]).c_str(), 0, false);
        ASSERT_EQ(back.natoms_mol[0], fio.natoms_mol[m]);
        expect_coords(back.x_mol[0], fio.x_mol[m], fio.natoms_mol[m], 0.5e-4 + 1e-12);
    }
    FileIO cell;
    cell.read_data_cif("data/supercell.cif", false);
    EXPECT_EQ(cell.natoms_cif, 48);
}
