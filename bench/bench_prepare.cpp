// The whole preparation command, files included, as a user runs it: on the
// largest shared crystal (the Z' = 2 steroid) and on a 3x3x3 pentacene
// supercell written as P1 (54 molecules). Each run starts from a directory
// holding only veska.inp and the crystal; the child's peak memory is
// reported beside its wall time.

#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <chrono>
#include <string>

#include "bench_support.h"
#include "mmutil.h"
#include "transport.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;

// A run directory with the crystal and a veska.inp that keeps every
// default but the crystal.
fs::path stage(const std::string& name, const fs::path& crystal)
{
    fs::path dir = bench_scratch() / name;
    fs::create_directories(dir);
    fs::copy_file(crystal, dir / crystal.filename(), fs::copy_options::overwrite_existing);
    const std::string inp = "&transport\n  crystal = " + crystal.filename().string() + "\n/\n";
    write_text_file((dir / "veska.inp").c_str(), inp);
    return dir;
}

fs::path pentacene_supercell()
{
    Transport cell;
    {
        QuietStdout quiet;
        cell.set_varables_default();
        cell.read_data_cif(VESKA_BENCH_DATA_DIR "/pentacene_pencen01.cif", false);
        cell.input_kind = 2;
        cell.read_crystal_strcuture_files(false, false);
    }
    const fs::path path = bench_scratch() / "pentacene_3x3x3.cif";
    cell.write_supercell_cif(path.c_str(), cell.nmols, cell.natoms_mol, cell.atypes_mol,
                             cell.x_s_mol, 3, 3, 3);
    return path;
}

// Runs the command in `dir`; returns false when it fails.
bool run_prepare(const fs::path& dir, double& seconds, long& peak_kb)
{
    std::string exe = VESKA_PREPARE_EXE;
    char* argv[] = {exe.data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addchdir_np(&actions, dir.c_str());
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    auto start = std::chrono::steady_clock::now();
    pid_t pid;
    int rc = posix_spawn(&pid, exe.c_str(), &actions, nullptr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (rc != 0) return false;
    int status = 0;
    struct rusage usage;
    wait4(pid, &status, 0, &usage);
    seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    peak_kb = usage.ru_maxrss;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void prepare(benchmark::State& state, const fs::path& dir)
{
    long peak_kb = 0;
    for (auto _ : state) {
        state.PauseTiming();
        for (const char* d : {"HL", "RE", "scr", "jobs", "data", "evc", "RUN"})
            fs::remove_all(dir / d);
        state.ResumeTiming();
        double seconds = 0;
        if (!run_prepare(dir, seconds, peak_kb)) {
            state.SkipWithError("veska_transport_prepare failed");
            return;
        }
        state.SetIterationTime(seconds);
    }
    state.counters["peak_MB"] = (double)peak_kb / 1024.0;
}

void BM_Prepare_Steroid(benchmark::State& state)
{
    static fs::path dir =
        stage("steroid", VESKA_BENCH_DATA_DIR "/steroid_cod2007008_zprime2.cif");
    prepare(state, dir);
}
BENCHMARK(BM_Prepare_Steroid)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_Prepare_PentaceneSupercell(benchmark::State& state)
{
    static fs::path dir = stage("supercell", pentacene_supercell());
    prepare(state, dir);
}
BENCHMARK(BM_Prepare_PentaceneSupercell)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
