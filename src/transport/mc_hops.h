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
struct HopTable {
    std::vector<int> first;       // [nmols] key of each molecule's first neighbour
    std::vector<int> count;       // [nmols] neighbours of each molecule
    std::vector<double> dt;       // [nmols] 1 / rate sum, the mean residence time (ns)
    std::vector<double> cum;      // [nkey] cumulative hop probabilities
    std::vector<int> next;        // [nkey] unit-cell molecule a hop leads to
    std::vector<double> shift;    // [3 nkey] cell offset of each hop, whole lattice vectors
    std::vector<const double*> rates;  // [nmols] the rates themselves, for the per-hop method
    bool plain = false;           // choose by the per-hop method (the reference)
    std::vector<double> p;        // scratch of the per-hop method

    // Every molecule needs at least one neighbour and a positive rate sum;
    // the caller checks that first.
    void build(int nmols, const int* nnei, double* const* w0, int* const* nei_mol,
               int** const* nei_cell);
    int pick(int m, double r) const
    {
        const double* c = &cum[first[m]];
        int n = count[m], k = 0;
        // The sums never decrease, so the first one above r comes right
        // after those at or below it; counting them needs no branch.
        for (int j = 0; j < n; j++) k += c[j] <= r;
        return k == n ? 0 : k;
    }
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
