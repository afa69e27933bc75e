#include "mc_hops.h"

#include <algorithm>
#include <climits>
#include <cmath>

void HopTable::build(int nmols, const int* nnei, double* const* w0, int* const* nei_mol,
                     int** const* nei_cell)
{
    sites.assign(nmols, Site());
    hops.clear();
    cum.clear();
    rates.assign(w0, w0 + nmols);
    int most = 1;
    for (int i = 0; i < nmols; i++) most = std::max(most, nnei[i]);
    for (guide_size = 1; guide_size < most;) guide_size *= 2;
    guide_scale = guide_size;
    guide.clear();
    for (int i = 0; i < nmols; i++) {
        Site& s = sites[i];
        s.first = (int)hops.size();
        s.cum_first = (int)cum.size();
        s.count = nnei[i];
        double w = 0.0;
        for (int k = 0; k < nnei[i]; k++) w += w0[i][k];
        double sum = 0.0;
        for (int k = 0; k < nnei[i]; k++) {
            sum += w0[i][k] / w;
            cum.push_back(sum);
            hops.push_back({nei_mol[i][k],
                            {(double)nei_cell[0][i][k], (double)nei_cell[1][i][k],
                             (double)nei_cell[2][i][k]}});
        }
        cum.push_back(HUGE_VAL);
        s.dt = 1.0 / w;
        const double* c = &cum[s.cum_first];
        for (int g = 0, k = 0; g <= guide_size; g++) {
            while (k < s.count && c[k] <= g / guide_scale) k++;
            Guide e{s.first + k, s.count - k, s.first, {HUGE_VAL, HUGE_VAL, HUGE_VAL}};
            for (int j = 0; j < 3 && k + j < s.count; j++) e.sum[j] = c[k + j];
            guide.push_back(e);
        }
    }
    p.assign(hops.size(), 0.0);
}

int HopTable::walk_on(int m, int key, double r) const
{
    const Site& s = sites[m];
    const double* c = &cum[s.cum_first];
    int k = key - s.first + 3;
    while (c[k] <= r) k++;
    return k - (key - s.first);
}

int choose_hop_plain(const double* w, int c, double* p, double r, double* dt)
{
    double total = 0.0;
    for (int k = 0; k < c; k++) total += w[k];
    for (int k = 0; k < c; k++) p[k] = w[k] / total;
    *dt = 1.0 / total;
    double sum = 0.0;
    for (int k = 0; k < c; k++) {
        sum += p[k];
        if (sum > r) return k;
    }
    return 0;
}

static int saturated(long long n) { return n > INT_MAX ? INT_MAX : (int)n; }

// The snapshot of a step records the time and hop count before its hop and
// the displacement after it; the last step may end past tsimu.
long long run_one_simulation(HopTable& table, double latt[3][3], double tsimu, double tsnap,
                             const SnapshotSlots& slots, UniformSource& uniform)
{
    const int nsnap = slots.nsnap;
    std::fill(slots.istep, slots.istep + nsnap + 1, 0);
    std::fill(slots.t, slots.t + nsnap + 1, 0.0);
    std::fill(slots.x, slots.x + 3 * (nsnap + 1), 0.0);
    std::fill(slots.r2, slots.r2 + nsnap + 1, 0.0);

    int m = 0, isnap = 0;
    long long istep = 0;
    double n[3] = {0.0, 0.0, 0.0};
    double t = 0.0, tsince = 0.0;
    for (;;) {
        double r = uniform.next();
        double dt;
        int key;
        const HopTable::Site& site = table.sites[m];
        if (table.plain) {
            key = site.first + choose_hop_plain(table.rates[m], site.count, &table.p[site.first], r, &dt);
        } else {
            key = table.pick_key(m, r);
            dt = site.dt;
        }
        const HopTable::Hop& hop = table.hops[key];
        n[0] += hop.shift[0];
        n[1] += hop.shift[1];
        n[2] += hop.shift[2];
        tsince += dt;
        if (dt >= tsnap - tsince && isnap <= nsnap) {
            double* x = &slots.x[3 * isnap];
            mat_vec_mul(latt, n, x);
            slots.istep[isnap] = saturated(istep);
            slots.t[isnap] = t;
            slots.r2[isnap] = get_dot(x, x);
            isnap++;
            tsince = 0.0;
        }
        if (t > tsimu) break;
        istep++;
        t += dt;
        m = hop.next;
    }
    return istep + 1;
}
