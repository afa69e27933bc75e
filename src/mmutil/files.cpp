#include "mmutil.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

void create_directory(const char* path)
{
    struct stat st;
    if (stat(path, &st) != 0) mkdir(path, 0750);
}

void get_workdir(std::string& out)
{
    std::vector<char> buf(4096);
    if (getcwd(buf.data(), buf.size())) {
        out = buf.data();
    } else {
        out.clear();
        printf("WARNING: getcwd failed!\n");
    }
}
