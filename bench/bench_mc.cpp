// The Monte Carlo hop loop: hops per second with 12 and 30 neighbours per
// molecule, the precomputed cumulative sums beside the per-hop method they
// replace, and a whole threaded run on one and on two threads.

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <cmath>

#include <cstdlib>
#include <filesystem>
#include <random>

#include "mc_hops.h"
#include "transport.h"

namespace {

const int kMolecules = 4;

// Four molecules with `nnei` neighbours each, rates spread over two decades.
void set_random_hops(Transport& t, int nnei)
{
    std::mt19937 gen(7);
    t.nmols = t.neighbor_nmols = kMolecules;
    t.nnei = new int[kMolecules];
    t.nei_mol = new int*[kMolecules];
    t.w0 = new double*[kMolecules];
    for (int d = 0; d < 3; d++) t.nei_cell[d] = new int*[kMolecules];
    for (int i = 0; i < kMolecules; i++) {
        t.nnei[i] = nnei;
        t.nei_mol[i] = new int[nnei];
        t.w0[i] = new double[nnei];
        for (int d = 0; d < 3; d++) t.nei_cell[d][i] = new int[nnei];
        for (int k = 0; k < nnei; k++) {
            t.nei_mol[i][k] = gen() % kMolecules;
            t.w0[i][k] = std::pow(10.0, 2.0 * (gen() % 1000) / 1000.0);
            for (int d = 0; d < 3; d++) t.nei_cell[d][i][k] = (int)(gen() % 3) - 1;
        }
    }
    t.neighbor_list_built = true;
    for (int d = 0; d < 3; d++) t.latt3x3[d][d] = 6.0;
}

// Simulated time for about `hops` hops.
double time_for(const Transport& t, double hops)
{
    double w = 0;
    for (int k = 0; k < t.nnei[0]; k++) w += t.w0[0][k];
    return hops / w;
}

// range(0): neighbours; range(1): 0 precomputed sums, 1 per-hop method,
// 2 precomputed sums with the process-wide generator (hopmc.exe).
void BM_Hops(benchmark::State& state)
{
    Transport t;
    set_random_hops(t, (int)state.range(0));
    HopTable table;
    table.build(t.nmols, t.nnei, t.w0, t.nei_mol, t.nei_cell);
    table.plain = state.range(1) == 1;
    const int nsnap = 200;
    std::vector<int> istep(nsnap + 1);
    std::vector<double> time(nsnap + 1), x(3 * nsnap + 3), r2(nsnap + 1);
    SnapshotSlots slots{nsnap, istep.data(), time.data(), x.data(), r2.data()};
    std::mt19937 engine(1);
    UniformSource uniform;
    if (state.range(1) != 2) uniform.engine = &engine;
    double tsimu = time_for(t, 1e6);
    long long hops = 0;
    for (auto _ : state) hops += run_one_simulation(table, t.latt3x3, tsimu, tsimu / nsnap, slots, uniform);
    state.SetItemsProcessed(hops);
}
BENCHMARK(BM_Hops)->ArgsProduct({{12, 30}, {0, 1, 2}})->Unit(benchmark::kMillisecond);

// Eight simulations of about 2 million hops, track files included, on
// range(0) threads.
void BM_RunThreads(benchmark::State& state)
{
    std::string dir = (std::filesystem::temp_directory_path() / ("veska_bench_mc_" + std::to_string(getpid()))).string();
    Transport t;
    set_random_hops(t, 12);
    t.tsimu = time_for(t, 2e6);
    t.tsnap = t.tsimu / 200;
    t.nsnap = 200;
    t.track_istep = new int[201];
    t.track_t = new double[201];
    t.track_x = new double[603];
    t.track_r2 = new double[201];
    t.sum_istep = new int[201]();
    t.sum_t = new double[201]();
    t.sum_x = new double[603]();
    t.sum_r2 = new double[201]();
    t.mc_istep_total.assign(201, 0);
    t.mc_initialized = true;
    t.mc_seeded = true;
    t.mc_threads = (int)state.range(0);
    fflush(stdout);
    int saved = dup(1), null = open("/dev/null", O_WRONLY);  // away with the progress lines
    dup2(null, 1);
    close(null);
    for (auto _ : state) t.MC_run_openMP(dir.c_str(), 0, 8);
    fflush(stdout);
    dup2(saved, 1);
    close(saved);
    std::filesystem::remove_all(dir);
    state.SetItemsProcessed(state.iterations() * 8);  // simulations
}
BENCHMARK(BM_RunThreads)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
