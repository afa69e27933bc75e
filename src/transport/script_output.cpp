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
