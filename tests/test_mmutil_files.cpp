#include <gtest/gtest.h>

#include "fatal.h"
#include "mmutil.h"
#include "test_support.h"

using MmutilFiles = ScratchDirTest;

TEST(Fatal, HeaderOnStdoutMessageOnNamedStreamAndStatus)
{
    EXPECT_EXIT((dup2(2, 1), veska_fatal("mmutil", 536, -1, stderr, "%s - overlaps\n", "invert")),
                testing::ExitedWithCode(255), "^\nERROR  transport : mmutil : line 536 : \ninvert - overlaps\n$");
    EXPECT_EXIT(veska_fatal("fileio", 7, 1, stderr, "x"), testing::ExitedWithCode(1), "x");
    EXPECT_EXIT(veska_fatal_open_output("job_scripts", 218, "jobs/a b.pbs"), testing::ExitedWithCode(255),
                "Failed to open output file jobs/a b.pbs\n");
}

TEST_F(MmutilFiles, DirectoriesExistenceGlobAndWholeFiles)
{
    create_directory("jobs");
    put_file("plain", "x");
    EXPECT_EQ(dir_exists("jobs") * 10 + dir_exists("plain"), 10);
    EXPECT_EQ(dir_exists("plain/below"), 0);  // ENOTDIR
    EXPECT_EQ(file_exists("plain") * 10 + file_exists("missing"), 10);
    put_file("c.txt", "");
    put_file("a.txt", "");
    EXPECT_EQ(globFileVector("*.txt"), (std::vector<std::string>{"a.txt", "c.txt"}));
    EXPECT_TRUE(globFileVector("*.none").empty());

    EXPECT_EQ(write_text_file("a b;$x.txt", "line\n"), WRITE_OK);
    EXPECT_EQ(read_text_file("a b;$x.txt"), "line\n");
    EXPECT_EQ(write_text_file("missing/x", "x"), WRITE_OPEN_FAILED);
    // A write that fails half way: the file-size limit stands in for a full disk.
    EXPECT_EXIT((limit_file_size(4096), exit(write_text_file("big", std::string(100000, 'x')) == WRITE_FAILED ? 3 : 4)),
                testing::ExitedWithCode(3), "");
}

TEST_F(MmutilFiles, BackupAppendsHashToAnyPathAndCountLinesSeesCrAndLf)
{
    EXPECT_EQ(backup_file("missing.log"), 0);
    EXPECT_FALSE(fileExist("missing.log#"));
    const std::string odd = "a b'\"$(touch pwned);x.log";
    put_file(odd, "a\r\nb\nc\r");
    EXPECT_EQ(backup_file(odd.c_str()), 0);
    EXPECT_FALSE(fileExist(odd.c_str()) || fileExist("pwned"));
    EXPECT_EQ(count_lines((odd + "#").c_str()), 4);
    put_file("noend", "one line");
    EXPECT_EQ(count_lines("noend"), 0);
    EXPECT_EXIT((dup2(2, 1), count_lines("nope.txt")), testing::ExitedWithCode(255),
                "^ERROR: Failed to open input file nope.txt\n$");
}

TEST_F(MmutilFiles, TableLayouts)
{
    double r0[3] = {1, -2.5, 3}, r1[3] = {0.125, 0, -1}, r2[3] = {10, 20, 30};
    double* m[3] = {r0, r1, r2};
    output_matrix(m, 3, 2, "m.dat");
    // Header: eight blanks, then %13d column numbers; rows: %7d, four blanks, %13.8f.
    EXPECT_EQ(read_text_file("m.dat"), "                    0            1\n"
                                       "      0       1.00000000  -2.50000000\n"
                                       "      1       0.12500000   0.00000000\n"
                                       "      2      10.00000000  20.00000000\n"
                                       "                    2\n"
                                       "      0       3.00000000\n"
                                       "      1      -1.00000000\n"
                                       "      2      30.00000000\n");
    output_vector(r0, 3, 2, "v.dat");
    EXPECT_EQ(read_text_file("v.dat"), "     1.0000000    -2.5000000\n     3.0000000\n");
    output_vector(r0, 2, 2, "v.dat");  // a multiple of per_line ends with an empty line
    EXPECT_EQ(read_text_file("v.dat"), "     1.0000000    -2.5000000\n\n");
    testing::internal::CaptureStdout();
    output_vvector({{1, 2}, {-0.5, 4}, {0, 1e3}}, "c.dat");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "ncols = 3\nnrows = 2\n");
    EXPECT_EQ(read_text_file("c.dat"), "      1.0000000     -0.5000000      0.0000000\n"
                                       "      2.0000000      4.0000000   1000.0000000\n");
    EXPECT_EXIT((dup2(2, 1), output_matrix(m, 1, 1, "no/dir.dat")), testing::ExitedWithCode(1),
                "^\nERROR  transport : mmutil : line 1456 : \nFailed to create file no/dir.dat\n$");
    // Ragged columns are refused before anything is written.
    EXPECT_EXIT(output_vvector({{1, 2}, {3}}, "r.dat"), testing::ExitedWithCode(1), "column 1 has 1 rows");
    EXPECT_FALSE(fileExist("r.dat"));
}
