// The configuration readers: the veska.inp block grammar, the config.inp
// line grammar, the key table, the checks after reading and the errors.

#include <gtest/gtest.h>

#include <stdlib.h>
#include <unistd.h>

#include <memory>

#include "test_support.h"
#include "veska_inp.h"

static void clear_veska_environment()
{
    for (const char* name : {"VESKA_JOB_SCHED", "VESKA_JOB_QUEUE", "VESKA_QC_EXE", "VESKA_QC_NODES",
                             "VESKA_QC_PPN", "VESKA_MODULE_QC"})
        unsetenv(name);
}

// Reads `text` as veska.inp in a scratch directory.
static std::unique_ptr<VeskaInp> read_inp(const std::string& text)
{
    ScratchDir dir;
    clear_veska_environment();
    put_file("veska.inp", text);
    auto v = std::make_unique<VeskaInp>();
    v->read_veska_inp("veska.inp", false);
    return v;
}

TEST(VeskaInpReader, GrammarKeysAndChecksAfterReading)
{
    const std::string long_text(5000, 'n');
    auto v = read_inp("temp = 111\n"  // outside the blocks: ignored
                      "&qc_inp_append\n%chk=a\n / kept\n/ ends\n"
                      "&TRANSPORT ! a blank before the comment: not a header\nnsimu = 1\n/\n"
                      "&transport!header\n"
                      "  QC_Method = 'b3lyp' ! functional\n"
                      "  mater_name = \"my 'mat'\"   # note\n"
                      "  ! nsimu = 5\n  # nsimu = 6\n  no equals sign here\n"
                      "\tqueue_name\t=\tlong # q ! r\r\n"
                      "super-cell = 2 2 1\nnei_scell = 4 5\nmodule_gaussian = g16\ngaussian_ppn = 16\n"
                      "memory = 100\nsched_type = lsf\nnodelist = alpha,beta\nmodule_mpich2 = " + long_text +
                      "\nsched_job_array = 0\nvector_b = 1 2 3.5\nhomo_adjustment = 1 -2\nhomo_adjustment = 3\n"
                      "lat_site_energy = 1\nscratch = '/scr'\nratetype = marcus\nHL_unique_mol = 0\n"
                      "molecule = 2 a.mol b.mol c.mol\n/\n"
                      "&transport\ntsimu = 5.5e2\n/\nnsimu = 7\n"
                      "&Gaussian.Append\npop=full\r\nlast line without end");
    EXPECT_EQ(v->qc_inp_append, "%chk=a\n / kept\npop=full\r\nlast line without end");
    EXPECT_EQ(v->qc_method + v->mater_name + v->queue_name, "b3lypmy matlong");
    EXPECT_EQ(v->nsimu, 2000);
    EXPECT_DOUBLE_EQ(v->temp + v->tsimu, 850.0);
    EXPECT_EQ(v->super_cell[0] * 100 + v->super_cell[2], 201);
    EXPECT_EQ(v->nei_scell[1] * 10 + v->nei_scell[2], 53);  // the third is not given: unchanged
    EXPECT_TRUE(v->module_gau_flag && v->module_mpich2_gnu_flag && !v->sched_job_array);
    EXPECT_EQ(v->module_qc + v->module_mpich2, "g16" + long_text);
    EXPECT_EQ(v->run_ppn + v->qc_memory + v->lat_site_energy, 117);
    EXPECT_DOUBLE_EQ(v->latt_vec[1][2], 3.5);
    EXPECT_EQ(v->homo_adjustment, (std::vector<int>{1, -2, 3}));
    EXPECT_EQ(v->scratch, "'/scr'");  // stripped text keeps its quotes
    EXPECT_EQ(v->mol_files, (std::vector<std::string>{"a.mol", "b.mol"}));
    EXPECT_EQ(v->nmols * 10 + v->input_kind, 21);
    // after reading: default data-file name, LSF node list, uniqueness copies, lines freed
    EXPECT_EQ(v->veska_dat_file + "|" + v->nodelist, "veska-marcus.dat|alpha beta");
    EXPECT_FALSE(v->unique_uc_mol_one_calc_flag || v->unique_nei_mol_one_calc_flag || v->unique_2mol_calc_flag);
    EXPECT_TRUE(v->unique_RE_calc_flag && v->lines.empty() && v->nlines == 0);
}

TEST(VeskaInpReader, OrderAndCaseDependentKeys)
{
    auto a = read_inp("&transport\nqc_basis_re = def2-svp\nqc_basis = 6-31g\n/\n");
    auto b = read_inp("&transport\nbasis_name = 6-31g\nbasis_name_re = def2-svp\n/\n");
    EXPECT_EQ(a->qc_basis + " " + a->qc_basis_re + " " + b->qc_basis + " " + b->qc_basis_re, "6-31g 6-31g 6-31g def2-svp");
    EXPECT_EQ(read_inp("&transport\nqc_exe = /opt/orca/orca\ncompute_engine = 2\n/\n")->qc_exe, "fullpath/orca");
    EXPECT_EQ(read_inp("&transport\ncompute_engine = 2\ngaussian_exe = /o/orca\n/\n")->qc_exe, "/o/orca");
    auto w = read_inp("&transport\nsched_type = LSF\nnodelist = a,b\nRE_unique_mol = 0\nveska_dat_file = r.dat\n/\n");
    EXPECT_EQ(w->nodelist + " " + w->veska_dat_file, "a,b r.dat");
    EXPECT_FALSE(w->unique_RE_calc_flag);
}

TEST(VeskaInpReader, EnvironmentBetweenDefaultsAndFileAndCrystalKey)
{
    ScratchDir dir;
    clear_veska_environment();
    setenv("VESKA_JOB_QUEUE", "envq", 1);
    setenv("VESKA_QC_PPN", "12", 1);
    const std::string cif = data_file("benzene_cod2100348.cif");
    put_file("veska.inp", "&transport\nqc_ppn = 4\ncrystal = " + cif + "  \n/\n");
    VeskaInp v;
    v.read_veska_inp("veska.inp", false);
    clear_veska_environment();
    EXPECT_EQ(v.queue_name + std::to_string(v.run_ppn), "envq4");
    EXPECT_TRUE(v.input_kind == 2 && v.cif_loaded && v.crystal_file == cif);  // the crystal is read at once
    EXPECT_EQ(v.natoms_cif, 48);
}

static void read_in_child(const char* file, const std::string& text)
{
    clear_veska_environment();
    child_with_file(file, text);
    VeskaInp v;
    file[0] == 'v' ? v.read_veska_inp(file, false) : v.read_config_inp(file, false);
}

TEST(ConfigReaderDeathTest, Errors)
{
    ScratchDir dir;
    auto inp = [](const std::string& t) { read_in_child("veska.inp", t); };
    auto cfg = [](const std::string& t) { read_in_child("config.inp", t); };
    const auto fail = testing::ExitedWithCode(255);
    EXPECT_EXIT(inp("&transport\n Qc_Exe2 = x\n/\n"), fail, "^\nERROR  transport : veska_inp : line 649 : "
                "\n\nUnknown parameter \"Qc_Exe2\" in file veska.inp!!!\n\n$");
    EXPECT_EXIT(inp("&transport\n= x\n/\n"), fail, "Unknown parameter \"\" in file veska.inp!!!");
    EXPECT_EXIT(inp("&transport\ncompute_engine = 3\n/\n"), testing::ExitedWithCode(1),
                "line 740 : \nIncomptiable settings:\n  The compute_engine = 3, while qc_exe is set "
                "to g09\n  1 - Gaussian, 2 - ORCA, 3 - QCHEM\n$");
    EXPECT_EXIT(inp("&transport\nqc_exe = orca\n/\n"), testing::ExitedWithCode(1),
                "line 716 : \nIncomptiable settings:\n  The compute_engine = 1, while qc_exe is set to orca\n");
    EXPECT_EXIT(inp("&transport\ncompute_engine = 2\nqc_exe = g16\n/\n"), testing::ExitedWithCode(1),
                "line 728 : \nIncomptiable settings:\n");
    EXPECT_EXIT(inp("&transport\nmolecule = 3 a.mol b.mol\n/\n"), fail,
                "The key molecule announces 3 MOL files but names 2 in file veska.inp");
    EXPECT_EXIT(cfg("lat_site_energy 1\n"), fail, "line 1119 : \n\nUnknown parameter \"lat_site_energy\" "
                "in file config.inp!!!\n\nLook up the conf.out for available parameters.\n$");
    EXPECT_EXIT(cfg("do_transport_prepare 1\n"), fail, "Unknown parameter \"do_transport_prepare\"");
    VeskaInp v;
    for (const char* path : {"missing.inp", "."}) {
        EXPECT_EXIT((dup2(2, 1), v.read_veska_inp(path, false)), fail,
                    "line 175 : \nFailed to open input file: " + std::string(path) + "\n$");
        EXPECT_EXIT((dup2(2, 1), v.read_config_inp(path, false)), fail,
                    "line 799 : \nFailed to open input file \"" + std::string(path) + "\"\n$");
    }
}

TEST(ConfigInpReader, Grammar)
{
    ScratchDir dir;
    clear_veska_environment();
    setenv("VESKA_JOB_QUEUE", "envq", 1);  // not read by this reader
    put_file("config.inp", "# comment\n   ! comment\ndo_prepare 0\ndo_HL  0 ! off\n"
                                  "temp\t350\n"  // a tab does not separate: ignored
                                  "tsimu 12.5\nmater_name \"a 'b'\"\nQC_EXE\t g16\nbasis_name 6-31g\n"
                                  "latt_site_energy 1\nmolecule 1 m.mol\n\nnoblank\n");
    VeskaInp v;
    testing::internal::CaptureStdout();
    v.read_config_inp("config.inp", false);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Reading config file \"config.inp\" ... \n");
    unsetenv("VESKA_JOB_QUEUE");
    EXPECT_DOUBLE_EQ(v.do_transport_prepare + v.do_transport_submit_HL_job + v.temp + v.tsimu + v.lat_site_energy, 313.5);
    EXPECT_EQ(v.mater_name + v.qc_exe + " " + v.qc_basis_re, "a 'b'g16 6-31g");
    EXPECT_EQ(v.mol_files, (std::vector<std::string>{"m.mol"}));
    EXPECT_EQ(v.queue_name + v.veska_dat_file, "workq");  // no default data-file name here
}

TEST(VeskaInpReader, WriteThenReadRoundTrip)
{
    ScratchDir dir;
    clear_veska_environment();
    VeskaInp out;
    out.set_varables_default();
    out.set_compute_engine(3);
    out.set_environment_module_gau_flag(true);  // every kind of value off its default
    out.module_qc = "qchem/6"; out.do_transport_run_ME = 1; out.do_transport_get_re_evc = 0;
    out.sched_type = "slurm"; out.queue_name = "gpu"; out.nodelist = "n1 n2"; out.sched_job_array = false;
    out.qc_basis = "6-31g(d)"; out.qc_basis_re = "def2-svp"; out.qc_memory = 8000; out.run_ppn = 24;
    out.scratch = "/scr"; out.temp = 250.5; out.end_temp = 400; out.ratetype = "marcus";
    out.chargetype = "h"; out.lat_cutoff = 4.5; out.nsimu = 300; out.tsnap = 2.5; out.nei_scell[0] = 2;
    out.super_cell[1] = 3; out.latt_vec[2][0] = -1.25; out.bond_dis_scale = 1.2; out.HL_unique_mol = 0;
    out.lat_site_energy = 1; out.output_level = 3; out.veska_dat_file = "r.dat"; out.eckart_mirror = 1;
    out.homo_adjustment = {1, -1}; out.input_kind = 1; out.nmols = 2; out.mol_files = {"a.mol", "b.mol"};
    VeskaInp in, v, c;
    testing::internal::CaptureStdout();
    ASSERT_TRUE(out.write_veska_inp("first.inp", false, false) && out.write_veska_inp_verbose("verbose.inp", 1, false) &&
                out.write_config_inp("config.inp", 1, false));
    in.read_veska_inp("first.inp", false);
    ASSERT_TRUE(in.write_veska_inp("second.inp", false, false));
    EXPECT_EQ(read_text_file("second.inp"), read_text_file("first.inp"));
    EXPECT_FALSE(in.unique_2mol_calc_flag);
    // The starting layouts read back too (the old one with its own reader).
    v.read_veska_inp("verbose.inp", false);
    c.read_config_inp("config.inp", false);
    testing::internal::GetCapturedStdout();
    for (VeskaInp* r : {&v, &c}) {
        EXPECT_EQ(r->qc_exe + r->queue_name + r->qc_basis_re, "qchemgpudef2-svp");
        EXPECT_DOUBLE_EQ(r->latt_vec[2][0] + r->nsimu, 298.75);
        EXPECT_EQ(r->mol_files, (std::vector<std::string>{"mol1.mol", "mol2.mol"}));
    }
    EXPECT_EQ(v.module_qc, "qchem/6");
}
