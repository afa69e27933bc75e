// Reorganisation-energy (RE) jobs: optimisation-and-frequency inputs of every
// (or every unique) molecule in three charge states, the job scripts with
// their composed bodies, and the driver mol_RE.py, for any engine of the
// engine table.

#include <string>
#include <vector>

#include "mmutil.h"
#include "qc_engines.h"

namespace {

const int kDriverError = 5201;
const int kInputError = 5202;

struct ChargeState {
    const char* word;
    const char* charge_mult;
};

// Inputs are written in this order; jobs and combined bodies take the reverse.
const ChargeState kStates[3] = {{"neutral", "0 1"}, {"cation", "1 2"}, {"anion", "-1 2"}};

// The job body around the engine's run step: skip a finished run, else run
// it, then mark a failure.
const char kBodyHead[] =
    "python @W@/scr/@CHECK@ @W@/RE/@C@.@OUT@\n"
    "if [ $? == 0 ]; then\n"
    "    echo \"Normal termination of @LABEL@ detected, skip the current @LABEL@ run.\"\n"
    "else\n";
const char kBodyTail[] =
    "fi\n\n"
    "python @W@/scr/@CHECK@ @W@/RE/@C@.@OUT@\n"
    "if [ $? != 0 ]; then\n"
    "    touch @W@/RUN/ERROR-RE-@C@\n"
    "fi\n\n";

void format_re_body(Transport& t, const QcEngine& e, std::string& out, int imol, const char* state)
{
    const std::string calc = format_string("re-mol%d-%s", imol + 1, state);
    out = expand_template(std::string(kBodyHead) + e.re_run + kBodyTail,
                          {{"W", t.work_dir},
                           {"C", calc},
                           {"CHECK", e.re_check},
                           {"OUT", e.output_ext},
                           {"LABEL", e.label},
                           {"EXE", t.qc_exe},
                           {"FORMCHK", t.formchk_exe},
                           {"ORCA_2MKL", t.orca_2mkl_exe},
                           {"ARGS", t.orca_args},
                           {"PPN", std::to_string(t.get_run_ppn())}});
}

// One-based ids of the molecules to compute, in order.
std::vector<int> re_molecules(Transport& t, bool unique)
{
    if (t.nmols > 0 && (!t.natoms_mol || !t.atypes_mol || !t.x_mol))
        job_input_error(kInputError, "No molecules: read the structure before writing RE jobs");
    const int count = unique ? t.re_unique_count : t.nmols;
    // The duplicate check keeps at least one molecule of any cell.
    if (unique && (count > 0 ? !t.re_unique_list : t.nmols > 0))
        job_input_error(kInputError, "No unique RE molecule list: run the RE duplicate check first");
    std::vector<int> ids;
    for (int k = 0; k < count; k++) {
        ids.push_back(unique ? t.re_unique_list[k] : k + 1);
        if (ids.back() < 1 || ids.back() > t.nmols)
            job_input_error(kInputError, format_string("Unique RE molecule id %d is not one of 1..%d",
                                                       ids.back(), t.nmols));
    }
    return ids;
}

struct REJob {
    std::string script, mol_name, job_name, marker, body;
};

void submit_re_job(Transport& t, const QcEngine& e, const REJob& job, std::string& py)
{
    const std::string marker_path = t.run_dir + "/" + job.marker;
    e.re_job(t, job.script.c_str(), job.mol_name.c_str(), job.job_name.c_str(),
             marker_path.c_str(), job.body.c_str());
    py += e.re_separator + python_touch(t, marker_path) +
          python_submit(t, "../" + t.jobs_dir + "/" + job.script) + "\n";
}

// One job per molecule running anion, cation and neutral in turn.
REJob combined_job(Transport& t, const QcEngine& e, int id)
{
    const std::string mol = "mol" + std::to_string(id);
    REJob job{"job_re-" + mol, mol, mol, "running.re_" + mol, ""};
    for (int s = 2; s >= 0; s--) {
        std::string part;
        format_re_body(t, e, part, id - 1, kStates[s].word);
        job.body += part;
    }
    return job;
}

REJob separated_job(Transport& t, const QcEngine& e, int id, int s, bool unique)
{
    const TemplateValues names = {{"I", std::to_string(id)}, {"S", kStates[s].word}};
    const bool own_neutral = unique && s == 0 && e.re_unique_neutral_marker;
    REJob job{expand_template(e.re_script, names), "mol" + std::to_string(id),
              expand_template("mol@I@-@S@", names),
              expand_template(own_neutral ? e.re_unique_neutral_marker : e.re_marker, names), ""};
    format_re_body(t, e, job.body, id - 1, kStates[s].word);
    return job;
}

void write_re_set(Transport& t, const QcEngine& e, bool unique, bool combined)
{
    const std::vector<int> ids = re_molecules(t, unique);
    const std::string driver = t.scr_dir + "/mol_RE.py";
    prepare_driver(t, t.re_dir, driver, kDriverError);
    std::string py = "#!/usr/bin/env python\nimport os\n\ncwd = os.getcwd()\n";
    py += format_string("os.chdir(\"%s\")\n\n", t.re_dir.c_str());
    for (int id : ids)
        for (const ChargeState& state : kStates) {
            const std::string calc = format_string("re-mol%d-%s", id, state.word);
            const std::string path = t.re_dir + "/" + calc + "." + e.input_ext;
            const std::string title = "mol" + std::to_string(id);
            e.re_input(t, path.c_str(), t.natoms_mol[id - 1], t.atypes_mol[id - 1],
                       t.x_mol[id - 1], title.c_str(), calc.c_str(), state.charge_mult);
        }
    if (combined)
        for (int id : ids) submit_re_job(t, e, combined_job(t, e, id), py);
    else
        for (int s = 2; s >= 0; s--)
            for (int id : ids) submit_re_job(t, e, separated_job(t, e, id, s, unique), py);
    py += "os.chdir(cwd)\n\n";
    write_script_file(driver, py, kDriverError);
}

}  // namespace

// clang-format off
void Transport::write_RE_gaussian_mol_gjf_and_job()                  { write_re_set(*this, kGaussianEngine, false, true); }
void Transport::write_RE_gaussian_mol_gjf_and_job_separated()        { write_re_set(*this, kGaussianEngine, false, false); }
void Transport::write_RE_gaussian_mol_gjf_and_job_unique()           { write_re_set(*this, kGaussianEngine, true, true); }
void Transport::write_RE_gaussian_mol_gjf_and_job_unique_separated() { write_re_set(*this, kGaussianEngine, true, false); }
void Transport::write_RE_orca_mol_inp_and_job_seperated()            { write_re_set(*this, kOrcaEngine, false, false); }
void Transport::write_RE_orca_mol_inp_and_job_unique_seperated()     { write_re_set(*this, kOrcaEngine, true, false); }
void Transport::write_RE_qchem_mol_inp_and_job_seperated()           { write_re_set(*this, kQchemEngine, false, false); }
void Transport::write_RE_qchem_mol_inp_and_job_unique_seperated()    { write_re_set(*this, kQchemEngine, true, false); }

void Transport::format_RE_gaussian_job_string(std::string& out, int imol, const char* state) { format_re_body(*this, kGaussianEngine, out, imol, state); }
void Transport::format_RE_orca_job_string(std::string& out, int imol, const char* state)     { format_re_body(*this, kOrcaEngine, out, imol, state); }
void Transport::format_RE_qchem_job_string(std::string& out, int imol, const char* state)    { format_re_body(*this, kQchemEngine, out, imol, state); }
// clang-format on

// Gaussian runs the three states of a molecule in one job; the other
// engines have one job per state.
void Transport::write_RE_inputs_and_jobs()
{
    const QcEngine& e = qc_engine_for(compute_engine);
    write_re_set(*this, e, get_unique_RE_calc_flag(), &e == &kGaussianEngine);
}
