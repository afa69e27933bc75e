#include "mc_hops.h"

#include <algorithm>
#include <climits>

void HopTable::build(int nmols, const int* nnei, double* const* w0, int* const* nei_mol,
                     int** const* nei_cell)
{
    int nkey = 0;
    for (int i = 0; i < nmols; i++) nkey += nnei[i];
    first.assign(nmols, 0);
    count.assign(nnei, nnei + nmols);
    dt.assign(nmols, 0.0);
    rates.assign(w0, w0 + nmols);
    cum.assign(nkey, 0.0);
    next.assign(nkey, 0);
    shift.assign(3 * (size_t)nkey, 0.0);
    p.assign(nkey, 0.0);
    for (int i = 0, key = 0; i < nmols; i++) {
        first[i] = key;
        double w = 0.0;
        for (int k = 0; k < nnei[i]; k++) w += w0[i][k];
        double sum = 0.0;
        for (int k = 0; k < nnei[i]; k++, key++) {
            sum += w0[i][k] / w;
            cum[key] = sum;
            next[key] = nei_mol[i][k];
            for (int d = 0; d < 3; d++) shift[3 * (size_t)key + d] = nei_cell[d][i][k];
        }
        dt[i] = 1.0 / w;
    }
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
        if (table.plain) {
            key = table.first[m] +
                  choose_hop_plain(table.rates[m], table.count[m], &table.p[table.first[m]], r, &dt);
        } else {
            key = table.first[m] + table.pick(m, r);
            dt = table.dt[m];
        }
        const double* s = &table.shift[3 * (size_t)key];
        n[0] += s[0];
        n[1] += s[1];
        n[2] += s[2];
        tsince += dt;
        int next = table.next[key];
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
        m = next;
    }
    return istep + 1;
}
