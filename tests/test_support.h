#ifndef VESKA_TEST_SUPPORT_H
#define VESKA_TEST_SUPPORT_H

// Helpers shared by the tests: a fresh temporary directory that a test works
// in, and writing and reading small files.

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

// Creates a fresh directory, changes into it and back out on destruction.
class ScratchDir {
public:
    ScratchDir()
    {
        std::string tmpl = (std::filesystem::temp_directory_path() / "veska_rd_XXXXXX").string();
        path_ = mkdtemp(&tmpl[0]) ? tmpl : std::string();
        old_ = std::filesystem::current_path().string();
        if (!path_.empty() && chdir(path_.c_str()) != 0) path_.clear();
    }
    ~ScratchDir()
    {
        if (chdir(old_.c_str()) != 0) return;
        std::error_code ec;
        if (!path_.empty()) std::filesystem::remove_all(path_, ec);
    }
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;
    bool ok() const { return !path_.empty(); }
    const std::string& path() const { return path_; }

private:
    std::string path_;
    std::string old_;
};

// A test that runs inside its own fresh temporary directory.
class ScratchDirTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(scratch.ok()); }
    ScratchDir scratch;
};

inline void put_file(const std::string& path, const std::string& text)
{
    std::ofstream out(path, std::ios::binary);
    out << text;
}

// In a death test's child: standard output joins standard error (the error
// header goes to standard output) and `text` is written to `path`.
inline void child_with_file(const std::string& path, const std::string& text)
{
    dup2(2, 1);
    put_file(path, text);
}

inline std::string read_text_file(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

inline std::string data_file(const char* name) { return std::string(VESKA_TEST_DATA_DIR) + "/" + name; }

#endif
