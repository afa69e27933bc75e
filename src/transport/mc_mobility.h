#ifndef VESKA_MC_MOBILITY_H
#define VESKA_MC_MOBILITY_H

// Diffusion coefficients and mobilities from the track files of a Monte
// Carlo run: the mean-square displacement against time, fitted by a
// straight line over the second half of the run.

#include <string>
#include <vector>

// Per snapshot row reached by at least one simulation: the mean time and the
// mean-square displacement along the unit vectors of a, b, c and in full.
struct TrackAverages {
    int ntracks = 0;
    std::vector<double> t;
    std::vector<double> msd[4];
};

// Reads every track_*.dat in dir but track_total.dat. A missing directory,
// no tracks, a malformed row or tracks of different lengths end the
// program with a message naming the file.
TrackAverages read_track_averages(const char* dir, double latt[3][3]);

struct Mobility {
    double D[4];    // along a, b, c and the average (|X|^2 / 6t), cm^2/s
    double mu[4];   // e D / (kB T), cm^2/(V s)
    double t_from, t_to;
    int npoints;
};

// timeunit: seconds per track time unit; temp in K.
Mobility fit_mobility(const TrackAverages& tracks, double temp, double timeunit);

// mob.dat: one line per direction (a, b, c, av) with D in the second and
// the mobility in the third column, then a comment line.
std::string format_mobility(const Mobility& m, double temp, int ntracks);

#endif
