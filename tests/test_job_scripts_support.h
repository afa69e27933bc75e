#ifndef VESKA_TEST_JOB_SCRIPTS_SUPPORT_H
#define VESKA_TEST_JOB_SCRIPTS_SUPPORT_H

// A fresh temporary directory as the current directory for job-script tests.

#include "job_scripts.h"
#include "test_support.h"

class JobScriptDir : public ScratchDirTest {
protected:
    void SetUp() override
    {
        ScratchDirTest::SetUp();
        js.work_dir = "/home/u/run";
    }
    Jobscript js;
};

// Every kind once, arrays with an index list and with a null list and a count.
// Scripts are named after kind and variant v.
inline void write_every_kind(Jobscript& js, const std::string& v)
{
    int ids[] = {2, 4, 7};
    const char* body = "echo body line 1\necho body line 2\n";
    js.write_gaussian_HL_job(("gau-HL-" + v).c_str(), 2, 8, "uc_mol-1", "uc1", "RUN/running.uc_mol-1");
    js.write_orca_HL_job(("orca-HL-" + v).c_str(), 2, 8, "uc_mol-1", "uc1", "RUN/running.uc_mol-1");
    js.write_qchem_HL_job(("qchem-HL-" + v).c_str(), 2, 8, "uc_mol-1", "uc1", "RUN/running.uc_mol-1");
    for (int* list : {ids, static_cast<int*>(nullptr)}) {
        std::string a = v + (list ? "-list" : "-count");
        js.write_gaussian_HL_job_array(("gau-HLa-" + a).c_str(), 1, 8, "nei_mol-1", "nei1", "RUN/r", 3, list);
        js.write_orca_HL_job_array(("orca-HLa-" + a).c_str(), 1, 8, "nei_mol-1", "nei1", "RUN/r", 3, list);
        js.write_qchem_HL_job_array(("qchem-HLa-" + a).c_str(), 1, 8, "nei_mol-1", "nei1", "RUN/r", 3, list);
        js.write_calc_transint_job_array(("transint-a-" + a).c_str(), 1, 8, "transint", "RUN/r", 3, list,
                                         "hlgather.exe", "data");
    }
    js.write_gaussian_RE_job(("gau-RE-" + v).c_str(), 1, 8, body, "mol1", "RUN/re1");
    js.write_orca_RE_job(("orca-RE-" + v).c_str(), 1, 8, "mol1", "RE-mol1", "RUN/re1", body);
    js.write_qchem_RE_job(("qchem-RE-" + v).c_str(), 1, 8, "mol1", "RE-mol1", "RUN/re1", body);
    js.write_MC_job(("mc-" + v).c_str(), 1, 8, body, "elec", "RUN/mc");
    js.write_ME_job(("me-" + v).c_str(), 1, 8, body, "elec", "RUN/me");
    js.write_calc_mob_job(("mob-" + v).c_str(), 1, 8, "mob", "RUN/mob", "hopmob_OMP.exe");
    js.write_calc_getRE_job(("getRE-" + v).c_str(), 1, 8, "getre", "RUN/g", body);
    js.write_calc_getHL_job(("getHL-" + v).c_str(), 1, 8, "get_site_ener", "RUN/g", body, "data");
    js.write_calc_transint_job(("transint-" + v).c_str(), 1, 8, "transint_mol1", "RUN/t", body, "data");
}

// Every kind in every dialect, bare (no modules, no node list) and full.
inline void write_every_kind_in_every_dialect(Jobscript& js)
{
    js.qc_exe = "qchem";
    for (int code = 0; code < 4; ++code) {
        js.job_sched_type = code;
        js.module_gau_flag = js.module_mpich2_gnu_flag = false;
        js.nodelist.clear();
        write_every_kind(js, "bare");
        js.module_gau_flag = js.module_mpich2_gnu_flag = true;
        js.nodelist = "node01";
        js.orca_args = "--use-hwthread-cpus";
        write_every_kind(js, "full");
    }
}

#endif
