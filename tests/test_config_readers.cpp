// The configuration readers: the veska.inp block grammar, the config.inp
// line grammar, the key table, the checks after reading and the errors.

#include <gtest/gtest.h>

#include <stdlib.h>
#include <unistd.h>

#include "reader_test_util.h"
#include "veska_inp.h"

static void clear_veska_environment()
{
    for (const char* name : {"VESKA_JOB_SCHED", "VESKA_JOB_QUEUE", "VESKA_QC_EXE",
                             "VESKA_QC_NODES", "VESKA_QC_PPN", "VESKA_MODULE_QC"})
        unsetenv(name);
}

// Reads `text` as veska.inp in a scratch directory.
static void read_inp(VeskaInp& v, const std::string& text)
{
    ScratchDir dir;
    clear_veska_environment();
    write_text_file("veska.inp", text);
    v.read_veska_inp("veska.inp", false);
}

static void read_cfg(VeskaInp& v, const std::string& text)
{
    ScratchDir dir;
    write_text_file("config.inp", text);
    testing::internal::CaptureStdout();
    v.read_config_inp("config.inp", false);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Reading config file \"config.inp\" ... \n");
}

TEST(VeskaInpReader, CommentsQuotesAndKeyCase)
{
    VeskaInp v;
    read_inp(v, "temp = 111\n"  // before the block: ignored
                "&transport\n"
                "  QC_Method = 'b3lyp' ! functional\n"
                "  mater_name = \"my 'mat'\"   # note\n"
                "  ! nsimu = 5\n"
                "  # nsimu = 6\n"
                "  no equals sign here\n"
                "\tqueue_name\t=\tlong # q ! r\r\n"
                "/\n"
                "nsimu = 7\n");
    EXPECT_EQ(v.qc_method, "b3lyp");
    EXPECT_EQ(v.mater_name, "my mat");
    EXPECT_EQ(v.queue_name, "long");
    EXPECT_EQ(v.nsimu, 2000);
    EXPECT_DOUBLE_EQ(v.temp, 300.0);

    VeskaInp m;
    read_inp(m, "&transport\nqc_method = m06 # note\n/\n");
    EXPECT_EQ(m.qc_method, "m06");
}

TEST(VeskaInpReader, BlockHeadersAndRepeatedBlocks)
{
    VeskaInp v;
    read_inp(v, "! a comment\n"
                "&TRANSPORT ! with a blank before the comment: not a header\n"
                "nsimu = 1\n"
                "/\n"
                "&transport!header\n"
                "nsimu = 2\n"
                "/\n"
                "&transport\n"
                "tsimu = 5.5e2\n"
                "nsimu = 3 junk\n"
                "/\n");
    EXPECT_EQ(v.nsimu, 3);
    EXPECT_DOUBLE_EQ(v.tsimu, 550.0);
}

TEST(VeskaInpReader, BasisOrderEngineAndAliases)
{
    VeskaInp a;
    read_inp(a, "&transport\nqc_basis_re = def2-svp\nqc_basis = 6-31g\n/\n");
    EXPECT_EQ(a.qc_basis, "6-31g");
    EXPECT_EQ(a.qc_basis_re, "6-31g");
    VeskaInp b;
    read_inp(b, "&transport\nbasis_name = 6-31g\nbasis_name_re = def2-svp\n/\n");
    EXPECT_EQ(b.qc_basis, "6-31g");
    EXPECT_EQ(b.qc_basis_re, "def2-svp");

    VeskaInp c;
    read_inp(c, "&transport\nqc_exe = /opt/orca/orca\ncompute_engine = 2\n/\n");
    EXPECT_EQ(c.qc_exe, "fullpath/orca");
    VeskaInp d;
    read_inp(d, "&transport\ncompute_engine = 2\ngaussian_exe = /opt/orca/orca\n/\n");
    EXPECT_EQ(d.qc_exe, "/opt/orca/orca");

    VeskaInp e;
    read_inp(e, "&transport\nsuper-cell = 2 2 1\nnei_scell = 4 5\nmodule_gaussian = g16\n"
                "gaussian_nodes = 2\ngaussian_ppn = 16\nmemory = 100\nqueue_type = slurm\n"
                "module_mpich2 = mpi/x\nsched_job_array = 0\nvector_b = 1 2 3.5\n"
                "homo_adjustment = 1 -2\nhomo_adjustment = 3\nlumo_adjustment = 4\n"
                "lat_site_energy = 1\nscratch = '/scr'\n/\n");
    EXPECT_EQ(e.super_cell[0], 2);
    EXPECT_EQ(e.super_cell[2], 1);
    EXPECT_EQ(e.nei_scell[1], 5);
    EXPECT_EQ(e.nei_scell[2], 3);  // not given: unchanged
    EXPECT_EQ(e.module_qc, "g16");
    EXPECT_TRUE(e.module_gau_flag);
    EXPECT_EQ(e.run_nodes, 2);
    EXPECT_EQ(e.run_ppn, 16);
    EXPECT_EQ(e.qc_memory, 100);
    EXPECT_EQ(e.sched_type, "slurm");
    EXPECT_TRUE(e.module_mpich2_gnu_flag);
    EXPECT_FALSE(e.sched_job_array);
    EXPECT_DOUBLE_EQ(e.latt_vec[1][2], 3.5);
    EXPECT_EQ(e.homo_adjustment, (std::vector<int>{1, -2, 3}));
    EXPECT_EQ(e.lumo_adjustment, (std::vector<int>{4}));
    EXPECT_EQ(e.lat_site_energy, 1);
    EXPECT_EQ(e.scratch, "'/scr'");  // stripped text keeps its quotes
    VeskaInp f;
    read_inp(f, "&transport\nsuper_cell = 3 2 1\n/\n");
    EXPECT_EQ(f.super_cell[0], 3);
}

TEST(VeskaInpReader, AfterReadingChecksAndCopies)
{
    VeskaInp v;
    read_inp(v, "&transport\nratetype = marcus\nsched_type = lsf\nnodelist = alpha,beta\n"
                "HL_unique_mol = 0\n/\n");
    EXPECT_EQ(v.veska_dat_file, "veska-marcus.dat");
    EXPECT_EQ(v.nodelist, "alpha beta");
    EXPECT_FALSE(v.unique_uc_mol_one_calc_flag);
    EXPECT_FALSE(v.unique_nei_mol_one_calc_flag);
    EXPECT_FALSE(v.unique_2mol_calc_flag);
    EXPECT_TRUE(v.unique_RE_calc_flag);
    EXPECT_TRUE(v.lines.empty());
    EXPECT_EQ(v.nlines, 0);

    VeskaInp w;
    read_inp(w, "&transport\nsched_type = LSF\nnodelist = alpha,beta\nRE_unique_mol = 0\n"
                "veska_dat_file = rates.dat\n/\n");
    EXPECT_EQ(w.nodelist, "alpha,beta");
    EXPECT_FALSE(w.unique_RE_calc_flag);
    EXPECT_EQ(w.veska_dat_file, "rates.dat");
}

TEST(VeskaInpReader, AppendBlocks)
{
    VeskaInp v;
    read_inp(v, "&qc_inp_append\n"
                "%chk=a\n"
                " / kept\n"
                "/ ends\n"
                "&transport\nnsimu = 4\n/\n"
                "&Gaussian.Append\n"
                "pop=full\r\n"
                "last line without end");
    EXPECT_EQ(v.qc_inp_append, "%chk=a\n / kept\npop=full\r\nlast line without end");
    EXPECT_EQ(v.nsimu, 4);
}

TEST(VeskaInpReader, EnvironmentComesBetweenDefaultsAndFile)
{
    ScratchDir dir;
    clear_veska_environment();
    setenv("VESKA_JOB_QUEUE", "envq", 1);
    setenv("VESKA_QC_PPN", "12", 1);
    write_text_file("veska.inp", "&transport\nqc_ppn = 4\n/\n");
    VeskaInp v;
    v.read_veska_inp("veska.inp", false);
    clear_veska_environment();
    EXPECT_EQ(v.queue_name, "envq");
    EXPECT_EQ(v.run_ppn, 4);
}

TEST(VeskaInpReader, MoleculeListAndLongLines)
{
    VeskaInp v;
    std::string name(5000, 'n');
    read_inp(v, "&transport\nmolecule = 2 a.mol b.mol c.mol\nmater_name = " + name + "\n/\n");
    EXPECT_EQ(v.nmols, 2);
    EXPECT_EQ(v.mol_files, (std::vector<std::string>{"a.mol", "b.mol"}));
    EXPECT_EQ(v.input_kind, 1);
    EXPECT_EQ(v.mater_name, name);
}

TEST(VeskaInpReader, CrystalKeyReadsTheCrystalAtOnce)
{
    VeskaInp v;
    read_inp(v, "&transport\ncrystal = " + data_file("benzene_cod2100348.cif") + "  \n/\n");
    EXPECT_EQ(v.input_kind, 2);
    EXPECT_TRUE(v.cif_loaded);
    EXPECT_EQ(v.natoms_cif, 48);
    EXPECT_EQ(v.crystal_file, data_file("benzene_cod2100348.cif"));
}

// ---- errors -----------------------------------------------------------------

static void read_inp_in_child(const std::string& text)
{
    clear_veska_environment();
    child_with_file("veska.inp", text);
    VeskaInp v;
    v.read_veska_inp("veska.inp", false);
}

TEST(VeskaInpReaderDeathTest, Errors)
{
    ScratchDir dir;
    ASSERT_TRUE(dir.ok());
    EXPECT_EXIT(read_inp_in_child("&transport\n Qc_Exe2 = x\n/\n"), testing::ExitedWithCode(255),
                "^\nERROR  transport : veska_inp : line 649 : \n\nUnknown parameter \"Qc_Exe2\" in "
                "file veska.inp!!!\n\n$");
    EXPECT_EXIT(read_inp_in_child("&transport\n= x\n/\n"), testing::ExitedWithCode(255),
                "Unknown parameter \"\" in file veska.inp!!!");
    EXPECT_EXIT(read_inp_in_child("&transport\ncompute_engine = 3\n/\n"), testing::ExitedWithCode(1),
                "line 740 : \nIncomptiable settings:\n  The compute_engine = 3, while qc_exe is set "
                "to g09\n  1 - Gaussian, 2 - ORCA, 3 - QCHEM\n$");
    EXPECT_EXIT(read_inp_in_child("&transport\nqc_exe = orca\n/\n"), testing::ExitedWithCode(1),
                "line 716 : \nIncomptiable settings:\n  The compute_engine = 1, while qc_exe is set "
                "to orca\n");
    EXPECT_EXIT(read_inp_in_child("&transport\ncompute_engine = 2\nqc_exe = g16\n/\n"),
                testing::ExitedWithCode(1), "line 728 : \nIncomptiable settings:\n");
    EXPECT_EXIT(read_inp_in_child("&transport\nmolecule = 3 a.mol b.mol\n/\n"),
                testing::ExitedWithCode(255),
                "The key molecule announces 3 MOL files but names 2 in file veska.inp");
    VeskaInp v;
    EXPECT_EXIT((dup2(2, 1), v.read_veska_inp("missing.inp", false)),
                testing::ExitedWithCode(255),
                "line 175 : \nFailed to open input file: missing.inp\n$");
    EXPECT_EXIT((dup2(2, 1), v.read_veska_inp(".", false)), testing::ExitedWithCode(255),
                "Failed to open input file: .\n$");
}

// ---- config.inp -------------------------------------------------------------

TEST(ConfigInpReader, Grammar)
{
    ScratchDir dir;
    clear_veska_environment();
    setenv("VESKA_JOB_QUEUE", "envq", 1);  // not read by this reader
    VeskaInp v;
    read_cfg(v, "# comment\n"
                "   ! comment\n"
                "do_prepare 0\n"
                "do_HL  0 ! off\n"
                "temp\t350\n"  // tab only: ignored
                "tsimu 12.5\n"
                "mater_name \"a 'b'\"\n"
                "QC_EXE\t g16\n"
                "basis_name 6-31g\n"
                "latt_site_energy 1\n"
                "molecule 1 m.mol\n"
                "\n"
                "noblank\n");
    unsetenv("VESKA_JOB_QUEUE");
    EXPECT_EQ(v.do_transport_prepare, 0);
    EXPECT_EQ(v.do_transport_submit_HL_job, 0);
    EXPECT_DOUBLE_EQ(v.temp, 300.0);
    EXPECT_DOUBLE_EQ(v.tsimu, 12.5);
    EXPECT_EQ(v.mater_name, "a 'b'");
    EXPECT_EQ(v.qc_exe, "g16");
    EXPECT_EQ(v.qc_basis_re, "6-31g");
    EXPECT_EQ(v.lat_site_energy, 1);
    EXPECT_EQ(v.mol_files, (std::vector<std::string>{"m.mol"}));
    EXPECT_EQ(v.queue_name, "workq");
    EXPECT_EQ(v.veska_dat_file, "");  // no default name here
}

static void read_cfg_in_child(const std::string& text)
{
    child_with_file("config.inp", text);
    VeskaInp v;
    v.read_config_inp("config.inp", false);
}

TEST(ConfigInpReaderDeathTest, Errors)
{
    ScratchDir dir;
    ASSERT_TRUE(dir.ok());
    EXPECT_EXIT(read_cfg_in_child("lat_site_energy 1\n"), testing::ExitedWithCode(255),
                "line 1119 : \n\nUnknown parameter \"lat_site_energy\" in file "
                "config.inp!!!\n\nLook up the conf.out for available parameters.\n$");
    EXPECT_EXIT(read_cfg_in_child("compute_engine 2\n"), testing::ExitedWithCode(255),
                "Unknown parameter \"compute_engine\"");
    EXPECT_EXIT(read_cfg_in_child("do_transport_prepare 1\n"), testing::ExitedWithCode(255),
                "Unknown parameter \"do_transport_prepare\"");
    VeskaInp v;
    EXPECT_EXIT(v.read_config_inp("missing.inp", false), testing::ExitedWithCode(255),
                "Failed to open input file \"missing.inp\"\n$");
    EXPECT_EXIT(v.read_config_inp(".", false), testing::ExitedWithCode(255),
                "Failed to open input file \".\"\n$");
}

// ---- round trip ----------------------------------------------------------------

TEST(VeskaInpReader, WriteThenReadRoundTrip)
{
    ScratchDir dir;
    clear_veska_environment();
    VeskaInp out;
    out.set_varables_default();
    out.set_compute_engine(3);
    out.do_transport_run_ME = 1;
    out.do_transport_get_re_evc = 0;
    out.sched_type = "slurm";
    out.queue_name = "gpu";
    out.qc_method = "wb97xd";
    out.qc_basis = "6-31g(d)";
    out.qc_basis_re = "def2-svp";
    out.qc_memory = 8000;
    out.run_nodes = 2;
    out.run_ppn = 24;
    out.temp = 250.5;
    out.ratetype = "marcus";
    out.chargetype = "h";
    out.lat_cutoff = 4.5;
    out.nsimu = 300;
    out.tsnap = 2.5;
    out.nei_scell[0] = 2;
    out.super_cell[1] = 3;
    out.latt_vec[2][0] = -1.25;
    out.bond_dis_scale = 1.2;
    out.HL_unique_mol = 0;
    out.lat_site_energy = 1;
    out.output_level = 3;
    out.veska_dat_file = "r.dat";
    out.eckart_mirror = 1;
    out.input_kind = 1;
    out.nmols = 2;
    out.mol_files = {"a.mol", "b.mol"};
    ASSERT_TRUE(out.write_veska_inp("veska.inp", false, false));

    VeskaInp in;
    in.read_veska_inp("veska.inp", false);
    EXPECT_EQ(in.compute_engine, 3);
    EXPECT_EQ(in.qc_exe, "qchem");
    EXPECT_EQ(in.do_transport_run_ME, 1);
    EXPECT_EQ(in.do_transport_get_re_evc, 0);
    EXPECT_EQ(in.sched_type, "slurm");
    EXPECT_EQ(in.queue_name, "gpu");
    EXPECT_EQ(in.qc_method, "wb97xd");
    EXPECT_EQ(in.qc_basis, "6-31g(d)");
    EXPECT_EQ(in.qc_basis_re, "def2-svp");
    EXPECT_EQ(in.qc_memory, 8000);
    EXPECT_EQ(in.run_nodes, 2);
    EXPECT_EQ(in.run_ppn, 24);
    EXPECT_DOUBLE_EQ(in.temp, 250.5);
    EXPECT_EQ(in.ratetype, "marcus");
    EXPECT_EQ(in.chargetype, "h");
    EXPECT_DOUBLE_EQ(in.lat_cutoff, 4.5);
    EXPECT_EQ(in.nsimu, 300);
    EXPECT_DOUBLE_EQ(in.tsnap, 2.5);
    EXPECT_EQ(in.nei_scell[0], 2);
    EXPECT_EQ(in.super_cell[1], 3);
    EXPECT_DOUBLE_EQ(in.latt_vec[2][0], -1.25);
    EXPECT_DOUBLE_EQ(in.bond_dis_scale, 1.2);
    EXPECT_EQ(in.HL_unique_mol, 0);
    EXPECT_FALSE(in.unique_2mol_calc_flag);
    EXPECT_EQ(in.lat_site_energy, 1);
    EXPECT_EQ(in.output_level, 3);
    EXPECT_EQ(in.veska_dat_file, "r.dat");
    EXPECT_EQ(in.eckart_mirror, 1);
    EXPECT_EQ(in.input_kind, 1);
    EXPECT_EQ(in.mol_files, out.mol_files);
}

TEST(VeskaInpReader, EveryWriterLayoutReadsBack)
{
    ScratchDir dir;
    clear_veska_environment();
    VeskaInp out;
    out.set_varables_default();
    out.set_compute_engine(2);
    out.module_gau_flag = true;
    out.module_qc = "orca/5";
    out.queue_name = "q9";
    out.nsimu = 77;
    out.latt_vec[1][1] = 6.5;
    testing::internal::CaptureStdout();
    ASSERT_TRUE(out.write_veska_inp_terse("terse.inp", 1, false));
    ASSERT_TRUE(out.write_veska_inp_verbose("verbose.inp", 1, false));
    ASSERT_TRUE(out.write_config_inp("config.inp", 1, false));
    testing::internal::GetCapturedStdout();

    for (const char* name : {"terse.inp", "verbose.inp"}) {
        SCOPED_TRACE(name);
        VeskaInp in;
        in.read_veska_inp(name, false);
        EXPECT_EQ(in.compute_engine, 2);
        EXPECT_EQ(in.qc_exe, "fullpath/orca");
        EXPECT_EQ(in.module_qc, "orca/5");
        EXPECT_TRUE(in.module_gau_flag);
        EXPECT_EQ(in.queue_name, "q9");
        EXPECT_EQ(in.nsimu, 77);
        EXPECT_DOUBLE_EQ(in.latt_vec[1][1], 6.5);
        EXPECT_EQ(in.mol_files, (std::vector<std::string>{"mol1.mol", "mol2.mol"}));
    }
    VeskaInp old;
    testing::internal::CaptureStdout();
    old.read_config_inp("config.inp", false);
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(old.qc_exe, "fullpath/orca");
    EXPECT_EQ(old.queue_name, "q9");
    EXPECT_EQ(old.nsimu, 77);
    EXPECT_DOUBLE_EQ(old.latt_vec[1][1], 6.5);
    EXPECT_EQ(old.nmols, 2);
}
