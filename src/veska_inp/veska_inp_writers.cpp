// The configuration file writers: terse, verbose and full-state veska.inp,
// and the old config.inp. Each layout is a sequence of sections; sections
// that several layouts share are written once and take the layout's key
// style and its comment texts as arguments.

#include "veska_inp.h"

#include <cstdio>
#include <locale>
#include <sstream>

#include "mmutil.h"

namespace {

// How a key is set off from its value: veska.inp indents the key and puts
// "= " after its 16-column field, config.inp has blanks only.
struct KeyStyle {
    const char* indent;
    const char* assign;
};

const KeyStyle new_style = {"  ", "= "};
const KeyStyle old_style = {"", ""};

// The text of one configuration file, built in memory so that the file is
// written whole or not at all.
struct ConfigText {
    explicit ConfigText(const KeyStyle& s) : style(s) {}

    void line(const std::string& text)
    {
        out += text;
        out += '\n';
    }
    void blank() { out += '\n'; }
    void comment(const char* text) { line(style.indent + std::string(text)); }
    void set(const char* key, const std::string& value, const char* after = "", size_t width = 16)
    {
        std::string k = key;
        if (k.size() < width) k.append(width - k.size(), ' ');
        line(style.indent + k + style.assign + value + after);
    }

    const KeyStyle& style;
    std::string out;
};

// Doubles in the stream's default notation: six significant digits, no
// trailing zeros (300, 1.15, 1e+06).
std::string num(double value)
{
    std::ostringstream s;
    s.imbue(std::locale::classic());
    s << value;
    return s.str();
}

std::string num(int value) { return std::to_string(value); }

std::string vector_row(const double* row)
{
    return format_string("%12.6f %12.6f %12.6f", row[0], row[1], row[2]);
}

std::string int_triple(const int* v)
{
    return num(v[0]) + " " + num(v[1]) + " " + num(v[2]);
}

// An adjustment list, each value after a blank; an empty list stands for
// zero adjustments of every molecule.
std::string adjustment_values(const std::vector<int>& list, int nmols)
{
    std::string s;
    if (list.empty())
        for (int i = 0; i < nmols; i++) s += " 0";
    for (int v : list) s += " " + num(v);
    return s;
}

struct StepSwitch {
    const char* key;
    int VeskaInp::*member;
};

// In file order, which is not the declaration order.
const StepSwitch step_switches[] = {
    {"do_transport_prepare", &VeskaInp::do_transport_prepare},
    {"do_transport_submit_HL_job", &VeskaInp::do_transport_submit_HL_job},
    {"do_transport_get_transferintegral", &VeskaInp::do_transport_get_transferintegral},
    {"do_transport_submit_RE_job", &VeskaInp::do_transport_submit_RE_job},
    {"do_transport_get_re_evc", &VeskaInp::do_transport_get_re_evc},
    {"do_transport_run_MC", &VeskaInp::do_transport_run_MC},
    {"do_transport_get_mob_MC", &VeskaInp::do_transport_get_mob_MC},
    {"do_transport_run_MC_temp", &VeskaInp::do_transport_run_MC_temp},
    {"do_transport_get_mob_MC_temp", &VeskaInp::do_transport_get_mob_MC_temp},
    {"do_transport_run_ME", &VeskaInp::do_transport_run_ME},
    {"do_transport_get_mob_ME", &VeskaInp::do_transport_get_mob_ME},
    {"do_transport_run_ME_temp", &VeskaInp::do_transport_run_ME_temp},
    {"do_transport_get_mob_ME_temp", &VeskaInp::do_transport_get_mob_ME_temp},
    {"do_transport_gather_veska_data", &VeskaInp::do_transport_gather_veska_data},
};

// ---- sections ------------------------------------------------------------

// "&transport", the step switches and the scheduling lines.
void block_start(const VeskaInp& v, ConfigText& t)
{
    t.line("&transport");
    for (const StepSwitch& s : step_switches) t.set(s.key, num(v.*s.member), "", 34);
    t.blank();
    t.comment("# Job Scheduling");
    t.set("sched_type", v.sched_type, "    ! pbs, slurm, lsf, or local");
    t.set("queue_name", v.queue_name);
}

void method_block(const VeskaInp& v, ConfigText& t)
{
    t.set("qc_method", v.qc_method);
    t.set("qc_basis", v.qc_basis);
    t.set("qc_basis_re", v.qc_basis_re);
    t.set("qc_memory", num(v.qc_memory), "  ! MB");
    t.set("qc_nodes", num(v.run_nodes));
    t.set("qc_ppn", num(v.run_ppn));
}

// The scan and the empty line after it.
void temperature_scan(const VeskaInp& v, ConfigText& t)
{
    t.comment("# Temperature Dependence");
    t.set("start_temp", num(v.start_temp));
    t.set("end_temp", num(v.end_temp));
    t.set("delta_temp", num(v.delta_temp));
    t.blank();
}

void temp_and_scan(const VeskaInp& v, ConfigText& t)
{
    t.set("temp", num(v.temp));
    t.blank();
    temperature_scan(v, t);
}

void charge_and_evc(const VeskaInp& v, ConfigText& t, const char* charge_comment)
{
    t.set("chargetype", v.chargetype, charge_comment);
    t.set("evc_type", v.evc_type, "  ! cart or int");
}

// The three rows and the empty line after them.
void lattice_vectors(const VeskaInp& v, ConfigText& t)
{
    t.set("vector_a", vector_row(v.latt_vec[0]));
    t.set("vector_b", vector_row(v.latt_vec[1]));
    t.set("vector_c", vector_row(v.latt_vec[2]));
    t.blank();
}

void neighbour_search(const VeskaInp& v, ConfigText& t)
{
    t.set("lat_cutoff", num(v.lat_cutoff), "      ! for neighbor list construction");
    t.set("nei_scell", int_triple(v.nei_scell), "  ! -/+ this value for neighbor cell search");
    t.blank();
    t.set("super_cell", int_triple(v.super_cell));
    t.blank();
}

// The angle step, then the rate section; each followed by an empty line.
void angle_and_golden_rule(const VeskaInp& v, ConfigText& t, const char* sta_comment)
{
    t.set("delta_angle", num(v.delta_angle));
    t.blank();
    t.comment("# Femi Golden Rule");
    t.set("temp", num(v.temp));
    t.set("maxt", num(v.maxt));
    t.set("ratetype", v.ratetype, "  ! macus or quanta");
    t.set("sta", num(v.sta), sta_comment);
    t.blank();
}

void mc_lengths(const VeskaInp& v, ConfigText& t, const char* tsimu_comment)
{
    t.set("nsimu", num(v.nsimu));
    t.set("tsimu", num(v.tsimu), tsimu_comment);
    t.set("tsnap", num(v.tsnap));
}

void mc_section(const VeskaInp& v, ConfigText& t, const char* tsimu_comment)
{
    t.comment("# MC");
    mc_lengths(v, t, tsimu_comment);
}

// The old layout keeps super_cell in this section.
void me_section(const VeskaInp& v, ConfigText& t, bool with_super_cell)
{
    t.comment("# ME");
    if (with_super_cell) t.set("super_cell", int_triple(v.super_cell));
    t.set("iterlimit", num(v.iterlimit));
    t.set("nevery_out", num(v.nevery_out));
}

void bond_and_adjustments(const VeskaInp& v, ConfigText& t)
{
    t.set("bond_dis_scale", num(v.bond_dis_scale), "  ! for separating molecules");
    t.blank();
    t.line("  homo_adjustment =" + adjustment_values(v.homo_adjustment, v.nmols));
    t.line("  lumo_adjustment =" + adjustment_values(v.lumo_adjustment, v.nmols));
}

// The Monte Carlo and master-equation sections, the bond factor and the
// orbital adjustments, as the verbose and the full-state layouts have them.
void runs_and_molecules(const VeskaInp& v, ConfigText& t, const char* tsimu_comment)
{
    mc_section(v, t, tsimu_comment);
    t.blank();
    me_section(v, t, false);
    t.blank();
    bond_and_adjustments(v, t);
}

void output_level_line(const VeskaInp& v, ConfigText& t)
{
    t.set("output_level", num(v.output_level), "          ! bit-wise setting: 0-base, 2-mob_all");
}

void unique_flags(const VeskaInp& v, ConfigText& t)
{
    t.comment("# unique mol flags");
    t.set("HL_unique_mol", num(v.HL_unique_mol));
    t.set("RE_unique_mol", num(v.RE_unique_mol));
}

void molecule_line(ConfigText& t, int count, const std::vector<std::string>& names)
{
    std::string value = num(count);
    for (const std::string& name : names) value += " " + name;
    t.set("molecule", value);
}

// The input-kind line of a starting file, from the current directory.
void directory_tail(ConfigText& t, int input_kind)
{
    if (input_kind == 1) {
        std::vector<std::string> mols = globFileVector("*.mol");
        if (mols.empty()) mols = {"mol1.mol", "mol2.mol"};
        molecule_line(t, static_cast<int>(mols.size()), mols);
    } else if (input_kind == 2) {
        std::vector<std::string> cifs = globFileVector("*.cif");
        t.set("crystal", cifs.empty() ? std::string("naphthalene.cif") : cifs[0]);
    }
}

// The input-kind line of the full state, from what was loaded.
void state_tail(const VeskaInp& v, ConfigText& t)
{
    if (v.input_kind == 1)
        molecule_line(t, v.nmols, v.mol_files);
    else if (v.input_kind == 2)
        t.set("crystal", v.crystal_file);
}

// ---- output ---------------------------------------------------------------

bool write_config_text(const VeskaInp& v, const char* path, bool in_data_dir, bool announce,
                       const std::string& text)
{
    std::string full = path;
    if (in_data_dir) {
        create_directory(v.data_dir.c_str());
        full = v.data_dir + "/" + path;
    }
    int rc = write_text_file(full.c_str(), text);
    if (rc != WRITE_OPEN_FAILED && announce) printf("Writing config file \"%s\" ... \n", full.c_str());
    return rc == WRITE_OK;
}

// Lines 1 to 39 that the terse and the verbose starting files share.
void starting_head(const VeskaInp& v, ConfigText& t)
{
    block_start(v, t);
    t.blank();
    t.set("compute_engine", num(v.compute_engine), "      ! 1 = Gaussian, 2 = ORCA, 3 = QCHEM");
    t.set("qc_exe", v.qc_exe, "    ! g09/g16 or fullpath/orca or qchem");
    t.blank();
    t.line((v.module_gau_flag ? "  module_qc = " : "#  module_qc = ") + v.module_qc);
    t.blank();
    method_block(v, t);
    t.blank();
    temp_and_scan(v, t);
}

// The input-kind line and the block end of a starting file, then the file.
bool finish_starting_file(const VeskaInp& v, ConfigText& t, int input_kind, const char* path,
                          bool in_data_dir)
{
    directory_tail(t, input_kind);
    t.line("/");
    return write_config_text(v, path, in_data_dir, true, t.out);
}

}  // namespace

bool VeskaInp::write_veska_inp_terse(const char* path, int input_kind, bool in_data_dir)
{
    ConfigText t(new_style);
    starting_head(*this, t);
    t.set("ratetype", ratetype, "  ! macus or quanta");
    t.blank();
    if (input_kind == 1) lattice_vectors(*this, t);
    t.set("lat_cutoff", num(lat_cutoff), "       ! for neighbor list construction");
    t.blank();
    mc_lengths(*this, t, "    ! in ns");
    t.blank();
    return finish_starting_file(*this, t, input_kind, path, in_data_dir);
}

bool VeskaInp::write_veska_inp_verbose(const char* path, int input_kind, bool in_data_dir)
{
    ConfigText t(new_style);
    starting_head(*this, t);
    charge_and_evc(*this, t, "     ! e:electron, h:hole or a:all");
    t.blank();
    if (input_kind == 1) lattice_vectors(*this, t);
    neighbour_search(*this, t);
    angle_and_golden_rule(*this, t, "       ! short-time approximation");
    t.set("lat_site_energy", num(lat_site_energy), "  ! if calculate site energy");
    t.blank();
    output_level_line(*this, t);
    t.blank();
    t.set("eckart_mirror", num(eckart_mirror));
    t.blank();
    runs_and_molecules(*this, t, "    ! in ns");
    unique_flags(*this, t);
    t.blank();
    return finish_starting_file(*this, t, input_kind, path, in_data_dir);
}

bool VeskaInp::write_veska_inp(const char* path, bool in_data_dir, bool verbose)
{
    ConfigText t(new_style);
    block_start(*this, t);
    t.set("nodelist", "\"" + nodelist + "\"");
    t.set("sched_job_array", sched_job_array ? "1" : "0");
    t.blank();
    method_block(*this, t);
    t.blank();
    t.set("compute_engine", num(compute_engine), "     ! 1 = Gaussian, 2 = ORCA, 3 = QCHEM");
    t.set("qc_exe", qc_exe);
    t.blank();
    t.set("scratch", scratch, "    ! use local disk for performance");
    t.blank();
    if (module_gau_flag) {
        t.set("module_qc", module_qc, "    ! module load gaussian/g09.e01");
        if (!module_mpich2_gnu_flag) t.blank();
    }
    temperature_scan(*this, t);
    charge_and_evc(*this, t, "  ! e:electron, h:hole or a:all");
    t.blank();
    lattice_vectors(*this, t);
    neighbour_search(*this, t);
    t.set("lat_site_energy", num(lat_site_energy), "  ! if calculate lattice site energy");
    t.blank();
    t.set("veska_dat_file", veska_dat_file, "  ! default to veska-ratetype.dat");
    output_level_line(*this, t);
    t.blank();
    t.set("eckart_mirror", num(eckart_mirror));
    t.blank();
    angle_and_golden_rule(*this, t, "  ! short-time approximation");
    runs_and_molecules(*this, t, "  ! in ns");
    t.blank();
    unique_flags(*this, t);
    t.blank();
    state_tail(*this, t);
    t.line("/");
    return write_config_text(*this, path, in_data_dir, verbose, t.out);
}

bool VeskaInp::write_config_inp(const char* path, int input_kind, bool in_data_dir)
{
    ConfigText t(old_style);
    t.line("# parameters in simulation");
    t.comment("# Job Scheduling");
    t.set("queue_type", sched_type, "    ! pbs, slurm, lsf, or local");
    t.set("queue_name", queue_name);
    t.blank();
    t.line("# g09/g16 or orca");
    t.set("qc_exe", qc_exe);
    t.blank();
    if (module_gau_flag) {
        t.set("module_qc", module_qc, "", 12);
        t.blank();
    }
    method_block(*this, t);
    t.blank();
    temp_and_scan(*this, t);
    charge_and_evc(*this, t, "  ! e:electron, h:hole or a:all");
    t.blank();
    lattice_vectors(*this, t);
    t.set("lat_cutoff", num(lat_cutoff), "  ! for neighbor list construction");
    t.blank();
    angle_and_golden_rule(*this, t, "  ! short-time approximation");
    mc_section(*this, t, "  ! in ns");
    t.blank();
    me_section(*this, t, true);
    directory_tail(t, input_kind);
    t.blank();
    return write_config_text(*this, path, in_data_dir, true, t.out);
}
