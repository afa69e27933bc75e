#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <filesystem>
#include <ctime>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

#include "mmutil.h"

// Every test runs inside its own fresh temporary directory.
class MmutilFiles : public testing::Test {
protected:
    std::string dir, old_cwd;

    void SetUp() override
    {
        std::string tmpl = testing::TempDir() + "veska_mmutil_XXXXXX";
        ASSERT_NE(mkdtemp(&tmpl[0]), nullptr);
        dir = tmpl;
        get_workdir(old_cwd);
        ASSERT_EQ(chdir(dir.c_str()), 0);
    }
    void TearDown() override
    {
        ASSERT_EQ(chdir(old_cwd.c_str()), 0);
        std::filesystem::remove_all(dir);
    }
    static void write(const std::string& path, const std::string& text)
    {
        std::ofstream(path, std::ios::binary) << text;
    }
};

TEST_F(MmutilFiles, DirectoriesAndExistence)
{
    create_directory("jobs");
    struct stat st;
    ASSERT_EQ(stat("jobs", &st), 0);
    EXPECT_TRUE(S_ISDIR(st.st_mode));
    EXPECT_EQ(st.st_mode & 0777 & ~0750, 0u);
    create_directory("jobs");  // existing: nothing happens
    create_directory("a/b");   // parents are not created
    EXPECT_EQ(dir_exists("a"), 0);

    write("plain", "x");
    EXPECT_EQ(dir_exists("jobs"), 1);
    EXPECT_EQ(dir_exists("plain"), 0);
    EXPECT_EQ(dir_exists("missing"), 0);
    EXPECT_EQ(dir_exists("plain/below"), 0);  // ENOTDIR

    EXPECT_TRUE(fileExist("plain"));
    EXPECT_TRUE(fileExist("jobs"));
    EXPECT_FALSE(fileExist("missing"));
    EXPECT_EQ(file_exists("plain"), 1);
    EXPECT_EQ(file_exists("missing"), 0);
    EXPECT_EQ(file_exists(nullptr), 0);
}

TEST_F(MmutilFiles, BackupAppendsHashToAnyPath)
{
    EXPECT_EQ(backup_file("missing.log"), 0);
    EXPECT_FALSE(fileExist("missing.log#"));

    const std::string odd = "a b'\"$(touch pwned);x.log";
    write(odd, "keep");
    EXPECT_EQ(backup_file(odd.c_str()), 0);
    EXPECT_FALSE(fileExist(odd.c_str()));
    EXPECT_FALSE(fileExist("pwned"));
    std::ifstream moved(odd + "#");
    std::string text;
    moved >> text;
    EXPECT_EQ(text, "keep");

    std::string longname(200, 'n');
    std::string longpath = longname + "/" + longname + "/" + longname + ".log";
    create_directory(longname.c_str());
    create_directory((longname + "/" + longname).c_str());
    write(longpath, "x");
    EXPECT_EQ(backup_file(longpath.c_str()), 0);
    EXPECT_TRUE(fileExist((longpath + "#").c_str()));
}

TEST_F(MmutilFiles, CountLinesCountsCarriageReturnsAndLineFeeds)
{
    write("dos", "a\r\nb\nc\r");
    write("empty", "");
    write("noend", "one line");
    EXPECT_EQ(count_lines("dos"), 4);
    EXPECT_EQ(count_lines("empty"), 0);
    EXPECT_EQ(count_lines("noend"), 0);
    EXPECT_EXIT(
        {
            dup2(2, 1);
            count_lines("nope.txt");
        },
        testing::ExitedWithCode(255), "^ERROR: Failed to open input file nope.txt\n$");
}

TEST_F(MmutilFiles, WorkdirGlobAndDate)
{
    std::string cwd;
    get_workdir(cwd);
    char* real = realpath(dir.c_str(), nullptr);
    ASSERT_NE(real, nullptr);
    EXPECT_EQ(cwd, real);
    free(real);

    write("c.txt", "");
    write("a.txt", "");
    write("b.log", "");
    EXPECT_EQ(globFileVector("*.txt"), (std::vector<std::string>{"a.txt", "c.txt"}));
    EXPECT_TRUE(globFileVector("*.none").empty());

    const char* home = getenv("HOME");
    std::string saved = home ? home : "";
    setenv("HOME", dir.c_str(), 1);
    EXPECT_EQ(globFileVector("~/b.*"), (std::vector<std::string>{dir + "/b.log"}));
    if (home) setenv("HOME", saved.c_str(), 1);
    else unsetenv("HOME");

    int month = 0, day = 0, year = 0;
    time_t now = time(nullptr);
    struct tm local;
    localtime_r(&now, &local);
    EXPECT_EQ(get_date(&month, &day, &year), year);
    EXPECT_EQ(year, local.tm_year + 1900);
    EXPECT_EQ(month, local.tm_mon + 1);
    EXPECT_EQ(day, local.tm_mday);
}

TEST(MmutilWriteTextFile, WholeOrNotAtAll)
{
    char dir_template[] = "/tmp/veska_write_XXXXXX";
    ASSERT_NE(mkdtemp(dir_template), nullptr);
    std::string dir = dir_template;
    std::string path = dir + "/a b;$x.txt";
    EXPECT_EQ(write_text_file(path.c_str(), "line\n"), WRITE_OK);
    std::ifstream in(path);
    std::string got((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(got, "line\n");
    EXPECT_EQ(write_text_file((dir + "/missing/x").c_str(), "x"), WRITE_OPEN_FAILED);
    EXPECT_EQ(write_text_file(nullptr, "x"), WRITE_OPEN_FAILED);
    if (access("/dev/full", W_OK) == 0) {
        EXPECT_EQ(write_text_file("/dev/full", "x"), WRITE_FAILED);
    }
    remove(path.c_str());
    rmdir(dir.c_str());
}
