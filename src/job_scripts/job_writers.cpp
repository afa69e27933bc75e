// The named writers: each fills a request from its arguments and hands it
// to emit_job_script with its dialect (kDispatch for the dispatchers).

#include "job_compose.h"

namespace {

JobRequest request(const JobKind& kind, const char* script_name, int nodes, int ppn, const char* job_tag,
                   const char* marker_file)
{
    JobRequest r;
    r.kind = &kind;
    r.script_name = script_name;
    r.nodes = nodes;
    r.ppn = ppn;
    r.job_tag = job_tag;
    r.marker_file = marker_file;
    return r;
}

JobRequest qc_request(const JobKind& kind, const char* script_name, int nodes, int ppn, const char* input_name,
                      const char* job_tag, const char* marker_file)
{
    JobRequest r = request(kind, script_name, nodes, ppn, job_tag, marker_file);
    r.input_name = input_name;
    return r;
}

JobRequest array_request(JobRequest r, int count, const int* indexes)
{
    r.count = count;
    r.indexes = indexes;
    return r;
}

JobRequest body_request(const JobKind& kind, const char* script_name, int nodes, int ppn, const char* job_tag,
                        const char* marker_file, const char* body, const char* line_end = "")
{
    JobRequest r = request(kind, script_name, nodes, ppn, job_tag, marker_file);
    r.body = std::string(body ? body : "") + line_end;
    return r;
}

JobRequest qc_body_request(const JobKind& kind, const char* script_name, int nodes, int ppn, const char* input_name,
                           const char* job_tag, const char* marker_file, const char* body)
{
    JobRequest r = body_request(kind, script_name, nodes, ppn, job_tag, marker_file, body);
    r.input_name = input_name;
    return r;
}

JobRequest dir_request(const JobKind& kind, const char* script_name, int nodes, int ppn, const char* job_tag,
                       const char* marker_file, const char* body, const char* directory)
{
    JobRequest r = body_request(kind, script_name, nodes, ppn, job_tag, marker_file, body);
    r.directory = directory;
    return r;
}

JobRequest transint_array_request(const char* script_name, int nodes, int ppn, const char* job_tag,
                                  const char* marker_file, int count, const int* indexes, const char* program,
                                  const char* directory)
{
    JobRequest r = request(kCalcTransintArrayJob, script_name, nodes, ppn, job_tag, marker_file);
    r.program = program;
    r.directory = directory;
    return array_request(r, count, indexes);
}

}  // namespace

// clang-format off
void Jobscript::write_gaussian_HL_job(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, qc_request(kGaussianHLJob, script_name, nodes, ppn, input_name, job_tag, marker_file), kDispatch); }

void Jobscript::write_gaussian_HL_job_pbs(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, qc_request(kGaussianHLJob, script_name, nodes, ppn, input_name, job_tag, marker_file), kPbs); }

void Jobscript::write_gaussian_HL_job_slurm(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, qc_request(kGaussianHLJob, script_name, nodes, ppn, input_name, job_tag, marker_file), kSlurm); }

void Jobscript::write_gaussian_HL_job_lsf(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, qc_request(kGaussianHLJob, script_name, nodes, ppn, input_name, job_tag, marker_file), kLsf); }

void Jobscript::write_gaussian_HL_job_local(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, qc_request(kGaussianHLJob, script_name, nodes, ppn, input_name, job_tag, marker_file), kLocal); }

void Jobscript::write_gaussian_HL_job_array(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes)
{ emit_job_script(*this, array_request(qc_request(kGaussianHLArrayJob, script_name, nodes, ppn, input_name, job_tag, marker_file), count, indexes), kDispatch); }

void Jobscript::write_gaussian_HL_job_array_pbs(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes)
{ emit_job_script(*this, array_request(qc_request(kGaussianHLArrayJob, script_name, nodes, ppn, input_name, job_tag, marker_file), count, indexes), kPbs); }

void Jobscript::write_gaussian_HL_job_array_slurm(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes)
{ emit_job_script(*this, array_request(qc_request(kGaussianHLArrayJob, script_name, nodes, ppn, input_name, job_tag, marker_file), count, indexes), kSlurm); }

void Jobscript::write_gaussian_HL_job_array_lsf(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes)
{ emit_job_script(*this, array_request(qc_request(kGaussianHLArrayJob, script_name, nodes, ppn, input_name, job_tag, marker_file), count, indexes), kLsf); }

void Jobscript::write_gaussian_HL_job_array_local(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes)
{ emit_job_script(*this, array_request(qc_request(kGaussianHLArrayJob, script_name, nodes, ppn, input_name, job_tag, marker_file), count, indexes), kLocal); }

void Jobscript::write_gaussian_RE_job(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, body_request(kGaussianREJob, script_name, nodes, ppn, job_tag, marker_file, body), kDispatch); }

void Jobscript::write_gaussian_RE_job_pbs(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, body_request(kGaussianREJob, script_name, nodes, ppn, job_tag, marker_file, body), kPbs); }

void Jobscript::write_gaussian_RE_job_slurm(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, body_request(kGaussianREJob, script_name, nodes, ppn, job_tag, marker_file, body), kSlurm); }

void Jobscript::write_gaussian_RE_job_lsf(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, body_request(kGaussianREJob, script_name, nodes, ppn, job_tag, marker_file, body), kLsf); }

void Jobscript::write_gaussian_RE_job_local(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, body_request(kGaussianREJob, script_name, nodes, ppn, job_tag, marker_file, body), kLocal); }

void Jobscript::write_orca_HL_job(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, qc_request(kOrcaHLJob, script_name, nodes, ppn, input_name, job_tag, marker_file), kDispatch); }

void Jobscript::write_orca_HL_job_pbs(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, qc_request(kOrcaHLJob, script_name, nodes, ppn, input_name, job_tag, marker_file), kPbs); }

void Jobscript::write_orca_HL_job_slurm(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, qc_request(kOrcaHLJob, script_name, nodes, ppn, input_name, job_tag, marker_file), kSlurm); }

void Jobscript::write_orca_HL_job_lsf(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, qc_request(kOrcaHLJob, script_name, nodes, ppn, input_name, job_tag, marker_file), kLsf); }

void Jobscript::write_orca_HL_job_local(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, qc_request(kOrcaHLJob, script_name, nodes, ppn, input_name, job_tag, marker_file), kLocal); }

void Jobscript::write_orca_HL_job_array(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes)
{ emit_job_script(*this, array_request(qc_request(kOrcaHLArrayJob, script_name, nodes, ppn, input_name, job_tag, marker_file), count, indexes), kDispatch); }

void Jobscript::write_orca_HL_job_array_pbs(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes)
{ emit_job_script(*this, array_request(qc_request(kOrcaHLArrayJob, script_name, nodes, ppn, input_name, job_tag, marker_file), count, indexes), kPbs); }

void Jobscript::write_orca_HL_job_array_slurm(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes)
{ emit_job_script(*this, array_request(qc_request(kOrcaHLArrayJob, script_name, nodes, ppn, input_name, job_tag, marker_file), count, indexes), kSlurm); }

void Jobscript::write_orca_HL_job_array_lsf(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes)
{ emit_job_script(*this, array_request(qc_request(kOrcaHLArrayJob, script_name, nodes, ppn, input_name, job_tag, marker_file), count, indexes), kLsf); }

void Jobscript::write_orca_HL_job_array_local(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes)
{ emit_job_script(*this, array_request(qc_request(kOrcaHLArrayJob, script_name, nodes, ppn, input_name, job_tag, marker_file), count, indexes), kLocal); }

void Jobscript::write_orca_RE_job(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body)
{ emit_job_script(*this, qc_body_request(kOrcaREJob, script_name, nodes, ppn, input_name, job_tag, marker_file, body), kDispatch); }

void Jobscript::write_orca_RE_job_pbs(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body)
{ emit_job_script(*this, qc_body_request(kOrcaREJob, script_name, nodes, ppn, input_name, job_tag, marker_file, body), kPbs); }

void Jobscript::write_orca_RE_job_slurm(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body)
{ emit_job_script(*this, qc_body_request(kOrcaREJob, script_name, nodes, ppn, input_name, job_tag, marker_file, body), kSlurm); }

void Jobscript::write_orca_RE_job_lsf(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body)
{ emit_job_script(*this, qc_body_request(kOrcaREJob, script_name, nodes, ppn, input_name, job_tag, marker_file, body), kLsf); }

void Jobscript::write_orca_RE_job_local(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body)
{ emit_job_script(*this, qc_body_request(kOrcaREJob, script_name, nodes, ppn, input_name, job_tag, marker_file, body), kLocal); }

void Jobscript::write_qchem_HL_job(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, qc_request(kQchemHLJob, script_name, nodes, ppn, input_name, job_tag, marker_file), kDispatch); }

void Jobscript::write_qchem_HL_job_pbs(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, qc_request(kQchemHLJob, script_name, nodes, ppn, input_name, job_tag, marker_file), kPbs); }

void Jobscript::write_qchem_HL_job_slurm(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, qc_request(kQchemHLJob, script_name, nodes, ppn, input_name, job_tag, marker_file), kSlurm); }

void Jobscript::write_qchem_HL_job_lsf(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, qc_request(kQchemHLJob, script_name, nodes, ppn, input_name, job_tag, marker_file), kLsf); }

void Jobscript::write_qchem_HL_job_local(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, qc_request(kQchemHLJob, script_name, nodes, ppn, input_name, job_tag, marker_file), kLocal); }

void Jobscript::write_qchem_HL_job_array(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes)
{ emit_job_script(*this, array_request(qc_request(kQchemHLArrayJob, script_name, nodes, ppn, input_name, job_tag, marker_file), count, indexes), kDispatch); }

void Jobscript::write_qchem_HL_job_array_pbs(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes)
{ emit_job_script(*this, array_request(qc_request(kQchemHLArrayJob, script_name, nodes, ppn, input_name, job_tag, marker_file), count, indexes), kPbs); }

void Jobscript::write_qchem_HL_job_array_slurm(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes)
{ emit_job_script(*this, array_request(qc_request(kQchemHLArrayJob, script_name, nodes, ppn, input_name, job_tag, marker_file), count, indexes), kSlurm); }

void Jobscript::write_qchem_HL_job_array_lsf(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes)
{ emit_job_script(*this, array_request(qc_request(kQchemHLArrayJob, script_name, nodes, ppn, input_name, job_tag, marker_file), count, indexes), kLsf); }

void Jobscript::write_qchem_HL_job_array_local(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, int count, int* indexes)
{ emit_job_script(*this, array_request(qc_request(kQchemHLArrayJob, script_name, nodes, ppn, input_name, job_tag, marker_file), count, indexes), kLocal); }

void Jobscript::write_qchem_RE_job(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body)
{ emit_job_script(*this, qc_body_request(kQchemREJob, script_name, nodes, ppn, input_name, job_tag, marker_file, body), kDispatch); }

void Jobscript::write_qchem_RE_job_pbs(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body)
{ emit_job_script(*this, qc_body_request(kQchemREJob, script_name, nodes, ppn, input_name, job_tag, marker_file, body), kPbs); }

void Jobscript::write_qchem_RE_job_slurm(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body)
{ emit_job_script(*this, qc_body_request(kQchemREJob, script_name, nodes, ppn, input_name, job_tag, marker_file, body), kSlurm); }

void Jobscript::write_qchem_RE_job_lsf(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body)
{ emit_job_script(*this, qc_body_request(kQchemREJob, script_name, nodes, ppn, input_name, job_tag, marker_file, body), kLsf); }

void Jobscript::write_qchem_RE_job_local(const char* script_name, int nodes, int ppn, const char* input_name, const char* job_tag, const char* marker_file, const char* body)
{ emit_job_script(*this, qc_body_request(kQchemREJob, script_name, nodes, ppn, input_name, job_tag, marker_file, body), kLocal); }

void Jobscript::write_MC_job(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, body_request(kMCJob, script_name, nodes, ppn, job_tag, marker_file, body), kDispatch); }

void Jobscript::write_MC_job_pbs(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, body_request(kMCJob, script_name, nodes, ppn, job_tag, marker_file, body), kPbs); }

void Jobscript::write_MC_job_slurm(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, body_request(kMCJob, script_name, nodes, ppn, job_tag, marker_file, body), kSlurm); }

void Jobscript::write_MC_job_lsf(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, body_request(kMCJob, script_name, nodes, ppn, job_tag, marker_file, body), kLsf); }

void Jobscript::write_MC_job_local(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, body_request(kMCJob, script_name, nodes, ppn, job_tag, marker_file, body), kLocal); }

void Jobscript::write_ME_job(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, body_request(kMEJob, script_name, nodes, ppn, job_tag, marker_file, body), kDispatch); }

void Jobscript::write_ME_job_pbs(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, body_request(kMEJob, script_name, nodes, ppn, job_tag, marker_file, body), kPbs); }

void Jobscript::write_ME_job_slurm(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, body_request(kMEJob, script_name, nodes, ppn, job_tag, marker_file, body), kSlurm); }

void Jobscript::write_ME_job_lsf(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, body_request(kMEJob, script_name, nodes, ppn, job_tag, marker_file, body), kLsf); }

void Jobscript::write_ME_job_local(const char* script_name, int nodes, int ppn, const char* body, const char* job_tag, const char* marker_file)
{ emit_job_script(*this, body_request(kMEJob, script_name, nodes, ppn, job_tag, marker_file, body), kLocal); }

void Jobscript::write_calc_mob_job(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* command)
{ emit_job_script(*this, body_request(kCalcMobJob, script_name, nodes, ppn, job_tag, marker_file, command, "\n"), kDispatch); }

void Jobscript::write_calc_mob_job_pbs(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* command)
{ emit_job_script(*this, body_request(kCalcMobJob, script_name, nodes, ppn, job_tag, marker_file, command, "\n"), kPbs); }

void Jobscript::write_calc_mob_job_slurm(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* command)
{ emit_job_script(*this, body_request(kCalcMobJob, script_name, nodes, ppn, job_tag, marker_file, command, "\n"), kSlurm); }

void Jobscript::write_calc_mob_job_lsf(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* command)
{ emit_job_script(*this, body_request(kCalcMobJob, script_name, nodes, ppn, job_tag, marker_file, command, "\n"), kLsf); }

void Jobscript::write_calc_mob_job_local(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* command)
{ emit_job_script(*this, body_request(kCalcMobJob, script_name, nodes, ppn, job_tag, marker_file, command, "\n"), kLocal); }

void Jobscript::write_calc_getRE_job(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body)
{ emit_job_script(*this, body_request(kCalcGetREJob, script_name, nodes, ppn, job_tag, marker_file, body), kDispatch); }

void Jobscript::write_calc_getRE_job_pbs(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body)
{ emit_job_script(*this, body_request(kCalcGetREJob, script_name, nodes, ppn, job_tag, marker_file, body), kPbs); }

void Jobscript::write_calc_getRE_job_slurm(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body)
{ emit_job_script(*this, body_request(kCalcGetREJob, script_name, nodes, ppn, job_tag, marker_file, body), kSlurm); }

void Jobscript::write_calc_getRE_job_lsf(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body)
{ emit_job_script(*this, body_request(kCalcGetREJob, script_name, nodes, ppn, job_tag, marker_file, body), kLsf); }

void Jobscript::write_calc_getRE_job_local(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body)
{ emit_job_script(*this, body_request(kCalcGetREJob, script_name, nodes, ppn, job_tag, marker_file, body), kLocal); }

void Jobscript::write_calc_getHL_job(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory)
{ emit_job_script(*this, dir_request(kCalcGetHLJob, script_name, nodes, ppn, job_tag, marker_file, body, directory), kDispatch); }

void Jobscript::write_calc_getHL_job_pbs(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory)
{ emit_job_script(*this, dir_request(kCalcGetHLJob, script_name, nodes, ppn, job_tag, marker_file, body, directory), kPbs); }

void Jobscript::write_calc_getHL_job_slurm(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory)
{ emit_job_script(*this, dir_request(kCalcGetHLJob, script_name, nodes, ppn, job_tag, marker_file, body, directory), kSlurm); }

void Jobscript::write_calc_getHL_job_lsf(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory)
{ emit_job_script(*this, dir_request(kCalcGetHLJob, script_name, nodes, ppn, job_tag, marker_file, body, directory), kLsf); }

void Jobscript::write_calc_getHL_job_local(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory)
{ emit_job_script(*this, dir_request(kCalcGetHLJob, script_name, nodes, ppn, job_tag, marker_file, body, directory), kLocal); }

void Jobscript::write_calc_transint_job(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory)
{ emit_job_script(*this, dir_request(kCalcTransintJob, script_name, nodes, ppn, job_tag, marker_file, body, directory), kDispatch); }

void Jobscript::write_calc_transint_job_pbs(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory)
{ emit_job_script(*this, dir_request(kCalcTransintJob, script_name, nodes, ppn, job_tag, marker_file, body, directory), kPbs); }

void Jobscript::write_calc_transint_job_slurm(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory)
{ emit_job_script(*this, dir_request(kCalcTransintJob, script_name, nodes, ppn, job_tag, marker_file, body, directory), kSlurm); }

void Jobscript::write_calc_transint_job_lsf(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory)
{ emit_job_script(*this, dir_request(kCalcTransintJob, script_name, nodes, ppn, job_tag, marker_file, body, directory), kLsf); }

void Jobscript::write_calc_transint_job_local(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, const char* body, const char* directory)
{ emit_job_script(*this, dir_request(kCalcTransintJob, script_name, nodes, ppn, job_tag, marker_file, body, directory), kLocal); }

void Jobscript::write_calc_transint_job_array(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, int count, int* indexes, const char* program, const char* directory)
{ emit_job_script(*this, transint_array_request(script_name, nodes, ppn, job_tag, marker_file, count, indexes, program, directory), kDispatch); }

void Jobscript::write_calc_transint_job_array_pbs(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, int count, int* indexes, const char* program, const char* directory)
{ emit_job_script(*this, transint_array_request(script_name, nodes, ppn, job_tag, marker_file, count, indexes, program, directory), kPbs); }

void Jobscript::write_calc_transint_job_array_slurm(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, int count, int* indexes, const char* program, const char* directory)
{ emit_job_script(*this, transint_array_request(script_name, nodes, ppn, job_tag, marker_file, count, indexes, program, directory), kSlurm); }

void Jobscript::write_calc_transint_job_array_lsf(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, int count, int* indexes, const char* program, const char* directory)
{ emit_job_script(*this, transint_array_request(script_name, nodes, ppn, job_tag, marker_file, count, indexes, program, directory), kLsf); }

void Jobscript::write_calc_transint_job_array_local(const char* script_name, int nodes, int ppn, const char* job_tag, const char* marker_file, int count, int* indexes, const char* program, const char* directory)
{ emit_job_script(*this, transint_array_request(script_name, nodes, ppn, job_tag, marker_file, count, indexes, program, directory), kLocal); }
// clang-format on
