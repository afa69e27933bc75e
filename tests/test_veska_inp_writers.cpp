#include <gtest/gtest.h>

#include <sys/stat.h>

#include <type_traits>

#include "test_veska_inp_golden.h"
#include "transport.h"

static_assert(std::is_base_of_v<VeskaInp, Transport> && std::is_base_of_v<FileIO, VeskaInp> &&
              std::is_base_of_v<Jobscript, VeskaInp> && !std::is_polymorphic_v<Transport>);

using Writer = bool (VeskaInp::*)(const char*, int, bool);
static const Writer terse = &VeskaInp::write_veska_inp_terse;
static const Writer verbose = &VeskaInp::write_veska_inp_verbose;
static const Writer old = &VeskaInp::write_config_inp;

// Writes with `w` in a fresh directory holding `files`; returns the text.
static std::string written(VeskaInp& v, Writer w, int kind, std::vector<std::string> files = {})
{
    ScratchDir dir;
    for (const std::string& f : files) put_file(f, "x\n");
    testing::internal::CaptureStdout();
    EXPECT_TRUE((v.*w)("out.inp", kind, false));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Writing config file \"out.inp\" ... \n");
    return read_text_file("out.inp");
}

// Full state in a fresh directory; no announcement.
static std::string written_full(VeskaInp& v)
{
    ScratchDir dir;
    testing::internal::CaptureStdout();
    EXPECT_TRUE(v.write_veska_inp("full.inp", false, false));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    return read_text_file("full.inp");
}

TEST(VeskaInpModel, DefaultsResetSettingsButKeepSwitchesEngineAndModules)
{
    Transport v;  // first what the defaults leave alone, then what they reset
    v.set_compute_engine(3);
    v.set_environment_module_gau_flag(true);
    v.set_environment_module_mpich2_gnu_flag(true);
    v.do_transport_prepare = 0; v.module_qc = "qchem/6"; v.scratch = "/scratch"; v.nodelist = "n1";
    v.mater_name = "pentacene"; v.qc_inp_append = "extra\n"; v.sched_job_array = false;
    v.veska_dat_file = "r.dat"; v.HL_unique_mol = 0; v.bond_dis_scale = 1.3;
    v.temp = 77; v.sched_type = "lsf"; v.run_ppn = 64; v.nmols = 4; v.tstep = 3;
    v.latt_vec[1][1] = 0; v.nei_scell[2] = 9; v.super_cell[0] = 1;
    v.set_varables_default();
    EXPECT_EQ(v.mater_name + v.qc_inp_append, "pentaceneextra\n");
    EXPECT_EQ(v.tstep, 1.0);
    EXPECT_EQ(written_full(v), edit(golden("full.inp"), {
        {"  do_transport_prepare              = 1", "  do_transport_prepare              = 0\n"},
        {"  nodelist        = \"\"", "  nodelist        = \"n1\"\n"},
        {"  sched_job_array = 1", "  sched_job_array = 0\n"},
        {"  compute_engine  = 1     ! 1 = Gaussian, 2 = ORCA, 3 = QCHEM",
         "  compute_engine  = 3     ! 1 = Gaussian, 2 = ORCA, 3 = QCHEM\n"},
        {"  qc_exe          = g09", "  qc_exe          = qchem\n"},
        {"  scratch         = /tmp    ! use local disk for performance",
         "  scratch         = /scratch    ! use local disk for performance\n"},
        {"  # Temperature Dependence",  // with the MPI flag: no empty line after it
         "  module_qc       = qchem/6    ! module load gaussian/g09.e01\n  # Temperature Dependence\n"},
        {"  veska_dat_file  =   ! default to veska-ratetype.dat",
         "  veska_dat_file  = r.dat  ! default to veska-ratetype.dat\n"},
        {"  bond_dis_scale  = 1.15  ! for separating molecules",
         "  bond_dis_scale  = 1.3  ! for separating molecules\n"},
        {"  HL_unique_mol   = 1", "  HL_unique_mol   = 0\n"}}));
}

// The layouts as the command writes them are checked by the command test;
// here what it cannot reach: other input kinds, adjustment lists, modules
// in the old layout, number notation and the full state.
TEST(ConfigWriters, StartingLayoutVariants)
{
    Transport v;
    v.set_varables_default();
    EXPECT_EQ(written(v, terse, 3), edit(golden("terse.inp"), {{crystal_default, ""}}));
    EXPECT_EQ(written(v, old, 0), edit(golden("config.inp"), {{old_crystal_default, ""}}));
    v.set_environment_module_gau_flag(true);
    v.module_qc = "g16/c01"; v.nmols = 3;  // an empty list gives one zero per molecule
    v.lumo_adjustment = {1, -2};
    EXPECT_EQ(written(v, verbose, 1, {"m1.mol"}),
              edit(insert_before(golden("verbose.inp"), verbose_lat_cutoff, golden_vector_lines),
                   {{module_off, "  module_qc = g16/c01\n"},
                    {"  homo_adjustment =", "  homo_adjustment = 0 0 0\n"},
                    {"  lumo_adjustment =", "  lumo_adjustment = 1 -2\n"},
                    {crystal_default, "  molecule        = 1 m1.mol\n"}}));
    EXPECT_EQ(written(v, old, 1, {"z.mol"}),
              edit(insert_before(golden("config.inp"), "qc_method       b3lyp", "module_qc   g16/c01\n\n"),
                   {{old_crystal_default, "molecule        1 z.mol\n"}}));
    v.set_environment_module_gau_flag(false);
    v.temp = 300.5; v.tsimu = 1e7; v.tsnap = 1000000.0; v.lat_cutoff = 12.3456789;
    EXPECT_EQ(written(v, terse, 2), edit(golden("terse.inp"), {
        {module_off, "#  module_qc = g16/c01\n"},  // commented out, with its value
        {"  temp            = 300", "  temp            = 300.5\n"},
        {"  tsimu           = 1000    ! in ns", "  tsimu           = 1e+07    ! in ns\n"},
        {"  tsnap           = 5", "  tsnap           = 1e+06\n"},
        {terse_lat_cutoff, "  lat_cutoff      = 12.3457       ! for neighbor list construction\n"}}));
}

TEST(ConfigWriters, FullStateDefaultAndLoadedInput)
{
    Transport v;
    v.set_varables_default();
    const std::string full = golden("full.inp");
    EXPECT_EQ(written_full(v), full);
    v.input_kind = 1; v.nmols = 2;
    v.mol_files = {"p.mol", "q.mol"};  // the state, not the directory, names them
    EXPECT_EQ(written_full(v), edit(insert_before(full, "/", "  molecule        = 2 p.mol q.mol\n"),
                                    {{"  homo_adjustment =", "  homo_adjustment = 0 0\n"},
                                     {"  lumo_adjustment =", "  lumo_adjustment = 0 0\n"}}));
    v.set_environment_module_gau_flag(true);  // without the MPI flag: an empty line follows
    v.input_kind = 2; v.nmols = 0; v.crystal_file = "cryst/pentacene.cif";
    EXPECT_EQ(written_full(v),
              edit(insert_before(full, "/", "  crystal         = cryst/pentacene.cif\n"),
                   {{"  # Temperature Dependence",
                     "  module_qc       = gaussian/g09.e01    ! module load gaussian/g09.e01\n\n"
                     "  # Temperature Dependence\n"}}));
}

TEST(ConfigWriters, DataDirectoryAndUnopenableFile)
{
    ScratchDir dir;
    Transport v;
    v.set_varables_default();
    v.data_dir = "out";
    testing::internal::CaptureStdout();
    EXPECT_TRUE(v.write_veska_inp_terse("veska.inp", 2, true));
    EXPECT_TRUE(v.write_config_inp("c.inp", 2, true));  // the directory is reused
    EXPECT_TRUE(v.write_veska_inp("f.inp", true, true));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Writing config file \"out/veska.inp\" ... \n"
              "Writing config file \"out/c.inp\" ... \nWriting config file \"out/f.inp\" ... \n");
    struct stat st;
    ASSERT_EQ(stat("out", &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0750u & ~static_cast<unsigned>(umask(umask(0))));
    EXPECT_EQ(read_text_file("out/veska.inp"), golden("terse.inp"));
    EXPECT_TRUE(std::filesystem::exists("out/f.inp") && !std::filesystem::exists("veska.inp"));

    v.data_dir = "no/such/dir";  // one level only: parents are not created
    testing::internal::CaptureStdout();
    for (Writer w : {terse, verbose, old}) EXPECT_FALSE((v.*w)("missing/x.inp", 1, false));
    EXPECT_FALSE(v.write_veska_inp("missing/full.inp", false, true));
    EXPECT_FALSE(v.write_veska_inp_terse("veska.inp", 2, true));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_FALSE(std::filesystem::exists("missing") || std::filesystem::exists("no"));
}
