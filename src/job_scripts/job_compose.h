#ifndef VESKA_JOB_COMPOSE_H
#define VESKA_JOB_COMPOSE_H

// Internals of the job-script writer. A script is composed from three
// pieces of data: the dialect (scheduler lines, variables, scratch names),
// the kind (what the job runs, where its script goes) and the request (the
// caller's arguments). Every public writer fills a request and hands it to
// emit_job_script().

#include <string>

#include "job_scripts.h"

enum JobDialectCode { kPbs = 0, kSlurm = 1, kLsf = 2, kLocal = 3, kDispatch = -1 };

// When a scheduler line is written.
enum HeaderWhen { kAlways, kPlainOnly, kArrayOnly, kWithNodelist, kOutputEarly, kOutputLate };

struct HeaderLine {
    HeaderWhen when;
    const char* text;  // template, see JobText::add
};

struct JobDialect {
    const char* label;             // in the verbose announcement
    const char* shebang;           // first line, or nullptr
    const HeaderLine* lines;       // scheduler lines, null-text terminated
    const char* index_var;         // array member index; nullptr for local
    const char* stdout_array_tail; // scheduler's own member placeholder
    const char* submit_dir_cd;     // where the job was submitted; nullptr for local
    const char* submit_dir_echo;
    bool cd_before_echo;           // order of the two lines in the QC jobs
    const char* hl_scratch;        // ORCA transfer-integral scratch name
    const char* hl_scratch_array;
    const char* re_scratch;        // ORCA / Q-Chem reorganisation-energy scratch
    int array_extra_blanks;        // empty lines after an array job's Ending line
};

extern const JobDialect kJobDialects[4];

class JobText;

// Which module a kind loads: the quantum-chemistry one or the MPI one.
enum ModuleRule { kModuleQc, kModuleMpi, kModuleMpiButQcLocally };

struct JobKind {
    bool in_jobs_dir;            // jobs_dir/<script>.<ext>, else <script>.<ext>
    bool array;
    ModuleRule module;
    const char* area;            // data directory below work_dir: "HL", "RE" or nullptr
    const char* lsf_name;        // job-name prefix before the tag
    bool stdout_in_directory;    // standard output goes to the directory argument
    bool slurm_output_last;      // the Monte Carlo family's SLURM line order
    void (*before_module)(JobText&);
    void (*after_module)(JobText&);
    int trailing_blanks;         // after the Ending line, scheduled dialects
    int local_trailing_blanks;
    int dispatcher_error;
    int writer_error[4];
};

extern const JobKind kGaussianHLJob, kGaussianHLArrayJob, kGaussianREJob;
extern const JobKind kOrcaHLJob, kOrcaHLArrayJob, kOrcaREJob;
extern const JobKind kQchemHLJob, kQchemHLArrayJob, kQchemREJob;
extern const JobKind kMCJob, kMEJob, kCalcMobJob, kCalcGetREJob, kCalcGetHLJob;
extern const JobKind kCalcTransintJob, kCalcTransintArrayJob;

struct JobRequest {
    const JobKind* kind;
    const char* script_name;
    int nodes;
    int ppn;
    const char* input_name = "";
    const char* job_tag = "";
    const char* marker_file = "";
    std::string body;
    const char* directory = "";
    const char* program = "";
    int count = 0;
    const int* indexes = nullptr;
};

// The script under construction: expands templates against the job's values.
class JobText {
public:
    JobText(const Jobscript& js, const JobDialect& dialect, const JobRequest& request);

    // Appends `tmpl` with every @NAME@ replaced by the job's value of NAME.
    void add(const char* tmpl);
    std::string expand(const char* tmpl) const;
    std::string value(const std::string& name) const;

    bool scheduled() const { return dialect.submit_dir_cd != nullptr; }
    bool array() const { return request.kind->array; }
    // Writes `member` once, or once per array member with the member's
    // index suffix; the local dialect repeats it, each copy opened by `opener`.
    void members(void (*member)(JobText&), const char* opener);

    const Jobscript& js;
    const JobDialect& dialect;
    const JobRequest& request;
    std::string out;
    std::string index;   // current member: index variable or number, empty when plain
};

std::string array_list(int count, const int* indexes);
std::string compose_job_script(const Jobscript& js, const JobRequest& request, int dialect);
// dialect kDispatch: create jobs_dir and use job_sched_type (fatal if unknown).
void emit_job_script(const Jobscript& js, const JobRequest& request, int dialect);

#endif
