#ifndef VESKA_TEST_JOB_SCRIPTS_SUPPORT_H
#define VESKA_TEST_JOB_SCRIPTS_SUPPORT_H

// A fresh temporary directory as the current directory for job-script tests.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "job_scripts.h"

class JobScriptDir : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::string tmpl = (std::filesystem::temp_directory_path() / "veska_jobs_XXXXXX").string();
        ASSERT_NE(mkdtemp(tmpl.data()), nullptr);
        std::filesystem::current_path(dir = tmpl);
        js.work_dir = "/home/u/run";
    }
    void TearDown() override
    {
        std::filesystem::current_path(old_dir);
        std::filesystem::remove_all(dir);
    }
    static std::string read(const std::string& path)
    {
        std::stringstream s;
        s << std::ifstream(path, std::ios::binary).rdbuf();
        return s.str();
    }
    Jobscript js;
    std::filesystem::path old_dir = std::filesystem::current_path(), dir;
};

#endif
