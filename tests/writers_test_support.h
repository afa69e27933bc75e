#ifndef VESKA_WRITERS_TEST_SUPPORT_H
#define VESKA_WRITERS_TEST_SUPPORT_H

// Writer tests run in a fresh temporary directory and return afterwards.

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// C, H and Cl: one- and two-letter symbols; -12.34567 rounds at four decimals.
inline int types3[3] = {6, 1, 17};
inline double coords3[9] = {0.0, 1.5, -12.34567, 10.25, -0.5, 2.0, 3.14159, 2.71828, -1.0};

class WriterDirTest : public ::testing::Test {
protected:
    std::filesystem::path old_dir = std::filesystem::current_path(), dir;
    void SetUp() override
    {
        std::string tmpl = (std::filesystem::temp_directory_path() / "veska_wr_XXXXXX").string();
        ASSERT_NE(mkdtemp(&tmpl[0]), nullptr);
        dir = tmpl;
        std::filesystem::current_path(dir);
    }
    void TearDown() override
    {
        std::filesystem::current_path(old_dir);
        std::filesystem::remove_all(dir);
    }
};

inline std::string slurp(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

#endif
