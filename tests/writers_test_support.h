#ifndef VESKA_WRITERS_TEST_SUPPORT_H
#define VESKA_WRITERS_TEST_SUPPORT_H

// Shared by the writer tests: each test runs in a fresh temporary directory
// and returns to where it started.

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <cstdio>
#include <fstream>
#include <ftw.h>
#include <sstream>
#include <string>
#include <unistd.h>

inline int remove_entry(const char* path, const struct stat*, int, struct FTW*)
{
    return remove(path);
}

class WriterDirTest : public ::testing::Test {
protected:
    std::string old_dir;
    std::string dir;

    void SetUp() override
    {
        char cwd[4096];
        ASSERT_NE(getcwd(cwd, sizeof cwd), nullptr);
        old_dir = cwd;
        char tmpl[] = "/tmp/veska_writers_XXXXXX";
        ASSERT_NE(mkdtemp(tmpl), nullptr);
        dir = tmpl;
        ASSERT_EQ(chdir(dir.c_str()), 0);
    }
    void TearDown() override
    {
        ASSERT_EQ(chdir(old_dir.c_str()), 0);
        nftw(dir.c_str(), remove_entry, 16, FTW_DEPTH | FTW_PHYS);
    }
};

inline std::string slurp(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

inline bool file_exists_here(const std::string& path)
{
    return access(path.c_str(), F_OK) == 0;
}

// Today's date as the CIF header writes it.
inline std::string today_iso()
{
    time_t now = time(nullptr);
    struct tm* t = localtime(&now);
    char buf[32];
    snprintf(buf, sizeof buf, "%4d-%02d-%02d", t->tm_year + 1900, t->tm_mon + 1, t->tm_mday);
    return buf;
}

#endif
