// The key table of the configuration formats and the value readings.

#include "config_keys.h"

#include <cstdlib>
#include <cstring>

#include "mmutil.h"
#include "veska_inp.h"

static const char* const kInpUnit = "veska_inp";

const ConfigDialect kVeskaInpDialect = {true, "\"'", 649, "", 655};
const ConfigDialect kConfigInpDialect = {
    false, "\"", 1119, "Look up the conf.out for available parameters.\n", 1125};

// ---- table rows ------------------------------------------------------------

// A key with the same names in both formats.
static ConfigKey both(const char* name, const char* alias, KeyReading reading, KeyTarget target,
                      KeyEffect effect = KeyEffect::None)
{
    return {{name, alias}, {name, alias}, reading, target, effect};
}

// A key that only veska.inp knows.
static ConfigKey inp_only(const char* name, const char* alias, KeyReading reading,
                          KeyTarget target, KeyEffect effect = KeyEffect::None)
{
    return {{name, alias}, {nullptr, nullptr}, reading, target, effect};
}

// A key whose config.inp name differs.
static ConfigKey renamed(const char* inp_name, const char* cfg_name, KeyReading reading,
                         KeyTarget target)
{
    return {{inp_name, nullptr}, {cfg_name, nullptr}, reading, target, KeyEffect::None};
}

std::vector<ConfigKey> config_key_table(VeskaInp& v)
{
    using R = KeyReading;
    using E = KeyEffect;
    return {
        renamed("do_transport_prepare", "do_prepare", R::Integer, &v.do_transport_prepare),
        renamed("do_transport_submit_HL_job", "do_HL", R::Integer, &v.do_transport_submit_HL_job),
        renamed("do_transport_submit_RE_job", "do_RE", R::Integer, &v.do_transport_submit_RE_job),
        renamed("do_transport_get_transferintegral", "do_transferintegral", R::Integer,
                &v.do_transport_get_transferintegral),
        renamed("do_transport_get_re_evc", "do_evc", R::Integer, &v.do_transport_get_re_evc),
        both("do_transport_run_MC", nullptr, R::Integer, &v.do_transport_run_MC),
        both("do_transport_get_mob_MC", nullptr, R::Integer, &v.do_transport_get_mob_MC),
        both("do_transport_run_MC_temp", nullptr, R::Integer, &v.do_transport_run_MC_temp),
        both("do_transport_get_mob_MC_temp", nullptr, R::Integer, &v.do_transport_get_mob_MC_temp),
        both("do_transport_run_ME", nullptr, R::Integer, &v.do_transport_run_ME),
        both("do_transport_get_mob_ME", nullptr, R::Integer, &v.do_transport_get_mob_ME),
        both("do_transport_run_ME_temp", nullptr, R::Integer, &v.do_transport_run_ME_temp),
        both("do_transport_get_mob_ME_temp", nullptr, R::Integer, &v.do_transport_get_mob_ME_temp),
        both("do_transport_gather_veska_data", nullptr, R::Integer,
             &v.do_transport_gather_veska_data),
        both("mater_name", nullptr, R::Text, &v.mater_name),
        both("module_mpich2", nullptr, R::Text, &v.module_mpich2, E::MpichModuleOn),
        {{"module_qc", "module_gaussian"}, {"module_qc", nullptr}, R::Text, &v.module_qc,
         E::QcModuleOn},
        {{"qc_exe", "gaussian_exe"}, {"qc_exe", nullptr}, R::Text, &v.qc_exe, E::None},
        both("qc_memory", "memory", R::Integer, &v.qc_memory),
        both("qc_nodes", "gaussian_nodes", R::Integer, &v.run_nodes),
        both("qc_ppn", "gaussian_ppn", R::Integer, &v.run_ppn),
        both("qc_method", nullptr, R::Text, &v.qc_method),
        both("qc_basis", "basis_name", R::Text, &v.qc_basis, E::AlsoBasisRe),
        both("qc_basis_re", "basis_name_re", R::Text, &v.qc_basis_re),
        both("queue_name", nullptr, R::Text, &v.queue_name),
        both("sched_type", "queue_type", R::Text, &v.sched_type),
        inp_only("sched_job_array", nullptr, R::Switch, &v.sched_job_array),
        inp_only("nodelist", nullptr, R::Text, &v.nodelist),
        both("start_temp", nullptr, R::Real, &v.start_temp),
        both("end_temp", nullptr, R::Real, &v.end_temp),
        both("delta_temp", nullptr, R::Real, &v.delta_temp),
        both("chargetype", nullptr, R::Text, &v.chargetype),
        both("evc_type", nullptr, R::Text, &v.evc_type),
        both("vector_a", nullptr, R::RealTriple, v.latt_vec[0]),
        both("vector_b", nullptr, R::RealTriple, v.latt_vec[1]),
        both("vector_c", nullptr, R::RealTriple, v.latt_vec[2]),
        both("lat_cutoff", nullptr, R::Real, &v.lat_cutoff),
        both("nei_scell", nullptr, R::IntTriple, v.nei_scell),
        both("super-cell", "super_cell", R::IntTriple, v.super_cell),
        both("bond_dis_scale", nullptr, R::Real, &v.bond_dis_scale),
        both("temp", nullptr, R::Real, &v.temp),
        both("maxt", nullptr, R::Real, &v.maxt),
        both("ratetype", nullptr, R::StrippedText, &v.ratetype),
        both("sta", nullptr, R::Integer, &v.sta),
        both("delta_angle", nullptr, R::Real, &v.delta_angle),
        both("tsimu", nullptr, R::Real, &v.tsimu),
        both("tsnap", nullptr, R::Real, &v.tsnap),
        both("tstep", nullptr, R::Real, &v.tstep),
        both("nsimu", nullptr, R::Integer, &v.nsimu),
        both("iterlimit", nullptr, R::Integer, &v.iterlimit),
        both("nevery_out", nullptr, R::Integer, &v.nevery_out),
        inp_only("RE_unique_mol", nullptr, R::Integer, &v.RE_unique_mol),
        inp_only("HL_unique_mol", nullptr, R::Integer, &v.HL_unique_mol),
        both("homo_adjustment", nullptr, R::IntList, &v.homo_adjustment),
        both("lumo_adjustment", nullptr, R::IntList, &v.lumo_adjustment),
        both("molecule", nullptr, R::FileList, KeyTarget()),
        both("crystal", nullptr, R::Crystal, KeyTarget()),
        renamed("lat_site_energy", "latt_site_energy", R::Integer, &v.lat_site_energy),
        inp_only("output_level", nullptr, R::Integer, &v.output_level),
        inp_only("veska_dat_file", nullptr, R::StrippedText, &v.veska_dat_file),
        inp_only("output_eigval", nullptr, R::Integer, &v.output_eigval),
        inp_only("compute_engine", nullptr, R::Integer, &v.compute_engine, E::OrcaExeOnEngine2),
        inp_only("scratch", nullptr, R::StrippedText, &v.scratch),
        inp_only("eckart_mirror", nullptr, R::Integer, &v.eckart_mirror),
    };
}

const ConfigKey& find_config_key(const std::vector<ConfigKey>& table, const std::string& key,
                                 const ConfigDialect& dialect, const char* path)
{
    for (const ConfigKey& entry : table) {
        const char* const* names = dialect.veska_inp ? entry.inp_names : entry.cfg_names;
        for (int k = 0; k < 2; ++k)
            if (names[k] && iequals(key, names[k])) return entry;
    }
    veska_fatal(kInpUnit, dialect.unknown_key_number, -1, stdout,
                "\nUnknown parameter \"%s\" in file %s!!!\n\n%s", key.c_str(), path,
                dialect.unknown_key_tail);
}

// ---- value readings --------------------------------------------------------

static int read_integer(const std::string& text) { return read_int_clamped(text.c_str()); }

static std::string without_quotes(const std::string& value, const char* quotes)
{
    std::string s;
    for (char c : trimmed(value))
        if (!strchr(quotes, c)) s += c;
    return s;
}

// Up to three numbers in a row, as "%lf%lf%lf" or "%d%d%d" would take them:
// reading stops at the first that cannot be read, the rest stay as they are.
static void read_triple(const std::string& value, double* d, int* i)
{
    std::string s = trimmed(value);
    const char* p = s.c_str();
    for (int k = 0; k < 3; ++k) {
        char* end = nullptr;
        if (d) {
            double x = strtod(p, &end);
            if (end == p) return;
            d[k] = x;
        } else {
            int x = read_int_clamped(p, &end);
            if (end == p) return;
            i[k] = x;
        }
        p = end;
    }
}

static std::vector<std::string> words_of(const std::string& value)
{
    std::vector<std::string> words;
    tokenize(words, value.c_str(), " \t\r\n");
    return words;
}

// "n name1 ... namen": the MOL files of the molecules. A count larger than
// the names given, or a negative one, stops with an error naming the file.
static void read_file_list(VeskaInp& v, const std::string& value, const ConfigDialect& dialect,
                           const char* path)
{
    std::vector<std::string> words = words_of(value);
    int n = words.empty() ? 0 : read_integer(words[0]);
    size_t given = words.empty() ? 0 : words.size() - 1;
    if (n < 0 || static_cast<size_t>(n) > given)
        veska_fatal(kInpUnit, dialect.file_list_number, -1, stdout,
                    "\nThe key molecule announces %d MOL files but names %zu in file %s!!!\n\n", n,
                    given, path);
    v.nmols = n;
    v.mol_files.clear();
    for (int k = 1; k <= n; ++k) v.mol_files.push_back(words[k]);
    v.input_kind = 1;
}

static void apply_effect(VeskaInp& v, KeyEffect effect)
{
    switch (effect) {
    case KeyEffect::None: break;
    case KeyEffect::MpichModuleOn: v.module_mpich2_gnu_flag = true; break;
    case KeyEffect::QcModuleOn: v.module_gau_flag = true; break;
    case KeyEffect::AlsoBasisRe: v.qc_basis_re = v.qc_basis; break;
    case KeyEffect::OrcaExeOnEngine2:
        if (v.compute_engine == 2) v.qc_exe = "fullpath/orca";
        break;
    }
}

void apply_config_key(VeskaInp& v, const ConfigKey& key, const std::string& value,
                      const ConfigDialect& dialect, const char* path, bool verbose)
{
    const KeyTarget& t = key.target;
    switch (key.reading) {
    case KeyReading::Integer: *t.i = read_integer(value); break;
    case KeyReading::Real: *t.d = strtod(value.c_str(), nullptr); break;
    case KeyReading::Switch: *t.b = read_integer(value) != 0; break;
    case KeyReading::Text: *t.s = without_quotes(value, dialect.quote_chars); break;
    case KeyReading::StrippedText: *t.s = trimmed(value); break;
    case KeyReading::RealTriple: read_triple(value, t.d, nullptr); break;
    case KeyReading::IntTriple: read_triple(value, nullptr, t.i); break;
    case KeyReading::IntList:
        for (const std::string& w : words_of(value)) t.list->push_back(read_integer(w));
        break;
    case KeyReading::FileList: read_file_list(v, value, dialect, path); break;
    case KeyReading::Crystal:
        v.read_data_cif(trimmed(value).c_str(), verbose);
        v.input_kind = 2;
        break;
    }
    apply_effect(v, key.effect);
}
