#ifndef VESKA_TEST_JOB_SCRIPTS_SUPPORT_H
#define VESKA_TEST_JOB_SCRIPTS_SUPPORT_H

// A fresh temporary directory as the current directory for job-script tests.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "job_scripts.h"

class JobScriptDir : public ::testing::Test {
protected:
    void SetUp() override
    {
        old_dir = std::filesystem::current_path();
        std::string tmpl = (std::filesystem::temp_directory_path() / "veska_jobs_XXXXXX").string();
        ASSERT_NE(mkdtemp(tmpl.data()), nullptr);
        dir = tmpl;
        std::filesystem::current_path(dir);
        js.work_dir = "/home/u/run";
    }
    void TearDown() override
    {
        std::filesystem::current_path(old_dir);
        std::filesystem::remove_all(dir);
    }
    static std::string read(const std::string& path)
    {
        std::ifstream in(path, std::ios::binary);
        std::stringstream s;
        s << in.rdbuf();
        return s.str();
    }
    Jobscript js;
    std::filesystem::path old_dir, dir;
};

#endif
