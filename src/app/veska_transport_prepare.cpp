// Preparation command: turns a configured crystal into a run directory.
// In the current directory it reads veska.inp and the crystal (or the MOL
// files), finds neighbours and unique molecules and pairs, and writes every
// quantum-chemistry input, job script and driver of the transport stage.

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "mmutil.h"
#include "transport.h"

namespace {

namespace fs = std::filesystem;

struct Options {
    std::string program = "veska_transport_prepare";
    std::string config = "veska.inp";
    bool verbose = false;
};

void print_usage(FILE* out, const std::string& prog)
{
    fprintf(out,
            "Usage: %s [-config FILE] [-v] [-h]\n"
            "  Prepares the transport stage in the current directory: reads the\n"
            "  configuration and the crystal it names, finds neighbours and unique\n"
            "  molecules and pairs, and writes the quantum-chemistry inputs, job\n"
            "  scripts and Python drivers (HL/, RE/, scr/, jobs/, data/, evc/, MC-*, ME-*).\n"
            "    -config FILE : configuration file (default veska.inp)\n"
            "    -v           : print every step of the library in detail\n"
            "    -h           : this text\n",
            prog.c_str());
}

// Returns 0 to go on, otherwise the exit status (0 after -h, 2 on misuse).
int parse_options(int argc, char** argv, Options& o, bool& stop)
{
    stop = false;
    for (int i = 1; i < argc; i++) {
        std::string a = argv[i];
        if (a == "-h" || a == "--help") {
            print_usage(stdout, o.program);
            stop = true;
            return 0;
        }
        if (a == "-v") {
            o.verbose = true;
        } else if (a == "-config") {
            if (i + 1 >= argc) {
                fprintf(stderr, "%s: -config needs a file name\n", o.program.c_str());
                print_usage(stderr, o.program);
                stop = true;
                return 2;
            }
            o.config = argv[++i];
        } else {
            fprintf(stderr, "%s: unknown option '%s'\n", o.program.c_str(), a.c_str());
            print_usage(stderr, o.program);
            stop = true;
            return 2;
        }
    }
    return 0;
}

void step(const char* text)
{
    printf("-- %s\n", text);
    fflush(stdout);
}

// A CIF whose atom sites carry a disorder group other than "." or "?" keeps
// every alternative site: the molecules then hold both conformations.
bool cif_has_disorder_groups(const std::string& path)
{
    std::vector<std::string> lines;
    if (!read_text_lines(path.c_str(), lines, false)) return false;
    std::vector<std::string> tags;
    int group_column = -1;
    bool in_rows = false;
    for (std::string line : lines) {
        trim(line);
        if (line.empty() || line[0] == '#') continue;
        if (line == "loop_") {
            tags.clear();
            group_column = -1;
            in_rows = false;
            continue;
        }
        if (line[0] == '_') {
            if (in_rows) {
                tags.clear();
                group_column = -1;
                in_rows = false;
            }
            std::string tag = line.substr(0, line.find_first_of(" \t"));
            if (tag == "_atom_site_disorder_group") group_column = (int)tags.size();
            tags.push_back(tag);
            continue;
        }
        in_rows = true;
        if (group_column < 0) continue;
        std::vector<std::string> words;
        tokenize(words, line.c_str(), " \t");
        if ((int)words.size() == (int)tags.size()) {
            const std::string& g = words[group_column];
            if (g != "." && g != "?") return true;
        }
    }
    return false;
}

void warn_disorder(Transport& t)
{
    if (t.input_kind == 2 && cif_has_disorder_groups(t.crystal_file))
        printf("WARNING: %s has disordered atom sites; every alternative site is kept, so the "
               "molecules hold both conformations. Resolve the disorder before trusting the "
               "results.\n",
               t.crystal_file.c_str());
}

// Regular files under `dir` modified since `since` (a re-run rewrites
// everything it owns, so these are the files this run wrote).
int files_written_since(const std::string& dir, const timespec& since)
{
    int count = 0;
    std::error_code ec;
    if (!fs::is_directory(dir, ec)) return 0;
    for (auto it = fs::recursive_directory_iterator(dir, ec); !ec && it != fs::end(it);
         it.increment(ec)) {
        struct stat st;
        if (stat(it->path().c_str(), &st) != 0 || !S_ISREG(st.st_mode)) continue;
        if (st.st_mtim.tv_sec > since.tv_sec ||
            (st.st_mtim.tv_sec == since.tv_sec && st.st_mtim.tv_nsec >= since.tv_nsec))
            count++;
    }
    return count;
}

std::vector<std::string> run_directories(Transport& t)
{
    std::vector<std::string> dirs = {t.hl_dir, t.re_dir, t.scr_dir, t.jobs_dir, t.data_dir,
                                     "evc"};
    std::error_code ec;
    std::vector<std::string> stage;
    for (auto& e : fs::directory_iterator(".", ec)) {
        std::string name = e.path().filename().string();
        if (e.is_directory() && (name.rfind("MC-", 0) == 0 || name.rfind("ME-", 0) == 0))
            stage.push_back(name);
    }
    std::sort(stage.begin(), stage.end());
    dirs.insert(dirs.end(), stage.begin(), stage.end());
    return dirs;
}

int total_pairs(Transport& t)
{
    int n = 0;
    for (int i = 0; i < t.nmols; i++) n += t.nnei[i];
    return n;
}

void print_next_steps(Transport& t)
{
    const char* s = t.scr_dir.c_str();
    printf("\nNext, from this directory (python must be Python 3):\n");
    printf("  1. python %s/mol_one_uc.py; python %s/mol_one_nei.py; python %s/mol_two.py\n", s, s,
           s);
    printf("     python %s/mol_RE.py          (submit the quantum-chemistry jobs)\n", s);
    printf("  2. when they have finished (run a driver again to resubmit what failed):\n");
    std::string site = t.lat_site_energy ? "; python " + t.scr_dir + "/get_site_ener.py" : "";
    printf("     python %s/get_transint.py%s   (transfer integrals)\n", s, site.c_str());
    printf("     python %s/prepare_RE.py; python %s/run_RE.py   (normal modes)\n", s, s);
    printf("  3. python %s/get_RE.py           (reorganisation energies)\n", s);
    printf("  4. in MC-%s/elec and MC-%s/hole: python prepare-mc.py; python run_mc_batch.py;"
           " python get_mob.py\n",
           t.ratetype.c_str(), t.ratetype.c_str());
}

void print_summary(Transport& t, const Options& o, const timespec& start)
{
    int pairs = total_pairs(t);
    printf("\n**** Summary ****\n");
    printf("  configuration      %s\n", o.config.c_str());
    printf("  molecules          %d\n", t.nmols);
    printf("  unique molecules   %d (HL), %d (RE)\n", t.hl_unique_count, t.re_unique_count);
    printf("  neighbour pairs    %d\n", pairs);
    printf("  unique pairs       %d\n", t.unique_pair_count);
    printf("  files written     ");
    const char* separator = " ";
    for (const std::string& d : run_directories(t)) {
        printf("%s%s/ %d", separator, d.c_str(), files_written_since(d, start));
        separator = ", ";
    }
    printf("\n");
    warn_disorder(t);
    print_next_steps(t);
}

void read_structure(Transport& t, const Options& o)
{
    step(("reading " + o.config).c_str());
    t.read_veska_inp(o.config.c_str(), o.verbose);
    if (t.input_kind == 2)
        printf("   crystal %s (CIF)\n", t.crystal_file.c_str());
    else if (t.input_kind == 1)
        printf("   %d MOL files\n", t.nmols);
    step("building the unit cell's whole molecules");
    t.read_crystal_strcuture_files(o.verbose, true);
    printf("   %d molecules in the unit cell\n", t.nmols);
}

void analyse(Transport& t, const Options& o)
{
    t.post_data_read_treatment();
    step("finding neighbours");
    t.build_neighbor_list(o.verbose);
    t.output_neighbor_data();
    printf("   %d neighbour pairs within %g A (search +-%d %d %d cells)\n", total_pairs(t),
           t.lat_cutoff, t.nei_scell[0], t.nei_scell[1], t.nei_scell[2]);
    step("finding unique molecules and pairs");
    t.calc_HL_uc_mol_eigval_eigvec();
    t.calc_HL_2mol_eigval_eigvec_and_unique_pairs();
    t.HL_check_unitcell_unique_mols(o.verbose);
    t.RE_check_unitcell_same_mols(o.verbose);
    printf("   %d unique molecules, %d unique pairs\n", t.hl_unique_count, t.unique_pair_count);
}

const char* engine_name(int engine)
{
    static const char* const names[3] = {"Gaussian", "ORCA", "Q-Chem"};
    return engine >= 1 && engine <= 3 ? names[engine - 1] : "unknown";
}

void write_jobs(Transport& t)
{
    printf("-- writing %s inputs and %s job scripts (%s)\n", engine_name(t.compute_engine),
           t.sched_names[t.job_sched_type].c_str(),
           t.sched_job_array ? "array jobs" : "one job per calculation");
    fflush(stdout);
    // The neighbour driver of the unique set replaces the placeholder that
    // the neighbour-to-molecule mapping writes.
    if (t.get_unique_uc_mol_one_calc_flag()) t.find_HL_mol_neighbor_index_unique();
    t.write_HL_inputs_and_jobs();
    t.calc_homo();
    t.write_H_L_inp();
    t.write_RE_inputs_and_jobs();
    step("writing the workflow scripts");
    t.write_scripts(false);
}

}  // namespace

int main(int argc, char** argv)
{
    Options o;
    if (argc > 0 && argv[0]) o.program = fs::path(argv[0]).filename().string();
    bool stop = false;
    int status = parse_options(argc, argv, o, stop);
    if (stop) return status;
    if (!fileExist(o.config.c_str())) {
        fprintf(stderr, "%s: no configuration file '%s' here; write one with veska_transport_inp\n",
                o.program.c_str(), o.config.c_str());
        return 1;
    }
    timespec start;
    clock_gettime(CLOCK_REALTIME, &start);
    start.tv_nsec = 0;  // file times may be kept at a coarser grain
    Transport t;
    read_structure(t, o);
    if (t.nmols < 1) {
        printf("\n**** Summary ****\n  molecules          0\n");
        warn_disorder(t);
        printf("WARNING: no molecule was built from %s: nothing to compute. Check that the file "
               "holds atom sites and symmetry operators this reader understands.\n",
               t.input_kind == 2 ? t.crystal_file.c_str() : o.config.c_str());
        return 1;
    }
    if (t.compute_engine < 1 || t.compute_engine > 3) {
        fprintf(stderr, "%s: compute_engine = %d in %s; it must be 1 (Gaussian), 2 (ORCA) or 3 "
                "(Q-Chem)\n", o.program.c_str(), t.compute_engine, o.config.c_str());
        return 1;
    }
    analyse(t, o);
    write_jobs(t);
    print_summary(t, o, start);
    printf("\nDone: the run directory is ready.\n");
    return 0;
}
