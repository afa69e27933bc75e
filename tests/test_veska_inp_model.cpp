#include <gtest/gtest.h>

#include <type_traits>

#include "transport.h"

// The chain is plain data with public members: no virtual dispatch, bases in
// the order FileIO, Jobscript.
static_assert(std::is_base_of_v<VeskaInp, Transport>);
static_assert(std::is_base_of_v<FileIO, VeskaInp> && std::is_base_of_v<Jobscript, VeskaInp>);
static_assert(!std::is_polymorphic_v<Transport>);

TEST(VeskaInpModel, TransportConstructionTakesUniqueFlagsFromConfiguration)
{
    Transport t;
    EXPECT_EQ(t.input_kind, -1);
    EXPECT_TRUE(t.hl_same_flag);
    EXPECT_FALSE(t.re_same_flag);
    EXPECT_TRUE(t.unique_uc_mol_one_calc_flag && t.unique_nei_mol_one_calc_flag &&
                t.unique_2mol_calc_flag && t.unique_RE_calc_flag);
    EXPECT_FALSE(t.work_dir.empty());
}

TEST(VeskaInpModel, DefaultsResetSettingsButKeepSwitchesEngineAndModules)
{
    VeskaInp v;
    // Everything the defaults leave alone, set away from its construction value.
    v.set_compute_engine(3);
    v.do_transport_prepare = 0;
    v.do_transport_run_ME = 1;
    v.set_environment_module_gau_flag(true);
    v.module_qc = "qchem/6";
    v.set_environment_module_mpich2_gnu_flag(true);
    v.scratch = "/scratch";
    v.mater_name = "pentacene";
    v.nodelist = "n1";
    v.sched_job_array = false;
    v.veska_dat_file = "r.dat";
    v.qc_inp_append = "extra\n";
    v.HL_unique_mol = 0;
    v.RE_unique_mol = 0;
    v.output_eigval = 1;
    v.bond_dis_scale = 1.3;
    // And some of what the defaults set.
    v.temp = 77;
    v.sched_type = "lsf";
    v.run_ppn = 64;
    v.nmols = 4;
    v.latt_vec[1][1] = 0;
    v.nei_scell[2] = 9;
    v.super_cell[0] = 1;
    v.tstep = 3;

    v.set_varables_default();

    EXPECT_EQ(v.compute_engine, 3);
    EXPECT_EQ(v.qc_exe, "qchem");
    EXPECT_EQ(v.do_transport_prepare, 0);
    EXPECT_EQ(v.do_transport_run_ME, 1);
    EXPECT_TRUE(v.module_gau_flag && v.module_mpich2_gnu_flag);
    EXPECT_EQ(v.module_qc, "qchem/6");
    EXPECT_EQ(v.scratch, "/scratch");
    EXPECT_EQ(v.mater_name, "pentacene");
    EXPECT_EQ(v.nodelist, "n1");
    EXPECT_FALSE(v.sched_job_array);
    EXPECT_EQ(v.veska_dat_file, "r.dat");
    EXPECT_EQ(v.qc_inp_append, "extra\n");
    EXPECT_EQ(v.HL_unique_mol + v.RE_unique_mol, 0);
    EXPECT_EQ(v.output_eigval, 1);
    EXPECT_EQ(v.bond_dis_scale, 1.3);

    EXPECT_EQ(v.temp, 300.0);
    EXPECT_EQ(v.sched_type, "pbs");
    EXPECT_EQ(v.queue_name, "workq");
    EXPECT_EQ(v.run_nodes, 1);
    EXPECT_EQ(v.run_ppn, 8);
    EXPECT_EQ(v.nmols, 0);
    EXPECT_EQ(v.tstep, 1.0);
    const double latt[3][3] = {{8.098, 0, 0}, {0, 5.953, 0}, {-4.888095, 0, 7.138882}};
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ(v.nei_scell[i], 3);
        EXPECT_EQ(v.super_cell[i], 5);
        for (int j = 0; j < 3; j++) EXPECT_EQ(v.latt_vec[i][j], latt[i][j]);
    }
}

TEST(VeskaInpModel, ComputeEngineSetsProgramName)
{
    VeskaInp v;
    const struct {
        int engine;
        const char* exe;
    } cases[] = {{2, "fullpath/orca"}, {3, "qchem"}, {1, "g09"}, {7, "g09"}, {0, "g09"}};
    for (const auto& c : cases) {
        v.set_compute_engine(c.engine);
        EXPECT_EQ(v.get_compute_engine(), c.engine);
        EXPECT_EQ(v.qc_exe, c.exe);
    }
}
