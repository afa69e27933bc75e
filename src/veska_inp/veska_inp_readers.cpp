// Configuration readers: the block format of veska.inp and the old line
// format of config.inp. The keys themselves live in config_keys.cpp.

#include <cstring>
#include <iostream>

#include "config_keys.h"
#include "mmutil.h"
#include "veska_inp.h"

static const char* const kInpUnit = "veska_inp";

static std::string cut_at(const std::string& s, char c)
{
    size_t p = s.find(c);
    return p == std::string::npos ? s : s.substr(0, p);
}

static bool is_comment_start(const std::string& t)
{
    return !t.empty() && (t[0] == '!' || t[0] == '#');
}

void VeskaInp::load_veska_inp_file(const char* path, bool /*verbose*/)
{
    lines.clear();
    if (!read_text_lines(path, lines, true))
        veska_fatal(kInpUnit, 175, -1, stdout, "Failed to open input file: %s\n", path);
    nlines = static_cast<int>(lines.size());
}

// ---- veska.inp -------------------------------------------------------------

enum class InpBlock { None, Transport, Append };

// A line outside blocks: the block it opens, if any.
static InpBlock block_header(const std::string& line)
{
    std::string t = trimmed(line);
    if (t.empty() || is_comment_start(t)) return InpBlock::None;
    std::string name = cut_at(t, '!');
    if (iequals(name, "&transport")) return InpBlock::Transport;
    if (iequals(name, "&gaussian.append") || iequals(name, "&qc_inp_append"))
        return InpBlock::Append;
    return InpBlock::None;
}

// A line inside &transport: applies a setting; false when the line ends the block.
static bool transport_line(VeskaInp& v, const std::vector<ConfigKey>& table,
                           const std::string& line, const char* path, bool verbose)
{
    std::string t = trimmed(line);
    if (!t.empty() && t[0] == '/') return false;
    if (t.empty() || is_comment_start(t)) return true;
    t = cut_at(cut_at(t, '!'), '#');
    size_t eq = t.find('=');
    if (eq == std::string::npos) return true;
    const ConfigKey& key =
        find_config_key(table, trimmed(t.substr(0, eq)), kVeskaInpDialect, path);
    apply_config_key(v, key, t.substr(eq + 1), kVeskaInpDialect, path, verbose);
    return true;
}

static void check_engine_against_exe(VeskaInp& v)
{
    struct EngineNeed {
        int engine;
        const char* needle;
        int number;
    };
    static const EngineNeed needs[3] = {{1, "g", 716}, {2, "orca", 728}, {3, "qchem", 740}};
    for (const EngineNeed& need : needs) {
        if (v.compute_engine == need.engine && v.qc_exe.find(need.needle) == std::string::npos)
            veska_fatal(kInpUnit, need.number, 1, stdout,
                        "Incomptiable settings:\n"
                        "  The compute_engine = %d, while qc_exe is set to %s\n"
                        "  1 - Gaussian, 2 - ORCA, 3 - QCHEM\n",
                        v.compute_engine, v.qc_exe.c_str());
    }
}

int VeskaInp::read_veska_inp(const char* path, bool verbose)
{
    set_varables_default();
    get_environment_variables();
    load_veska_inp_file(path, verbose);
    if (verbose) std::cout << "Reading config file \"" << path << "\" ... " << std::endl;

    std::vector<ConfigKey> table = config_key_table(*this);
    InpBlock block = InpBlock::None;
    for (const std::string& line : lines) {
        switch (block) {
        case InpBlock::None: block = block_header(line); break;
        case InpBlock::Transport:
            if (!transport_line(*this, table, line, path, verbose)) block = InpBlock::None;
            break;
        case InpBlock::Append:
            // taken verbatim; only a "/" in the very first column ends the block
            if (!line.empty() && line[0] == '/') block = InpBlock::None;
            else qc_inp_append += line;
            break;
        }
    }

    check_engine_against_exe(*this);
    copy_unique_flags();
    lines.clear();
    lines.shrink_to_fit();
    nlines = 0;
    if (veska_dat_file.empty()) veska_dat_file = "veska-" + ratetype + ".dat";
    if (sched_type == "lsf" && !nodelist.empty())
        for (char& c : nodelist)
            if (c == ',') c = ' ';
    return 1;
}

// ---- config.inp ------------------------------------------------------------

int VeskaInp::read_config_inp(const char* path, bool verbose)
{
    set_varables_default();
    std::vector<std::string> file_lines;
    if (!read_text_lines(path, file_lines, true))
        veska_fatal(kInpUnit, 799, -1, stderr, "Failed to open input file \"%s\"\n", path);
    std::cout << "Reading config file \"" << path << "\" ... " << std::endl;

    std::vector<ConfigKey> table = config_key_table(*this);
    for (std::string& line : file_lines) {
        triml(line);
        if (is_comment_start(line)) continue;
        line = cut_at(line, '!');
        size_t blank = line.find(' ');  // a tab does not separate key and value
        if (blank == std::string::npos) continue;
        std::string name = line.substr(0, blank);
        trimr(name);
        const ConfigKey& key = find_config_key(table, name, kConfigInpDialect, path);
        apply_config_key(*this, key, line.substr(blank + 1), kConfigInpDialect, path, verbose);
    }
    return 1;
}
