// The structure pipeline (CIF -> P1 cell -> overlap removal -> separation ->
// whole molecules) side by side with gemmi's C++ API on the same files in
// one run: the shared crystals, 2x2x2 and 4x4x4 P1 supercells of the
// steroid cell, and flat carbon flakes of growing size. Prints a table with
// the ratio gemmi time / project time and its geometric mean over the
// crystals and supercells. Standard Google Benchmark flags apply (e.g.
// --benchmark_repetitions=5 --benchmark_enable_random_interleaving=true;
// the fastest repetition counts). An argument names another folder of CIFs.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "bench_support.h"
#include "fileio.h"
#include "peer_gemmi.h"
#include "structure_cases.h"

namespace fs = std::filesystem;

namespace {

size_t project_whole_molecules(const char* path, size_t* natoms)
{
    FileIO f;
    f.read_data_cif(path, false);
    f.input_kind = 2;
    f.read_crystal_strcuture_files(false, false);
    *natoms = (size_t)f.natoms_cif;
    return (size_t)f.nmols;
}

struct Case {
    std::string name, path;
    bool in_mean;
};

std::string symbol_of(int t)
{
    std::string s(element_table[t >= 0 && t < 104 ? t : 0].symbol, 2);
    if (s[1] == ' ') s.resize(1);
    return s;
}

// The full cell of `source` repeated m x m x m times, written as a P1 file.
void write_supercell(const std::string& source, int m, const std::string& path)
{
    FileIO f;
    f.read_data_cif(source.c_str(), false);
    GeneratedCell c;
    for (int k = 0; k < 6; k++) c.cell[k] = f.cell_latt[k] * (k < 3 ? m : 1);
    for (int a = 0; a < m; a++)
        for (int b = 0; b < m; b++)
            for (int d = 0; d < m; d++)
                for (int i = 0; i < f.natoms_cif; i++) {
                    const double* p = f.cif_x_s + 3 * i;
                    double u[3], shift[3] = {(double)a, (double)b, (double)d};
                    for (int k = 0; k < 3; k++) u[k] = (p[k] - std::floor(p[k]) + shift[k]) / m;
                    c.add(symbol_of(f.cif_atypes[i]), u[0], u[1], u[2]);
                }
    write_cif(path, c);
}

std::vector<Case> make_cases(const fs::path& data, const fs::path& tmp)
{
    std::vector<Case> cases;
    std::vector<fs::path> cifs;
    for (const auto& e : fs::directory_iterator(data))
        if (e.path().extension() == ".cif") cifs.push_back(e.path());
    std::sort(cifs.begin(), cifs.end());
    for (const auto& p : cifs) cases.push_back({p.stem().string(), p.string(), true});
    const std::string steroid = (data / "steroid_cod2007008_zprime2.cif").string();
    for (int m : {2, 4}) {
        std::string name = "steroid_P1_" + std::to_string(m) + "x" + std::to_string(m) + "x" +
                           std::to_string(m);
        std::string path = (tmp / (name + ".cif")).string();
        write_supercell(steroid, m, path);
        cases.push_back({name, path, true});
    }
    const int flakes[4][2] = {{10, 5}, {10, 10}, {20, 10}, {20, 20}};
    for (const auto& fl : flakes) {
        std::string name = "flake_" + std::to_string(4 * fl[0] * fl[1]) + "_atoms";
        std::string path = (tmp / (name + ".cif")).string();
        write_cif(path, carbon_flake(fl[0], fl[1]));
        cases.push_back({name, path, false});
    }
    return cases;
}

// Keeps the fastest CPU time per iteration (microseconds) of every
// benchmark: CPU time, because the machines this runs on are often shared,
// and both pipelines run on one thread.
class FastestReporter : public benchmark::BenchmarkReporter {
public:
    std::map<std::string, double> fastest;
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& r : runs) {
            if (r.error_occurred || r.run_type != Run::RT_Iteration) continue;
            double us = r.GetAdjustedCPUTime();
            auto it = fastest.find(r.benchmark_name());
            if (it == fastest.end() || us < it->second) fastest[r.benchmark_name()] = us;
        }
    }
};

struct Counts {
    size_t atoms = 0, molecules = 0;
};

void register_cases(const std::vector<Case>& cases, std::map<std::string, Counts>& project,
                    std::map<std::string, Counts>& peer)
{
    for (const Case& c : cases) {
        Counts& np = project[c.name];
        Counts& ng = peer[c.name];
        benchmark::RegisterBenchmark(("project/" + c.name).c_str(), [&c, &np](benchmark::State& st) {
            for (auto _ : st) np.molecules = project_whole_molecules(c.path.c_str(), &np.atoms);
        })->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("gemmi/" + c.name).c_str(), [&c, &ng](benchmark::State& st) {
            for (auto _ : st) ng.molecules = gemmi_whole_molecules(c.path.c_str(), 1.15, &ng.atoms);
        })->Unit(benchmark::kMicrosecond);
    }
}

// One row per case; the mean takes the crystals and supercells on which
// both pipelines found the same molecules (a file the project reads as an
// empty cell is a different job).
void print_table(const std::vector<Case>& cases, const std::map<std::string, double>& fastest,
                 std::map<std::string, Counts>& project, std::map<std::string, Counts>& peer)
{
    printf("%-36s %7s %9s %12s %12s %7s\n", "case", "atoms", "molecules", "project us",
           "gemmi us", "ratio");
    double log_sum = 0.0;
    int counted = 0;
    for (const Case& c : cases) {
        auto p = fastest.find("project/" + c.name), g = fastest.find("gemmi/" + c.name);
        if (p == fastest.end() || g == fastest.end()) continue;
        const Counts &np = project[c.name], &ng = peer[c.name];
        const double ratio = g->second / p->second;
        const bool same = np.molecules == ng.molecules;
        char mols[48];
        snprintf(mols, sizeof mols, "%zu/%zu", np.molecules, ng.molecules);
        printf("%-36s %7zu %9s %12.1f %12.1f %7.2f%s\n", c.name.c_str(), np.atoms, mols,
               p->second, g->second, ratio,
               !c.in_mean ? "  (scaling, not in the mean)"
                          : (same ? "" : "  (different molecules, not in the mean)"));
        if (c.in_mean && same) {
            log_sum += std::log(ratio);
            counted++;
        }
    }
    if (counted)
        printf("geometric mean of gemmi/project over %d crystals and supercells: %.2f\n", counted,
               std::exp(log_sum / counted));
}

}  // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
#ifdef M_TRIM_THRESHOLD
    // Keep freed memory in the process: otherwise the page faults of a heap
    // that shrank after the previous run are counted too, and they depend on
    // which benchmark ran before rather than on the code measured.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
#endif
    const fs::path data = argc > 1 ? fs::path(argv[1]) : fs::path(VESKA_BENCH_DATA_DIR);
    fprintf(stderr, "running the project and gemmi on the crystals in %s ...\n", data.c_str());
    std::vector<Case> cases;
    std::map<std::string, Counts> project, peer;
    FastestReporter reporter;
    {
        QuietStdout quiet;  // the project's warnings (overlapped atoms) stay out of the table
        cases = make_cases(data, bench_scratch());
        register_cases(cases, project, peer);
        benchmark::RunSpecifiedBenchmarks(&reporter);
    }
    print_table(cases, reporter.fastest, project, peer);
    benchmark::Shutdown();
    return 0;
}
