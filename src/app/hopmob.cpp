// The mobility command of a staged Monte Carlo run directory (hopmob.exe;
// hopmob_OMP.exe is the same program under the name the threaded run
// scripts call): diffusion coefficients and mobilities from the track files.

#include <cstdio>

#include "mc_command.h"
#include "mc_mobility.h"
#include "mmutil.h"

static std::string usage(const char* program)
{
    return std::string("Usage: ") + program +
           " [-h]\n"
           "Mobility of the Monte Carlo run in the current directory: reads the track\n"
           "files track/track_NNNN.dat, the cell (veska.inp and the crystal or MOL\n"
           "files it names) and the temperature (temp.inp, else temp of veska.inp),\n"
           "fits the mean-square displacement against time over the second half of\n"
           "the run and writes mob.dat: one line per direction (a, b, c, av) with\n"
           "the diffusion coefficient D in cm^2/s and the mobility e D / (kB T) in\n"
           "cm^2/(V s) in the third column.\n";
}

int main(int argc, char** argv)
{
    const char* program = HOPMOB_NAME;
    std::vector<NumberOption> none;
    parse_command_line(argc, argv, none, usage(program));
    Transport t;
    load_run_directory(t);
    double temperature = t.read_temp_inp();
    if (temperature > 0) t.temp = temperature;

    TrackAverages tracks = read_track_averages(t.trackdir.c_str(), t.latt3x3);
    Mobility m = fit_mobility(tracks, t.temp, t.track_timeunit);
    printf("Mobility from %d tracks in '%s' at T = %g K\n", tracks.ntracks, t.trackdir.c_str(), t.temp);
    printf("  mean-square displacement fitted over t = %g to %g ns (%d snapshots)\n", m.t_from,
           m.t_to, m.npoints);
    printf("  direction   D (cm^2/s)      mu (cm^2/(V s))\n");
    const char* names[4] = {"a", "b", "c", "average"};
    for (int d = 0; d < 4; d++) printf("  %-9s %14.6e  %14.6e\n", names[d], m.D[d], m.mu[d]);
    printf("Writing file mob.dat ...\n");
    if (write_text_file("mob.dat", format_mobility(m, t.temp, tracks.ntracks)) != WRITE_OK)
        veska_fatal_open_output("transport", 7022, "mob.dat");
    return 0;
}
