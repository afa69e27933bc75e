#include "transport.h"

#include "mmutil.h"
#include "owned_arrays.h"

// The bases (FileIO, then Jobscript, then the configuration's own members)
// and the member defaults are in place when this body runs.
Transport::Transport()
{
    input_kind = -1;
    get_workdir(work_dir);
    re_same_flag = false;
    hl_same_flag = true;
    unique_pair_count = 0;
    copy_unique_flags();  // reading veska.inp copies them again
}

// The workspace's arrays go first, each group only when it was built; the
// VeskaInp, Jobscript and FileIO parts are released after this body.
Transport::~Transport()
{
    free_pair_arrays();
    free_mol_id_indexes();
    free_neighbor_arrays();
    free_mc_arrays();
    free_molecule_arrays();
    free_array(homo_index);
}

void Transport::free_neighbor_arrays()
{
    free_array(nnei);
    free_rows(nei_mol, neighbor_nmols);
    for (int d = 0; d < 3; d++) free_rows(nei_cell[d], neighbor_nmols);
    neighbor_list_built = false;
}

// The dimer arrays hold NNEIMAX slots per molecule, each slot its own array
// or null.
static void free_slots(double***& slots, int nmols, int per_molecule)
{
    if (!slots) return;
    for (int i = 0; i < nmols; i++) free_rows(slots[i], per_molecule);
    free_array(slots);
}

void Transport::free_pair_arrays()
{
    free_slots(x_2mol, neighbor_nmols, NNEIMAX);
    free_slots(eigval_2mol, neighbor_nmols, NNEIMAX);
    free_rows(natoms_2mol, neighbor_nmols);
    free_rows(prin_moment, neighbor_nmols);
    free_array(unique_pair_map);
    free_array(unique_pair_list);
    unique_pair_count = 0;
    pair_data_built = false;
}

void Transport::free_mol_id_indexes()
{
    if (!mol_id_indexes_allocated) return;
    free_rows(nei_mol_id, neighbor_nmols);
    free_rows(nei_unique_id, neighbor_nmols);
    free_array(re_mol_index);
    free_array(re_unique_list);
    free_array(hl_mol_index);
    free_array(hl_unique_list);
    mol_id_indexes_allocated = false;
}

void Transport::free_mc_arrays()
{
    free_rows(w0, neighbor_nmols);
    free_array(track_istep);
    free_array(track_t);
    free_array(track_x);
    free_array(track_r2);
    free_array(sum_istep);
    free_array(sum_t);
    free_array(sum_x);
    free_array(sum_r2);
    mc_initialized = false;
}

void Transport::get_workdir(std::string& dir)
{
    ::get_workdir(dir);
}

// Mass-weighted mean of the fractional coordinates, so the molecule must
// already be whole; the Cartesian centre follows from the cell matrix.
void Transport::calc_x_com()
{
    for (int i = 0; i < nmols; i++) {
        double mass = 0.0, sum[3] = {0.0, 0.0, 0.0};
        for (int a = 0; a < natoms_mol[i]; a++) {
            // An unknown element (-1) weighs nothing, like the table's dummy record.
            const int type = atypes_mol[i][a];
            double m = type >= 0 ? find_element_mass_from_index(type) : 0.0;
            mass += m;
            for (int d = 0; d < 3; d++) sum[d] += m * x_s_mol[i][3 * a + d];
        }
        mol_mass[i] = mass;
        // A molecule without atoms has no centre; keep it at the origin
        // rather than dividing by a zero mass.
        for (int d = 0; d < 3; d++) x_s_com[3 * i + d] = mass > 0.0 ? sum[d] / mass : 0.0;
        mat_vec_mul(latt3x3, &x_s_com[3 * i], &x_com[3 * i]);
    }
}

// Half the electron count of the neutral molecule, rounded down.
void Transport::fill_homo_index()
{
    delete[] homo_index;
    homo_index = new int[nmols > 0 ? nmols : 0];
    for (int i = 0; i < nmols; i++) {
        int electrons = 0;
        for (int a = 0; a < natoms_mol[i]; a++) electrons += atypes_mol[i][a];
        homo_index[i] = electrons / 2;
    }
}

static void check_adjustment_length(const char* name, const std::vector<int>& list, int nmols,
                                    int line)
{
    if (list.empty() || (int)list.size() == nmols) return;
    veska_fatal("transport", line, -1, stderr,
                "%s: Number of input parameters (%zu) is NOT equal to nmols_uc (%d)\n", name,
                list.size(), nmols);
}

// round(tsimu / tsnap); an interval that is not positive, or more snapshots
// than memory allows, stops the program rather than overflowing the count.
int Transport::snapshot_count()
{
    double n = tsimu / tsnap + 0.5;
    if (!(tsnap > 0.0) || !(tsimu >= 0.0) || !(n < 1e7))
        veska_fatal("transport", 3194, -1, stdout,
                    "tsimu = %g ns and tsnap = %g ns: the snapshot interval must be positive and "
                    "at most 10000000 snapshots are kept\n",
                    tsimu, tsnap);
    return (int)n;
}

void Transport::post_data_read_treatment()
{
    nsnap = snapshot_count();
    // The per-molecule centre arrays exist only once a structure was read;
    // a configuration alone may announce molecules without any atoms.
    if (nmols > 0 && (!natoms_mol || !mol_mass || !x_com || !x_s_com))
        veska_fatal("transport", 6390, -1, stderr,
                    "%d molecules are announced but no structure was read for them\n", nmols);
    calc_x_com();
    fill_homo_index();
    parse_scheduling_type();
    check_adjustment_lengths();
}

// Either list is empty or holds one entry per unit-cell molecule.
void Transport::check_adjustment_lengths()
{
    check_adjustment_length("homo_adjustment", homo_adjustment, nmols, 6407);
    check_adjustment_length("lumo_adjustment", lumo_adjustment, nmols, 6418);
}
