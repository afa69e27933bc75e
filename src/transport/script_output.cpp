#include "script_output.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "mmutil.h"
#include "transport.h"

std::string lines_text(const char* const* lines, size_t count)
{
    std::string text;
    for (size_t i = 0; i < count; i++) text += std::string(lines[i]) + "\n";
    return text;
}

void write_script_file(const std::string& path, const std::string& text, int line)
{
    int rc = write_text_file(path.c_str(), text);
    if (rc == WRITE_OK) return;
    const char* what = rc == WRITE_OPEN_FAILED ? "open" : "write";
    if (line == kNoErrorHeader) {
        fflush(stdout);
        fprintf(stderr, "ERROR: Failed to %s output file %s\n", what, path.c_str());
        exit(-1);
    }
    veska_fatal("transport", line, -1, stderr, "Failed to %s output file %s\n", what, path.c_str());
}

void create_directories(const std::string& path)
{
    for (size_t at = path.find('/', 1); at != std::string::npos; at = path.find('/', at + 1))
        create_directory(path.substr(0, at).c_str());
    create_directory(path.c_str());
}

std::string python_banner(const char* what)
{
    return expand_template(
        "#\n# VESKA transport (https://veska-transport.example.org): @WHAT@\n"
        "# Written by the VESKA transport developers\n#\n\n#!/usr/bin/env python\n",
        {{"WHAT", what}});
}

std::string python_mkdir(const std::string& name)
{
    return expand_template("if not os.path.isdir(\"@D@\"):\n    os.mkdir(\"@D@\", access_rights)\n", {{"D", name}});
}

std::string python_touch(const Transport& t, const std::string& marker)
{
    return format_string("os.system(\"touch %s/%s\")\n", t.work_dir.c_str(), marker.c_str());
}

std::string python_submit(const Transport& t, const std::string& script)
{
    int code = t.job_sched_type;
    if (code < 0 || code > 3) veska_fatal("transport", 5592, -1, stderr, "Unknown job scheduling type!\n");
    return format_string("os.system(\"%s %s.%s\")\n", t.submit_cmd[code].c_str(), script.c_str(),
                         t.script_ext[code].c_str());
}

const ScriptCarrier kScriptCarriers[2] = {{"elec", "e", "anion"}, {"hole", "h", "cation"}};

std::string evc_copy_lines(const ScriptCarrier& carrier, int mol, const std::vector<const char*>& exts)
{
    std::string text;
    for (const char* state : {carrier.charged_state, "neutral"})
        for (const char* ext : exts)
            text += format_string("copyfile(\"../../RE/re-mol%d-%s.%s\", \"%s/re-mol%d-%s.%s\")\n", mol, state, ext,
                                  carrier.dir, mol, state, ext);
    return text +
           format_string("copyfile(\"../../RE/evc-%s-mol%d.inp\", \"%s/evc.inp\")\n", carrier.letter, mol, carrier.dir);
}

const ScriptEngine* script_engine(int compute_engine)
{
    // clang-format off
    static const ScriptEngine engines[3] = {
        {"log", "log",  {"fchk", "log"}, "",        &Transport::write_gaussian_log_check_py_file, false},
        {"out", "hess", {"hess"},        " -orca",  &Transport::write_orca_out_check_py_file,     false},
        {"out", "out",  {"fchk", "out"}, " -qchem", &Transport::write_qchem_out_check_py_file,    true},
    };
    // clang-format on
    return compute_engine >= 1 && compute_engine <= 3 ? &engines[compute_engine - 1] : nullptr;
}

std::vector<int> molecule_ids(int count)
{
    std::vector<int> ids;
    for (int i = 1; i <= count; i++) ids.push_back(i);
    return ids;
}

std::vector<int> unique_re_ids(const Transport& t)
{
    if (t.re_unique_count > 0 && !t.re_unique_list)
        veska_fatal("transport", 5591, -1, stdout,
                    "%d unique RE molecules announced but no list of them: run the unique analysis first\n",
                    t.re_unique_count);
    std::vector<int> ids;
    for (int u = 0; u < t.re_unique_count; u++) ids.push_back(t.re_unique_list[u]);
    return ids;
}

std::vector<double> temperature_scan(double start, double end, double step)
{
    if (step == 0.0) return std::isfinite(start) ? std::vector<double>{start} : std::vector<double>{};
    double count = std::trunc((end - start) / step + 1.0);
    if (!std::isfinite(count) || count < 1.0) return {};
    if (count > kMaxScanTemperatures)
        veska_fatal("transport", 5590, -1, stdout,
                    "Temperature scan from %g K to %g K in steps of %g K gives %.0f temperatures; at most %d are "
                    "written: check start_temp, end_temp and delta_temp\n",
                    start, end, step, count, kMaxScanTemperatures);
    std::vector<double> temps;
    for (int k = 0; k < (int)count; k++) temps.push_back(start + k * step);
    return temps;
}
