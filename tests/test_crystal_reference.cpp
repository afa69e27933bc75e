// Real crystals and molecules against the independent reference figures of
// tests/data/reference.json: atoms of the P1 cell by element, molecules with
// their formula, mass and centre, and the MOL files' atoms.

#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <map>

#include "reader_test_util.h"
#include "veska_inp.h"

// ---- a minimal JSON reader, enough for reference.json ----------------------

struct Json {
    enum Kind { Null, Bool, Number, String, Array, Object } kind = Null;
    double number = 0;
    std::string text;
    std::vector<Json> items;
    std::vector<std::pair<std::string, Json>> members;

    const Json* find(const char* key) const
    {
        for (const auto& m : members)
            if (m.first == key) return &m.second;
        return nullptr;
    }
    const Json& operator[](const char* key) const
    {
        static const Json none;
        const Json* j = find(key);
        return j ? *j : none;
    }
};

class JsonParser {
public:
    explicit JsonParser(const std::string& s) : s_(s) {}
    bool parse(Json& out)
    {
        bool ok = value(out);
        space();
        return ok && p_ == s_.size();
    }

private:
    const std::string& s_;
    size_t p_ = 0;

    void space()
    {
        while (p_ < s_.size() && isspace(static_cast<unsigned char>(s_[p_]))) ++p_;
    }
    bool eat(char c)
    {
        space();
        if (p_ < s_.size() && s_[p_] == c) return ++p_, true;
        return false;
    }
    bool string(std::string& out)
    {
        if (!eat('"')) return false;
        while (p_ < s_.size() && s_[p_] != '"') {
            char c = s_[p_++];
            if (c == '\\' && p_ < s_.size()) {
                char e = s_[p_++];
                if (e == 'u') {  // the file only escapes ASCII; keep a marker otherwise
                    out += '?';
                    p_ += 4;
                    continue;
                }
                c = e == 'n' ? '\n' : e == 't' ? '\t' : e;
            }
            out += c;
        }
        return eat('"');
    }
    bool value(Json& v)
    {
        space();
        if (p_ >= s_.size()) return false;
        char c = s_[p_];
        if (c == '{') {
            v.kind = Json::Object;
            ++p_;
            if (eat('}')) return true;
            do {
                std::pair<std::string, Json> m;
                if (!string(m.first) || !eat(':') || !value(m.second)) return false;
                v.members.push_back(std::move(m));
            } while (eat(','));
            return eat('}');
        }
        if (c == '[') {
            v.kind = Json::Array;
            ++p_;
            if (eat(']')) return true;
            do {
                v.items.emplace_back();
                if (!value(v.items.back())) return false;
            } while (eat(','));
            return eat(']');
        }
        if (c == '"') {
            v.kind = Json::String;
            return string(v.text);
        }
        for (const char* word : {"true", "false", "null"}) {
            if (s_.compare(p_, strlen(word), word) == 0) {
                v.kind = word[0] == 'n' ? Json::Null : Json::Bool;
                v.number = word[0] == 't';
                p_ += strlen(word);
                return true;
            }
        }
        char* end = nullptr;
        v.kind = Json::Number;
        v.number = strtod(s_.c_str() + p_, &end);
        if (end == s_.c_str() + p_) return false;
        p_ = end - s_.c_str();
        return true;
    }
};

static const Json& reference()
{
    static Json root;
    static bool loaded = false;
    if (!loaded) {
        loaded = true;
        std::string text = read_text_file(data_file("reference.json"));
        EXPECT_TRUE(JsonParser(text).parse(root)) << "reference.json does not parse";
    }
    return root;
}

static std::vector<const Json*> entries_with(const char* key)
{
    std::vector<const Json*> out;
    for (const Json& e : reference()["entries"].items)
        if (e.find(key)) out.push_back(&e);
    return out;
}

// ---- figures of a molecule ----------------------------------------------------

static std::string symbol_of(FileIO& io, int type)
{
    if (type < 0) return "?";
    char s[3];
    io.find_element_name_from_index(type, s);
    return s;
}

// Carbon first, hydrogen second, then the others alphabetically.
static std::string formula_of(FileIO& io, int natoms, const int* types)
{
    std::map<std::string, int> count;
    for (int i = 0; i < natoms; ++i) ++count[symbol_of(io, types[i])];
    std::string f;
    auto add = [&](const std::string& el) {
        auto it = count.find(el);
        if (it == count.end()) return;
        f += el + (it->second > 1 ? std::to_string(it->second) : "");
        count.erase(it);
    };
    add("C");
    add("H");
    for (const auto& kv : count) f += kv.first + (kv.second > 1 ? std::to_string(kv.second) : "");
    return f;
}

// Mass-weighted fractional centre of molecule m and its mass.
static double centre_of(FileIO& io, int m, double* c)
{
    double mass = 0;
    c[0] = c[1] = c[2] = 0;
    for (int i = 0; i < io.natoms_mol[m]; ++i) {
        double w = io.find_element_mass_from_index(io.atypes_mol[m][i]);
        mass += w;
        for (int k = 0; k < 3; ++k) c[k] += w * io.x_s_mol[m][3 * i + k];
    }
    for (int k = 0; k < 3; ++k) c[k] /= mass;
    return mass;
}

// Distance of two fractional values on the circle of whole cells.
static double cell_gap(double a, double b)
{
    double d = a - b;
    return fabs(d - std::round(d));
}

// ---- the crystals -------------------------------------------------------------

static void check_crystal(const Json& ref)
{
    const std::string file = ref["file"].text;
    SCOPED_TRACE(file);
    VeskaInp v;
    v.set_varables_default();
    testing::internal::CaptureStdout();
    v.read_data_cif(data_file(file.c_str()).c_str(), false);
    v.input_kind = 2;
    v.read_crystal_strcuture_files(false, false);
    testing::internal::GetCapturedStdout();

    const char* cell_keys[6] = {"a", "b", "c", "alpha", "beta", "gamma"};
    for (int k = 0; k < 6; ++k) EXPECT_NEAR(v.cell_latt[k], ref["cell"][cell_keys[k]].number, 1e-4);

    ASSERT_EQ(v.natoms_cif, static_cast<int>(ref["p1_atoms"].number));
    std::map<std::string, int> elements;
    for (int i = 0; i < v.natoms_cif; ++i) ++elements[symbol_of(v, v.cif_atypes[i])];
    for (const auto& m : ref["p1_elements"].members)
        EXPECT_EQ(elements[m.first], static_cast<int>(m.second.number)) << m.first;
    EXPECT_EQ(elements.size(), ref["p1_elements"].members.size());

    const std::vector<Json>& mols = ref["molecules"].items;
    ASSERT_EQ(v.nmols, static_cast<int>(ref["molecules_count"].number));
    ASSERT_EQ(mols.size(), static_cast<size_t>(v.nmols));
    std::vector<bool> used(v.nmols, false);
    for (const Json& mol : mols) {
        bool found = false;
        for (int m = 0; m < v.nmols && !found; ++m) {
            double c[3];
            double mass = centre_of(v, m, c);
            found = !used[m] && v.natoms_mol[m] == static_cast<int>(mol["natoms"].number) &&
                    formula_of(v, v.natoms_mol[m], v.atypes_mol[m]) == mol["formula"].text &&
                    fabs(mass - mol["mass"].number) < 1e-3;
            for (int k = 0; k < 3 && found; ++k)
                found = cell_gap(c[k], mol["com_frac"].items[k].number) < 2e-4;
            if (found) used[m] = true;
        }
        EXPECT_TRUE(found) << "no molecule " << mol["formula"].text << " centred at ("
                           << mol["com_frac"].items[0].number << ", "
                           << mol["com_frac"].items[1].number << ", "
                           << mol["com_frac"].items[2].number << ")";
    }
    for (int m = 0; m < v.nmols; ++m) {
        EXPECT_EQ(v.mol_id[m], m + 1);
        EXPECT_EQ(v.mol_files[m], "mol" + std::to_string(m + 1) + ".mol");
    }
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(v.latt_len[k], v.cell_latt[k], 1e-9);
}

TEST(CrystalReference, EveryCifEntryReproducesItsCellAndMolecules)
{
    std::vector<const Json*> crystals = entries_with("molecules");
    EXPECT_GE(crystals.size(), 7u);
    for (const Json* ref : crystals) check_crystal(*ref);
}

// ---- the molecules of MOL files, read through the driver ----------------------

static void check_molecule_file(const Json& ref)
{
    const std::string file = ref["file"].text;
    SCOPED_TRACE(file);
    VeskaInp v;
    v.set_varables_default();
    v.input_kind = 1;
    v.nmols = 1;
    v.mol_files = {data_file(file.c_str())};
    testing::internal::CaptureStdout();
    v.read_crystal_strcuture_files(false, false);
    testing::internal::GetCapturedStdout();

    int n = v.natoms_mol[0];
    ASSERT_EQ(n, static_cast<int>(ref["natoms_openbabel"].number));
    const std::vector<Json>& order = ref["elements_in_order"].items;
    ASSERT_EQ(order.size(), static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) EXPECT_EQ(symbol_of(v, v.atypes_mol[0][i]), order[i].text) << i;
    EXPECT_EQ(formula_of(v, n, v.atypes_mol[0]), ref["formula"].text);
    for (int k = 0; k < 3; ++k) {
        EXPECT_NEAR(v.x_mol[0][k], ref["first_atom_xyz"].items[k].number, 1e-4);
        EXPECT_NEAR(v.x_mol[0][3 * (n - 1) + k], ref["last_atom_xyz"].items[k].number, 1e-4);
    }
    // fractional coordinates follow from the configuration's lattice vectors
    double back[3];
    v.coord_f2c(v.x_s_mol[0], back);
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(back[k], v.x_mol[0][k], 1e-9);
    EXPECT_EQ(v.mol_id[0], 1);
}

TEST(CrystalReference, EveryMolEntryReadsItsAtomsThroughTheDriver)
{
    std::vector<const Json*> files = entries_with("elements_in_order");
    EXPECT_GE(files.size(), 4u);
    for (const Json* ref : files) check_molecule_file(*ref);
}

// ---- the crystals without reference figures: formulas from MANIFEST.md ------

TEST(CrystalReference, OtherCrystalsGiveTheirPublishedMolecules)
{
    struct Expected {
        const char* file;
        int nmols;
        const char* formula;
    };
    static const Expected crystals[] = {
        {"c20h14s2_lufhaw.cif", 2, "C20H14S2"},
        {"naphthodithiophene_hahcoi.cif", 2, "C12H6S2"},
        {"quinacridone_beta.cif", 2, "C20H12N2O2"},
        {"tbbt_japwih.cif", 2, "C16H8S3"},
        // C44H54Ge2 with both parts of the disordered isopropyl group kept
        {"tipge_pentacene_x17059_disordered.cif", 1, "C50H68Ge2"},
    };
    for (const Expected& e : crystals) {
        SCOPED_TRACE(e.file);
        VeskaInp v;
        v.set_varables_default();
        testing::internal::CaptureStdout();
        v.read_data_cif(data_file(e.file).c_str(), false);
        v.input_kind = 2;
        v.read_crystal_strcuture_files(false, false);
        testing::internal::GetCapturedStdout();
        ASSERT_EQ(v.nmols, e.nmols);
        for (int m = 0; m < v.nmols; ++m)
            EXPECT_EQ(formula_of(v, v.natoms_mol[m], v.atypes_mol[m]), e.formula);
    }
}

TEST(CrystalReference, SymopIdFirstCrystalReadsAsAnEmptyCellWithAWarning)
{
    // MERQIM heads its operator loop with _space_group_symop_id, which is not
    // an operator loop for this reader.
    VeskaInp v;
    std::string path = data_file("c16h14s4_merqim.cif");
    testing::internal::CaptureStdout();
    v.read_data_cif(path.c_str(), false);
    std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(out, "WARNING: no symmetry operator was recognised in crystal file \"" + path +
                       "\"; the unit cell is left without atoms\n");
    EXPECT_EQ(v.cif_atoms.label.size(), 17u);  // C8H7S2, half a molecule
    EXPECT_EQ(v.natoms_cif, 0);
    EXPECT_NEAR(v.cell_latt[1], 6.35286, 1e-9);
}
