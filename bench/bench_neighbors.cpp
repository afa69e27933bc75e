// Neighbour search and unique analysis on two real crystals, searched ±3
// cells at 4 Å: the Z' = 2 steroid (8 molecules of 62 atoms) and a 4x4x4
// pentacene supercell written as P1 (128 molecules of 36 atoms). On the
// supercell the plain all-atom-pairs scan runs first, so that the search
// reports its speed-up over it and checks that both lists are the same.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "bench_support.h"
#include "neighbor_internal.h"

namespace {

namespace fs = std::filesystem;

const std::filesystem::path& scratch() { return bench_scratch(); }

void read_crystal(Transport& t, const std::string& path)
{
    QuietStdout quiet;
    t.set_varables_default();
    t.read_data_cif(path.c_str(), false);
    t.input_kind = 2;
    t.read_crystal_strcuture_files(false, false);
    t.post_data_read_treatment();
    t.data_dir = (scratch() / "data").string();
}

Transport& steroid()
{
    static Transport* t = [] {
        auto* s = new Transport;
        read_crystal(*s, VESKA_BENCH_DATA_DIR "/steroid_cod2007008_zprime2.cif");
        return s;
    }();
    return *t;
}

Transport& pentacene_supercell()
{
    static Transport* t = [] {
        Transport cell;
        read_crystal(cell, VESKA_BENCH_DATA_DIR "/pentacene_pencen01.cif");
        const std::string path = (scratch() / "pentacene_4x4x4.cif").string();
        cell.write_supercell_cif(path.c_str(), cell.nmols, cell.natoms_mol, cell.atypes_mol,
                                 cell.x_s_mol, 4, 4, 4);
        auto* s = new Transport;
        read_crystal(*s, path);
        return s;
    }();
    return *t;
}

std::vector<int> neighbor_list(Transport& t)
{
    std::vector<int> v;
    for (int i = 0; i < t.nmols; i++)
        for (int k = 0; k < t.nnei[i]; k++)
            v.insert(v.end(), {i, t.nei_mol[i][k], t.nei_cell[0][i][k], t.nei_cell[1][i][k],
                               t.nei_cell[2][i][k]});
    return v;
}

struct PlainScan {
    double seconds = 0;  // per build
    std::vector<int> list;
} plain;

// Runs the loop; returns processor seconds per iteration (the machine may
// be shared, so wall time would make the ratio noisy).
template <typename F>
double timed(benchmark::State& state, F body)
{
    const std::clock_t start = std::clock();
    for (auto _ : state) body();
    return (double)(std::clock() - start) / CLOCKS_PER_SEC / (double)state.iterations();
}

void counters(benchmark::State& state, Transport& t)
{
    int n = 0;
    for (int i = 0; i < t.nmols; i++) n += t.nnei[i];
    state.counters["molecules"] = t.nmols;
    state.counters["pairs"] = n;
}

void BM_NeighborList_Steroid(benchmark::State& state)
{
    Transport& t = steroid();
    timed(state, [&] { t.build_neighbor_list(false); });
    counters(state, t);
}
BENCHMARK(BM_NeighborList_Steroid)->Unit(benchmark::kMillisecond);

void BM_NeighborList_Supercell_PlainScan(benchmark::State& state)
{
    Transport& t = pentacene_supercell();
    plain.seconds = timed(state, [&] { build_neighbor_list_scan(t, false, false); });
    plain.list = neighbor_list(t);
    counters(state, t);
}
BENCHMARK(BM_NeighborList_Supercell_PlainScan)->Unit(benchmark::kMillisecond);

void BM_NeighborList_Supercell(benchmark::State& state)
{
    Transport& t = pentacene_supercell();
    const double seconds = timed(state, [&] { t.build_neighbor_list(false); });
    counters(state, t);
    if (plain.list.empty()) return;
    if (neighbor_list(t) != plain.list) state.SkipWithError("the list differs from the plain scan's");
    state.counters["speedup_vs_plain"] = plain.seconds / seconds;
}
BENCHMARK(BM_NeighborList_Supercell)->Unit(benchmark::kMillisecond);

void unique_analysis(benchmark::State& state, Transport& t)
{
    t.build_neighbor_list(false);
    t.unique_2mol_calc_flag = true;
    {
        QuietStdout quiet;
        for (auto _ : state) {
            t.calc_HL_uc_mol_eigval_eigvec();
            t.calc_HL_2mol_eigval_eigvec_and_unique_pairs();
            benchmark::DoNotOptimize(t.HL_check_unitcell_unique_mols(false));
        }
    }
    counters(state, t);
    state.counters["unique_pairs"] = t.unique_pair_count;
}

void BM_UniqueAnalysis_Steroid(benchmark::State& state)
{
    unique_analysis(state, steroid());
}
BENCHMARK(BM_UniqueAnalysis_Steroid)->Unit(benchmark::kMillisecond);

void BM_UniqueAnalysis_Supercell(benchmark::State& state)
{
    unique_analysis(state, pentacene_supercell());
}
BENCHMARK(BM_UniqueAnalysis_Supercell)->Unit(benchmark::kMillisecond);

}  // namespace
