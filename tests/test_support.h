#ifndef VESKA_TEST_SUPPORT_H
#define VESKA_TEST_SUPPORT_H

// Helpers shared by the tests: a fresh temporary directory that a test works
// in, small files, the bundled data and the expected outputs under data/golden.

#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

// Creates a fresh directory, changes into it and back out on destruction.
class ScratchDir {
public:
    ScratchDir() : old_(std::filesystem::current_path().string())
    {
        std::string tmpl = (std::filesystem::temp_directory_path() / "veska_rd_XXXXXX").string();
        path_ = mkdtemp(&tmpl[0]) && chdir(tmpl.c_str()) == 0 ? tmpl : std::string();
    }
    ~ScratchDir()
    {
        std::error_code ec;
        if (chdir(old_.c_str()) == 0 && ok()) std::filesystem::remove_all(path_, ec);
    }
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;
    bool ok() const { return !path_.empty(); }

private:
    std::string path_, old_;
};

// A test that runs inside its own fresh temporary directory.
class ScratchDirTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(scratch.ok()); }
    ScratchDir scratch;
};

inline void put_file(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

// In a death test's child: standard output joins standard error (the error
// header goes to standard output) and `text` is written to `path`.
inline void child_with_file(const std::string& path, const std::string& text)
{
    dup2(2, 1);
    put_file(path, text);
}

// In a death test's child: writes past `bytes` fail as on a full disk. The
// limit is lifted again at exit, before coverage data are written.
inline void limit_file_size(rlim_t bytes)
{
    static struct rlimit saved;
    getrlimit(RLIMIT_FSIZE, &saved);
    atexit([] { setrlimit(RLIMIT_FSIZE, &saved); });
    signal(SIGXFSZ, SIG_IGN);
    struct rlimit limit = {bytes, saved.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
}

inline std::string read_text_file(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

inline std::string data_file(const std::string& name) { return std::string(VESKA_TEST_DATA_DIR) + "/" + name; }
inline std::string golden(const std::string& name)
{
    std::string path = data_file("golden/" + name);
    EXPECT_TRUE(std::filesystem::is_regular_file(path)) << path;
    return read_text_file(path);
}

// C, H and Cl: one- and two-letter symbols; -12.34567 rounds at four decimals.
inline int types3[3] = {6, 1, 17};
inline double coords3[9] = {0.0, 1.5, -12.34567, 10.25, -0.5, 2.0, 3.14159, 2.71828, -1.0};

#endif
