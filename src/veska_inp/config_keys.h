#ifndef VESKA_CONFIG_KEYS_H
#define VESKA_CONFIG_KEYS_H

// The keys of the two configuration formats (veska.inp and config.inp) as a
// table: names and aliases per format, how the value is read, where it goes
// and what else a key switches on. Both readers go through it.

#include <string>
#include <vector>

class VeskaInp;

enum class KeyReading {
    Integer,       // base-10 integer at the start, 0 when none
    Real,          // strtod reading, 0 when none
    Switch,        // integer reading, non-zero is true
    Text,          // stripped, quote characters of the format removed
    StrippedText,  // stripped, quotes kept
    RealTriple,    // three reals into consecutive doubles
    IntTriple,     // three integers into consecutive ints
    IntList,       // words appended as integers to a list
    FileList,      // count n, then n MOL file names
    Crystal,       // read the crystal file at once
};

enum class KeyEffect {
    None,
    MpichModuleOn,     // module_mpich2_gnu_flag = true
    QcModuleOn,        // module_gau_flag = true
    AlsoBasisRe,       // qc_basis_re follows qc_basis
    OrcaExeOnEngine2,  // compute_engine 2 also sets qc_exe
};

// Where a value goes; exactly one pointer is set (none for the kinds whose
// targets are fixed: FileList, Crystal).
struct KeyTarget {
    int* i = nullptr;
    double* d = nullptr;
    bool* b = nullptr;
    std::string* s = nullptr;
    std::vector<int>* list = nullptr;
    KeyTarget() {}
    KeyTarget(int* p) : i(p) {}
    KeyTarget(double* p) : d(p) {}
    KeyTarget(bool* p) : b(p) {}
    KeyTarget(std::string* p) : s(p) {}
    KeyTarget(std::vector<int>* p) : list(p) {}
};

struct ConfigKey {
    const char* inp_names[2];  // names in veska.inp (null: not accepted there)
    const char* cfg_names[2];  // names in config.inp (null: not accepted there)
    KeyReading reading;
    KeyTarget target;
    KeyEffect effect;
};

// What differs between the two formats.
struct ConfigDialect {
    bool veska_inp;             // selects inp_names, else cfg_names
    const char* quote_chars;    // removed from Text values
    int unknown_key_number;     // error number of an unknown key
    const char* unknown_key_tail;
    int file_list_number;       // error number of a short molecule list
};

extern const ConfigDialect kVeskaInpDialect;
extern const ConfigDialect kConfigInpDialect;

// The table bound to one configuration object, in the order keys are tried.
std::vector<ConfigKey> config_key_table(VeskaInp& v);

// Finds `key` (letter case ignored) among the keys the dialect accepts, or
// ends the process with the dialect's unknown-key error naming `path`.
const ConfigKey& find_config_key(const std::vector<ConfigKey>& table, const std::string& key,
                                 const ConfigDialect& dialect, const char* path);

// Reads `value` as the key says and applies it, with its side effects.
void apply_config_key(VeskaInp& v, const ConfigKey& key, const std::string& value,
                      const ConfigDialect& dialect, const char* path, bool verbose);

#endif
