// Real crystals and molecules against the independent figures of
// tests/data/reference.json, read through the reader and the structure driver.

#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <cstring>
#include <map>

#include "neighbor_internal.h"
#include "test_support.h"

// Just enough JSON for reference.json: objects, arrays, numbers and strings
// without escapes (the file has none).
struct Json {
    double number = 0;
    std::string text;
    std::vector<Json> items;
    std::map<std::string, Json> members;
    const Json& operator[](const char* key) const { return members.at(key); }
};

static bool parse_json(const char*& p, Json& v)
{
    auto space = [&p] { while (isspace((unsigned char)*p)) ++p; };
    auto string = [&p](std::string& out) {
        const char* end = strchr(++p, '"');
        return end && (out.assign(p, end), p = end + 1);
    };
    space();
    const char open = *p, close = open == '{' ? '}' : ']';
    if (open == '"') return string(v.text);
    if (open != '{' && open != '[') {
        char* end;
        v.number = strtod(p, &end);
        return end != p && (p = end);
    }
    for (++p, space(); *p != close; space()) {
        std::string key;
        if (open == '{' && !(string(key) && (space(), *p++ == ':'))) return false;
        Json& item = open == '[' ? v.items.emplace_back() : v.members[key];
        if (!parse_json(p, item)) return false;
        space();
        if (*p == ',') ++p;
        else if (*p != close) return false;
    }
    return ++p;
}

static std::vector<const Json*> entries_with(const char* key)
{
    static Json root;
    static const std::string text = read_text_file(data_file("reference.json"));
    const char* p = text.c_str();
    if (root.members.empty()) {
        EXPECT_TRUE(parse_json(p, root)) << "reference.json does not parse";
    }
    std::vector<const Json*> out;
    for (const Json& e : root.members["entries"].items)
        if (e.members.count(key)) out.push_back(&e);
    return out;
}

// Carbon first, hydrogen second, then the others alphabetically.
static std::string formula_of(FileIO& io, int natoms, const int* types)
{
    std::map<std::string, int> count;
    for (int i = 0; i < natoms; ++i) {
        char s[3] = "?";
        if (types[i] >= 0) io.find_element_name_from_index(types[i], s);
        ++count[s];
    }
    std::string f;
    auto add = [&](const std::string& el) { f += el + (count[el] > 1 ? std::to_string(count[el]) : ""), count.erase(el); };
    for (const char* first : {"C", "H"})
        if (count.count(first)) add(first);
    while (!count.empty()) add(count.begin()->first);
    return f;
}

// Mass-weighted fractional centre of molecule m; returns its mass.
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

static void read_crystal(VeskaInp& v, const std::string& file)
{
    v.set_varables_default();
    testing::internal::CaptureStdout();
    v.read_data_cif(data_file(file).c_str(), false);
    v.input_kind = 2;
    v.read_crystal_strcuture_files(false, false);
    testing::internal::GetCapturedStdout();
}

// A molecule of the reference matches one not matched before with the same
// atoms, formula, mass and centre (modulo whole cells); its index, or -1.
static int take_matching(VeskaInp& v, const Json& mol, std::vector<bool>& used)
{
    for (int m = 0; m < v.nmols; ++m) {
        double c[3], mass = centre_of(v, m, c);
        bool same = !used[m] && v.natoms_mol[m] == (int)mol["natoms"].number &&
                    formula_of(v, v.natoms_mol[m], v.atypes_mol[m]) == mol["formula"].text &&
                    fabs(mass - mol["mass"].number) < 1e-3;
        for (int k = 0; k < 3 && same; ++k) {
            double d = c[k] - mol["com_frac"].items[k].number;
            same = fabs(d - std::round(d)) < 2e-4;
        }
        if (same) return used[m] = true, m;
    }
    return -1;
}

TEST(CrystalReference, EveryCifEntryReproducesItsCellAndMolecules)
{
    std::vector<const Json*> crystals = entries_with("molecules");
    EXPECT_GE(crystals.size(), 7u);
    for (const Json* ref : crystals) {
        SCOPED_TRACE((*ref)["file"].text);
        VeskaInp v;
        read_crystal(v, (*ref)["file"].text);
        const char* cell_keys[6] = {"a", "b", "c", "alpha", "beta", "gamma"};
        for (int k = 0; k < 6; ++k) EXPECT_NEAR(v.cell_latt[k], (*ref)["cell"][cell_keys[k]].number, 1e-4);
        for (int k = 0; k < 3; ++k) EXPECT_NEAR(v.latt_len[k], v.cell_latt[k], 1e-9);
        ASSERT_EQ(v.natoms_cif, (int)(*ref)["p1_atoms"].number);
        std::map<std::string, int> elements;
        for (int i = 0; i < v.natoms_cif; ++i) ++elements[formula_of(v, 1, v.cif_atypes + i)];
        for (const auto& [symbol, count] : (*ref)["p1_elements"].members) EXPECT_EQ(elements[symbol], (int)count.number) << symbol;
        EXPECT_EQ(elements.size(), (*ref)["p1_elements"].members.size());

        ASSERT_EQ(v.nmols, (int)(*ref)["molecules_count"].number);
        std::vector<bool> used(v.nmols, false);
        for (const Json& mol : (*ref)["molecules"].items)
            EXPECT_GE(take_matching(v, mol, used), 0) << "no molecule " << mol["formula"].text;
        for (int m = 0; m < v.nmols; ++m) {
            EXPECT_EQ(v.mol_id[m], m + 1);
            EXPECT_EQ(v.mol_files[m], "mol" + std::to_string(m + 1) + ".mol");
        }
    }
}

TEST(CrystalReference, EveryMolEntryReadsItsAtomsThroughTheDriver)
{
    std::vector<const Json*> files = entries_with("elements_in_order");
    EXPECT_GE(files.size(), 4u);
    for (const Json* ref : files) {
        SCOPED_TRACE((*ref)["file"].text);
        VeskaInp v;
        v.set_varables_default();
        v.input_kind = 1;
        v.nmols = 1;
        v.mol_files = {data_file((*ref)["file"].text)};
        testing::internal::CaptureStdout();
        v.read_crystal_strcuture_files(false, false);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        const int n = v.natoms_mol[0];
        ASSERT_EQ(n, (int)(*ref)["natoms_openbabel"].number);
        const std::vector<Json>& order = (*ref)["elements_in_order"].items;
        ASSERT_EQ(order.size(), (size_t)n);
        for (int i = 0; i < n; ++i) EXPECT_EQ(formula_of(v, 1, v.atypes_mol[0] + i), order[i].text) << i;
        EXPECT_EQ(formula_of(v, n, v.atypes_mol[0]), (*ref)["formula"].text);
        double c[3], back[3];
        EXPECT_NEAR(centre_of(v, 0, c), (*ref)["mass"].number, 1e-3);
        for (int k = 0; k < 3; ++k) {
            EXPECT_NEAR(v.x_mol[0][k], (*ref)["first_atom_xyz"].items[k].number, 1e-4);
            EXPECT_NEAR(v.x_mol[0][3 * (n - 1) + k], (*ref)["last_atom_xyz"].items[k].number, 1e-4);
        }
        v.coord_f2c(v.x_s_mol[0], back);  // fractional coordinates follow the configured lattice
        for (int k = 0; k < 3; ++k) EXPECT_NEAR(back[k], v.x_mol[0][k], 1e-9);
    }
}

// Crystals without reference figures: the formulas published in MANIFEST.md;
// the symop-id-first crystal reads as an empty cell with a warning.
TEST(CrystalReference, OtherCrystalsGiveTheirPublishedMolecules)
{
    const std::tuple<const char*, int, const char*> crystals[] = {
        {"c20h14s2_lufhaw.cif", 2, "C20H14S2"}, {"naphthodithiophene_hahcoi.cif", 2, "C12H6S2"},
        {"quinacridone_beta.cif", 2, "C20H12N2O2"}, {"tbbt_japwih.cif", 2, "C16H8S3"},
        {"tipge_pentacene_x17059_disordered.cif", 1, "C50H68Ge2"}};  // both parts of the disorder kept
    for (const auto& [file, nmols, formula] : crystals) {
        SCOPED_TRACE(file);
        VeskaInp v;
        read_crystal(v, file);
        ASSERT_EQ(v.nmols, nmols);
        for (int m = 0; m < v.nmols; ++m) EXPECT_EQ(formula_of(v, v.natoms_mol[m], v.atypes_mol[m]), formula);
    }
    VeskaInp v;
    const std::string path = data_file("c16h14s4_merqim.cif");
    testing::internal::CaptureStdout();
    v.read_data_cif(path.c_str(), false);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "WARNING: no symmetry operator was recognised in crystal file \"" +
                                                          path + "\"; the unit cell is left without atoms\n");
    EXPECT_EQ(v.cif_atoms.label.size(), 17u);  // C8H7S2, half a molecule
    EXPECT_EQ(v.natoms_cif, 0);
    EXPECT_NEAR(v.cell_latt[1], 6.35286, 1e-9);
}

// The list as rows (i, neighbour, cell x, y, z), in pair key order.
static std::vector<int> neighbor_rows(Transport& t)
{
    std::vector<int> v;
    for (int i = 0; i < t.nmols; ++i)
        for (int k = 0; k < t.nnei[i]; ++k)
            v.insert(v.end(), {i, t.nei_mol[i][k], t.nei_cell[0][i][k], t.nei_cell[1][i][k],
                               t.nei_cell[2][i][k]});
    return v;
}

// The plain all-atom-pairs scan is the reference for the list itself.
TEST(CrystalReference, EveryCifEntryReproducesItsNeighbours)
{
    std::vector<const Json*> crystals = entries_with("neighbors");
    EXPECT_GE(crystals.size(), 7u);
    for (const Json* ref : crystals) {
        SCOPED_TRACE((*ref)["file"].text);
        const Json& nb = (*ref)["neighbors"];
        Transport t;
        read_crystal(t, (*ref)["file"].text.c_str());
        t.lat_cutoff = nb["lat_cutoff"].number;
        for (int d = 0; d < 3; ++d) t.nei_scell[d] = (int)nb["nei_scell"].number;
        t.post_data_read_treatment();
        build_neighbor_list_scan(t, false, false);
        std::vector<int> plain = neighbor_rows(t);
        t.build_neighbor_list(false);
        EXPECT_EQ(neighbor_rows(t), plain);
        std::vector<bool> used(t.nmols, false);
        for (size_t r = 0; r < nb["per_molecule"].items.size(); ++r) {
            const int m = take_matching(t, (*ref)["molecules"].items[r], used);
            const std::vector<Json>& want = nb["per_molecule"].items[r]["com_distances"].items;
            ASSERT_GE(m, 0);
            ASSERT_EQ(t.nnei[m], (int)want.size()) << "molecule " << m + 1;
            for (int k = 0, cell[3]; k < t.nnei[m]; ++k) {
                neighbor_cell(t, m, k, cell);
                EXPECT_NEAR(sqrt(t.calc_neighbor_com_rsq(m, t.nei_mol[m][k], cell)),
                            want[k].number, 6e-5) << "molecule " << m + 1 << " neighbour " << k + 1;
            }
        }
    }
}

// A dimer and its reverse hold the same atoms, so the later key always maps
// to the earlier one's representative; at most half the pairs stay unique.
TEST(CrystalReference, CentrosymmetricCrystalMergesEveryPairWithItsReverse)
{
    Transport t;
    read_crystal(t, "pentacene_pencen01.cif");
    t.post_data_read_treatment();
    t.build_neighbor_list(false);
    t.unique_2mol_calc_flag = false;  // no table, no print
    t.calc_HL_2mol_eigval_eigvec_and_unique_pairs();
    std::vector<int> rows = neighbor_rows(t);
    ASSERT_EQ(t.nkey, 24);
    for (int key = 0, rev; key < t.nkey; ++key) {
        const int* r = &rows[5 * key];
        const int back[5] = {r[1], r[0], -r[2], -r[3], -r[4]};
        for (rev = 0; rev < t.nkey && !std::equal(back, back + 5, &rows[5 * rev]);) ++rev;
        ASSERT_LT(rev, t.nkey) << key;
        EXPECT_EQ(t.unique_pair_map[std::max(key, rev)], t.unique_pair_map[std::min(key, rev)]);
    }
    EXPECT_LE(2 * t.unique_pair_count, t.nkey);
}
