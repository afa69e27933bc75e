#ifndef VESKA_QC_ENGINES_H
#define VESKA_QC_ENGINES_H

// Internals of the transfer-integral (HL) and reorganisation-energy (RE) job
// generators. Everything that differs between Gaussian, ORCA and Q-Chem is a
// field of one QcEngine record; the generators walk the molecules once per set
// and read the record. Python drivers are composed in memory and written last,
// so a driver is either complete or absent.

#include <string>
#include <utility>
#include <vector>

#include "transport.h"

// A transfer-integral input of one molecule or dimer, with the workspace's
// method, basis, memory, processors and appended text.
typedef void (*HLInputWriter)(Transport& t, const char* path, int natoms, int* atypes, double* x,
                              const char* title, const char* chk);
// A reorganisation-energy input for one charge state.
typedef void (*REInputWriter)(Transport& t, const char* path, int natoms, int* atypes, double* x,
                              const char* title, const char* chk, const char* charge_mult);
typedef void (Jobscript::*HLJobWriter)(const char*, int, int, const char*, const char*,
                                       const char*);
typedef void (Jobscript::*HLArrayJobWriter)(const char*, int, int, const char*, const char*,
                                            const char*, int, int*);
// A reorganisation-energy job script around a composed body.
typedef void (*REJobWriter)(Transport& t, const char* script, const char* mol_name,
                            const char* job_name, const char* marker, const char* body);

enum HLSet { kUcSet = 0, kNeiSet = 1, kDimerSet = 2 };

// The text of one HL driver that varies with engine, set and variant.
struct HLDriverFrame {
    const char* imports;     // after the #! line, with its blank line
    const char* chdir;       // change into the HL directory; @DIR@ is its name
    const char* single_sep;  // before each single job's touch line
    const char* array_gap;   // between an array job's touch lines and its submit line
};

struct QcEngine {
    const char* label;                  // in job bodies and messages
    const char* input_ext;              // of every input file
    const char* output_ext;             // of the outputs checked and listed for transfer integrals
    const char* freq_ext;               // of the frequency outputs the normal-mode runs read
    std::vector<const char*> evc_exts;  // result files copied into a normal-mode run, per state
    const char* transint_option;        // appended to the transfer-integral command
    void (Transport::*write_checks)();  // the engine's output check script
    bool lowercase_fchk;                // Q-Chem names its checkpoints .FChk
    HLInputWriter hl_input;
    HLJobWriter hl_job;
    HLArrayJobWriter hl_job_array;
    const HLDriverFrame (*hl_frames)[2];  // [HLSet][unique]
    const char* hl_unique_dimer_marker;  // marker base of the unique dimer array job
    REInputWriter re_input;
    REJobWriter re_job;
    const char* re_check;               // output check script in the script directory
    const char* re_run;                 // job body between "else" and "fi"
    const char* re_separator;           // before each job's touch line in mol_RE.py
    const char* re_script;              // separated job script; @I@ molecule, @S@ state
    const char* re_marker;              // separated job's running marker
    const char* re_unique_neutral_marker;  // overrides re_marker for unique neutral jobs
};

extern const QcEngine kGaussianEngine, kOrcaEngine, kQchemEngine;

// The engine of compute_engine (1 Gaussian, 2 ORCA, 3 Q-Chem); any other
// value stops the program, or gives nullptr from qc_engine_or_null.
const QcEngine& qc_engine_for(int compute_engine);
const QcEngine* qc_engine_or_null(int compute_engine);

// `tmpl` with every @NAME@ replaced by its value, in one pass: values are
// never expanded again. An unknown name stays as it is.
typedef std::vector<std::pair<const char*, std::string>> TemplateValues;
std::string expand_template(const std::string& tmpl, const TemplateValues& values);

// The driver's directories and the check that the driver can be written,
// before any input is: the script, calculation and run-marker directories
// are created; a driver path that cannot be opened stops the program.
void prepare_driver(Transport& t, const std::string& area_dir, const std::string& path,
                    int error_line);
// Driver lines: "os.system(\"touch <work dir>/<marker>\")" and
// "os.system(\"<submit command> <script>.<extension>\")", each with "\n".
// An unknown scheduler code stops the program.
std::string python_touch(const Transport& t, const std::string& marker);
std::string python_submit(const Transport& t, const std::string& script);

// Writes `text` to `path` whole. When that fails: the error header with
// `line` (source transport), "Failed to open output file <path>" on
// standard error, exit status -1. With `line` kNoErrorHeader the header is
// left out and the message reads "ERROR: Failed to open output file <path>".
constexpr int kNoErrorHeader = 0;
void write_script_file(const std::string& path, const std::string& text, int line);
// Stops the program with a message naming what is missing or wrong.
[[noreturn]] void job_input_error(int line, const std::string& what);

#endif
