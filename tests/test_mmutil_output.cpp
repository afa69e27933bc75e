#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

#include "mmutil.h"

class MmutilOutput : public testing::Test {
protected:
    std::string dir;
    void SetUp() override
    {
        std::string tmpl = testing::TempDir() + "veska_mmutil_out_XXXXXX";
        ASSERT_NE(mkdtemp(&tmpl[0]), nullptr);
        dir = tmpl;
    }
    void TearDown() override { std::filesystem::remove_all(dir); }
    std::string path(const char* name) const { return dir + "/" + name; }
    static std::string slurp(const std::string& p)
    {
        std::ifstream in(p, std::ios::binary);
        std::stringstream ss;
        ss << in.rdbuf();
        return ss.str();
    }
};

TEST_F(MmutilOutput, MatrixInColumnBlocks)
{
    double r0[3] = {1, -2.5, 3}, r1[3] = {0.125, 0, -1}, r2[3] = {10, 20, 30};
    double* m[3] = {r0, r1, r2};
    output_matrix(m, 3, 2, path("m.dat").c_str());
    // Header: eight blanks, then %13d column numbers; rows: %7d, four blanks, %13.8f.
    const std::string expected =
        "        "
        "            0            1\n"
        "      0       1.00000000  -2.50000000\n"
        "      1       0.12500000   0.00000000\n"
        "      2      10.00000000  20.00000000\n"
        "        "
        "            2\n"
        "      0       3.00000000\n"
        "      1      -1.00000000\n"
        "      2      30.00000000\n";
    EXPECT_EQ(slurp(path("m.dat")), expected);

    output_matrix(m, 1, 4, path("m.dat").c_str());  // truncates the old file
    EXPECT_EQ(slurp(path("m.dat")), "                    0\n      0       1.00000000\n");
}

TEST_F(MmutilOutput, VectorLineBreaks)
{
    double v[5] = {1.5, -2, 0.25, 100, 3};
    output_vector(v, 5, 2, path("v.dat").c_str());
    EXPECT_EQ(slurp(path("v.dat")),
              "     1.5000000    -2.0000000\n"
              "     0.2500000   100.0000000\n"
              "     3.0000000\n");
    // A multiple of per_line ends with an empty line.
    output_vector(v, 4, 2, path("v.dat").c_str());
    EXPECT_EQ(slurp(path("v.dat")),
              "     1.5000000    -2.0000000\n"
              "     0.2500000   100.0000000\n"
              "\n");
    output_vector(v, 0, 2, path("v.dat").c_str());
    EXPECT_EQ(slurp(path("v.dat")), "\n");
}

TEST_F(MmutilOutput, ColumnsSideBySide)
{
    testing::internal::CaptureStdout();
    output_vvector({{1, 2}, {-0.5, 4}, {0, 1e3}}, path("c.dat").c_str());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "ncols = 3\nnrows = 2\n");
    EXPECT_EQ(slurp(path("c.dat")),
              "      1.0000000     -0.5000000      0.0000000\n"
              "      2.0000000      4.0000000   1000.0000000\n");
}

TEST_F(MmutilOutput, WritersStopWhenTheFileCannotBeCreated)
{
    double v[1] = {1};
    double* m[1] = {v};
    const std::string bad = path("no/such/dir.dat");
    EXPECT_EXIT(
        {
            dup2(2, 1);
            output_matrix(m, 1, 1, bad.c_str());
        },
        testing::ExitedWithCode(1),
        "^\nERROR  transport : mmutil : line 1456 : \nFailed to create file " + bad + "\n$");
    EXPECT_EXIT(output_vector(v, 1, 1, bad.c_str()), testing::ExitedWithCode(1),
                "Failed to create file " + bad);
    EXPECT_EXIT(
        {
            dup2(2, 1);
            output_vvector({{1}}, bad.c_str());
        },
        testing::ExitedWithCode(1), "line 1548 : \nFailed to create file ");
    // Ragged columns are refused before anything is written.
    EXPECT_EXIT(output_vvector({{1, 2}, {3}}, path("r.dat").c_str()), testing::ExitedWithCode(1),
                "column 1 has 1 rows");
    EXPECT_FALSE(fileExist(path("r.dat").c_str()));
}
