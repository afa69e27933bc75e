#ifndef VESKA_BENCH_SUPPORT_H
#define VESKA_BENCH_SUPPORT_H

// Shared by the benchmarks: a scratch directory removed at exit, and
// standard output silenced while the library prints its progress.

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

inline const std::filesystem::path& bench_scratch()
{
    struct Scratch {
        std::filesystem::path dir = std::filesystem::temp_directory_path() /
                                    ("veska_bench_" + std::to_string(getpid()));
        Scratch() { std::filesystem::create_directories(dir); }
        ~Scratch()
        {
            std::error_code ec;
            std::filesystem::remove_all(dir, ec);
        }
    };
    static Scratch s;
    return s.dir;
}

class QuietStdout {
public:
    QuietStdout() : saved_(dup(1))
    {
        fflush(stdout);
        int null = open("/dev/null", O_WRONLY);
        dup2(null, 1);
        close(null);
    }
    ~QuietStdout()
    {
        fflush(stdout);
        dup2(saved_, 1);
        close(saved_);
    }
    QuietStdout(const QuietStdout&) = delete;
    QuietStdout& operator=(const QuietStdout&) = delete;

private:
    int saved_;
};

#endif
