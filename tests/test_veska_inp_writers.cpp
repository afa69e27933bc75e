#include <gtest/gtest.h>

#include <sys/stat.h>

#include "test_veska_inp_golden.h"
#include "test_veska_inp_scratch.h"
#include "transport.h"

namespace {

class ConfigWriters : public ScratchDirTest {
protected:
    Transport veska;
    void SetUp() override
    {
        ScratchDirTest::SetUp();
        veska.set_varables_default();
    }
};

}  // namespace

TEST_F(ConfigWriters, TerseDefaultStateAndAnnouncement)
{
    testing::internal::CaptureStdout();
    EXPECT_TRUE(veska.write_veska_inp_terse("veska.inp", 2, false));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Writing config file \"veska.inp\" ... \n");
    EXPECT_EQ(slurp("veska.inp"), golden_terse);
}

TEST_F(ConfigWriters, TerseModuleFlagActivatesModuleLine)
{
    veska.set_environment_module_gau_flag(true);
    veska.module_qc = "g16/c01";
    EXPECT_TRUE(veska.write_veska_inp_terse("t.inp", 2, false));
    EXPECT_EQ(slurp("t.inp"), replace_line(golden_terse, "#  module_qc = gaussian/g09.e01",
                                           "  module_qc = g16/c01\n"));
}

TEST_F(ConfigWriters, TerseMolInputWithoutAndWithMolFiles)
{
    std::string with_vectors = insert_before(golden_terse, terse_lat_cutoff, golden_vector_lines);
    EXPECT_TRUE(veska.write_veska_inp_terse("a.inp", 1, false));
    EXPECT_EQ(slurp("a.inp"), replace_line(with_vectors, new_crystal_default, new_mol_default));

    touch("b.mol");
    touch("a.mol");
    touch("c.cif");  // not looked at for MOL input
    EXPECT_TRUE(veska.write_veska_inp_terse("b.inp", 1, false));
    EXPECT_EQ(slurp("b.inp"), replace_line(with_vectors, new_crystal_default,
                                           "  molecule        = 2 a.mol b.mol\n"));
}

TEST_F(ConfigWriters, TerseCifInputNamesFirstSortedCifAndOtherKindsNoTail)
{
    touch("y.cif");
    touch("x.cif");
    touch("a.mol");
    EXPECT_TRUE(veska.write_veska_inp_terse("c.inp", 2, false));
    EXPECT_EQ(slurp("c.inp"),
              replace_line(golden_terse, new_crystal_default, "  crystal         = x.cif\n"));
    EXPECT_TRUE(veska.write_veska_inp_terse("d.inp", 3, false));
    EXPECT_EQ(slurp("d.inp"), replace_line(golden_terse, new_crystal_default, ""));
}

TEST_F(ConfigWriters, DoublesUseTheStreamDefaultNotation)
{
    veska.temp = 300.5;
    veska.tsimu = 1e7;
    veska.tsnap = 1000000.0;
    veska.lat_cutoff = 12.3456789;
    EXPECT_TRUE(veska.write_veska_inp_terse("n.inp", 2, false));
    std::string expected = replace_line(golden_terse, "  temp            = 300",
                                        "  temp            = 300.5\n");
    expected = replace_line(expected, "  tsimu           = 1000    ! in ns",
                            "  tsimu           = 1e+07    ! in ns\n");
    expected = replace_line(expected, "  tsnap           = 5", "  tsnap           = 1e+06\n");
    expected = replace_line(expected, terse_lat_cutoff,
                            "  lat_cutoff      = 12.3457       ! for neighbor list construction\n");
    EXPECT_EQ(slurp("n.inp"), expected);
}

TEST_F(ConfigWriters, VerboseDefaultState)
{
    EXPECT_TRUE(veska.write_veska_inp_verbose("v.inp", 2, false));
    EXPECT_EQ(slurp("v.inp"), golden_verbose);
}

TEST_F(ConfigWriters, VerboseMolInputModuleAndAdjustmentLists)
{
    veska.set_environment_module_gau_flag(true);
    veska.nmols = 3;  // empty lists: one zero per molecule
    veska.lumo_adjustment = {1, -2};
    touch("m1.mol");
    EXPECT_TRUE(veska.write_veska_inp_verbose("v.inp", 1, false));
    std::string expected = replace_line(golden_verbose, "#  module_qc = gaussian/g09.e01",
                                        "  module_qc = gaussian/g09.e01\n");
    expected = insert_before(expected, verbose_lat_cutoff, golden_vector_lines);
    expected = replace_line(expected, "  homo_adjustment =", "  homo_adjustment = 0 0 0\n");
    expected = replace_line(expected, "  lumo_adjustment =", "  lumo_adjustment = 1 -2\n");
    expected = replace_line(expected, new_crystal_default, "  molecule        = 1 m1.mol\n");
    EXPECT_EQ(slurp("v.inp"), expected);
}

TEST_F(ConfigWriters, OldLayoutDefaultModuleAndTails)
{
    EXPECT_TRUE(veska.write_config_inp("config.inp", 2, false));
    EXPECT_EQ(slurp("config.inp"), golden_old);

    veska.set_environment_module_gau_flag(true);
    touch("z.mol");
    EXPECT_TRUE(veska.write_config_inp("config.inp", 1, false));
    std::string expected =
        insert_before(golden_old, "qc_method       b3lyp", "module_qc   gaussian/g09.e01\n\n");
    EXPECT_EQ(slurp("config.inp"),
              replace_line(expected, "crystal         naphthalene.cif", "molecule        1 z.mol\n"));

    veska.set_environment_module_gau_flag(false);
    EXPECT_TRUE(veska.write_config_inp("config.inp", 0, false));
    EXPECT_EQ(slurp("config.inp"), replace_line(golden_old, "crystal         naphthalene.cif", ""));
}

TEST_F(ConfigWriters, OldLayoutWithOtherStateDiffersOnlyInValues)
{
    veska.sched_type = "slurm";
    veska.latt_vec[2][0] = 12.5;
    veska.super_cell[1] = 7;
    veska.tsimu = 1e7;
    EXPECT_TRUE(veska.write_config_inp("config.inp", 2, false));
    std::string expected = replace_line(golden_old, "queue_type      pbs    ! pbs, slurm, lsf, or local",
                                        "queue_type      slurm    ! pbs, slurm, lsf, or local\n");
    expected = replace_line(expected, "vector_c           -4.888095     0.000000     7.138882",
                            "vector_c           12.500000     0.000000     7.138882\n");
    expected = replace_line(expected, "super_cell      5 5 5", "super_cell      5 7 5\n");
    expected = replace_line(expected, "tsimu           1000  ! in ns", "tsimu           1e+07  ! in ns\n");
    EXPECT_EQ(slurp("config.inp"), expected);
}

TEST_F(ConfigWriters, FullStateDefaultIsQuietUnlessVerbose)
{
    testing::internal::CaptureStdout();
    EXPECT_TRUE(veska.write_veska_inp("full.inp", false, false));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(slurp("full.inp"), golden_full);

    testing::internal::CaptureStdout();
    EXPECT_TRUE(veska.write_veska_inp("full.inp", false, true));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Writing config file \"full.inp\" ... \n");
}

TEST_F(ConfigWriters, FullStateModuleFlagsAndLoadedInput)
{
    veska.set_environment_module_gau_flag(true);
    veska.nodelist = "n01 n02";
    veska.sched_job_array = false;
    veska.veska_dat_file = "veska-quanta.dat";
    veska.input_kind = 1;
    veska.nmols = 2;
    veska.mol_files = {"p.mol", "q.mol"};
    touch("ignored.mol");  // the state, not the directory, names the molecules
    EXPECT_TRUE(veska.write_veska_inp("full.inp", false, false));
    const char* module = "  module_qc       = gaussian/g09.e01    ! module load gaussian/g09.e01\n";
    std::string expected = replace_line(golden_full, "  nodelist        = \"\"",
                                        "  nodelist        = \"n01 n02\"\n");
    expected = replace_line(expected, "  sched_job_array = 1", "  sched_job_array = 0\n");
    expected = replace_line(expected, "  veska_dat_file  =   ! default to veska-ratetype.dat",
                            "  veska_dat_file  = veska-quanta.dat  ! default to veska-ratetype.dat\n");
    expected = replace_line(expected, "  homo_adjustment =", "  homo_adjustment = 0 0\n");
    expected = replace_line(expected, "  lumo_adjustment =", "  lumo_adjustment = 0 0\n");
    expected = insert_before(expected, "/", "  molecule        = 2 p.mol q.mol\n");
    EXPECT_EQ(slurp("full.inp"),
              insert_before(expected, "  # Temperature Dependence", std::string(module) + "\n"));

    // With the MPI module flag the module line is not followed by an empty line.
    veska.set_environment_module_mpich2_gnu_flag(true);
    veska.input_kind = 2;
    veska.crystal_file = "cryst/pentacene.cif";
    EXPECT_TRUE(veska.write_veska_inp("full.inp", false, false));
    expected = replace_line(expected, "  molecule        = 2 p.mol q.mol",
                            "  crystal         = cryst/pentacene.cif\n");
    EXPECT_EQ(slurp("full.inp"), insert_before(expected, "  # Temperature Dependence", module));
}

TEST_F(ConfigWriters, DataDirectoryIsCreatedAndUsed)
{
    veska.data_dir = "out";
    testing::internal::CaptureStdout();
    EXPECT_TRUE(veska.write_veska_inp_terse("veska.inp", 2, true));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Writing config file \"out/veska.inp\" ... \n");
    struct stat st;
    ASSERT_EQ(stat("out", &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0750u & ~static_cast<unsigned>(umask(umask(0))));
    EXPECT_EQ(slurp("out/veska.inp"), golden_terse);
    EXPECT_FALSE(exists("veska.inp"));
    EXPECT_TRUE(veska.write_config_inp("c.inp", 2, true));  // existing directory is reused
    EXPECT_TRUE(veska.write_veska_inp("f.inp", true, false));
    EXPECT_TRUE(exists("out/c.inp") && exists("out/f.inp"));
}

TEST_F(ConfigWriters, UnopenableFileGivesSilentFalse)
{
    veska.data_dir = "no/such/dir";  // one level only: the parents are not created
    testing::internal::CaptureStdout();
    EXPECT_FALSE(veska.write_veska_inp_terse("missing/veska.inp", 2, false));
    EXPECT_FALSE(veska.write_veska_inp_verbose("missing/veska.inp", 1, false));
    EXPECT_FALSE(veska.write_config_inp("missing/config.inp", 2, false));
    EXPECT_FALSE(veska.write_veska_inp("missing/full.inp", false, true));
    EXPECT_FALSE(veska.write_veska_inp_terse("veska.inp", 2, true));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_FALSE(exists("missing") || exists("no"));
}
