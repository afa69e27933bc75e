// What each kind of job runs: small builders over the shared pieces, and
// the table of kinds with their locations, modules and error numbers.

#include "job_compose.h"

namespace {

// ---- pieces shared by several kinds -------------------------------------

const char kStarting[] = "echo \"Starting job run at `date`\"\n";
const char kMemberOpener[] = "# ----------------------------------------------------\n# mol-@INDEX@\n";

void starting(JobText& t, bool blank)
{
    t.add(kStarting);
    if (blank) t.out += '\n';
}

void workdir_lines(JobText& t, bool cd_first)
{
    const char* cd = "cd @SUBMIT_CD@\n";
    const char* echo = "echo \"Working directory is @SUBMIT_ECHO@\"\n";
    t.add(cd_first ? cd : echo);
    t.add(cd_first ? echo : cd);
}

// DataDir and the change into the submission directory (not in local runs).
void data_and_work_dir(JobText& t)
{
    if (!t.scheduled()) return;
    t.add("DataDir=@WORK@/@AREA@\n\n");
    workdir_lines(t, t.dialect.cd_before_echo);
    t.out += '\n';
}

void submit_dir_echo_first(JobText& t)
{
    if (!t.scheduled()) return;
    workdir_lines(t, false);
    t.out += '\n';
}

void copy_back(JobText& t)
{
    t.add("CurrDir=`pwd`\n"
          "if [ $DataDir != $CurrDir ]; then\n"
          "    echo \"Copy data back to @AREA@ directory...\"\n"
          "    mv $CurrDir/*  $DataDir\n"
          "    rm -Rf $CurrDir\n"
          "fi\n\n");
}

void body_and_marker(JobText& t)
{
    t.out += t.request.body;
    t.add("\nrm -f @WORK@/@MARKER@\n\n");
}

// ---- members: what one calculation runs ---------------------------------

void gaussian_hl_member(JobText& t)
{
    t.add("python @WORK@/scr/gaussian_log_check.py @WORK@/HL/@INPUT@.log\n"
          "if [ $? == 0 ]; then\n"
          "    echo \"Normal termination of Gaussian detected, skip the current Gaussian run.\"\n"
          "else\n"
          "    @QC_EXE@ @INPUT@.com\n"
          "fi\n\n"
          "python @WORK@/scr/gaussian_log_check.py @WORK@/HL/@INPUT@.log\n"
          "if [ $? != 0 ]; then\n"
          "    touch @WORK@/RUN/ERROR-HL_@INPUT@\n"
          "else\n"
          "    @FORMCHK@ @INPUT@.chk\n"
          "fi\n\n"
          "rm -f @WORK@/@MARKER@\n\n");
}

void orca_hl_member(JobText& t)
{
    t.add("python @WORK@/scr/orca_out_check.py @WORK@/HL/@INPUT@.out\n"
          "if [ $? == 0 ]; then\n"
          "    echo \"Normal termination of ORCA detected, skip the current ORCA run.\"\n"
          "else\n"
          "    SCRDIR=@SCRATCH@/@HL_SCRATCH@\n"
          "    if [ ! -a $SCRDIR ]; then\n"
          "        echo \"Scratch directory $SCRDIR created.\"\n"
          "        mkdir -p $SCRDIR\n"
          "    fi\n\n"
          "    cp @DATADIR_REF@/@INPUT@.inp $SCRDIR\n"
          "    cd @SCRATCH_CD@\n"
          "    echo \"Working directory is ${SCRDIR}\"\n\n"
          "    @QC_EXE@ @INPUT@.inp @ORCA_ARGS@ > @INPUT@.out\n"
          "    @ORCA_2MKL@ @INPUT@\n\n"
          "    CurrDir=`pwd`\n"
          "    if [ @COPY_TEST@ ]; then\n"
          "        echo \"Copy data back to HL directory...\"\n"
          "        mv @COPY_FROM@/@INPUT@.out $DataDir\n"
          "        mv @COPY_FROM@/@INPUT@.mkl $DataDir\n"
          "    fi\n"
          "    rm -Rf $SCRDIR\n"
          "fi\n"
          "python @WORK@/scr/orca_out_check.py @WORK@/HL/@INPUT@.out\n"
          "if [ $? != 0 ]; then\n"
          "    touch @WORK@/RUN/ERROR-HL_@INPUT@\n"
          "fi\n"
          "rm -f @WORK@/@MARKER@\n");
}

void qchem_hl_member(JobText& t)
{
    t.add("python @WORK@/scr/qchem_out_check.py @WORK@/HL/@INPUT@.out\n"
          "if [ $? == 0 ]; then\n"
          "    echo \"Normal termination of Q-Chem detected, skip the current Q-Chem run.\"\n"
          "else\n"
          "    @QC_EXE@ -nt @PPN@ @INPUT@.inp > @INPUT@.out\n\n"
          "fi\n"
          "python @WORK@/scr/qchem_out_check.py @WORK@/HL/@INPUT@.out\n"
          "if [ $? != 0 ]; then\n"
          "  touch @WORK@/RUN/ERROR-HL_@INPUT@\n"
          "fi\n"
          "rm -f @WORK@/@MARKER@\n");
}

void transint_member(JobText& t)
{
    t.add("@PROGRAM@ -batch mol@INDEX@_@TRANS_INT_FILES@ -prefix V -postfix @INDEX@\n\n"
          "rm -f @WORK@/@MARKER@\n\n");
}

// ---- the part of each kind after its module line ------------------------

// Gaussian jobs run in the submission directory and move results back.
void gaussian_frame(JobText& t, void (*member)(JobText&))
{
    if (t.scheduled()) starting(t, true);
    t.members(member, kMemberOpener);
    if (t.scheduled()) copy_back(t);
}

void gaussian_hl(JobText& t) { gaussian_frame(t, gaussian_hl_member); }

void gaussian_re(JobText& t) { gaussian_frame(t, body_and_marker); }

void orca_hl(JobText& t)
{
    t.add("DataDir=@WORK@/HL\n");
    starting(t, false);
    t.members(orca_hl_member, kMemberOpener);
}

void qchem_hl(JobText& t)
{
    starting(t, false);
    t.members(qchem_hl_member, kMemberOpener);
}

// ORCA and Q-Chem reorganisation-energy bodies work in SCRDIR themselves.
void scratch_re(JobText& t)
{
    t.add("DataDir=@WORK@/RE\nSCRDIR=@SCRATCH@/@RE_SCRATCH@\n\n");
    starting(t, true);
    body_and_marker(t);
}

void plain_run(JobText& t)
{
    starting(t, true);
    body_and_marker(t);
}

// The local Monte Carlo run starts the OpenMP program itself.
void mc_run(JobText& t)
{
    if (t.scheduled()) return plain_run(t);
    starting(t, true);
    t.add("hopmc_OMP.exe\n\nrm -f @WORK@/@MARKER@\n\n");
}

void get_hl(JobText& t)
{
    if (t.scheduled()) t.add("cd @SUBMIT_CD@\n");
    t.add("cd @DIR@\necho \"Working directory is `pwd`\"\n\n");
    plain_run(t);
}

void transint(JobText& t)
{
    t.add("cd @WORK@\ncd @DIR@\necho \"Working directory is `pwd`\"\n\n");
    plain_run(t);
}

void transint_array(JobText& t)
{
    if (t.scheduled()) {
        t.add("cd @WORK@\ncd @DIR@\necho \"Working directory is `pwd`\"\n\n");
        starting(t, true);
    } else {
        starting(t, false);
        t.add("cd @DIR@\n");
    }
    t.members(transint_member, nullptr);
}

}  // namespace

// clang-format off
// Columns: in jobs_dir, array, module, data area, LSF name prefix, stdout in directory, SLURM output
// line last, builders before and after the module line, empty lines after Ending (scheduled, local),
// dispatcher error number, writer error numbers (PBS, SLURM, LSF, local).
const JobKind kGaussianHLJob        = {true,  false, kModuleQc,              "HL",    "HL-",       false, false, data_and_work_dir,     gaussian_hl,    0, 0, 510, {218, 296, 373, 451}};
const JobKind kGaussianHLArrayJob   = {true,  true,  kModuleQc,              "HL",    "HL-",       false, false, data_and_work_dir,     gaussian_hl,    0, 0, 897, {905, 906, 907, 908}};
const JobKind kGaussianREJob        = {true,  false, kModuleQc,              "RE",    "RE-",       false, false, data_and_work_dir,     gaussian_re,    1, 1, 611, {612, 613, 614, 615}};
const JobKind kOrcaHLJob            = {true,  false, kModuleQc,              "HL",    "HL-",       false, false, nullptr,               orca_hl,        0, 0, 621, {622, 623, 624, 625}};
const JobKind kOrcaHLArrayJob       = {true,  true,  kModuleQc,              "HL",    "HL-",       false, false, nullptr,               orca_hl,        0, 0, 631, {632, 633, 634, 635}};
const JobKind kOrcaREJob            = {true,  false, kModuleQc,              "RE",    "RE-",       false, false, nullptr,               scratch_re,     1, 1, 641, {642, 643, 644, 645}};
const JobKind kQchemHLJob           = {true,  false, kModuleQc,              "HL",    "HL-",       false, false, data_and_work_dir,     qchem_hl,       0, 0, 651, {652, 653, 654, 655}};
const JobKind kQchemHLArrayJob      = {true,  true,  kModuleQc,              "HL",    "HL-",       false, false, data_and_work_dir,     qchem_hl,       0, 0, 661, {662, 663, 664, 665}};
const JobKind kQchemREJob           = {true,  false, kModuleQc,              "RE",    "RE-",       false, false, nullptr,               scratch_re,     1, 1, 671, {672, 673, 674, 675}};
const JobKind kMCJob                = {false, false, kModuleMpiButQcLocally, nullptr, "MC-",       false, true,  submit_dir_echo_first, mc_run,         1, 1, 681, {682, 683, 684, 685}};
const JobKind kMEJob                = {false, false, kModuleMpi,             nullptr, "ME-",       false, false, submit_dir_echo_first, plain_run,      1, 1, 691, {692, 693, 694, 695}};
const JobKind kCalcMobJob           = {false, false, kModuleMpi,             nullptr, "mc-mob-",   false, true,  submit_dir_echo_first, plain_run,      1, 1, 701, {702, 703, 704, 705}};
const JobKind kCalcGetREJob         = {false, false, kModuleMpi,             nullptr, "getRE-",    false, false, submit_dir_echo_first, plain_run,      1, 1, 711, {712, 713, 714, 715}};
const JobKind kCalcGetHLJob         = {false, false, kModuleMpi,             nullptr, "",          true,  false, nullptr,               get_hl,         1, 1, 721, {722, 723, 724, 725}};
const JobKind kCalcTransintJob      = {false, false, kModuleMpi,             nullptr, "Transint-", true,  false, nullptr,               transint,       1, 1, 731, {732, 733, 734, 735}};
const JobKind kCalcTransintArrayJob = {false, true,  kModuleMpi,             nullptr, "",          true,  false, nullptr,               transint_array, 1, 0, 741, {742, 743, 744, 745}};
// clang-format on
