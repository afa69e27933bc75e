// The configuration's defaults, the compute engine and the environment
// overrides.

#include "veska_inp.h"

#include <cstdlib>

#include "mmutil.h"

void VeskaInp::set_varables_default()
{
    // The order follows the settings' history; everything not named here
    // (step switches, engine, module settings, uniqueness switches, ...)
    // keeps what construction or an earlier read gave it.
    sched_type = "pbs";
    queue_name = "workq";
    qc_method = "b3lyp";
    qc_basis = "b3lyp STO-3g";
    qc_basis_re = "b3lyp STO-3g";
    qc_memory = 4096;
    temp = 300.0;
    run_nodes = 1;
    run_ppn = 8;
    start_temp = 200.0;
    end_temp = 300.0;
    delta_temp = 50.0;
    ratetype = "quanta";
    chargetype = "a";
    evc_type = "cart";
    super_cell[0] = super_cell[1] = super_cell[2] = 5;
    static const double default_latt_vec[3][3] = {
        {8.098, 0.0, 0.0}, {0.0, 5.953, 0.0}, {-4.888095, 0.0, 7.138882}};
    for (int i = 0; i < 3; i++)
        for (int j = 0; j < 3; j++) latt_vec[i][j] = default_latt_vec[i][j];
    sta = 1;
    nsimu = 2000;
    iterlimit = 100;
    nevery_out = 10;
    lat_cutoff = 4.0;
    maxt = 10000.0;
    delta_angle = 10.0;
    tsimu = 1000.0;
    tsnap = 5.0;
    tstep = 1.0;
    nmols = 0;
    lat_site_energy = 0;
    output_level = 2;
    nei_scell[0] = nei_scell[1] = nei_scell[2] = 3;
    eckart_mirror = 0;
}

void VeskaInp::set_compute_engine(int engine)
{
    compute_engine = engine;
    switch (engine) {
    case 2: qc_exe = "fullpath/orca"; break;
    case 3: qc_exe = "qchem"; break;
    default: qc_exe = "g09"; break;
    }
}

void VeskaInp::get_environment_variables()
{
    // A variable set to the empty text is applied as empty; integers are read
    // in base 10 after leading white space, no digits giving 0.
    if (const char* v = getenv("VESKA_JOB_SCHED")) sched_type = v;
    if (const char* v = getenv("VESKA_JOB_QUEUE")) queue_name = v;
    if (const char* v = getenv("VESKA_QC_EXE")) qc_exe = v;
    if (const char* v = getenv("VESKA_QC_NODES")) run_nodes = read_int_clamped(v);
    if (const char* v = getenv("VESKA_QC_PPN")) run_ppn = read_int_clamped(v);
    if (const char* v = getenv("VESKA_MODULE_QC")) {
        module_qc = v;
        module_gau_flag = true;
    }
}

void VeskaInp::copy_unique_flags()
{
    unique_RE_calc_flag = RE_unique_mol != 0;
    unique_uc_mol_one_calc_flag = HL_unique_mol != 0;
    unique_nei_mol_one_calc_flag = HL_unique_mol != 0;
    unique_2mol_calc_flag = HL_unique_mol != 0;
}
