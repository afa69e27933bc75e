// tests/shellcheck.cmake runs this with VESKA_JOB_SWEEP_DIR set and lints
// the scripts it leaves there.

#include <cstdlib>

#include "test_job_scripts_support.h"

TEST_F(JobScriptDir, SweepWritesEveryKindInEveryDialect)
{
    if (const char* keep = getenv("VESKA_JOB_SWEEP_DIR")) std::filesystem::current_path(keep);
    write_every_kind_in_every_dialect(js);
    int files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(".")) files += entry.is_regular_file();
    EXPECT_EQ(files, 4 * 2 * (12 + 4 * 2));
}
