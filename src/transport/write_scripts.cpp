// Everything a run needs after the quantum-chemistry jobs: the file lists
// and jobs of the transfer-integral and site-energy programs, the output
// checks, the normal-mode inputs and scripts, the Monte Carlo and
// master-equation trees per temperature, and veska.sh.

#include <cstdio>

#include "mmutil.h"
#include "script_output.h"
#include "transport.h"

namespace {

void progress(bool verbose, const char* message)
{
    if (verbose) printf("%s\n", message);
}

// What the driver needs from the earlier stages, checked before anything
// is written so that a half-prepared workspace stops with a clear message.
const QcEngine& check_ready(const Transport& t)
{
    const QcEngine* engine = qc_engine_or_null(t.compute_engine);
    if (!engine)
        veska_fatal("transport", 5501, -1, stdout,
                    "compute_engine %d is none of 1 (Gaussian), 2 (ORCA), 3 (Q-Chem): no scripts written\n",
                    t.compute_engine);
    if (t.nmols < 1)
        veska_fatal("transport", 5502, -1, stdout,
                    "The unit cell holds no molecules: read the crystal or the molecule files before writing "
                    "the workflow scripts\n");
    if (!t.nnei || t.neighbor_nmols != t.nmols)
        veska_fatal("transport", 5503, -1, stdout,
                    "No neighbour list for the %d molecules: build it before writing the workflow scripts\n", t.nmols);
    int pairs = 0;
    for (int i = 0; i < t.nmols; i++) pairs += t.nnei[i];
    if (t.unique_nei_mol_one_calc_flag && t.unique_2mol_calc_flag && pairs > 0 && !t.unique_pair_map)
        veska_fatal("transport", 5506, -1, stdout,
                    "Unique pairs are asked for but the unique-pair map is missing: run the unique analysis first\n");
    if (t.unique_uc_mol_one_calc_flag && t.lat_site_energy && !t.hl_mol_index)
        veska_fatal("transport", 5504, -1, stdout,
                    "Unique molecules are asked for but their map is missing: run the unique analysis first\n");
    if (t.unique_RE_calc_flag && !t.re_mol_index)
        veska_fatal("transport", 5505, -1, stdout,
                    "Unique RE molecules are asked for but their map is missing: run the unique analysis first\n");
    return *engine;
}

// The outputs the transfer-integral program reads for molecule i (one-based),
// relative to the data directory; unique runs name each pair by the key of
// its representative.
std::string transfer_integral_list(Transport& t, int i, const QcEngine& engine, const std::string& hl)
{
    const char* h = hl.c_str();
    const char* e = engine.output_ext;
    bool unique = t.unique_nei_mol_one_calc_flag && t.unique_2mol_calc_flag;
    std::string text = format_string("%d\n", t.nnei[i - 1]);
    for (int j = 1; j <= t.nnei[i - 1]; j++) {
        int m = t.nei_mol[i - 1][j - 1] + 1;
        if (!unique) {
            text += format_string("%s/2mol-%d-%d.%s  %s/uc_mol-%d.%s  %s/nei_mol-%d-%d.%s  %d %d\n", h, i, j, e, h, i,
                                  e, h, i, j, e, i, m);
            continue;
        }
        int key = 0;
        t.neighbor_map_key_2d_to_1d(i - 1, j - 1, &key);
        int r = t.unique_pair_map[key];
        // A negative entry lies outside every molecule's keys, as one past the last does.
        if (r < 0) veska_fatal("transport", 4100, -1, stdout, "neighbor key mapping error!\n");
        int o = t.neighbor_map_key_1d_to_uc_id(r) + 1;
        text += format_string("%s/2mol-%d.%s  %s/uc_mol-%d.%s  %s/nei_mol-%d.%s  %d %d\n", h, r + 1, e, h, o, e, h,
                              r + 1, e, i, m);
    }
    return text;
}

void write_transfer_integral_jobs(Transport& t, const QcEngine& engine)
{
    std::string program = std::string("tintegral.exe") + engine.transint_option;
    std::string driver = "#!/usr/bin/env python\nimport os\n\n";
    if (engine.lowercase_fchk)
        driver += format_string("os.system(\"python %s/qchem_fchk_ext_lowercase.py %s\")\n\n", t.scr_dir.c_str(),
                                t.hl_dir.c_str());
    std::string marker = t.run_dir + "/running.run_transint";
    if (t.sched_job_array) {
        std::string script = t.jobs_dir + "/job_transint";
        t.write_calc_transint_job_array(script.c_str(), 1, t.run_ppn, "transint", marker.c_str(), t.nmols, nullptr,
                                        program.c_str(), t.data_dir.c_str());
        for (int i = 1; i <= t.nmols; i++) driver += python_touch(t, format_string("%s-%d", marker.c_str(), i));
        driver += "\n" + python_submit(t, script) + "\n";
    }
    for (int i = 1; !t.sched_job_array && i <= t.nmols; i++) {
        std::string script = format_string("%s/job_transint_mol%d", t.jobs_dir.c_str(), i);
        std::string name = format_string("transint_mol%d", i);
        std::string mol_marker = format_string("%s_mol%d", marker.c_str(), i);
        std::string body =
            format_string("%s -batch mol%d_%s -prefix V -postfix %d\n", program.c_str(), i, "trans_int_files.dat", i);
        t.write_calc_transint_job(script.c_str(), 1, t.run_ppn, name.c_str(), mol_marker.c_str(), body.c_str(),
                                  t.data_dir.c_str());
        driver += python_touch(t, mol_marker) + python_submit(t, script) + "\n";
    }
    write_script_file(t.scr_dir + "/get_transint.py", driver, 5508);
}

// Site energies are read from the single-molecule runs, which are Gaussian
// logs by name whatever the engine.
void write_site_energy_jobs(Transport& t, const std::string& hl)
{
    std::string list = format_string("%d\n", t.nmols);
    for (int i = 1; i <= t.nmols; i++)
        list +=
            format_string("%s/uc_mol-%d.log\n", hl.c_str(), t.unique_uc_mol_one_calc_flag ? t.hl_mol_index[i - 1] : i);
    write_script_file(t.data_dir + "/site_ener_files.dat", list, 5509);

    std::string marker = t.run_dir + "/running.get_site_ener";
    std::string driver = "#!/usr/bin/env python\nimport os\nimport sys\n\n" + python_touch(t, marker) + "\n" +
                         python_submit(t, t.jobs_dir + "/get_site_ener") + "\n";
    write_script_file(t.scr_dir + "/get_site_ener.py", driver, 5510);
    std::string body = format_string("hlgather.exe -batch %s -neighbor\n", "site_ener_files.dat");
    t.write_calc_getHL_job((t.jobs_dir + "/get_site_ener").c_str(), 1, t.run_ppn, "get_site_ener", marker.c_str(),
                           body.c_str(), t.data_dir.c_str());
}

std::string temperature_dir(const std::string& parent, double temp)
{
    return parent + format_string("/%.0f", temp);
}

void write_monte_carlo_trees(Transport& t, const std::vector<double>& temps)
{
    std::string base = "MC-" + t.ratetype;
    if (t.do_transport_run_MC || t.do_transport_get_mob_MC) {
        create_directory(base.c_str());
        for (int c = 0; c < 2; c++) t.write_run_scripts_MC(base.c_str(), "../..", c, 0, 0.0);
    }
    if (!t.do_transport_run_MC_temp && !t.do_transport_get_mob_MC_temp) return;
    create_directory((base + "-temp").c_str());
    for (double temp : temps) {
        std::string dir = temperature_dir(base + "-temp", temp);
        create_directory(dir.c_str());
        for (int c = 0; c < 2; c++) t.write_run_scripts_MC(dir.c_str(), "../../..", c, 1, temp);
    }
}

void write_master_equation_trees(Transport& t, const std::vector<double>& temps)
{
    std::string base = "ME-" + t.ratetype;
    if (t.do_transport_run_ME || t.do_transport_get_mob_ME) {
        create_directory(base.c_str());
        for (int c = 0; c < 2; c++) t.write_run_scripts_ME(base.c_str(), "../..", c);
        t.write_get_mob_py_ME(base.c_str());
    }
    if (!t.do_transport_run_ME_temp && !t.do_transport_get_mob_ME_temp) return;
    create_directory((base + "-temp").c_str());
    for (int c = 0; c < 2; c++) {
        std::string carrier_dir = base + "-temp/" + kScriptCarriers[c].dir;
        create_directory(carrier_dir.c_str());
        for (double temp : temps) {
            std::string dir = temperature_dir(carrier_dir, temp);
            create_directory(dir.c_str());
            t.write_run_scripts_ME_TD(dir.c_str(), "../../..", c, 1, temp);
        }
    }
    t.write_get_mob_py_ME_TD((base + "-temp").c_str());
}

std::vector<double> scan_temperatures(const Transport& t)
{
    bool scans = t.do_transport_run_MC_temp || t.do_transport_get_mob_MC_temp || t.do_transport_run_ME_temp ||
                 t.do_transport_get_mob_ME_temp;
    if (!scans) return {};
    if (t.delta_temp == 0.0 && t.end_temp != t.start_temp)
        printf("WARNING: delta_temp is 0: the temperature runs use start_temp %.0f K alone\n", t.start_temp);
    return temperature_scan(t.start_temp, t.end_temp, t.delta_temp);
}

}  // namespace

void Transport::write_scripts(bool verbose)
{
    const QcEngine& engine = check_ready(*this);
    for (const std::string* dir : {&run_dir, &scr_dir, &data_dir, &hl_dir}) create_directory(dir->c_str());

    progress(verbose, "Writting trans_int_files.dat...");
    std::string hl = "../" + hl_dir;  // the lists are read from inside the data directory
    for (int i = 1; i <= nmols; i++)
        write_script_file(format_string("%s/mol%d_trans_int_files.dat", data_dir.c_str(), i),
                          transfer_integral_list(*this, i, engine, hl), 5507);
    (this->*engine.write_checks)();
    if (engine.lowercase_fchk) write_qchem_fchk_ext_lowercase_py_file();

    progress(verbose, "Writting get_transint.py...");
    write_transfer_integral_jobs(*this, engine);
    if (lat_site_energy) {
        progress(verbose, "Writting site_ener_files.dat...");
        write_site_energy_jobs(*this, hl);
    }

    progress(verbose, "Writting evc inp files ...");
    write_evc_inp_file();
    progress(verbose, "Writting evc get_RE.py...");
    if (get_unique_RE_calc_flag()) {
        write_prepare_evc_files_unique("prepare_RE.py");
        write_get_re_py_file_unique("get_RE.py");
    } else {
        write_prepare_evc_files("prepare_RE.py");
        write_get_re_py_file("get_RE.py");
    }

    std::vector<double> temps = scan_temperatures(*this);
    progress(verbose, "Writting MC files...");
    write_monte_carlo_trees(*this, temps);
    progress(verbose, "Writting ME files...");
    write_master_equation_trees(*this, temps);

    write_script_file(scr_dir + "/veska.sh", "#!/bin/sh\n\npython $VESKA_ROOT/bin/veska.py &> veska.log &\n\n", 5511);
}
