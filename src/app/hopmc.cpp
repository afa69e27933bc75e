// The Monte Carlo commands the generated run scripts call in a staged run
// directory: hopmc.exe runs the simulations one after another with the
// process-wide generator; hopmc_OMP.exe (built from this file with
// HOPMC_THREADED) gives every simulation its own generator and runs them on
// the cores the job was given.

#include <climits>
#include <cstdio>

#include "mc_command.h"

#ifdef HOPMC_THREADED
static const char* const program = "hopmc_OMP.exe";
static const char* const threads_text =
    "Simulations run on OMP_NUM_THREADS threads, or on every core when it is\n"
    "not set; tracks are numbered 1 to N whatever -simu0 says.\n";
#else
static const char* const program = "hopmc.exe";
static const char* const threads_text = "";
#endif

static std::string usage()
{
    return std::string("Usage: ") + program +
           " [-simu0 N] [-nsimu N] [-seed S] [-h]\n"
           "Kinetic Monte Carlo of one charge carrier in the staged run directory (the\n"
           "current one): veska.inp, the crystal or MOL files it names, charge.inp\n"
           "(e or h), temp.inp (optional) and one rate file per molecule, WL01.dat ...\n"
           "for electrons or WH01.dat ... for holes.\n"
           "  -simu0 N   first simulation number, from 0 (default 0)\n"
           "  -nsimu N   number of simulations (default: nsimu of veska.inp)\n"
           "  -seed S    reproducible run: simulation k draws from a generator seeded\n"
           "             by (S, k)\n"
           "  -h         this help\n" +
           threads_text +
           "Writes w0_NN.out (the rates in 1/ns), track/track_NNNN.dat per simulation\n"
           "and their average track/track_total.dat.\n";
}

int main(int argc, char** argv)
{
    std::vector<NumberOption> options = {{"-simu0", 0, INT_MAX - 1},
                                         {"-nsimu", 1, INT_MAX - 1},
                                         {"-seed", 0, ULLONG_MAX}};
    parse_command_line(argc, argv, options, usage());
    Transport t;
    load_run_directory(t);
    int simu0 = (int)options[0].value;
    int nsimu = options[1].given ? (int)options[1].value : t.nsimu;
    t.mc_seeded = options[2].given;
    t.mc_seed = options[2].value;
#ifdef HOPMC_THREADED
    if (simu0 != 0) printf("WARNING: -simu0 %d is ignored; the tracks are numbered from 1\n", simu0);
    t.mc_threads = available_threads();
    printf("Running on up to %d threads\n", t.mc_threads);
    t.MC_run_openMP(t.trackdir.c_str(), simu0, nsimu);
#else
    t.MC_run(t.trackdir.c_str(), simu0, nsimu);
#endif
    return 0;
}
