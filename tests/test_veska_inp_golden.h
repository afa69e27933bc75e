#ifndef VESKA_TEST_VESKA_INP_GOLDEN_H
#define VESKA_TEST_VESKA_INP_GOLDEN_H

// The configuration layouts in their default state (defaults, engine 1, no
// environment, no module flag) live in data/golden: terse.inp, verbose.inp,
// config.inp (input kind 2, no CIF file in the directory) and full.inp (the
// full state of a fresh Transport). Tests derive the variants by line edits.

#include <utility>
#include <vector>

#include "test_support.h"

// The lattice-vector lines of MOL input in veska.inp, with their empty line.
inline const std::string golden_vector_lines = R"(  vector_a        =     8.098000     0.000000     0.000000
  vector_b        =     0.000000     5.953000     0.000000
  vector_c        =    -4.888095     0.000000     7.138882

)";
inline const char* const terse_lat_cutoff = "  lat_cutoff      = 4       ! for neighbor list construction";
inline const char* const verbose_lat_cutoff = "  lat_cutoff      = 4      ! for neighbor list construction";
inline const char* const module_off = "#  module_qc = gaussian/g09.e01";
inline const char* const crystal_default = "  crystal         = naphthalene.cif";
inline const char* const old_crystal_default = "crystal         naphthalene.cif";
inline const char* const mol_default = "  molecule        = 2 mol1.mol mol2.mol\n";

// Replaces each whole line `first` (given without its line feed, found
// exactly once) by the lines `second` (each with its line feed).
inline std::string edit(std::string text, const std::vector<std::pair<std::string, std::string>>& edits)
{
    for (const auto& e : edits) {
        size_t at = text.find("\n" + e.first + "\n");
        EXPECT_NE(at, std::string::npos) << "golden line not found: " << e.first;
        EXPECT_EQ(text.find("\n" + e.first + "\n", at + 1), std::string::npos) << e.first;
        if (at != std::string::npos) text.replace(at + 1, e.first.size() + 1, e.second);
    }
    return text;
}

inline std::string insert_before(const std::string& text, const std::string& line, const std::string& lines)
{
    return edit(text, {{line, lines + line + "\n"}});
}

#endif
