#ifndef VESKA_JOB_SCRIPTS_H
#define VESKA_JOB_SCRIPTS_H

// Batch job scripts for the workflow's calculations, in four scheduler
// dialects: PBS, SLURM, LSF and a plain local shell.

#include <string>

class Jobscript {
public:
    int verbose = 0;
    int job_sched_type = 0;  // 0 PBS, 1 SLURM, 2 LSF, 3 local
    std::string trans_int_files = "trans_int_files.dat";
    std::string jobs_dir = "jobs";
    std::string work_dir;
    std::string mater_name;
    std::string sched_type = "pbs";
    std::string queue_name = "workq";
    std::string scratch = "/tmp";
    std::string sched_names[4] = {"pbs", "slurm", "lsf", "local"};
    std::string script_ext[4] = {"pbs", "slurm", "lsf", "local"};
    std::string submit_cmd[4] = {"qsub", "sbatch", "bsub < ", "sh"};
    bool module_gau_flag = false;
    std::string module_qc = "gaussian/g09.e01";
    std::string qc_exe = "g09";
    int run_nodes = 1;
    int run_ppn = 8;
    std::string orca_args;
    std::string nodelist;
    std::string formchk_exe = "formchk";
    std::string orca_2mkl_exe = "orca_2mkl";
    bool module_mpich2_gnu_flag = false;
    std::string module_mpich2 = "mpich2/1.5-gnu-5.4.0";
    bool sched_job_array = true;

    Jobscript() = default;
    ~Jobscript() = default;

    void parse_scheduling_type();
    int get_job_sched_type() { return job_sched_type; }
    const char* get_job_script_ext()
    {
        return job_sched_type >= 0 && job_sched_type < 4 ? script_ext[job_sched_type].c_str() : "";
    }
    int get_run_nodes() { return run_nodes; }
    int get_run_ppn() { return run_ppn; }
    void set_environment_module_gau_flag(bool flag) { module_gau_flag = flag; }
    void set_environment_module_mpich2_gnu_flag(bool flag) { module_mpich2_gnu_flag = flag; }
    std::string getFileName(const std::string& path);

    // Gaussian transfer-integral job, plain and array.
    void write_gaussian_HL_job(const char* script_name, int nodes, int ppn, const char* input_name,
                               const char* job_tag, const char* marker_file);
    void write_gaussian_HL_job_pbs(const char* script_name, int nodes, int ppn,
                                   const char* input_name, const char* job_tag,
                                   const char* marker_file);
    void write_gaussian_HL_job_slurm(const char* script_name, int nodes, int ppn,
                                     const char* input_name, const char* job_tag,
                                     const char* marker_file);
    void write_gaussian_HL_job_lsf(const char* script_name, int nodes, int ppn,
                                   const char* input_name, const char* job_tag,
                                   const char* marker_file);
    void write_gaussian_HL_job_local(const char* script_name, int nodes, int ppn,
                                     const char* input_name, const char* job_tag,
                                     const char* marker_file);
    void write_gaussian_HL_job_array(const char* script_name, int nodes, int ppn,
                                     const char* input_name, const char* job_tag,
                                     const char* marker_file, int count, int* indexes);
    void write_gaussian_HL_job_array_pbs(const char* script_name, int nodes, int ppn,
                                         const char* input_name, const char* job_tag,
                                         const char* marker_file, int count, int* indexes);
    void write_gaussian_HL_job_array_slurm(const char* script_name, int nodes, int ppn,
                                           const char* input_name, const char* job_tag,
                                           const char* marker_file, int count, int* indexes);
    void write_gaussian_HL_job_array_lsf(const char* script_name, int nodes, int ppn,
                                         const char* input_name, const char* job_tag,
                                         const char* marker_file, int count, int* indexes);
    void write_gaussian_HL_job_array_local(const char* script_name, int nodes, int ppn,
                                           const char* input_name, const char* job_tag,
                                           const char* marker_file, int count, int* indexes);

    // Gaussian reorganisation-energy job; `body` is written unchanged.
    void write_gaussian_RE_job(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file);
    void write_gaussian_RE_job_pbs(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file);
    void write_gaussian_RE_job_slurm(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file);
    void write_gaussian_RE_job_lsf(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file);
    void write_gaussian_RE_job_local(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file);

    // ORCA transfer-integral job, plain and array.
    void write_orca_HL_job(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file);
    void write_orca_HL_job_pbs(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file);
    void write_orca_HL_job_slurm(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file);
    void write_orca_HL_job_lsf(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file);
    void write_orca_HL_job_local(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file);
    void write_orca_HL_job_array(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes);
    void write_orca_HL_job_array_pbs(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes);
    void write_orca_HL_job_array_slurm(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes);
    void write_orca_HL_job_array_lsf(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes);
    void write_orca_HL_job_array_local(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes);

    // ORCA reorganisation-energy job.
    void write_orca_RE_job(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body);
    void write_orca_RE_job_pbs(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body);
    void write_orca_RE_job_slurm(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body);
    void write_orca_RE_job_lsf(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body);
    void write_orca_RE_job_local(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body);

    // Q-Chem transfer-integral job, plain and array.
    void write_qchem_HL_job(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file);
    void write_qchem_HL_job_pbs(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file);
    void write_qchem_HL_job_slurm(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file);
    void write_qchem_HL_job_lsf(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file);
    void write_qchem_HL_job_local(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file);
    void write_qchem_HL_job_array(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes);
    void write_qchem_HL_job_array_pbs(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes);
    void write_qchem_HL_job_array_slurm(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes);
    void write_qchem_HL_job_array_lsf(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes);
    void write_qchem_HL_job_array_local(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes);

    // Q-Chem reorganisation-energy job.
    void write_qchem_RE_job(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body);
    void write_qchem_RE_job_pbs(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body);
    void write_qchem_RE_job_slurm(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body);
    void write_qchem_RE_job_lsf(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body);
    void write_qchem_RE_job_local(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body);

    // Monte Carlo run, written into the current directory (as are the kinds below).
    void write_MC_job(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file);
    void write_MC_job_pbs(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file);
    void write_MC_job_slurm(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file);
    void write_MC_job_lsf(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file);
    void write_MC_job_local(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file);

    // Master-equation run.
    void write_ME_job(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file);
    void write_ME_job_pbs(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file);
    void write_ME_job_slurm(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file);
    void write_ME_job_lsf(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file);
    void write_ME_job_local(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file);

    // Mobility from the Monte Carlo tracks; `command` is one line without its line end.
    void write_calc_mob_job(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* command);
    void write_calc_mob_job_pbs(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* command);
    void write_calc_mob_job_slurm(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* command);
    void write_calc_mob_job_lsf(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* command);
    void write_calc_mob_job_local(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* command);

    // Reorganisation-energy gathering.
    void write_calc_getRE_job(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body);
    void write_calc_getRE_job_pbs(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body);
    void write_calc_getRE_job_slurm(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body);
    void write_calc_getRE_job_lsf(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body);
    void write_calc_getRE_job_local(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body);

    // Transfer-integral (site-energy) gathering, run inside `directory`.
    void write_calc_getHL_job(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory);
    void write_calc_getHL_job_pbs(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory);
    void write_calc_getHL_job_slurm(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory);
    void write_calc_getHL_job_lsf(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory);
    void write_calc_getHL_job_local(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory);

    // Transfer-integral calculation, run inside `directory`.
    void write_calc_transint_job(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory);
    void write_calc_transint_job_pbs(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory);
    void write_calc_transint_job_slurm(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory);
    void write_calc_transint_job_lsf(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory);
    void write_calc_transint_job_local(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory);

    // Transfer-integral calculation over array members; `program` is the bare command.
    void write_calc_transint_job_array(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, int count, int* indexes, const char* program, const char* directory);
    void write_calc_transint_job_array_pbs(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, int count, int* indexes, const char* program, const char* directory);
    void write_calc_transint_job_array_slurm(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, int count, int* indexes, const char* program, const char* directory);
    void write_calc_transint_job_array_lsf(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, int count, int* indexes, const char* program, const char* directory);
    void write_calc_transint_job_array_local(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, int count, int* indexes, const char* program, const char* directory);
};

#endif
