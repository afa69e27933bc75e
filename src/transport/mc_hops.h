#ifndef VESKA_MC_HOPS_H
#define VESKA_MC_HOPS_H

// The kinetic Monte Carlo hop loop, shared by both run drivers, the
// benchmark and the tests. Not part of the workspace's interface.

#include <random>
#include <vector>

#include "mmutil.h"

// A molecule's hop probabilities do not change during a run, so the
// cumulative sums are computed once per molecule, with exactly the
// arithmetic of the per-hop method (rate sum in list order, then each rate
// over the sum, summed in list order): the chosen neighbour and the time
// step are bit for bit those of `choose_hop_plain`.
//
// A guide finds the first sum above r without a search: for r in
// [g/G, (g+1)/G) every sum before the entry's start is at most r, since the
// sums never decrease, and the entry holds the next three sums. G is a power
// of two, so g = floor(r G) is exact and the start never passes the answer.
// The entry of (m, g) is found from m and r alone, which keeps the hop
// after hop chain of loads short.
struct HopTable {
    struct Site {
        int first;          // key of the molecule's first hop
        int cum_first;      // its first sum in `cum`
        int count;          // its neighbours
        double dt;          // 1 / rate sum, the mean residence time (ns)
    };
    struct Hop {
        int next;           // unit-cell molecule the hop leads to
        double shift[3];    // its cell offset, whole lattice vectors
    };
    struct Guide {
        int key;            // first candidate hop
        int left;           // hops of the molecule from there on
        int first;          // the molecule's first hop, chosen when no sum is above r
        double sum[3];      // sums of the candidate and the next two, infinite past the end
    };
    std::vector<Site> sites;           // [nmols]
    std::vector<Hop> hops;             // [nkey]
    std::vector<double> cum;           // per molecule its sums, then an infinite stop
    std::vector<Guide> guide;          // [nmols][G + 1]
    int guide_size = 1;                // G, at least the largest neighbour count
    double guide_scale = 1.0;          // G as a double
    std::vector<const double*> rates;  // [nmols] the rates, for the per-hop method
    bool plain = false;                // choose by the per-hop method (the reference)
    std::vector<double> p;             // scratch of the per-hop method

    // Every molecule needs at least one neighbour and a positive rate sum;
    // the caller checks that first.
    void build(int nmols, const int* nnei, double* const* w0, int* const* nei_mol,
               int** const* nei_cell);
    // The key of the hop from m chosen by r: that of the smallest k whose
    // cumulative probability is above r, or k = 0 when none is.
    int pick_key(int m, double r) const
    {
        const Guide& e = guide[m * (guide_size + 1) + (int)(r * guide_scale)];
        int a = (e.sum[0] <= r) + (e.sum[1] <= r);
        if (e.sum[2] <= r) a = walk_on(m, e.key, r);
        return a == e.left ? e.first : e.key + a;
    }
    int pick(int m, double r) const { return pick_key(m, r) - sites[m].first; }
    // Steps past a guide entry's three sums (rare): the hops after `key`.
    int walk_on(int m, int key, double r) const;
};

// The per-hop method: rate sum, probabilities into p, and the smallest k
// whose cumulative probability is above r (0 when none is). Sets *dt = 1/W.
int choose_hop_plain(const double* w, int c, double* p, double r, double* dt);

// One uniform deviate per hop: the process-wide generator, a private
// generator state, or a private 32-bit engine (r = u / 2^32).
struct UniformSource {
    std::mt19937* engine = nullptr;
    long* ran2_state = nullptr;
    double next()
    {
        if (engine) return (*engine)() / 4294967296.0;
        return ran2_state ? ran2(ran2_state) : randUniform();
    }
};

// Where one simulation puts its snapshots: slots 0..nsnap.
struct SnapshotSlots {
    int nsnap;
    int* istep;
    double* t;
    double* x;   // 3 per slot
    double* r2;
};

// Runs one simulation from molecule 0 (the slots are cleared first, so
// slots it does not reach hold zeros). Returns the number of steps taken,
// one uniform draw each.
long long run_one_simulation(HopTable& table, double latt[3][3], double tsimu, double tsnap,
                             const SnapshotSlots& slots, UniformSource& uniform);

#endif
