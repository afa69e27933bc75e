#ifndef VESKA_FUZZ_SUPPORT_H
#define VESKA_FUZZ_SUPPORT_H

// What every fuzz target shares: a scratch directory of its own, and a way
// to run a reader on the fuzz input so that the library's intended fatal
// exits come back to the fuzz entry instead of ending the process.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

// Absolute path of `name` inside this process's scratch directory.
std::string fuzz_scratch_path(const char* name);

// Writes the input to `name` in the scratch directory and calls `read` with
// its path. A fatal exit inside `read` unwinds back here (destructors run),
// so only a real fault stops the fuzzer.
void run_reader(const uint8_t* data, size_t size, const char* name,
                const std::function<void(const char* path)>& read);

#endif
