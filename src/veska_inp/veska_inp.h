#ifndef VESKA_VESKA_INP_H
#define VESKA_VESKA_INP_H

// The workflow configuration: every setting of the transport stage with
// its defaults and environment overrides, and the configuration file
// formats (veska.inp in terse and verbose layouts, and config.inp).

#include <string>
#include <vector>

#include "fileio.h"
#include "job_scripts.h"

class VeskaInp : public FileIO, public Jobscript {
public:
    int nlines = 0;
    std::vector<std::string> lines;
    int compute_engine = 1;  // 1 Gaussian, 2 ORCA, 3 Q-Chem
    int do_transport_prepare = 1;
    int do_transport_submit_HL_job = 1;
    int do_transport_submit_RE_job = 1;
    int do_transport_get_transferintegral = 1;
    int do_transport_get_re_evc = 1;
    int do_transport_run_MC = 1;
    int do_transport_run_MC_temp = 0;
    int do_transport_get_mob_MC = 1;
    int do_transport_get_mob_MC_temp = 0;
    int do_transport_run_ME = 0;
    int do_transport_run_ME_temp = 0;
    int do_transport_get_mob_ME = 0;
    int do_transport_get_mob_ME_temp = 0;
    int do_transport_gather_veska_data = 1;
    std::string qc_method = "b3lyp";
    std::string qc_basis = "b3lyp STO-3g";
    std::string qc_basis_re = "b3lyp STO-3g";
    std::string qc_inp_append;
    int qc_memory = 4096;
    std::string ratetype;
    std::string chargetype;
    double temp = 1.0;
    double start_temp = 200.0;
    double end_temp = 300.0;
    double delta_temp = 50.0;
    std::string evc_type;
    double lat_cutoff = 4.0;
    double delta_angle = 10.0;
    double maxt = 10000.0;
    int sta = 1;
    int nsimu = 2000;
    double tsimu = 1000.0;
    double tsnap = 5.0;
    double tstep = 1.0;
    int iterlimit = 100;
    int nevery_out = 10;
    std::string veska_dat_file;
    int output_level = 2;
    int lat_site_energy = 0;
    int nei_scell[3] = {3, 3, 3};
    int HL_unique_mol = 1;
    int RE_unique_mol = 1;
    int output_eigval = 0;
    int eckart_mirror = 0;

    VeskaInp() = default;
    ~VeskaInp() = default;

    int get_compute_engine() { return compute_engine; }
    void set_compute_engine(int engine);
    void get_environment_variables();
    void set_varables_default();
    // Copies HL_unique_mol and RE_unique_mol into the structure's four
    // uniqueness switches.
    void copy_unique_flags();

    void load_veska_inp_file(const char* path, bool verbose);
    int read_veska_inp(const char* path, bool verbose);
    int read_config_inp(const char* path, bool verbose);

    bool write_veska_inp(const char* path, bool in_data_dir, bool verbose);
    bool write_veska_inp_verbose(const char* path, int input_kind, bool in_data_dir);
    bool write_veska_inp_terse(const char* path, int input_kind, bool in_data_dir);
    bool write_config_inp(const char* path, int input_kind, bool in_data_dir);
};

#endif
