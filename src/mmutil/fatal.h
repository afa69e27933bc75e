#ifndef VESKA_FATAL_H
#define VESKA_FATAL_H

#include <cstdio>

// The one way the system stops on an error: the header
// "\nERROR  transport : <unit> : line <number> : \n" on standard output,
// then the caller's message on `stream`, then exit(status).
// Both streams are flushed first so that the order survives redirection.
[[noreturn]] void veska_fatal(const char* unit, int number, int status, FILE* stream,
                              const char* fmt, ...) __attribute__((format(printf, 5, 6)));

// Common case: the header, then "Failed to open input file <path>\n" or
// "Failed to open output file <path>\n" on standard error, exit status -1.
[[noreturn]] void veska_fatal_open_input(const char* unit, int number, const char* path);
[[noreturn]] void veska_fatal_open_output(const char* unit, int number, const char* path);

#endif
