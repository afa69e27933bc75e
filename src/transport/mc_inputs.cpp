// Hop rates, carrier type and temperature of a Monte Carlo run: the rate
// file of every unit-cell molecule (one line per neighbour, in list order),
// its echo in 1/ns, charge.inp and temp.inp.

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <iostream>

#include "mmutil.h"
#include "transport.h"

namespace {

// A rate file's lines must match the neighbour list it was made for.
void require_neighbor_list(const Transport& t)
{
    if (t.nmols > 0 && (!t.nnei || t.neighbor_nmols != t.nmols))
        veska_fatal("transport", 3078, -1, stdout,
                    "The neighbour list of the %d molecules is not built; the hop rates cannot "
                    "be matched to it\n",
                    t.nmols);
}

// "number word number word number word"; only the second pair is used.
bool parse_rate_line(const std::string& line, double number[3], std::string word[3])
{
    const char* p = line.c_str();
    for (int f = 0; f < 3; f++) {
        char* end;
        number[f] = strtod(p, &end);
        if (end == p) return false;
        p = end;
        while (isspace((unsigned char)*p)) p++;
        const char* w = p;
        while (*p && !isspace((unsigned char)*p)) p++;
        if (p == w) return false;
        word[f].assign(w, p);
    }
    return true;
}

double unit_factor(std::string unit)
{
    trim(unit);
    if (iequals(unit, "1/s")) return 1e-9;
    if (iequals(unit, "1/ps")) return 1000.0;
    return 1.0;  // "1/ns" and anything else
}

// Reads one molecule's rates (nnei of them) into a new array.
double* read_rate_file(const std::string& name, int nnei)
{
    std::vector<std::string> lines;
    if (!read_text_lines(name.c_str(), lines, false))
        veska_fatal("transport", 3090, -1, stdout, "Failed to open input file %s\n", name.c_str());
    int counted = count_lines(name.c_str());
    if (counted != nnei)
        veska_fatal("transport", 3104, -1, stdout,
                    "Unmatched data in '%s' - %d lines in file, but %d (nnei) lines are expected!\n"
                    "Try to adjust the cutoff distance to make it agree.\n",
                    name.c_str(), counted, nnei);
    double* rates = new double[nnei];
    double factor = 1.0;
    for (int k = 0; k < nnei; k++) {
        double number[3];
        std::string word[3];
        const std::string line = k < (int)lines.size() ? lines[k] : std::string();
        if (!parse_rate_line(line, number, word))
            veska_fatal("transport", 3106, -1, stdout,
                        "Line %d of '%s' is not three number-unit pairs (\"%s\")\n", k + 1,
                        name.c_str(), line.c_str());
        if (!(number[1] >= 0.0) || std::isinf(number[1]))
            veska_fatal("transport", 3108, -1, stdout,
                        "The hop rate %s in line %d of '%s' is not a finite number of 0 or more\n",
                        format_string("%g", number[1]).c_str(), k + 1, name.c_str());
        if (k == 0) factor = unit_factor(word[1]);
        rates[k] = factor * number[1];
    }
    return rates;
}

// The first line of a small input file, or false when it cannot be opened.
bool first_line(const char* name, std::string& line)
{
    std::vector<std::string> lines;
    if (!read_text_lines(name, lines, false)) return false;
    printf("Reading input file %s ...\n", name);
    line = lines.empty() ? std::string() : lines[0];
    return true;
}

}  // namespace

void Transport::read_MC_w0()
{
    require_neighbor_list(*this);
    if (w0) {
        for (int i = 0; i < neighbor_nmols; i++) delete[] w0[i];
        delete[] w0;
    }
    w0 = new double*[nmols > 0 ? nmols : 0]();
    const char type = mc_chargetype.empty() ? '\0' : (char)tolower((unsigned char)mc_chargetype[0]);
    for (int i = 0; i < nmols; i++) {
        if (type != 'e' && type != 'h') {
            printf("INFO: MC chargetype = %s\n", mc_chargetype.c_str());
            veska_fatal("transport", 3082, 0, stdout, "CHARGETYPE IS NOT SET CORRECTLY!\n");
        }
        w0[i] = read_rate_file(format_string(type == 'e' ? "WL%02d.dat" : "WH%02d.dat", i + 1),
                               nnei[i]);
    }
}

void Transport::write_MC_w0_out()
{
    require_neighbor_list(*this);
    for (int i = 0; i < nmols; i++) {
        std::string name = format_string("w0_%02d.out", i + 1);
        std::string text = format_string("%d\n", nnei[i]);
        for (int k = 0; k < nnei[i] && w0 && w0[i]; k++)
            text += format_string(" %14.6e 1/ns\n", w0[i][k]);
        if (write_text_file(name.c_str(), text) != WRITE_OK)
            veska_fatal_open_output("transport", 3180, name.c_str());
    }
}

// Only the first character of the trimmed first line counts.
int Transport::read_charge_inp()
{
    const char* name = "charge.inp";
    std::string line;
    if (!first_line(name, line)) {
        fflush(stdout);
        fprintf(stderr, "Failed to open input file %s\n", name);
        exit(-1);
    }
    trim(line);
    if (line.empty())
        mc_chargetype.clear();
    else if (mc_chargetype.empty())
        mc_chargetype = line.substr(0, 1);
    else
        mc_chargetype[0] = line[0];
    return 0;
}

// -1000 when there is no temp.inp; a missing file is not an error.
double Transport::read_temp_inp()
{
    double temperature = -1000.0;
    std::string line;
    if (!first_line("temp.inp", line)) return temperature;
    if (sscanf(line.c_str(), "%lf", &temperature) != 1)
        printf("WARNING: temp.inp holds no temperature; the configured temp is kept\n");
    return temperature;
}
