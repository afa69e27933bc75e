#ifndef VESKA_TEST_VESKA_INP_SCRATCH_H
#define VESKA_TEST_VESKA_INP_SCRATCH_H

// Shared by the configuration and command tests: a fresh temporary
// directory that is the working directory for the test's lifetime, and
// small text helpers for golden files.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

class ScratchDirTest : public testing::Test {
protected:
    std::string dir, old_cwd;

    void SetUp() override
    {
        old_cwd = std::filesystem::current_path().string();
        std::string tmpl = testing::TempDir() + "veska_inp_XXXXXX";
        ASSERT_NE(mkdtemp(&tmpl[0]), nullptr);
        dir = tmpl;
        ASSERT_EQ(chdir(dir.c_str()), 0);
    }
    void TearDown() override
    {
        ASSERT_EQ(chdir(old_cwd.c_str()), 0);
        std::filesystem::remove_all(dir);
    }

    static void touch(const std::string& path) { std::ofstream(path) << "x\n"; }
    static bool exists(const std::string& path) { return std::filesystem::exists(path); }
    static std::string slurp(const std::string& path)
    {
        std::ifstream in(path, std::ios::binary);
        std::ostringstream s;
        s << in.rdbuf();
        return s.str();
    }
};

// Golden-text edits: each replaces the whole line `line` (given without its
// line feed; it must occur exactly once).
inline std::string replace_line(const std::string& text, const std::string& line,
                                const std::string& replacement_lines)
{
    std::string needle = "\n" + line + "\n";
    size_t at = text.find(needle);
    EXPECT_NE(at, std::string::npos) << "golden line not found: " << line;
    EXPECT_EQ(text.find(needle, at + 1), std::string::npos) << "golden line twice: " << line;
    if (at == std::string::npos) return text;
    return text.substr(0, at + 1) + replacement_lines + text.substr(at + needle.size());
}

inline std::string insert_before(const std::string& text, const std::string& line,
                                 const std::string& new_lines)
{
    return replace_line(text, line, new_lines + line + "\n");
}

#endif
