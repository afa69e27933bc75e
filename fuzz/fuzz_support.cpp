#include "fuzz_support.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>

namespace {

struct FatalExit {
    int status;
};

bool in_reader = false;
std::string scratch_dir;

void remove_scratch_dir()
{
    std::error_code ec;
    std::filesystem::remove_all(scratch_dir, ec);
}

}  // namespace

// The harnesses link with -Wl,--wrap=exit: every call to exit() lands here.
// Inside a reader it is the library's fatal-error helper stopping on bad
// input, which is intended, so it unwinds to run_reader; anywhere else
// (the fuzzer's own exits) it is a real exit.
extern "C" [[noreturn]] void __real_exit(int status);
extern "C" [[noreturn]] void __wrap_exit(int status)
{
    if (in_reader) throw FatalExit{status};
    __real_exit(status);
}

// Memory-backed when the system has it: rewriting a file on a disk file
// system can wait for the disk at every input. The working directory is
// left alone: libFuzzer keeps relative corpus and artifact paths.
extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    std::error_code ec;
    std::filesystem::path base = std::filesystem::is_directory("/dev/shm", ec)
                                     ? std::filesystem::path("/dev/shm")
                                     : std::filesystem::temp_directory_path();
    std::string tmpl = (base / "veska_fuzz_XXXXXX").string();
    if (!mkdtemp(&tmpl[0])) abort();
    scratch_dir = tmpl;
    atexit(remove_scratch_dir);
    return 0;
}

std::string fuzz_scratch_path(const char* name) { return scratch_dir + "/" + name; }

void run_reader(const uint8_t* data, size_t size, const char* name,
                const std::function<void(const char* path)>& read)
{
    std::string path = fuzz_scratch_path(name);
    {
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
        if (!out) abort();
    }
    in_reader = true;
    try {
        read(path.c_str());
    } catch (const FatalExit&) {
    }
    in_reader = false;
}
