// The engine table of the quantum-chemistry job generators, and the driver
// script pieces that the transfer-integral and reorganisation-energy drivers
// share.

#include <cstdio>
#include <cstdlib>

#include "mmutil.h"
#include "qc_engines.h"

namespace {

// ---- input writers, with the settings every job generator passes ------------

void gaussian_hl_input(Transport& t, const char* path, int n, int* z, double* x, const char* title,
                       const char* chk)
{
    t.write_gau_mol_com_HL(path, n, z, x, title, chk, t.qc_basis.c_str(), t.qc_memory,
                           t.get_run_nodes(), t.get_run_ppn(), t.qc_inp_append);
}

void orca_hl_input(Transport& t, const char* path, int n, int* z, double* x, const char*,
                   const char*)
{
    t.write_orca_mol_inp_HL(path, n, z, x, t.qc_memory, t.get_run_ppn(), t.qc_method.c_str(),
                            t.qc_basis.c_str(), t.qc_inp_append);
}

void qchem_hl_input(Transport& t, const char* path, int n, int* z, double* x, const char*,
                    const char*)
{
    t.write_qchem_mol_inp_HL(path, n, z, x, t.qc_memory, t.get_run_ppn(), t.qc_method.c_str(),
                             t.qc_basis.c_str(), t.qc_inp_append);
}

void gaussian_re_input(Transport& t, const char* path, int n, int* z, double* x, const char* title,
                       const char* chk, const char* charge_mult)
{
    t.write_gau_mol_com_RE(path, n, z, x, title, chk, charge_mult, t.qc_basis_re.c_str(),
                           t.qc_memory, t.get_run_nodes(), t.get_run_ppn(), t.qc_inp_append);
}

void orca_re_input(Transport& t, const char* path, int n, int* z, double* x, const char*,
                   const char*, const char* charge_mult)
{
    t.write_orca_mol_inp_RE(path, n, z, x, t.qc_memory, t.get_run_ppn(), charge_mult,
                            t.qc_method.c_str(), t.qc_basis_re.c_str(), t.qc_inp_append);
}

void qchem_re_input(Transport& t, const char* path, int n, int* z, double* x, const char*,
                    const char*, const char* charge_mult)
{
    t.write_qchem_mol_inp_RE(path, n, z, x, t.qc_memory, t.get_run_ppn(), charge_mult,
                             t.qc_method.c_str(), t.qc_basis_re.c_str(), t.qc_inp_append);
}

// ---- job writers ---------------------------------------------------------------

void gaussian_re_job(Transport& t, const char* script, const char*, const char* job_name,
                     const char* marker, const char* body)
{
    t.write_gaussian_RE_job(script, t.get_run_nodes(), t.get_run_ppn(), body, job_name, marker);
}

void orca_re_job(Transport& t, const char* script, const char* mol_name, const char* job_name,
                 const char* marker, const char* body)
{
    t.write_orca_RE_job(script, t.get_run_nodes(), t.get_run_ppn(), mol_name, job_name, marker,
                        body);
}

void qchem_re_job(Transport& t, const char* script, const char* mol_name, const char* job_name,
                  const char* marker, const char* body)
{
    t.write_qchem_RE_job(script, t.get_run_nodes(), t.get_run_ppn(), mol_name, job_name, marker,
                         body);
}

// ---- driver frames -------------------------------------------------------------

const char kOs[] = "import os\n\n";
const char kOsGlobShutil[] = "import os\nimport glob\nimport shutil\n\n";
const char kChdir[] = "os.chdir(\"@DIR@\")\n\n";
const char kSep[] = "# ----\n\n";
const char kGapSep[] = "\n# ----\n\n";

// clang-format off
// Columns: imports, change into the HL directory, before a single job, after an array's touch lines.
// Rows: unit-cell molecules, neighbours, dimers; plain variant left, unique right.
const HLDriverFrame kGaussianFrames[3][2] = {
    {{kOs,           kChdir,                  "",   "\n"},  {kOs,           kChdir,                  kSep, "\n"}},
    {{kOs,           kChdir,                  "",   "\n"},  {kOs,           kChdir,                  kSep, "\n"}},
    {{kOs,           kChdir,                  "",   ""},    {kOs,           kChdir,                  kSep, "\n"}},
};
const HLDriverFrame kScratchEngineFrames[3][2] = {
    {{kOs,           "os.chdir(\"@DIR@\")\n", kSep, kSep},  {kOs,           "os.chdir('@DIR@')\n\n", kSep, kGapSep}},
    {{kOs,           kChdir,                  kSep, kSep},  {kOs,           kChdir,                  kSep, kGapSep}},
    {{kOsGlobShutil, kChdir,                  kSep, kSep},  {kOsGlobShutil, kChdir,                  kSep, kGapSep}},
};
// clang-format on

// What runs between "else" and "fi" in a reorganisation-energy job body.
const char kGaussianRun[] =
    "    echo \"Run Gaussian job @C@...\"\n"
    "    @EXE@ @C@.com\n"
    "    @FORMCHK@ @C@.chk\n";

const char kQchemRun[] =
    "    echo \"Run Q-Chem job @C@...\"\n"
    "    @EXE@ -nt @PPN@ @C@.inp > @C@.out\n";

// ORCA works in the scratch directory that the job header names.
const char kOrcaRun[] =
    "    if [ ! -a $SCRDIR ]; then\n"
    "        echo \"Scratch directory $SCRDIR created.\"\n"
    "        mkdir -p $SCRDIR\n"
    "    fi\n\n"
    "    cp ${DataDir}/@C@.inp $SCRDIR\n"
    "    cd ${SCRDIR}\n"
    "    echo \"Working directory is ${SCRDIR}\"\n\n"
    "    @EXE@ @C@.inp @ARGS@ > @C@.out\n"
    "    @ORCA_2MKL@ @C@\n\n"
    "    CurrDir=`pwd`\n"
    "    if [ $CurrDir != $DataDir ]; then\n"
    "        echo \"Copy data back to work directory...\"\n"
    "        mv $CurrDir/@C@.out $DataDir\n"
    "        mv $CurrDir/@C@.mkl $DataDir\n"
    "        mv $CurrDir/@C@.hess $DataDir\n"
    "    fi\n"
    "    rm -Rf $SCRDIR\n";

bool can_open_for_writing(const std::string& path)
{
    const bool existed = fileExist(path.c_str());
    FILE* f = fopen(path.c_str(), "a");
    if (!f) return false;
    fclose(f);
    if (!existed) remove(path.c_str());
    return true;
}

}  // namespace

// clang-format off
const QcEngine kGaussianEngine = {"Gaussian", "com", "log", "log",  {"fchk", "log"}, "",        &Transport::write_gaussian_log_check_py_file, false, gaussian_hl_input, &Jobscript::write_gaussian_HL_job, &Jobscript::write_gaussian_HL_job_array, kGaussianFrames,      "running.HL_2mol_unique",
                                  gaussian_re_input, gaussian_re_job, "gaussian_log_check.py", kGaussianRun, "",   "job_re-mol@I@-@S@", "running.re_mol@I@-@S@", nullptr};
const QcEngine kOrcaEngine     = {"ORCA",     "inp", "out", "hess", {"hess"},        " -orca",  &Transport::write_orca_out_check_py_file,     false, orca_hl_input,     &Jobscript::write_orca_HL_job,     &Jobscript::write_orca_HL_job_array,     kScratchEngineFrames, "running.HL_2mol",
                                  orca_re_input,     orca_re_job,     "orca_out_check.py",     kOrcaRun,     kSep, "job_re_mol@I@-@S@", "running.RE-mol@I@-@S@", "running.mol@I@-@S@"};
const QcEngine kQchemEngine    = {"Q-Chem",   "inp", "out", "out",  {"fchk", "out"}, " -qchem", &Transport::write_qchem_out_check_py_file,    true,  qchem_hl_input,    &Jobscript::write_qchem_HL_job,    &Jobscript::write_qchem_HL_job_array,    kScratchEngineFrames, "running.HL_2mol",
                                  qchem_re_input,    qchem_re_job,    "qchem_out_check.py",    kQchemRun,    kSep, "job_re-mol@I@-@S@", "running.re-mol@I@-@S@", nullptr};
// clang-format on

const QcEngine* qc_engine_or_null(int compute_engine)
{
    static const QcEngine* const engines[3] = {&kGaussianEngine, &kOrcaEngine, &kQchemEngine};
    return compute_engine >= 1 && compute_engine <= 3 ? engines[compute_engine - 1] : nullptr;
}

const QcEngine& qc_engine_for(int compute_engine)
{
    if (const QcEngine* e = qc_engine_or_null(compute_engine)) return *e;
    veska_fatal("transport", 5001, -1, stderr,
                "Unknown compute_engine %d (1 = Gaussian, 2 = ORCA, 3 = Q-Chem)\n", compute_engine);
}

std::string expand_template(const std::string& tmpl, const TemplateValues& values)
{
    std::string out;
    size_t pos = 0;
    while (pos < tmpl.size()) {
        const size_t at = tmpl.find('@', pos);
        const size_t end = at == std::string::npos ? at : tmpl.find('@', at + 1);
        if (end == std::string::npos) return out.append(tmpl, pos, std::string::npos);
        out.append(tmpl, pos, at - pos);
        const std::string name = tmpl.substr(at + 1, end - at - 1);
        const std::string* value = nullptr;
        for (const auto& v : values)
            if (!value && name == v.first) value = &v.second;
        out += value ? *value : "@";
        pos = value ? end + 1 : at + 1;
    }
    return out;
}

void prepare_driver(Transport& t, const std::string& area_dir, const std::string& path,
                    int error_line)
{
    // The submit command and job extension are read per scheduler below.
    if (t.job_sched_type < 0 || t.job_sched_type > 3)
        veska_fatal("transport", error_line, -1, stderr, "Unknown job scheduling type!\n");
    create_directory(t.scr_dir.c_str());
    create_directory(area_dir.c_str());
    // The drivers touch running markers there before any job runs.
    create_directory(t.run_dir.c_str());
    if (!can_open_for_writing(path)) veska_fatal_open_output("transport", error_line, path.c_str());
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

void job_input_error(int line, const std::string& what)
{
    veska_fatal("transport", line, -1, stderr, "%s\n", what.c_str());
}
