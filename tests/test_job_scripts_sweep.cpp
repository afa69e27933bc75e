// Writes every kind of job script in every dialect, plain and array, with
// and without modules and node list. tests/shellcheck.cmake runs this with
// VESKA_JOB_SWEEP_DIR set and lints what it leaves there.

#include <cstdlib>

#include "test_job_scripts_support.h"

namespace {

void write_every_kind(Jobscript& js, const std::string& v)
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

}  // namespace

TEST_F(JobScriptDir, SweepWritesEveryKindInEveryDialect)
{
    const char* keep = getenv("VESKA_JOB_SWEEP_DIR");
    if (keep) std::filesystem::current_path(keep);
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
    int files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator("."))
        files += entry.is_regular_file();
    EXPECT_EQ(files, 4 * 2 * (12 + 4 * 2));
}
