// Gaussian, ORCA and Q-Chem inputs of one molecule or pair. Each file is
// a head, the atom lines and a tail, followed by the caller's `extra`; the
// engines differ only in head and tail, described per job kind below.

#include <string>
#include <utility>
#include <vector>

#include "fatal.h"
#include "fileio.h"
#include "mmutil.h"
#include "writer_text.h"

// The frame shared by all engines.
static void write_qc_input(FileIO& fio, const char* announce, const char* path, int natoms,
                           int* atypes, double* x, const std::string& head,
                           const std::string& tail, const std::string& extra)
{
    announce_output(announce, path, false);
    std::string text = head;
    for (int a = 0; a < natoms; a++) {
        const std::string sym = output_element_symbol(fio, atypes[a], a, path);
        const double* r = x + 3 * a;
        text += format_string("%-2s %9.4f %9.4f %9.4f\n", sym.c_str(), r[0], r[1], r[2]);
    }
    text += tail;
    text += extra;
    if (!write_whole_file(path, text)) veska_fatal_open_output("fileio", 3701, path);
}

// Single-point (HL) jobs use the neutral singlet.
static const char* const hl_charge_mult = "0 1";

// ---- Gaussian ---------------------------------------------------------------

struct GaussianJob {
    bool chk_first;            // %chk before %mem (HL) or after %nprocs (RE)
    const char* route_head;    // text between "#P " and the method
    const char* route_tail;    // text after the method
    const char* route_extra;   // a second route line, or empty
};

static const GaussianJob gaussian_hl = {true, "", " iop(3/33=1,5/33=2) pop=full nosymm", ""};
static const GaussianJob gaussian_re = {false, "opt freq ", " pop=full nosymm",
                                        "scf=(maxcycle=100,xqc)\n"};

static std::string gaussian_head(const GaussianJob& job, const char* title, const char* chk,
                                 const char* charge_mult, const char* method, int mem, int nprocs)
{
    const std::string chk_line = std::string("%chk=") + chk + ".chk\n";
    std::string head = job.chk_first ? chk_line : "";
    head += format_string("%%mem=%dMB\n%%nprocs=%d\n", mem, nprocs);
    if (!job.chk_first) head += chk_line;
    head += std::string("#P ") + job.route_head + method + job.route_tail + "\n";
    head += job.route_extra;
    head += std::string("\n") + title + "\n\n" + charge_mult + "\n";
    return head;
}

void FileIO::write_gau_mol_com_HL(const char* path, int natoms, int* atypes, double* x,
                                  const char* title, const char* chk, const char* method, int mem,
                                  int /*nodes*/, int nprocs, const std::string& extra)
{
    write_qc_input(*this, "Writing gaussian com file ", path, natoms, atypes, x,
                   gaussian_head(gaussian_hl, title, chk, hl_charge_mult, method, mem, nprocs),
                   "\n", extra);
}

void FileIO::write_gau_mol_com_RE(const char* path, int natoms, int* atypes, double* x,
                                  const char* title, const char* chk, const char* charge_mult,
                                  const char* method, int mem, int /*nodes*/, int nprocs,
                                  const std::string& extra)
{
    write_qc_input(*this, "Writing gaussian com file ", path, natoms, atypes, x,
                   gaussian_head(gaussian_re, title, chk, charge_mult, method, mem, nprocs), "\n",
                   extra);
}

// ---- ORCA -------------------------------------------------------------------

static std::string orca_head(const char* job, const char* method, const char* basis,
                             int maxcore, int nprocs, const std::string* output_block,
                             const char* charge_mult)
{
    std::string head = std::string("! ") + job + " " + method + " " + basis + " NoUseSym\n\n";
    head += format_string("%%MaxCore %d\n%%PAL NPROCS %d END\n\n", maxcore, nprocs);
    if (output_block) head += *output_block + "\n";
    head += std::string("*xyz ") + charge_mult + "\n";
    return head;
}

void FileIO::write_orca_mol_inp_HL(const char* path, int natoms, int* atypes, double* x,
                                   int maxcore, int nprocs, const char* method, const char* basis,
                                   const std::string& extra)
{
    write_qc_input(*this, "Writing ORCA inp file ", path, natoms, atypes, x,
                   orca_head("SP", method, basis, maxcore, nprocs, &orca_output_block,
                             hl_charge_mult),
                   "*\n", extra);
}

void FileIO::write_orca_mol_inp_RE(const char* path, int natoms, int* atypes, double* x,
                                   int maxcore, int nprocs, const char* charge_mult,
                                   const char* method, const char* basis, const std::string& extra)
{
    write_qc_input(*this, "Writing ORCA inp file ", path, natoms, atypes, x,
                   orca_head("opt freq", method, basis, maxcore, nprocs, nullptr, charge_mult),
                   "*\n", extra);
}

// ---- Q-Chem -----------------------------------------------------------------

typedef std::vector<std::pair<const char*, const char*>> RemLines;

// A $rem section: job, method and basis, then the job's own keywords, all
// padded so that every value starts in column 17; every job ends with the
// symmetry switches.
static std::string qchem_rem(const char* job, const char* method, const char* basis,
                             const RemLines& more)
{
    RemLines lines = {{"JOBTYPE", job}, {"METHOD", method}, {"BASIS", basis}};
    lines.insert(lines.end(), more.begin(), more.end());
    lines.insert(lines.end(), {{"symmetry", "off"}, {"sym_ignore", "true"}});
    std::string rem = "$rem\n";
    for (const auto& line : lines) rem += format_string("%-16s%s\n", line.first, line.second);
    return rem + "$end\n\n";
}

static std::string qchem_head(const char* charge_mult)
{
    return std::string("$molecule\n") + charge_mult + "\n";
}

static const char* const qchem_molecule_end = "$end\n\n";

void FileIO::write_qchem_mol_inp_HL(const char* path, int natoms, int* atypes, double* x,
                                    int /*count*/, int /*ppn*/, const char* method,
                                    const char* basis, const std::string& extra)
{
    const std::string tail = qchem_molecule_end +
                             qchem_rem("SP", method, basis, {{"EXCHANGE", "wb97x"}, {"gui", "2"}});
    write_qc_input(*this, "Writing Q-Chem inp file ", path, natoms, atypes, x,
                   qchem_head(hl_charge_mult), tail, extra);
}

// Optimisation, then frequencies on the optimised geometry read back.
void FileIO::write_qchem_mol_inp_RE(const char* path, int natoms, int* atypes, double* x,
                                    int /*count*/, int /*ppn*/, const char* charge_mult,
                                    const char* method, const char* basis,
                                    const std::string& extra)
{
    const std::string tail =
        qchem_molecule_end + qchem_rem("opt", method, basis, {}) +
        "@@@\n\n$molecule\n  read\n$end\n\n" +
        qchem_rem("freq", method, basis, {{"iprint", "10000000"}, {"gui", "2"}});
    write_qc_input(*this, "Writing Q-Chem inp file ", path, natoms, atypes, x,
                   qchem_head(charge_mult), tail, extra);
}
