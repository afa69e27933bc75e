#include "fileio.h"

#include <cctype>
#include <cmath>
#include <cstring>

// Indexed by element number. Record 0 is a dummy (two blanks); the covalent
// radius is in 1/250 angstrom.
const ElementRecord element_table[104] = {
    {"  ", 0, 180}, // 0
    {"H ", 1.00794, 80}, // 1
    {"He", 4.0026, 400}, // 2
    {"Li", 6.941, 170}, // 3
    {"Be", 9.01218, 88}, // 4
    {"B ", 10.811, 208}, // 5
    {"C ", 12.011, 180}, // 6
    {"N ", 14.0067, 170}, // 7
    {"O ", 15.9994, 170}, // 8
    {"F ", 18.9984, 160}, // 9
    {"Ne", 20.1797, 280}, // 10
    {"Na", 22.98977, 243}, // 11
    {"Mg", 24.305, 275}, // 12
    {"Al", 26.98154, 338}, // 13
    {"Si", 28.0855, 300}, // 14
    {"P ", 30.97376, 259}, // 15
    {"S ", 32.066, 255}, // 16
    {"Cl", 35.4527, 250}, // 17
    {"Ar", 39.948, 392}, // 18
    {"K ", 39.0983, 332}, // 19
    {"Ca", 40.078, 248}, // 20
    {"Sc", 44.9559, 360}, // 21
    {"Ti", 47.88, 368}, // 22
    {"V ", 50.9415, 332}, // 23
    {"Cr", 51.996, 338}, // 24
    {"Mn", 54.938, 338}, // 25
    {"Fe", 55.847, 335}, // 26
    {"Co", 58.9332, 332}, // 27
    {"Ni", 58.6934, 405}, // 28
    {"Cu", 63.546, 380}, // 29
    {"Zn", 65.39, 362}, // 30
    {"Ga", 69.723, 305}, // 31
    {"Ge", 72.61, 292}, // 32
    {"As", 74.9216, 302}, // 33
    {"Se", 78.96, 305}, // 34
    {"Br", 79.904, 302}, // 35
    {"Kr", 83.8, 400}, // 36
    {"Rb", 85.4678, 368}, // 37
    {"Sr", 87.62, 280}, // 38
    {"Y ", 88.9059, 445}, // 39
    {"Zr", 91.224, 390}, // 40
    {"Nb", 92.9064, 370}, // 41
    {"Mo", 95.94, 368}, // 42
    {"Tc", 98, 338}, // 43
    {"Ru", 101.07, 350}, // 44
    {"Rh", 102.9055, 362}, // 45
    {"Pd", 106.42, 375}, // 46
    {"Ag", 107.868, 398}, // 47
    {"Cd", 112.41, 422}, // 48
    {"In", 114.82, 408}, // 49
    {"Sn", 118.71, 365}, // 50
    {"Sb", 121.757, 365}, // 51
    {"Te", 127.6, 368}, // 52
    {"I ", 126.9045, 350}, // 53
    {"Xe", 131.29, 425}, // 54
    {"Cs", 132.9054, 418}, // 55
    {"Ba", 137.33, 335}, // 56
    {"La", 138.9055, 468}, // 57
    {"Ce", 140.12, 458}, // 58
    {"Pr", 140.9077, 455}, // 59
    {"Nd", 144.24, 452}, // 60
    {"Pm", 145, 450}, // 61
    {"Sm", 150.36, 450}, // 62
    {"Eu", 151.965, 498}, // 63
    {"Gd", 157.25, 448}, // 64
    {"Tb", 158.9253, 440}, // 65
    {"Dy", 162.5, 438}, // 66
    {"Ho", 164.9303, 435}, // 67
    {"Er", 167.26, 432}, // 68
    {"Tm", 168.9342, 430}, // 69
    {"Yb", 173.04, 485}, // 70
    {"Lu", 174.967, 430}, // 71
    {"Hf", 178.49, 392}, // 72
    {"Ta", 180.9479, 358}, // 73
    {"W ", 183.85, 342}, // 74
    {"Re", 186.207, 338}, // 75
    {"Os", 190.2, 342}, // 76
    {"Ir", 192.22, 330}, // 77
    {"Pt", 195.08, 375}, // 78
    {"Au", 196.9665, 375}, // 79
    {"Hg", 200.59, 425}, // 80
    {"Tl", 204.282, 388}, // 81
    {"Pb", 207.2, 385}, // 82
    {"Bi", 208.9804, 385}, // 83
    {"Po", 209, 420}, // 84
    {"At", 210, 302}, // 85
    {"Rn", 222, 475}, // 86
    {"Fr", 223, 450}, // 87
    {"Ra", 226.0254, 358}, // 88
    {"Ac", 227, 295}, // 89
    {"Th", 232.0381, 255}, // 90
    {"Pa", 231.0359, 222}, // 91
    {"U ", 238.029, 242}, // 92
    {"Np", 237.0482, 238}, // 93
    {"Pu", 244, 232}, // 94
    {"Am", 243, 230}, // 95
    {"Cm", 247, 228}, // 96
    {"Bk", 247, 225}, // 97
    {"Cf", 251, 222}, // 98
    {"Es", 252, 220}, // 99
    {"Fm", 257, 218}, // 100
    {"Md", 258, 215}, // 101
    {"No", 259, 212}, // 102
    {"Lr", 260, 210}, // 103
};

// Second radius in angstrom, indexed like element_table; the overlap test of
// the symmetry expansion and the cell separation use it. Entries 104 and 105
// have no element record.
const double element_radius_nw[106] = {
    99999.99, 0.35, 1.22, 1.23, 0.89, 0.88, 0.77, 0.72,
    0.66, 0.58, 1.6, 1.4, 1.36, 1.25, 1.17, 1.1,
    1.04, 0.99, 1.91, 2.03, 1.74, 1.44, 1.32, 1.22,
    1.19, 1.17, 1.165, 1.16, 1.15, 1.17, 1.25, 1.25,
    1.22, 1.21, 1.17, 1.14, 1.98, 2.22, 1.92, 1.62,
    1.45, 1.34, 1.29, 1.27, 1.24, 1.25, 1.28, 1.34,
    1.41, 1.5, 1.4, 1.41, 1.37, 1.33, 2.09, 2.35,
    1.98, 1.69, 1.65, 1.65, 1.64, 1.65, 1.66, 1.65,
    1.61, 1.59, 1.59, 1.58, 1.57, 1.56, 1.56, 1.56,
    1.44, 1.34, 1.3, 1.28, 1.26, 1.26, 1.29, 1.34,
    1.44, 1.55, 1.54, 1.52, 1.53, 1.5, 2.2, 3.24,
    2.68, 2.25, 2.16, 1.93, 1.66, 1.57, 1.81, 2.21,
    1.43, 1.42, 1.4, 1.39, 1.38, 1.37, 1.36, 1.34,
    1.3, 1.3,
};

static const int kElementCount = 104;

// First character upper case, second lower case (a blank for one-letter
// names); the first record equal in both wins. Longer names match on their
// first two characters only.
static int symbol_match(const char* name)
{
    if (name == nullptr || name[0] == '\0') return -1;
    char c0 = (char)toupper((unsigned char)name[0]);
    char c1 = name[1] == '\0' ? ' ' : (char)tolower((unsigned char)name[1]);
    for (int i = 0; i < kElementCount; i++)
        if (element_table[i].symbol[0] == c0 && element_table[i].symbol[1] == c1) return i;
    return -1;
}

int FileIO::find_element_index_from_name(const char* name)
{
    return symbol_match(name);
}

double FileIO::find_element_radius_from_name(const char* name)
{
    int i = symbol_match(name);
    return i < 0 ? 9999.99 : element_radius_nw[i];
}

void FileIO::find_element_name_from_index(int i, char* out)
{
    out[0] = element_table[i].symbol[0];
    if (element_table[i].symbol[1] == ' ') {
        out[1] = '\0';  // one character and its terminator, nothing beyond
        return;
    }
    out[1] = element_table[i].symbol[1];
    out[2] = '\0';
}

// The dummy record 0 never names an atom, so a mass near zero gives "A ".
void FileIO::find_element_name_from_mass(double mass, char* out)
{
    for (int i = 1; i < kElementCount; i++) {
        if (std::fabs(element_table[i].mass - mass) < 0.1) {
            out[0] = element_table[i].symbol[0];
            out[1] = element_table[i].symbol[1];
            out[2] = '\0';
            return;
        }
    }
    std::strcpy(out, "A ");
}

double FileIO::find_element_mass_from_index(int i)
{
    return element_table[i].mass;
}

double FileIO::find_element_radius_from_index(int i)
{
    return element_table[i].radius / 250.0;
}

double FileIO::find_element_radius_from_index_nw(int i)
{
    return element_radius_nw[i];
}
