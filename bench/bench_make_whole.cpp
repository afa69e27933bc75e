// Making one molecule whole by molecule size (flat carbon flakes of 200 to
// 1,600 atoms straddling the cell faces), beside the plain scan it
// replaced; and the structure pipeline (read, expand, separate, make whole)
// on the two hostile cells whose 10,000 images all bond into one molecule.

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench_support.h"
#include "fileio.h"
#include "structure_cases.h"

namespace {

struct Flake {
    FileIO f;
    std::vector<int> types;
    std::vector<double> xs;

    explicit Flake(int natoms)
    {
        int nx = natoms >= 800 ? 20 : 10;
        GeneratedCell c = carbon_flake(nx, natoms / (4 * nx));
        double latt[3][3];
        f.cell_cell6_to_latt3x3(c.cell, latt);
        types.assign(c.symbols.size(), 6);
        xs = c.xs;
    }
    int size() const { return (int)types.size(); }
};

// Second argument 1: the plain scan the search replaced (find_bond_atom_one
// from the first atom).
void BM_MakeWhole(benchmark::State& state)
{
    Flake flake((int)state.range(0));
    flake.f.plain_scans = state.range(1) == 1;
    std::vector<double> x;
    for (auto _ : state) {
        x = flake.xs;
        flake.f.make_whole_molecule(1, flake.size(), flake.types.data(), x.data(), false);
        benchmark::DoNotOptimize(x.data());
    }
    state.counters["atoms"] = flake.size();
}
BENCHMARK(BM_MakeWhole)->ArgsProduct({{200, 400, 800, 1600}, {0, 1}})->ArgNames({"atoms", "plain"})
    ->Unit(benchmark::kMicrosecond);

// Argument 0: carbon in a 0.5 Å cell; 1: an unknown element in a 10 Å cell.
void BM_HostileCell(benchmark::State& state)
{
    const bool unknown = state.range(0) == 1;
    const std::string path = (bench_scratch() / "hostile.cif").string();
    write_cif(path, unknown ? hostile_cell("Q", 10.0) : hostile_cell("C", 0.5));
    int natoms = 0, nmols = 0;
    for (auto _ : state) {
        FileIO f;
        f.read_data_cif(path.c_str(), false);
        f.input_kind = 2;
        f.read_crystal_strcuture_files(false, false);
        natoms = f.natoms_cif;
        nmols = f.nmols;
    }
    state.counters["images"] = natoms;
    state.counters["molecules"] = nmols;
}
BENCHMARK(BM_HostileCell)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
