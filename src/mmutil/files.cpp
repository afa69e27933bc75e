#include "mmutil.h"

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <glob.h>
#include <sys/stat.h>
#include <unistd.h>

void create_directory(const char* path)
{
    struct stat st;
    if (stat(path, &st) != 0) mkdir(path, 0750);
}

int dir_exists(const char* path)
{
    struct stat st;
    if (stat(path, &st) == 0) return S_ISDIR(st.st_mode) ? 1 : 0;
    return (errno == ENOENT || errno == ENOTDIR) ? 0 : -1;
}

bool fileExist(const char* path)
{
    struct stat st;
    return path && stat(path, &st) == 0;
}

int file_exists(const char* path)
{
    if (!path) return 0;
    FILE* f = fopen(path, "r");
    if (!f) return 0;
    fclose(f);
    return 1;
}

// Renamed directly rather than through "mv" so that blanks, quotes and
// shell characters in the path need no quoting.
int backup_file(const char* path)
{
    if (!file_exists(path)) return 0;
    std::string target = std::string(path) + "#";
    return rename(path, target.c_str());
}

int count_lines(const char* path)
{
    FILE* f = path ? fopen(path, "rb") : nullptr;
    if (!f) {
        printf("ERROR: Failed to open input file %s\n", path ? path : "(null)");
        fflush(stdout);
        exit(-1);
    }
    int count = 0;
    for (int c; (c = fgetc(f)) != EOF;)
        if (c == '\n' || c == '\r') ++count;
    fclose(f);
    return count;
}

void get_workdir(std::string& out)
{
    // getcwd with a null buffer allocates as much as the path needs.
    char* cwd = getcwd(nullptr, 0);
    if (cwd) {
        out = cwd;
        free(cwd);
    } else {
        out.clear();
        printf("WARNING: getcwd failed!\n");
    }
}

std::vector<std::string> globFileVector(const std::string& pattern)
{
    std::vector<std::string> paths;
    glob_t found;
    if (glob(pattern.c_str(), GLOB_TILDE, nullptr, &found) == 0) {
        for (size_t i = 0; i < found.gl_pathc; ++i) paths.emplace_back(found.gl_pathv[i]);
    }
    globfree(&found);
    return paths;
}

int get_date(int* month, int* day, int* year)
{
    // SOURCE_DATE_EPOCH (seconds, read as UTC) pins the date for reproducible files.
    const char* pinned = getenv("SOURCE_DATE_EPOCH");
    time_t now = pinned && *pinned ? static_cast<time_t>(strtoll(pinned, nullptr, 10)) : time(nullptr);
    struct tm local;
    if (pinned && *pinned) gmtime_r(&now, &local);
    else localtime_r(&now, &local);
    *month = local.tm_mon + 1;
    *day = local.tm_mday;
    *year = local.tm_year + 1900;
    return *year;
}

int write_text_file(const char* path, const std::string& text)
{
    FILE* f = path ? fopen(path, "wt") : nullptr;
    if (!f) return WRITE_OPEN_FAILED;
    bool ok = fwrite(text.data(), 1, text.size(), f) == text.size();
    ok = (fclose(f) == 0) && ok;
    if (ok) return WRITE_OK;
    struct stat st;
    if (stat(path, &st) == 0 && S_ISREG(st.st_mode)) remove(path);
    return WRITE_FAILED;
}

bool read_text_lines(const char* path, std::vector<std::string>& lines, bool keep_line_ends)
{
    struct stat st;
    if (!path || (stat(path, &st) == 0 && S_ISDIR(st.st_mode))) return false;
    std::ifstream in(path);
    if (!in) return false;
    std::string line;
    while (std::getline(in, line)) {
        if (keep_line_ends && !in.eof()) line += '\n';
        lines.push_back(line);
    }
    return !in.bad();
}
