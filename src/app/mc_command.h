#ifndef VESKA_MC_COMMAND_H
#define VESKA_MC_COMMAND_H

// What the Monte Carlo and mobility commands share: their command lines
// and the staged run directory they work in (the current directory, with
// veska.inp and the crystal or MOL files it names).

#include <string>
#include <vector>

#include "transport.h"

// A "-name N" option taking a whole number in [min, max].
struct NumberOption {
    const char* name;
    unsigned long long min, max;
    bool given = false;
    unsigned long long value = 0;
};

// Reads the options. -h or --help prints `usage` on standard output and
// exits 0; an unknown option, a missing or bad value prints what is wrong
// and the usage on standard error and exits 2.
void parse_command_line(int argc, char** argv, std::vector<NumberOption>& options,
                        const std::string& usage);

// Reads veska.inp, the structure it names, and derives the per-molecule data.
void load_run_directory(Transport& t);

// OMP_NUM_THREADS when it is a positive number, else every core this
// process may run on.
int available_threads();

#endif
