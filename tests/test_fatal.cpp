#include <gtest/gtest.h>

#include <unistd.h>

#include "fatal.h"

TEST(Fatal, HeaderOnStdoutMessageOnNamedStreamAndStatus)
{
    // The header goes to standard output; send it to stderr in the child so
    // that the death test sees header and message in their order.
    EXPECT_EXIT(
        {
            dup2(2, 1);
            veska_fatal("mmutil", 536, -1, stderr, "%s - Result matrix overlaps input\n", "invert");
        },
        testing::ExitedWithCode(255),
        "^\nERROR  transport : mmutil : line 536 : \ninvert - Result matrix overlaps input\n$");
    EXPECT_EXIT(veska_fatal("fileio", 7, 1, stderr, "x"), testing::ExitedWithCode(1), "x");
    EXPECT_EXIT(veska_fatal_open_output("job_scripts", 218, "jobs/a b.pbs"),
                testing::ExitedWithCode(255), "Failed to open output file jobs/a b.pbs\n");
}
