#ifndef VESKA_TRANSPORT_H
#define VESKA_TRANSPORT_H

// The workspace of the transport stage. One object holds the configuration,
// the crystal and its molecules (through VeskaInp : FileIO, Jobscript), the
// neighbour list, the unique-molecule and unique-pair data, the hop rates and
// the Monte Carlo trajectories; every operation of the stage is a member.
//
// Members are grouped by concern; each group's operations live in the
// source file named in its heading.

#include <cstdio>
#include <string>
#include <vector>

#include "veska_inp.h"

class Transport : public VeskaInp {
public:
    // ---- own state, in declaration order (transport.cpp) -------------------
    bool neighbor_list_built = false;  // neighbour arrays are released only when set
    bool pair_data_built = false;      // pair analysis arrays are released only when set
    bool mc_initialized = false;       // rates and trajectory arrays are released only when set
    double** w0 = nullptr;             // [nmols][nnei[i]] hop rates, 1/ns
    int nkey = 0;                      // number of (molecule, neighbour) pairs
    std::string trackdir = "track";
    double track_timeunit = 1e-9;      // seconds per track time unit
    int* track_istep = nullptr;        // [nsnap + 1]
    double* track_t = nullptr;         // [nsnap + 1]
    double* track_x = nullptr;         // [3 (nsnap + 1)]
    double* track_r2 = nullptr;        // [nsnap + 1]
    int* sum_istep = nullptr;
    double* sum_t = nullptr;
    double* sum_x = nullptr;
    double* sum_r2 = nullptr;
    std::string hl_dir = "HL";
    std::string re_dir = "RE";
    std::string scr_dir = "scr";
    std::string run_dir = "RUN";       // running and error markers
    bool openmp_flag = true;
    std::string mc_chargetype = "e";
    int nsnap = 0;
    int NNEIMAX = 300;
    int* nnei = nullptr;               // [nmols]
    int** nei_mol = nullptr;           // [nmols][NNEIMAX], zero-based unit-cell index
    int** nei_cell[3] = {nullptr, nullptr, nullptr};  // per axis [nmols][NNEIMAX]

    // Pair analysis data, allocated with the neighbour list.
    int* homo_index = nullptr;         // [nmols] HOMO orbital index per molecule
    int** natoms_2mol = nullptr;       // [nmols][NNEIMAX] atom count of each dimer
    double*** x_2mol = nullptr;        // [nmols][NNEIMAX] -> centred, rotated dimer atoms
    double*** eigval_2mol = nullptr;   // [nmols][NNEIMAX] -> 3 dimer eigenvalues
    bool mol_id_indexes_allocated = false;
    int** nei_mol_id = nullptr;        // [nmols][nnei[i]] one-based neighbour ids
    int** nei_unique_id = nullptr;     // [nmols][nnei[i]] unique molecule id of each neighbour
    int* unique_pair_map = nullptr;    // [nkey] zero-based key of each key's representative
    int unique_pair_count = 0;
    int* unique_pair_list = nullptr;   // one-based unique pair keys, ascending
    int neighbor_nmols = 0;            // molecule count the per-molecule arrays above were built for

    Transport();
    ~Transport();
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;

    // ---- accessors and post-read treatment (transport.cpp) ------------------
    void set_openmp_flag(bool flag) { openmp_flag = flag; }
    void set_trackdir(const char* dir) { trackdir = dir; }
    void set_trackdir(std::string dir) { trackdir = dir; }
    double get_track_timeunit() { return track_timeunit; }
    void set_track_timeunit(double unit) { track_timeunit = unit; }
    bool get_unique_uc_mol_one_calc_flag() { return unique_uc_mol_one_calc_flag; }
    bool get_unique_nei_mol_one_calc_flag() { return unique_nei_mol_one_calc_flag; }
    bool get_unique_2mol_calc_flag() { return unique_2mol_calc_flag; }
    bool get_unique_RE_calc_flag() { return unique_RE_calc_flag; }
    int get_run_memory() { return qc_memory; }
    void get_workdir(std::string& dir);
    void post_data_read_treatment();
    int snapshot_count();  // round(tsimu / tsnap), stopping on a bad interval
    void check_adjustment_lengths();  // HOMO/LUMO adjustment lists: empty or one per molecule
    void calc_x_com();
    void fill_homo_index();  // half the electron count per molecule, into homo_index
    // Release one group of the workspace's arrays (each may be rebuilt later).
    void free_neighbor_arrays();
    void free_pair_arrays();
    void free_mol_id_indexes();
    void free_mc_arrays();

    // ---- pair keys (neighbor_keys.cpp) -----------------------------------
    void neighbor_map_key_2d_to_1d(int i, int j, int* key);
    void neighbor_map_key_1d_to_2d(int key, int* i, int* j);
    int neighbor_map_key_1d_to_uc_id(int key);
    int check_if_key_in_keylist(int key);

    // ---- neighbour list (neighbor_list.cpp, neighbor_output.cpp) ----------
    bool found_molecule_within_rcut(int i, int j, int* cell, double rcut2, double* r2);
    bool found_molecule_within_rcut_x(int i, int j, int* cell, double rcut2, double* r2);
    double found_two_molecules_min_distance(int i, int j, int* cell);
    double calc_neighbor_com_rsq(int i, int j, int* cell);
    void build_neighbor_list(bool verbose);
    void allocate_mol_id_indexes_array();
    void find_neighbor_molecules_min_distance(bool verbose);
    void output_neighbor_info(FILE* f);
    void output_neighbor_data();
    void create_neighbor_cell_array(int* n, int** cells);

    // ---- unique molecules and pairs (unique_analysis.cpp) ------------------
    void calc_uc_mol_moment_and_rotate_x_one(int natoms, int* atypes, double* x, double* x_out,
                                             int imol);
    void calc_2mol_moment_and_rotate_x_one(int natoms, int* atypes, double* x, double* x_out,
                                           int imol, int inei);
    void calc_HL_uc_mol_eigval_eigvec();
    void calc_HL_2mol_eigval_eigvec_and_unique_pairs();
    int HL_check_unitcell_unique_mols(bool verbose);

    // ---- transfer-integral jobs (hl_jobs.cpp) ------------------------------
    void write_HL_gaussian_mol_one_gjf_and_job_uc();
    void write_HL_gaussian_mol_one_gjf_and_job_uc_unique();
    void write_HL_gaussian_mol_one_gjf_and_job_nei();
    void write_HL_gaussian_mol_one_gjf_and_job_nei_unique();
    void write_HL_gaussian_2mol_gjf_and_job();
    void write_HL_gaussian_2mol_gif_and_job_unique();
    void write_HL_gaussian_mol_gif();
    void write_HL_orca_mol_one_inp_and_job_uc();
    void write_HL_orca_mol_one_inp_and_job_uc_unique();
    void write_HL_orca_mol_one_inp_and_job_nei();
    void write_HL_orca_mol_one_inp_and_job_nei_unique();
    void write_HL_orca_2mol_inp_and_job();
    void write_HL_orca_2mol_inp_and_job_unique();
    void write_HL_orca_mol_inp();
    void write_HL_qchem_mol_one_inp_and_job_uc();
    void write_HL_qchem_mol_one_inp_and_job_uc_unique();
    void write_HL_qchem_mol_one_inp_and_job_nei();
    void write_HL_qchem_mol_one_inp_and_job_nei_unique();
    void write_HL_qchem_2mol_inp_and_job();
    void write_HL_qchem_2mol_inp_and_job_unique();
    void write_HL_qchem_mol_inp();
    int* calc_homo();
    void write_H_L_inp();
    void find_HL_mol_neighbor_index_unique();
    // The family of compute_engine: unit-cell, neighbour and dimer jobs, each
    // set plain or unique by its unique flag. Stops on an unknown engine.
    void write_HL_inputs_and_jobs();

    // ---- reorganisation-energy jobs (re_jobs.cpp) --------------------------
    void write_RE_gaussian_mol_gjf_and_job();
    void write_RE_gaussian_mol_gjf_and_job_separated();
    void write_RE_gaussian_mol_gjf_and_job_unique();
    void write_RE_gaussian_mol_gjf_and_job_unique_separated();
    void write_RE_orca_mol_inp_and_job_seperated();
    void write_RE_orca_mol_inp_and_job_unique_seperated();
    void write_RE_qchem_mol_inp_and_job_seperated();
    void write_RE_qchem_mol_inp_and_job_unique_seperated();
    void format_RE_gaussian_job_string(std::string& out, int imol, const char* state);
    void format_RE_orca_job_string(std::string& out, int imol, const char* state);
    void format_RE_qchem_job_string(std::string& out, int imol, const char* state);
    // The family of compute_engine, unique by the unique-RE flag; Gaussian
    // combines a molecule's three states in one job. Stops on an unknown engine.
    void write_RE_inputs_and_jobs();

    // ---- generated helper scripts (helper_scripts.cpp) ---------------------
    void write_gaussian_log_check_py_file();
    void write_orca_out_check_py_file();
    void write_qchem_out_check_py_file();
    void write_qchem_fchk_ext_lowercase_py_file();
    void write_exp_re_py_file(const char* name, const char* evc_cmd);
    void write_exp_re_py_file_unique(const char* name, const char* evc_cmd);
    void write_get_re_py_file(const char* name);
    void write_get_re_py_file_unique(const char* name);

    // ---- normal-mode inputs (evc_inputs.cpp) -------------------------------
    void load_bonds_data(const char* path, std::vector<std::string>& lines);
    void write_evc_inp_file();
    void write_evc_inp_file_unique();
    void write_prepare_evc_files(const char* name);
    void write_prepare_evc_files_unique(const char* name);

    // ---- workflow script driver (write_scripts.cpp) ------------------------
    void write_scripts(bool verbose);

    // ---- hop rates and run inputs (mc_inputs.cpp) --------------------------
    void read_MC_w0();
    void write_MC_w0_out();
    int read_charge_inp();
    double read_temp_inp();

    // ---- Monte Carlo simulation (monte_carlo.cpp) --------------------------
    // Run settings the commands set (the configuration has none of them):
    // with mc_seeded, simulation k draws from a generator seeded by
    // (mc_seed, k), so a run can be repeated; MC_run_openMP runs up to
    // mc_threads simulations at once and merges their sums in simulation
    // order, so the thread count does not change a seeded run's files.
    bool mc_seeded = false;
    unsigned long long mc_seed = 0;
    int mc_threads = 1;
    std::vector<long long> mc_istep_total;   // exact hop-count sums behind sum_istep
    void MC_init();
    void MC_simulation_one(int isimu, const char* dir);
    void MC_run(const char* dir, int simu0, int nsimu);
    void MC_run(const char* dir, int simu0);
    void MC_run_openMP(const char* dir, int simu0, int nsimu);
    void MC_run_openMP(const char* dir);
    void MC_run_openMP(const char* dir, int simu0);
    void output_track(const char* dir, int number, double* t, double* x, double* r2, int* istep);
    void output_track_ave(const char* dir, double* t, double* x, double* r2, int* istep);

    // ---- Monte Carlo and master-equation run scripts (run_scripts.cpp) ----
    void write_run_scripts_MC(const char* dir, const char* src, int carrier, int with_temp,
                              double temp);
    void write_run_scripts_ME(const char* dir, const char* src, int carrier);
    void write_run_scripts_ME_TD(const char* dir, const char* src, int carrier, int with_temp,
                                 double temp);
    void write_get_mob_py_ME(const char* dir);
    void write_get_mob_py_ME_TD(const char* dir);
};

#endif
