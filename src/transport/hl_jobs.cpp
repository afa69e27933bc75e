// Transfer-integral (HL) jobs: the inputs, job scripts and Python driver of
// the unit-cell molecules, the neighbour molecules and the dimers, for any
// engine of the engine table; the orbital-index files; the neighbours'
// unique molecule ids.

#include <string>
#include <vector>

#include "mmutil.h"
#include "qc_engines.h"

namespace {

const int kDriverError = 5101;
const int kIndexFileError = 5102;
const int kInputError = 5103;

// One calculation: a molecule alone or with one neighbour.
struct Calc {
    int i;              // zero-based unit-cell molecule
    int j;              // zero-based neighbour of i; unused for the molecule alone
    std::string base;   // input, job and marker name
    std::string title;  // Gaussian title
};

// The calculations that one array job stands for.
struct Group {
    std::string array_base;    // "uc_mol", "nei_mol-2", "2mol", ...
    std::string marker_base;   // running marker of the array job
    std::vector<Calc> calcs;
    int count = 0;
    int* indexes = nullptr;    // array members; null means 1..count
    bool jobs_after_inputs = false;  // single jobs follow all inputs of the group
};

struct SetNames {
    const char* driver;
    const char* name;   // first part of file and job names
    const char* title;  // Gaussian title; null for the dimer's own name
};

const SetNames kSetNames[3] = {{"mol_one_uc.py", "uc_mol", "uc_mol"},
                               {"mol_one_nei.py", "nei_mol", "nei_mol"},
                               {"mol_two.py", "2mol", nullptr}};

std::string numbered(const std::string& name, int a) { return name + "-" + std::to_string(a); }

void require_molecules(Transport& t)
{
    if (t.nmols > 0 && (!t.natoms_mol || !t.atypes_mol || !t.x_mol || !t.x_s_mol))
        job_input_error(kInputError, "No molecules: read the structure before writing HL jobs");
}

void require_neighbour_list(Transport& t)
{
    require_molecules(t);
    if (t.nmols > 0 && (!t.nnei || !t.nei_mol || !t.nei_cell[0] || !t.nei_cell[1] || !t.nei_cell[2]))
        job_input_error(kInputError, "No neighbour list: build_neighbor_list must run before "
                                     "the neighbour and dimer jobs");
    for (int i = 0; i < t.nmols; i++)
        for (int j = 0; j < t.nnei[i]; j++)
            if (t.nei_mol[i][j] < 0 || t.nei_mol[i][j] >= t.nmols)
                job_input_error(kInputError, format_string("Neighbour %d of molecule %d names "
                                                           "molecule %d, not one of 1..%d",
                                                           j + 1, i + 1, t.nei_mol[i][j] + 1, t.nmols));
}

int total_pairs(Transport& t)
{
    int n = 0;
    for (int i = 0; t.nnei && i < t.nmols; i++) n += t.nnei[i];
    return n;
}

// The analysis lists at least one molecule, unless it lists the owners of
// unique pairs and there is no pair.
bool unique_molecules_known(Transport& t)
{
    if (t.hl_unique_count > 0) return t.hl_unique_list != nullptr;
    return t.nmols == 0 || (t.unique_2mol_calc_flag && total_pairs(t) == 0);
}

std::vector<Group> unit_cell_groups(Transport& t, bool unique)
{
    require_molecules(t);
    Group g;
    g.array_base = "uc_mol";
    g.marker_base = "running.HL_uc_mol";
    g.count = unique ? t.hl_unique_count : t.nmols;
    g.indexes = unique ? t.hl_unique_list : nullptr;
    if (unique && !unique_molecules_known(t))
        job_input_error(kInputError, "No unique molecule list: run the unique molecule analysis first");
    for (int k = 0; k < g.count; k++) {
        const int id = unique ? g.indexes[k] : k + 1;
        if (id < 1 || id > t.nmols)
            job_input_error(kInputError, format_string("Unique molecule id %d is not one of 1..%d",
                                                       id, t.nmols));
        g.calcs.push_back({id - 1, -1, numbered("uc_mol", id), "uc_mol"});
    }
    return {g};
}

// Neighbours and dimers: one group per molecule, or one group of the unique
// pair keys in (molecule, neighbour) order.
std::vector<Group> pair_groups(Transport& t, const QcEngine& e, HLSet set, bool unique)
{
    require_neighbour_list(t);
    const std::string name = kSetNames[set].name;
    std::vector<Group> groups;
    if (unique) {
        if (t.unique_pair_count > 0 ? !t.unique_pair_list : total_pairs(t) > 0)
            job_input_error(kInputError, "No unique pair list: run the unique pair analysis first");
        Group g;
        g.array_base = name;
        g.marker_base = set == kDimerSet ? e.hl_unique_dimer_marker : "running.HL_" + name;
        g.count = t.unique_pair_count;
        g.indexes = t.unique_pair_list;
        g.jobs_after_inputs = true;
        groups.push_back(g);
    }
    for (int i = 0, key = 1; i < t.nmols; i++) {
        if (!unique) {
            Group g;
            g.array_base = numbered(name, i + 1);
            g.marker_base = "running.HL_" + g.array_base;
            g.count = t.nnei[i];
            groups.push_back(g);
        }
        for (int j = 0; j < t.nnei[i]; j++, key++) {
            const std::string pair = numbered(numbered(name, i + 1), j + 1);
            const std::string title = kSetNames[set].title ? kSetNames[set].title : pair;
            if (!unique)
                groups.back().calcs.push_back({i, j, pair, title});
            else if (t.check_if_key_in_keylist(key))
                groups.back().calcs.push_back({i, j, numbered(name, key), title});
        }
    }
    return groups;
}

// Molecule m's atoms shifted by whole cells, converted to Cartesian.
void append_shifted(Transport& t, int m, const int cell[3], std::vector<int>& z,
                    std::vector<double>& x)
{
    for (int a = 0; a < t.natoms_mol[m]; a++) {
        double s[3], r[3];
        for (int d = 0; d < 3; d++) s[d] = t.x_s_mol[m][3 * a + d] + cell[d];
        mat_vec_mul(t.latt3x3, s, r);
        z.push_back(t.atypes_mol[m][a]);
        x.insert(x.end(), r, r + 3);
    }
}

void calc_atoms(Transport& t, HLSet set, const Calc& c, std::vector<int>& z, std::vector<double>& x)
{
    z.clear();
    x.clear();
    if (set == kUcSet) {
        const int n = t.natoms_mol[c.i];
        z.assign(t.atypes_mol[c.i], t.atypes_mol[c.i] + n);
        x.assign(t.x_mol[c.i], t.x_mol[c.i] + 3 * n);
        return;
    }
    const int home[3] = {0, 0, 0};
    if (set == kDimerSet) append_shifted(t, c.i, home, z, x);
    const int cell[3] = {t.nei_cell[0][c.i][c.j], t.nei_cell[1][c.i][c.j], t.nei_cell[2][c.i][c.j]};
    append_shifted(t, t.nei_mol[c.i][c.j], cell, z, x);
}

struct HLWriter {
    Transport& t;
    const QcEngine& e;
    const HLDriverFrame& frame;
    std::string py;

    std::string marker_path(const std::string& marker) const { return t.run_dir + "/" + marker; }
    // The driver runs inside the HL directory.
    std::string submit(const std::string& script) const
    {
        return python_submit(t, "../" + t.jobs_dir + "/" + script) + "\n";
    }

    void single_job(const Calc& c)
    {
        const std::string script = "job_" + c.base, marker = "running.HL_" + c.base;
        (t.*e.hl_job)(script.c_str(), t.get_run_nodes(), t.get_run_ppn(), c.base.c_str(),
                      c.base.c_str(), marker_path(marker).c_str());
        py += frame.single_sep + python_touch(t, marker_path(marker)) + submit(script);
    }

    void array_job(const Group& g)
    {
        const std::string script = "job_" + g.array_base;
        (t.*e.hl_job_array)(script.c_str(), t.get_run_nodes(), t.get_run_ppn(),
                            g.array_base.c_str(), g.array_base.c_str(),
                            marker_path(g.marker_base).c_str(), g.count, g.indexes);
        for (int k = 0; k < g.count; k++)
            py += python_touch(t, marker_path(numbered(g.marker_base, g.indexes ? g.indexes[k] : k + 1)));
        py += frame.array_gap + submit(script);
    }
};

void write_hl_set(Transport& t, const QcEngine& e, HLSet set, bool unique)
{
    const std::vector<Group> groups =
        set == kUcSet ? unit_cell_groups(t, unique) : pair_groups(t, e, set, unique);
    const std::string driver = t.scr_dir + "/" + kSetNames[set].driver;
    prepare_driver(t, t.hl_dir, driver, kDriverError);
    HLWriter w{t, e, e.hl_frames[set][unique ? 1 : 0], "#!/usr/bin/env python\n"};
    w.py += w.frame.imports;
    w.py += "cwd = os.getcwd()\n" + expand_template(w.frame.chdir, {{"DIR", t.hl_dir}});
    const bool array = t.sched_job_array;
    std::vector<int> z;
    std::vector<double> x;
    for (const Group& g : groups) {
        for (const Calc& c : g.calcs) {
            calc_atoms(t, set, c, z, x);
            const std::string path = t.hl_dir + "/" + c.base + "." + e.input_ext;
            e.hl_input(t, path.c_str(), int(z.size()), z.data(), x.data(), c.title.c_str(),
                       c.base.c_str());
            if (!array && !g.jobs_after_inputs) w.single_job(c);
        }
        if (array)
            w.array_job(g);
        else if (g.jobs_after_inputs)
            for (const Calc& c : g.calcs) w.single_job(c);
    }
    w.py += "os.chdir(cwd)\n\n";
    write_script_file(driver, w.py, kDriverError);
}

// mol<i>.com or mol<i>.inp in the current directory, for a look at the molecules.
void write_plain_inputs(Transport& t, const QcEngine& e)
{
    require_molecules(t);
    for (int i = 0; i < t.nmols; i++) {
        const std::string name = "mol" + std::to_string(i + 1);
        const std::string path = name + "." + e.input_ext;
        e.hl_input(t, path.c_str(), t.natoms_mol[i], t.atypes_mol[i], t.x_mol[i], name.c_str(),
                   name.c_str());
    }
}

void write_index_file(const std::string& path, const std::string& text)
{
    if (write_text_file(path.c_str(), text) != WRITE_OK)
        veska_fatal_open_output("transport", kIndexFileError, path.c_str());
}

// One line per molecule: base[i] + offset + the adjustment when there is one.
std::string orbital_lines(const int* base, int offset, const std::vector<int>& adjust, int n)
{
    std::string text;
    for (int i = 0; i < n; i++)
        text += format_string("%d\n", base[i] + offset + (adjust.empty() ? 0 : adjust[i]));
    return text;
}

void write_adjustment_file(const std::string& path, const std::vector<int>& adjust)
{
    if (adjust.empty()) return;
    const int n = int(adjust.size());
    write_index_file(path, format_string("%d\n", n) + orbital_lines(adjust.data(), 0, {}, n));
}

}  // namespace

// clang-format off
void Transport::write_HL_gaussian_mol_one_gjf_and_job_uc()        { write_hl_set(*this, kGaussianEngine, kUcSet, false); }
void Transport::write_HL_gaussian_mol_one_gjf_and_job_uc_unique() { write_hl_set(*this, kGaussianEngine, kUcSet, true); }
void Transport::write_HL_gaussian_mol_one_gjf_and_job_nei()       { write_hl_set(*this, kGaussianEngine, kNeiSet, false); }
void Transport::write_HL_gaussian_mol_one_gjf_and_job_nei_unique(){ write_hl_set(*this, kGaussianEngine, kNeiSet, true); }
void Transport::write_HL_gaussian_2mol_gjf_and_job()              { write_hl_set(*this, kGaussianEngine, kDimerSet, false); }
void Transport::write_HL_gaussian_2mol_gif_and_job_unique()       { write_hl_set(*this, kGaussianEngine, kDimerSet, true); }
void Transport::write_HL_gaussian_mol_gif()                       { write_plain_inputs(*this, kGaussianEngine); }
void Transport::write_HL_orca_mol_one_inp_and_job_uc()            { write_hl_set(*this, kOrcaEngine, kUcSet, false); }
void Transport::write_HL_orca_mol_one_inp_and_job_uc_unique()     { write_hl_set(*this, kOrcaEngine, kUcSet, true); }
void Transport::write_HL_orca_mol_one_inp_and_job_nei()           { write_hl_set(*this, kOrcaEngine, kNeiSet, false); }
void Transport::write_HL_orca_mol_one_inp_and_job_nei_unique()    { write_hl_set(*this, kOrcaEngine, kNeiSet, true); }
void Transport::write_HL_orca_2mol_inp_and_job()                  { write_hl_set(*this, kOrcaEngine, kDimerSet, false); }
void Transport::write_HL_orca_2mol_inp_and_job_unique()           { write_hl_set(*this, kOrcaEngine, kDimerSet, true); }
void Transport::write_HL_orca_mol_inp()                           { write_plain_inputs(*this, kOrcaEngine); }
void Transport::write_HL_qchem_mol_one_inp_and_job_uc()           { write_hl_set(*this, kQchemEngine, kUcSet, false); }
void Transport::write_HL_qchem_mol_one_inp_and_job_uc_unique()    { write_hl_set(*this, kQchemEngine, kUcSet, true); }
void Transport::write_HL_qchem_mol_one_inp_and_job_nei()          { write_hl_set(*this, kQchemEngine, kNeiSet, false); }
void Transport::write_HL_qchem_mol_one_inp_and_job_nei_unique()   { write_hl_set(*this, kQchemEngine, kNeiSet, true); }
void Transport::write_HL_qchem_2mol_inp_and_job()                 { write_hl_set(*this, kQchemEngine, kDimerSet, false); }
void Transport::write_HL_qchem_2mol_inp_and_job_unique()          { write_hl_set(*this, kQchemEngine, kDimerSet, true); }
void Transport::write_HL_qchem_mol_inp()                          { write_plain_inputs(*this, kQchemEngine); }
// clang-format on

void Transport::write_HL_inputs_and_jobs()
{
    const QcEngine& e = qc_engine_for(compute_engine);
    write_hl_set(*this, e, kUcSet, get_unique_uc_mol_one_calc_flag());
    write_hl_set(*this, e, kNeiSet, get_unique_nei_mol_one_calc_flag());
    write_hl_set(*this, e, kDimerSet, get_unique_2mol_calc_flag());
}

int* Transport::calc_homo()
{
    require_molecules(*this);
    fill_homo_index();
    return homo_index;
}

void Transport::write_H_L_inp()
{
    check_adjustment_lengths();
    if (nmols > 0 && !homo_index) calc_homo();
    const int n = nmols > 0 ? nmols : 0;
    create_directory(data_dir.c_str());
    write_index_file(data_dir + "/H.inp", orbital_lines(homo_index, 0, homo_adjustment, n));
    write_index_file(data_dir + "/L.inp", orbital_lines(homo_index, 1, lumo_adjustment, n));
    write_adjustment_file(data_dir + "/H_adj.inp", homo_adjustment);
    write_adjustment_file(data_dir + "/L_adj.inp", lumo_adjustment);
}

void Transport::find_HL_mol_neighbor_index_unique()
{
    require_neighbour_list(*this);
    if (nmols > 0 && (!nei_unique_id || !hl_mol_index || !prin_moment || !mol_mass))
        job_input_error(kInputError, "No unique molecule data: build the neighbour list and run "
                                     "the unique molecule analysis first");
    for (int i = 0; i < nmols; i++)
        for (int j = 0; j < nnei[i]; j++)
            for (int l = 0; l < nmols; l++)
                if (HL_mols_if_the_same(nei_mol[i][j], l)) nei_unique_id[i][j] = hl_mol_index[l];
    create_directory(scr_dir.c_str());
    write_script_file(scr_dir + "/mol_one_nei.py",
                 "#!/usr/bin/env python\nimport sys\n\n"
                 "sys.stdout.write(\">> Use results from mol_one_uc.py\\n\")\n\n",
                 kDriverError);
}
