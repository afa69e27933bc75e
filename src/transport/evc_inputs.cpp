// Inputs of the normal-mode runs that give reorganisation energies: one
// &evc namelist per molecule and carrier, and the scripts that lay out the
// run directories under evc/ and submit one job per molecule and carrier.

#include <cctype>
#include <cstdio>

#include "mmutil.h"
#include "script_output.h"
#include "transport.h"

namespace {

// Normal modes of the charged state against the neutral one, then their
// conversion into the table the Monte Carlo stage reads.
const char kNormalModeCommands[] = "nmodes.exe evc.inp\nnmconvert.exe evc.cart.dat NM.dat\n";

// The carriers that `chargetype` asks for: e, h or a (both), any case.
std::vector<const ScriptCarrier*> requested_carriers(const std::string& chargetype)
{
    char c = chargetype.empty() ? '\0' : (char)tolower((unsigned char)chargetype[0]);
    std::vector<const ScriptCarrier*> carriers;
    if (c == 'e' || c == 'a') carriers.push_back(&kScriptCarriers[0]);
    if (c == 'h' || c == 'a') carriers.push_back(&kScriptCarriers[1]);
    return carriers;
}

std::string evc_input_text(const Transport& t, int mol, const ScriptCarrier& carrier,
                           const std::vector<std::string>& bonds)
{
    std::string text = "&evc\n";
    if (const QcEngine* engine = qc_engine_or_null(t.compute_engine))
        text += format_string("  ffreq(1)  = \"re-mol%d-neutral.%s\"\n  ffreq(2)  = \"re-mol%d-%s.%s\"\n", mol,
                              engine->freq_ext, mol, carrier.charged_state, engine->freq_ext);
    text += "  sort_mode = 1\n  proj_reorg = .t.\n";
    if (t.eckart_mirror) text += "  eckart_mirror = .t.\n";
    text += "  if_add_int_coord = .t.\n  def_add_int_coord = \n";
    for (const std::string& bond : bonds) text += "        " + bond + "\n";
    return text + "/\n";
}

void write_evc_inputs(Transport& t, const std::vector<int>& ids)
{
    create_directory(t.re_dir.c_str());
    std::vector<const ScriptCarrier*> carriers = requested_carriers(t.chargetype);
    std::vector<std::string> bonds;
    for (int mol : ids) {
        bonds.clear();
        t.load_bonds_data(format_string("%s/mol%d_bonds.dat", t.data_dir.c_str(), mol).c_str(), bonds);
        for (const ScriptCarrier* c : carriers)
            write_script_file(format_string("%s/evc-%s-mol%d.inp", t.re_dir.c_str(), c->letter, mol),
                              evc_input_text(t, mol, *c, bonds), 5402);
    }
}

const char kPrepareHead[] =
    "sys.stdout.write(\"Prepare for evc calculations ...\\n\")\n\n"
    "rootdir = os.getcwd()\n\n"
    "access_rights = 493\n\n"
    "if not os.path.isdir(\"evc\"):\n"
    "    os.mkdir(\"evc\", access_rights)\n\n"
    "os.chdir(\"evc\")\n"
    "evcdir = os.getcwd()\n\n";

// One normal-mode job: directory, script, name and running marker.
struct NormalModeJob {
    std::string dir, script, name, marker;
};

NormalModeJob normal_mode_job(const Transport& t, int mol, const ScriptCarrier& c)
{
    NormalModeJob job;
    job.dir = format_string("%s/evc/mol%d/%s", t.work_dir.c_str(), mol, c.dir);
    job.script = job.dir + "/job_get_NM";
    job.name = format_string("evc_mol%d_%s", mol, c.dir);
    job.marker = format_string("%s/running.run_evc_mol%d_%s", t.run_dir.c_str(), mol, c.dir);
    return job;
}

void write_prepare_evc(Transport& t, const char* name, const std::vector<int>& ids)
{
    const QcEngine* engine = qc_engine_or_null(t.compute_engine);
    std::string run = "#!/usr/bin/env python\nimport os\nimport sys\n\n";
    std::string prepare = "#!/usr/bin/env python\n\nimport os\nimport sys\nfrom shutil import copyfile\n\n";
    if (engine && engine->lowercase_fchk)
        prepare += format_string("os.system(\"python %s/qchem_fchk_ext_lowercase.py %s\")\n\n", t.scr_dir.c_str(),
                                 t.re_dir.c_str());
    prepare += kPrepareHead;
    std::vector<NormalModeJob> jobs;
    for (int mol : ids) {
        std::string dir = format_string("mol%d", mol);
        prepare += format_string("sys.stdout.write(\"  Treating mol%02d ...\\n\")\nos.chdir(evcdir)\n\n", mol);
        prepare += python_mkdir(dir) + "\n" + format_string("os.chdir(\"%s\")\n\n", dir.c_str());
        for (const ScriptCarrier& c : kScriptCarriers) {
            prepare += python_mkdir(c.dir) + "\n";
            prepare += evc_copy_lines(c, mol, engine ? engine->evc_exts : std::vector<const char*>{}) + "\n\n";
            jobs.push_back(normal_mode_job(t, mol, c));
            const NormalModeJob& job = jobs.back();
            run += python_touch(t, job.marker) + format_string("os.chdir(\"%s\")\n", job.dir.c_str());
            run += python_submit(t, "job_get_NM");
            run += (&c == &kScriptCarriers[1]) ? "\n\n" : "\n";  // a blank line after each molecule
        }
    }
    create_directory(t.scr_dir.c_str());
    write_script_file(t.scr_dir + "/run_RE.py", run, 5403);
    write_script_file(t.scr_dir + "/" + name, prepare, 5404);
    // The run directories exist before the preparation script runs, so
    // that the job scripts can be placed in them.
    for (const NormalModeJob& job : jobs) {
        create_directories(job.dir);
        t.write_calc_getRE_job(job.script.c_str(), 1, t.run_ppn, job.name.c_str(), job.marker.c_str(),
                               kNormalModeCommands);
    }
}

}  // namespace

void Transport::load_bonds_data(const char* path, std::vector<std::string>& lines)
{
    std::vector<std::string> file;
    if (!read_text_lines(path, file, false))
        veska_fatal("transport", 5401, -1, stderr, "Failed to open input file \"%s\"\n", path);
    if (file.empty()) {
        printf("WARNING: bond list %s is empty: no internal coordinates are added\n", path);
        return;
    }
    int count = read_int_clamped(file[0].c_str());
    if (count > (int)file.size() - 1)
        printf("WARNING: bond list %s announces %d bonds on its first line but holds %d bond lines\n", path, count,
               (int)file.size() - 1);
    for (int b = 1; b <= count && b < (int)file.size(); b++) {
        std::string line = file[b];
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
}

void Transport::write_evc_inp_file()
{
    write_evc_inputs(*this, molecule_ids(nmols));
}

void Transport::write_evc_inp_file_unique()
{
    write_evc_inputs(*this, unique_re_ids(*this));
}

void Transport::write_prepare_evc_files(const char* name)
{
    write_prepare_evc(*this, name, molecule_ids(nmols));
}

void Transport::write_prepare_evc_files_unique(const char* name)
{
    write_prepare_evc(*this, name, unique_re_ids(*this));
}
