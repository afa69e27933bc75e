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

#include "qc_engines.h"  // the engine table, expand_template, whole-file writes

// The lines of a fixed table, each followed by "\n".
std::string lines_text(const char* const* lines, size_t count);
template <size_t N>
std::string table_text(const char* const (&lines)[N])
{
    return lines_text(lines, N);
}

// Creates `path` and each missing directory above it (mode 0750).
void create_directories(const std::string& path);

// The comment block that opens the longer generated scripts (naming the
// toolkit, its web site and its maker), then the interpreter line. The
// interpreter line comes after the comments, so the scripts are run by
// naming them to python.
std::string python_banner(const char* what);

// Python lines that create a directory below the current one when missing.
std::string python_mkdir(const std::string& name);

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
