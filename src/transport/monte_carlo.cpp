// Kinetic Monte Carlo of one carrier hopping through the crystal: the run's
// preparation, the two drivers (process-wide generator, or one generator
// per simulation on a pool of threads) and the track files.

#include <algorithm>
#include <atomic>
#include <climits>
#include <cmath>
#include <cstdint>
#include <functional>
#include <iostream>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>

#include "mc_hops.h"
#include "mmutil.h"
#include "transport.h"

namespace {

const char* const track_header =
    "#      t,ns         x,angs         y,angs         z,angs         r2,A^2     istep\n";

// A carrier on a molecule it cannot leave would stop the clock (1/0), so
// such a list is refused before any simulation starts.
void require_every_molecule_left(const Transport& t)
{
    for (int i = 0; i < t.nmols; i++) {
        if (t.nnei[i] < 1)
            veska_fatal("transport", 3190, -1, stdout,
                        "Molecule %d has no neighbour within lat_cutoff = %g A: a carrier that "
                        "reaches it cannot hop on. Raise lat_cutoff or nei_scell.\n",
                        i + 1, t.lat_cutoff);
        double w = 0.0;
        for (int k = 0; k < t.nnei[i]; k++) w += t.w0[i][k];
        if (!(w > 0.0) || std::isinf(w))
            veska_fatal("transport", 3192, -1, stdout,
                        "The hop rates of molecule %d sum to %g 1/ns: a carrier there needs a "
                        "positive, finite total rate to hop on\n",
                        i + 1, w);
    }
}

void require_simulations(int simu0, int nsimu)
{
    if (nsimu < 1)
        veska_fatal("transport", 3196, -1, stdout,
                    "nsimu = %d: at least one Monte Carlo simulation is needed\n", nsimu);
    if (simu0 < 0 || simu0 > INT_MAX - 1 - nsimu)
        veska_fatal("transport", 3198, -1, stdout,
                    "simu0 = %d: simulation numbers start at 0 and must stay below %d\n", simu0,
                    INT_MAX);
}

std::seed_seq seed_sequence(unsigned long long seed, int number)
{
    return std::seed_seq{(uint32_t)seed, (uint32_t)(seed >> 32), (uint32_t)number};
}

// One simulation's snapshot arrays, private to a thread.
struct Snapshots {
    std::vector<int> istep;
    std::vector<double> t, x, r2;
    explicit Snapshots(int nslot) : istep(nslot), t(nslot), x(3 * (size_t)nslot), r2(nslot) {}
    SnapshotSlots slots() { return {(int)t.size() - 1, istep.data(), t.data(), x.data(), r2.data()}; }
};

// Sums of t, r2 and X over simulations, added in simulation order whatever
// order the threads finish in, so that the rounding and therefore the
// averages are those of a run on one thread.
class OrderedSums {
public:
    explicit OrderedSums(int nslot) : t(nslot), r2(nslot), x(3 * (size_t)nslot) {}
    void commit(int index, const Snapshots& s)
    {
        std::lock_guard<std::mutex> guard(lock_);
        if (index != next_) {
            waiting_.emplace(index, s);
            return;
        }
        add(s);
        for (auto it = waiting_.begin(); it != waiting_.end() && it->first == next_;
             it = waiting_.erase(it))
            add(it->second);
    }
    std::vector<double> t, r2, x;

private:
    void add(const Snapshots& s)
    {
        for (size_t i = 0; i < t.size(); i++) t[i] += s.t[i];
        for (size_t i = 0; i < r2.size(); i++) r2[i] += s.r2[i];
        for (size_t i = 0; i < x.size(); i++) x[i] += s.x[i];
        next_++;
    }
    std::mutex lock_;
    int next_ = 0;
    std::map<int, Snapshots> waiting_;
};

// Runs `work` on up to n threads, the calling thread among them; a thread
// that cannot be started leaves its share to the others.
void run_on_threads(int n, const std::function<void()>& work)
{
    std::vector<std::thread> pool;
    for (int j = 1; j < n; j++) {
        try {
            pool.emplace_back(std::ref(work));
        } catch (const std::system_error&) {
            break;
        }
    }
    work();
    for (std::thread& th : pool) th.join();
}

void write_track(const char* dir, const std::string& path, int line, int nsnap, const double* t,
                 const double* x, const double* r2, const int* istep)
{
    create_directory(dir);
    std::string text = track_header;
    text += format_string("%14.6e %14.6e %14.6e %14.6e %14.6e  %d\n", 0.0, 0.0, 0.0, 0.0, 0.0, 0);
    for (int s = 0; s < nsnap; s++)
        text += format_string("%14.6e %14.6e %14.6e %14.6e %14.6e  %d\n", t[s], x[3 * s],
                              x[3 * s + 1], x[3 * s + 2], r2[s], istep[s]);
    if (write_text_file(path.c_str(), text) != WRITE_OK)
        veska_fatal_open_output("transport", line, path.c_str());
}

int saturated(long long n) { return n > INT_MAX ? INT_MAX : (int)n; }

}  // namespace

void Transport::MC_init()
{
    if (mc_initialized) return;
    free_mc_arrays();
    create_directory(trackdir.c_str());
    build_neighbor_list(false);
    fill_homo_index();
    read_charge_inp();
    read_MC_w0();
    write_MC_w0_out();
    require_every_molecule_left(*this);
    nkey = 0;
    for (int i = 0; i < nmols; i++) nkey += nnei[i];
    nsnap = snapshot_count();

    const int nslot = nsnap + 1;
    track_istep = new int[nslot]();
    track_t = new double[nslot]();
    track_x = new double[3 * nslot]();
    track_r2 = new double[nslot]();
    sum_istep = new int[nslot]();
    sum_t = new double[nslot]();
    sum_x = new double[3 * nslot]();
    sum_r2 = new double[nslot]();
    mc_istep_total.assign(nslot, 0);

    double temperature = read_temp_inp();
    if (temperature > 0) temp = temperature;
    std::cout << "  chargetype = " << mc_chargetype << "\n"
              << "  temp       = " << temp << "\n"
              << "  nsimu      = " << nsimu << "\n"
              << "  tsimu      = " << tsimu << " ns\n"
              << "  tsnap      = " << tsnap << " ns" << std::endl;
    mc_initialized = true;
}

void Transport::MC_simulation_one(int isimu, const char* dir)
{
    MC_init();
    HopTable table;
    table.build(nmols, nnei, w0, nei_mol, nei_cell);
    // A seeded simulation starts the process-wide generator afresh (a
    // negative seed rebuilds its shuffle table), so it depends on
    // (mc_seed, number) alone.
    long seed = 0;
    UniformSource uniform;
    if (mc_seeded) {
        uint32_t v;
        seed_sequence(mc_seed, isimu + 1).generate(&v, &v + 1);
        seed = -(long)(1 + v % 2147483562u);
        uniform.ran2_state = &seed;
    } else {
        init_random_seed();
    }
    printf("MC simulation (%d) ...\n", isimu + 1);
    run_one_simulation(table, latt3x3, tsimu, tsnap,
                       {nsnap, track_istep, track_t, track_x, track_r2}, uniform);
    output_track(dir, isimu + 1, track_t, track_x, track_r2, track_istep);
    for (int s = 0; s <= nsnap; s++) {
        mc_istep_total[s] += track_istep[s];
        sum_istep[s] = saturated(mc_istep_total[s]);
        sum_t[s] += track_t[s];
        sum_r2[s] += track_r2[s];
        for (int d = 0; d < 3; d++) sum_x[3 * s + d] += track_x[3 * s + d];
    }
}

void Transport::MC_run(const char* dir, int simu0, int nsimu)
{
    require_simulations(simu0, nsimu);
    for (int i = simu0; i < simu0 + nsimu; i++) MC_simulation_one(i, dir);
    for (int s = 0; s <= nsnap; s++) {
        mc_istep_total[s] /= nsimu;  // integer division, as the track files count hops
        sum_istep[s] = saturated(mc_istep_total[s]);
        sum_t[s] /= nsimu;
        sum_r2[s] /= nsimu;
        for (int d = 0; d < 3; d++) sum_x[3 * s + d] /= nsimu;
    }
    output_track_ave(dir, sum_t, sum_x, sum_r2, sum_istep);
    printf("All data are in directory: %s\n", dir);
}

void Transport::MC_run(const char* dir, int simu0) { MC_run(dir, simu0, nsimu); }

// Tracks are numbered 1 to nsimu whatever simu0 is.
void Transport::MC_run_openMP(const char* dir, int, int nsimu)
{
    require_simulations(0, nsimu);
    MC_init();
    printf("MC simulation ...\n");
    fflush(stdout);
    HopTable table;
    table.build(nmols, nnei, w0, nei_mol, nei_cell);
    const int nslot = nsnap + 1;
    OrderedSums sums(nslot);
    std::atomic<int> next{0};
    auto work = [&]() {
        HopTable own = table;  // the per-hop method writes into its scratch
        Snapshots snap(nslot);
        for (int i; (i = next.fetch_add(1)) < nsimu;) {
            std::mt19937 engine;
            if (mc_seeded) {
                std::seed_seq seq = seed_sequence(mc_seed, i + 1);
                engine.seed(seq);
            } else {
                std::random_device device("default");
                engine.seed(device());
            }
            UniformSource uniform;
            uniform.engine = &engine;
            run_one_simulation(own, latt3x3, tsimu, tsnap, snap.slots(), uniform);
            output_track(dir, i + 1, snap.t.data(), snap.x.data(), snap.r2.data(),
                         snap.istep.data());
            sums.commit(i, snap);
        }
    };
    run_on_threads(std::max(1, std::min(mc_threads, nsimu)), work);

    for (int s = 0; s < nslot; s++) {
        sum_t[s] = (sum_t[s] + sums.t[s]) / nsimu;
        sum_r2[s] = (sum_r2[s] + sums.r2[s]) / nsimu;
        for (int d = 0; d < 3; d++) sum_x[3 * s + d] = (sum_x[3 * s + d] + sums.x[3 * s + d]) / nsimu;
        sum_istep[s] = 0;
        mc_istep_total[s] = 0;
    }
    output_track_ave(dir, sum_t, sum_x, sum_r2, sum_istep);
    printf("All data are in directory: %s\n", dir);
}

void Transport::MC_run_openMP(const char* dir) { MC_run_openMP(dir, 0, nsimu); }

void Transport::MC_run_openMP(const char* dir, int simu0) { MC_run_openMP(dir, simu0, nsimu); }

void Transport::output_track(const char* dir, int number, double* t, double* x, double* r2,
                             int* istep)
{
    std::string path =
        format_string(number > 9999 ? "%s/track_%d.dat" : "%s/track_%04d.dat", dir, number);
    write_track(dir, path, 3213, nsnap, t, x, r2, istep);
}

void Transport::output_track_ave(const char* dir, double* t, double* x, double* r2, int* istep)
{
    write_track(dir, format_string("%s/track_total.dat", dir), 3250, nsnap, t, x, r2, istep);
}
