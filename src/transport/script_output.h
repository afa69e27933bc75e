#ifndef VESKA_SCRIPT_OUTPUT_H
#define VESKA_SCRIPT_OUTPUT_H

// Internals shared by the writers of generated scripts and inputs
// (helper_scripts.cpp, evc_inputs.cpp, run_scripts.cpp, write_scripts.cpp):
// fixed line tables, whole-file writes that stop the program on failure, and
// the engine and carrier tables of the scripts written after the
// quantum-chemistry jobs. Placeholders are filled by expand_template.

#include <cstddef>
#include <string>
#include <vector>

#include "qc_engines.h"  // expand_template

// The lines of a fixed table, each followed by "\n".
std::string lines_text(const char* const* lines, size_t count);
template <size_t N>
std::string table_text(const char* const (&lines)[N])
{
    return lines_text(lines, N);
}

// Writes `text` to `path` whole. When that fails: the error header with
// `line` (source transport), "Failed to open output file <path>" on
// standard error, exit status -1. With `line` kNoErrorHeader the header is
// left out and the message reads "ERROR: Failed to open output file <path>".
constexpr int kNoErrorHeader = 0;
void write_script_file(const std::string& path, const std::string& text, int line);

// Creates `path` and each missing directory above it (mode 0750).
void create_directories(const std::string& path);

// The comment block that opens the longer generated scripts (naming the
// toolkit, its web site and its maker), then the interpreter line. The
// interpreter line comes after the comments, so the scripts are run by
// naming them to python.
std::string python_banner(const char* what);

// Python lines that create a directory below the current one when missing.
std::string python_mkdir(const std::string& name);

// Driver lines: "os.system(\"touch <work dir>/<marker>\")" and
// "os.system(\"<submit command> <script>.<extension>\")", each with "\n".
// An unknown scheduler code stops the program.
std::string python_touch(const Transport& t, const std::string& marker);
std::string python_submit(const Transport& t, const std::string& script);

// What the generated scripts need to know about a quantum-chemistry engine.
struct ScriptEngine {
    const char* output_ext;             // of the outputs listed for the transfer integrals
    const char* freq_ext;               // of the frequency outputs the normal-mode runs read
    std::vector<const char*> evc_exts;  // result files copied into a normal-mode run, per state
    const char* transint_option;        // appended to the transfer-integral command
    void (Transport::*write_checks)();  // the engine's output check (and converters)
    bool lowercase_fchk;                // Q-Chem names its checkpoints .FChk
};
// The engine of `compute_engine` (1 Gaussian, 2 ORCA, 3 Q-Chem); nullptr otherwise.
const ScriptEngine* script_engine(int compute_engine);

// The two carriers: electrons (0) and holes (1).
struct ScriptCarrier {
    const char* dir;            // "elec", "hole"
    const char* letter;         // written to charge.inp and into file names
    const char* charged_state;  // "anion", "cation"
};
extern const ScriptCarrier kScriptCarriers[2];

// The copy lines that fill one carrier's normal-mode run directory from
// the run's RE directory: per state (charged, then neutral) one line per
// extension, then the carrier's evc input as evc.inp.
std::string evc_copy_lines(const ScriptCarrier& carrier, int mol, const std::vector<const char*>& exts);

// One-based molecule numbers 1..count; the unique RE molecule ids in list
// order (stops the program when a count is announced without a list).
std::vector<int> molecule_ids(int count);
std::vector<int> unique_re_ids(const Transport& t);

// The temperatures of a scan: start + k * step for k below
// trunc((end - start) / step + 1). A step of 0 means the start temperature
// alone; non-finite settings give none; more than kMaxScanTemperatures stops
// the program with a message.
constexpr int kMaxScanTemperatures = 10000;
std::vector<double> temperature_scan(double start, double end, double step);

#endif
