// XYZ, MOL, P1 CIF and quantum-chemistry input layouts against data/golden,
// their empty forms and their failures.

#include <sys/stat.h>

#include <functional>

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
class Writers : public ScratchDirTest {
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

TEST_F(Writers, StructureLayoutsAndTheirEmptyForms)
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

    // (rows of one molecule in a supercell: the neighbour CIF golden)
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
    EXPECT_FALSE(fs::exists("no_such_dir"));
}

// Anthracene unwrapped, split into MOL files, and the cells read back.
TEST_F(Writers, RealCrystalSplitIntoMolFiles)
{
    testing::internal::CaptureStdout();
    fio.write_cif_unwrap(data_file("anthracene_antcen24.cif").c_str(), "unwrapped.cif", false, false);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Writting crystal file \"unwrapped.cif\"\n");
    ASSERT_EQ(mkdir("data", 0750), 0);
    fio.super_cell[0] = fio.super_cell[2] = 1;
    fio.super_cell[1] = 2;
    fio.write_mol_files();
    ASSERT_EQ(fio.nmols, 2);
    FileIO back, super;
    back.read_data_cif("data/unitcell.cif", false);
    super.read_data_cif("data/supercell.cif", false);
    EXPECT_EQ(back.natoms_cif * 1000 + super.natoms_cif, 48096);
    EXPECT_EQ(back.mol_natoms_list.size(), 2u);
    for (const char* mol : {"data/mol1.mol", "data/mol2.mol"})
        EXPECT_EQ(read_text_file(mol).find("\n\n 24  0"), 25u) << mol;  // the counts line
}

// One engine's layout per case, with the text appended to every input; the
// others, without it, are in the job goldens.
TEST_F(Writers, QcInputLayouts)
{
    const std::string extra = "--Link1--\nno final line end";
    using Write = std::function<void(FileIO&, const char*)>;
    const std::pair<const char*, Write> cases[] = {
        {"gaussian_hl.com", [&](FileIO& f, const char* p) {
             f.write_gau_mol_com_HL(p, 3, types3, coords3, "pair 1", "dimer_1", "b3lyp/6-31g*", 2000, 3, 8, extra); }},
        {"orca_re.inp", [](FileIO& f, const char* p) {
             f.write_orca_mol_inp_RE(p, 3, types3, coords3, 500, 2, "-1 2", "PBE0", "def2-TZVP", "tail\n"); }},
        {"qchem_hl.qcin", [&](FileIO& f, const char* p) {
             f.write_qchem_mol_inp_HL(p, 3, types3, coords3, 7, 24, "wb97x-d", "6-31g*", extra); }},
    };
    for (const auto& [name, write] : cases) {
        write(fio, name);
        EXPECT_EQ(read_text_file(name), golden(name)) << name;
    }
    fio.write_gau_mol_com_HL("empty.com", 0, nullptr, nullptr, "t", "c", "m", 1, 1, 1, "X");
    EXPECT_EQ(read_text_file("empty.com"),
              "%chk=c.chk\n%mem=1MB\n%nprocs=1\n#P m iop(3/33=1,5/33=2) pop=full nosymm\n\nt\n\n0 1\n\nX");
    std::string path = ".";  // paths of any length
    for (char d = 'a'; d < 'f'; d++) {
        path += "/" + std::string(120, d);
        ASSERT_EQ(mkdir(path.c_str(), 0750), 0);
    }
    cases[0].second(fio, (path += "/hl.com").c_str());
    EXPECT_EQ(read_text_file(path), golden("gaussian_hl.com"));
}

// A write that fails half way (the file-size limit stands in for a full disk).
static void write_past_size_limit(FileIO& fio)
{
    limit_file_size(4096);
    fio.write_qchem_mol_inp_RE("big.qcin", 3, types3, coords3, 1, 1, "0 1", "m", "b", std::string(100000, '!'));
}

TEST_F(Writers, OpenAndWriteFailuresAndUnknownElementsAreFatal)
{
    EXPECT_EXIT(fio.write_data_xyz("no_such_dir/c.xyz"), ::testing::ExitedWithCode(255),
                "^ERROR: Failed to open output file \"no_such_dir/c.xyz\"\n$");
    EXPECT_EXIT(fio.write_data_mol("no_such_dir/g.mol", 3, types3, coords3), ::testing::ExitedWithCode(255),
                "^Failed to open output file \"no_such_dir/g.mol\"\n$");
    EXPECT_EXIT(fio.write_unitcell_cif("no_such_dir/u.cif", 2, natoms2, types2, frac2),
                ::testing::ExitedWithCode(255), "^Failed to open output file no_such_dir/u.cif\n$");
    EXPECT_EXIT(fio.write_orca_mol_inp_RE("no_such_dir/x.inp", 3, types3, coords3, 1, 1, "0 1", "m", "b", ""),
                ::testing::ExitedWithCode(255), "^Failed to open output file no_such_dir/x.inp\n$");
    EXPECT_EXIT(write_past_size_limit(fio), ::testing::ExitedWithCode(255), "Failed to write output file big.qcin");
    int bad[1] = {-1};
    EXPECT_EXIT((dup2(2, 1), fio.write_data_mol("bad.mol", 1, bad, coords3)), ::testing::ExitedWithCode(255),
                "Unknown element index -1 of atom 1 written to bad.mol");
}
