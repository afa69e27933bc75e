#include "fatal.h"

#include <cstdarg>
#include <cstdlib>

void veska_fatal(const char* unit, int number, int status, FILE* stream, const char* fmt, ...)
{
    printf("\nERROR  transport : %s : line %i : \n", unit, number);
    fflush(stdout);
    va_list args;
    va_start(args, fmt);
    vfprintf(stream, fmt, args);
    va_end(args);
    fflush(stream);
    fflush(stdout);
    exit(status);
}

void veska_fatal_open_input(const char* unit, int number, const char* path)
{
    veska_fatal(unit, number, -1, stderr, "Failed to open input file %s\n", path);
}

void veska_fatal_open_output(const char* unit, int number, const char* path)
{
    veska_fatal(unit, number, -1, stderr, "Failed to open output file %s\n", path);
}
