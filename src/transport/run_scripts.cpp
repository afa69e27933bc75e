// Run scripts of the Monte Carlo and master-equation stages, per carrier:
// a staging script that copies the inputs and computes the hop rates, a
// driver that submits the run, and the mobility scripts.

#include <cstdio>

#include "mmutil.h"
#include "script_output.h"
#include "transport.h"

namespace {

// Follows the banner.
const char* const prepare_mc_py_head[] = {
    "",
    "import os",
    "from shutil import copyfile",
    "",
};

const char kDriverHead[] = "#!/usr/bin/env python\nimport os\n\n";

const ScriptCarrier& carrier_of(int carrier)
{
    if (carrier != 0 && carrier != 1)
        veska_fatal("transport", 4550, -1, stdout, "Carrier %d is neither 0 (electrons) nor 1 (holes)\n", carrier);
    return kScriptCarriers[carrier];
}

// The normal-mode files of molecule m come from its representative when
// only unique molecules were run.
int normal_mode_source(const Transport& t, int m)
{
    if (!t.unique_RE_calc_flag) return m;
    if (!t.re_mol_index)
        veska_fatal("transport", 4551, -1, stdout,
                    "Unique RE molecules are asked for but their map is missing: run the unique analysis first\n");
    return t.re_mol_index[m - 1];
}

// Every input file of a run, copied from `src` (the run's root seen from
// the run directory) into the current directory.
std::string copy_block(const Transport& t, const char* src)
{
    const char* d = t.data_dir.c_str();
    std::string text = format_string("copyfile(\"%s/veska.inp\", \"./veska.inp\")\n", src);
    if (t.input_kind == 2)
        text += format_string("copyfile(\"%s/%s\", \"./%s\")\n", src, t.crystal_file.c_str(), t.crystal_file.c_str());
    for (int m = 1; t.input_kind == 1 && m <= t.nmols; m++)
        text += format_string("copyfile(\"%s/mol%d.mol\", \"./mol%d.mol\")\n", src, m, m);
    for (int m = 1; m <= t.nmols; m++)
        text += format_string(
            "copyfile(\"%s/%s/VH%02d.dat\", \"./VH%02d.dat\")\n"
            "copyfile(\"%s/%s/VL%02d.dat\", \"./VL%02d.dat\")\n",
            src, d, m, m, src, d, m, m);
    for (int m = 1; m <= t.nmols; m++) {
        int s = normal_mode_source(t, m);
        text += format_string(
            "copyfile(\"%s/%s/NM%02d-e.dat\", \"./NM%02d-e.dat\")\n"
            "copyfile(\"%s/%s/NM%02d-h.dat\", \"./NM%02d-h.dat\")\n",
            src, d, s, m, src, d, s, m);
    }
    for (int m = 1; t.lat_site_energy && m <= t.nmols; m++)
        text += format_string(
            "copyfile(\"%s/%s/EH%02d.dat\", \"./EH%02d.dat\")\n"
            "copyfile(\"%s/%s/EL%02d.dat\", \"./EL%02d.dat\")\n",
            src, d, m, m, src, d, m, m);
    return text;
}

std::string temp_inp_lines(int with_temp, double temp)
{
    if (!with_temp) return "";
    return format_string("with open(\"temp.inp\", \"w\") as f:\n    f.write(\"%.0f K\\n\")\n\n", temp);
}

// The staging script: inputs, hop rates, carrier and (for scans) temperature.
std::string staging_text(const Transport& t, const char* src, const ScriptCarrier& c, const char* before_rates)
{
    return python_banner("hop rates and transport runs") + table_text(prepare_mc_py_head) + copy_block(t, src) +
           before_rates + "os.system(\"hoprates.exe\")\n\n" +
           format_string("with open(\"charge.inp\", \"w\") as f:\n    f.write(\"%s\\n\")\n\n", c.letter);
}

// A driver that marks its job as running and submits it from its own directory.
std::string driver_text(const Transport& t, const char* head, const std::string& marker, const char* script)
{
    return head + python_touch(t, marker) + python_submit(t, script) + "\n";
}

std::string job_name(const char* dir, const char* carrier_dir, const char* suffix)
{
    std::string name = format_string("%s_%s%s", dir, carrier_dir, suffix);
    ReplaceSlashWithUnderscore(&name[0]);
    return name;
}

// Master-equation scripts in W, the run directory of one carrier (and temperature).
struct MasterEquationRun {
    std::string w, marker, temp_lines;
    const char* job_tag;
    int prepare_line, driver_line;
};

void write_master_equation_run(Transport& t, const char* src, const ScriptCarrier& c, const MasterEquationRun& run)
{
    write_script_file(run.w + "/prepare-me.py", staging_text(t, src, c, "") + run.temp_lines, run.prepare_line);
    write_script_file(run.w + "/run_me_batch.py", driver_text(t, kDriverHead, run.marker, "run_me"), run.driver_line);
    t.write_ME_job((run.w + "/run_me").c_str(), 1, t.run_ppn, "hopmeq.exe\n", run.job_tag, run.marker.c_str());
}

}  // namespace

void Transport::write_run_scripts_MC(const char* dir, const char* src, int carrier, int with_temp, double temp)
{
    const ScriptCarrier& c = carrier_of(carrier);
    std::string w = std::string(dir) + "/" + c.dir;
    create_directories(w);
    write_script_file(w + "/prepare-mc.py", staging_text(*this, src, c, "\n") + temp_inp_lines(with_temp, temp), 4556);

    std::string marker = run_dir + "/running." + job_name(dir, c.dir, "");
    std::string command = format_string(
        openmp_flag ? "hopmc_OMP.exe -simu0 %d -nsimu %d\n" : "hopmc.exe -simu0 %d -nsimu %d\n", 0, nsimu);
    write_script_file(w + "/run_mc_batch.py", driver_text(*this, kDriverHead, marker, "run_mc"), 4637);
    write_MC_job((w + "/run_mc").c_str(), 1, run_ppn, command.c_str(), c.dir, marker.c_str());

    marker = run_dir + "/running." + job_name(dir, c.dir, "_getmob");
    write_script_file(w + "/get_mob.py",
                      driver_text(*this, "#!/usr/bin/env python\nimport os\nimport sys\n\n", marker, "get_mob"), 4687);
    write_calc_mob_job((w + "/get_mob").c_str(), 1, run_ppn, "mob", marker.c_str(),
                       openmp_flag ? "hopmob_OMP.exe" : "hopmob.exe");
}

void Transport::write_run_scripts_ME(const char* dir, const char* src, int carrier)
{
    const ScriptCarrier& c = carrier_of(carrier);
    std::string w = std::string(dir) + "/" + c.dir;
    create_directories(w);
    write_master_equation_run(*this, src, c, {w, run_dir + "/running.me_" + c.letter, "", c.dir, 5250, kNoErrorHeader});
}

void Transport::write_run_scripts_ME_TD(const char* dir, const char* src, int carrier, int with_temp, double temp)
{
    const ScriptCarrier& c = carrier_of(carrier);
    create_directories(dir);
    std::string marker = format_string("%s/running.me_td_%s_%.0f_%s", run_dir.c_str(), c.letter, temp, "td");
    write_master_equation_run(*this, src, c, {dir, marker, temp_inp_lines(with_temp, temp), "td", 5375, 5458});
}

void Transport::write_get_mob_py_ME(const char* dir)
{
    std::string text = "#!/usr/bin/env python\nimport os\nfrom shutil import copyfile\n\n";
    for (const ScriptCarrier& c : kScriptCarriers)
        text += format_string("copyfile(\"%s/exp_data.dat\", \"./mob_%s.dat\")\n", c.dir, c.letter);
    create_directories(dir);
    write_script_file(std::string(dir) + "/get_mob.py", text + "\n", 5498);
}

// Per carrier, the mobilities along a, b, c and their average (third
// column of the first four lines of each exp_data.dat) against temperature.
void Transport::write_get_mob_py_ME_TD(const char* dir)
{
    std::vector<double> temps = temperature_scan(start_temp, end_temp, delta_temp);
    std::string text = "#!/usr/bin/env python\nimport os\n\nimport sys\n\n";
    for (const ScriptCarrier& c : kScriptCarriers) {
        text += "mu = []\n";
        for (size_t i = 0; i < temps.size(); i++)
            text += format_string(
                "mu.append([])\nwith open(\"%s/%.0f/exp_data.dat\") as f:\n"
                "    for i in range(4):\n        line = f.readline()\n        items = line.split()\n"
                "        mu[%d].append(float(items[%d]))\n\n",
                c.dir, temps[i], (int)i, 2);
        text += format_string("sys.stdout.write(\"  Writing file mob_%s.dat ...\\n\")\n\n", c.letter);
        text += format_string("with open(\"mob_%s.dat\", \"w\") as n:\n", c.letter);
        const char* directions[4] = {"a", "b", "c", "av"};
        for (int d = 0; d < 4; d++) {
            text += format_string("    n.write(\"dir_%s:\\n\")\n", directions[d]);
            for (size_t i = 0; i < temps.size(); i++)
                text += format_string("    n.write(\"%.0f  %%12.6e  cm^{2}/Vs\\n\" %% (mu[%d][%d]))\n", temps[i],
                                      (int)i, d);
        }
        text += "\n";
    }
    create_directories(dir);
    write_script_file(std::string(dir) + "/get_mob.py", text, 5544);
}
