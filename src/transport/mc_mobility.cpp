#include "mc_mobility.h"

#include <cmath>
#include <cstdlib>

#include "mmutil.h"

namespace {

const double kBoltzmann_eV = 8.617333262e-5;  // kB / e, V/K
const char* const directions[4] = {"a", "b", "c", "av"};

struct TrackRow {
    double t, x[3], r2;
};

// The rows of one track file, the comment lines skipped.
std::vector<TrackRow> read_track(const std::string& path)
{
    std::vector<std::string> lines;
    if (!read_text_lines(path.c_str(), lines, false))
        veska_fatal_open_input("transport", 7010, path.c_str());
    std::vector<TrackRow> rows;
    for (size_t i = 0; i < lines.size(); i++) {
        if (lines[i].empty() || lines[i][0] == '#') continue;
        std::vector<std::string> words = split_string(lines[i]);
        double v[5];
        bool ok = words.size() == 6;
        for (int f = 0; ok && f < 5; f++) {
            char* end;
            v[f] = strtod(words[f].c_str(), &end);
            ok = *end == '\0' && std::isfinite(v[f]);
        }
        if (!ok)
            veska_fatal("transport", 7012, -1, stdout,
                        "Line %zu of '%s' is not a track row (t, x, y, z, r2, istep)\n", i + 1,
                        path.c_str());
        rows.push_back({v[0], {v[1], v[2], v[3]}, v[4]});
    }
    return rows;
}

}  // namespace

TrackAverages read_track_averages(const char* dir, double latt[3][3])
{
    std::vector<std::string> paths;
    for (const std::string& p : globFileVector(std::string(dir) + "/track_*.dat"))
        if (p.size() < 16 || p.compare(p.size() - 16, 16, "/track_total.dat") != 0) paths.push_back(p);
    if (paths.empty())
        veska_fatal("transport", 7014, -1, stdout,
                    "No track files (track_0001.dat ...) in '%s': run hopmc.exe first\n", dir);
    double unit[3][3];
    for (int d = 0; d < 3; d++) {
        double len = sqrt(latt[0][d] * latt[0][d] + latt[1][d] * latt[1][d] + latt[2][d] * latt[2][d]);
        for (int k = 0; k < 3; k++) unit[d][k] = latt[k][d] / len;
    }
    size_t nrows = 0;
    std::vector<double> count, t, msd[4];
    for (const std::string& path : paths) {
        std::vector<TrackRow> rows = read_track(path);
        if (nrows == 0) {
            nrows = rows.size();
            count.assign(nrows, 0.0);
            t.assign(nrows, 0.0);
            for (auto& m : msd) m.assign(nrows, 0.0);
        } else if (rows.size() != nrows) {
            veska_fatal("transport", 7016, -1, stdout,
                        "'%s' has %zu rows but '%s' has %zu: the tracks come from different runs\n",
                        path.c_str(), rows.size(), paths[0].c_str(), nrows);
        }
        // Cleared slots that the simulation did not reach read t = 0.
        for (size_t r = 1; r < nrows; r++) {
            if (rows[r].t == 0.0) continue;
            count[r] += 1;
            t[r] += rows[r].t;
            for (int d = 0; d < 3; d++) {
                double p = get_dot(rows[r].x, unit[d]);
                msd[d][r] += p * p;
            }
            msd[3][r] += rows[r].r2;
        }
    }
    TrackAverages avg;
    avg.ntracks = (int)paths.size();
    for (size_t r = 0; r < nrows; r++) {
        if (count[r] == 0) continue;
        avg.t.push_back(t[r] / count[r]);
        for (int d = 0; d < 4; d++) avg.msd[d].push_back(msd[d][r] / count[r]);
    }
    return avg;
}

Mobility fit_mobility(const TrackAverages& tracks, double temp, double timeunit)
{
    if (!(temp > 0))
        veska_fatal("transport", 7018, -1, stdout,
                    "The temperature is %g K: a mobility needs a positive temperature\n", temp);
    Mobility m{};
    size_t from = 0, n = tracks.t.size();
    double t_end = n ? tracks.t[n - 1] : 0.0;
    while (from < n && tracks.t[from] < 0.5 * t_end) from++;
    m.npoints = (int)(n - from);
    m.t_from = m.npoints ? tracks.t[from] : 0.0;
    m.t_to = t_end;
    for (int d = 0; d < 4; d++) {
        double a, slope, s;
        std::vector<double> x(tracks.t.begin() + from, tracks.t.end());
        std::vector<double> y(tracks.msd[d].begin() + from, tracks.msd[d].end());
        if (LinearRegression(x.data(), y.data(), m.npoints, &a, &slope, &s) != 0)
            veska_fatal("transport", 7020, -1, stdout,
                        "Only %d snapshots lie in the second half of the run (t >= %g); a fit "
                        "needs 3 or more: lower tsnap or raise tsimu\n",
                        m.npoints, 0.5 * t_end);
        // <(X.u)^2> = 2 D t along a direction, <X.X> = 6 D t; A^2 -> cm^2.
        m.D[d] = slope / (d < 3 ? 2.0 : 6.0) * 1e-16 / timeunit;
        m.mu[d] = m.D[d] / (kBoltzmann_eV * temp);
    }
    return m;
}

std::string format_mobility(const Mobility& m, double temp, int ntracks)
{
    std::string text;
    for (int d = 0; d < 4; d++)
        text += format_string("%-3s %14.6e %14.6e\n", directions[d], m.D[d], m.mu[d]);
    text += format_string("# direction, D (cm^2/s), mobility (cm^2/(V s)); T = %g K; "
                          "fit over t = %g to %g ns, %d snapshots of %d tracks\n",
                          temp, m.t_from, m.t_to, m.npoints, ntracks);
    return text;
}
