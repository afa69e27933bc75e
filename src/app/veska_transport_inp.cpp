// Input-generation command: writes a starting workflow configuration
// (veska.inp, or the old config.txt) and the launcher run.sh into the
// current directory.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "mmutil.h"
#include "transport.h"

namespace {

enum class Option { config, verbose, terse, cif, mol, module, oldconfig, orca, qchem, help };

struct OptionEntry {
    const char* text;
    Option option;
};

// Tried in this order; an argument selects the first entry it begins with.
const OptionEntry option_table[] = {
    {"-config", Option::config},   {"-verbose", Option::verbose},
    {"-terse", Option::terse},     {"-cif", Option::cif},
    {"-mol", Option::mol},         {"-module", Option::module},
    {"-oldconfig", Option::oldconfig}, {"-orca", Option::orca},
    {"-qchem", Option::qchem},     {"-h", Option::help},
    {"--help", Option::help},
};

struct CommandState {
    std::string program;
    std::string config_file = "veska.inp";
    bool verbose = false;
    int input_kind = 2;
    bool module = false;
    bool oldconfig = false;
    int engine = 1;
};

// The text variables that end up in veska.inp as values.
const char* const text_variables[] = {"VESKA_JOB_SCHED", "VESKA_JOB_QUEUE", "VESKA_QC_EXE",
                                      "VESKA_MODULE_QC"};

std::string program_name(const char* word)
{
    if (!word) return "veska_transport_inp";
    const char* base = word;
    for (const char* p = word; *p; p++)
        if (*p == '/' || *p == '\\') base = p + 1;
    return base;
}

void title_line(const char* text)
{
    printf("%s\n", text);
    fflush(stdout);
}

void print_VESKA_title()
{
    const char* stars = "*******************************************************************";
    title_line(stars);
    title_line("*   VESKA Transport Calculation Utility, Version 2.0.0            *");
    title_line("*   Made by the VESKA transport developers                        *");
    title_line(stars);
}

void print_usage(const std::string& prog)
{
    print_VESKA_title();
    const char* p = prog.c_str();
    printf("Transport Veska Input Generation\n\n");
    printf("Usage: %s [opts]\n", p);
    printf("      -config veska.inp : set config file, default to veska.inp\n");
    printf("      -cif              : use cif file as molecule input (default)\n");
    printf("      -mol              : use mol file as molecule input\n");
    printf("      -module           : set to use environment module flag\n");
    printf("      -terse            : generate terse veska.inp (default)\n");
    printf("      -verbose          : generate verbose veska.inp\n");
    printf("      -oldconfig        : generate old config.inp\n");
    printf("      -orca             : use ORCA compute engine\n");
    printf("      -qchem            : use Q-Chem compute engine\n\n");
    printf("e.g.: %s\n", p);
    static const char* const examples[] = {" -config veska.inp", " -verbose", " -cif", " -mol",
                                           " -module", " -config veska.inp -verbose",
                                           " -oldconfig", " -orca"};
    for (const char* e : examples) printf("      %s%s\n", p, e);
    printf("\n");
    fflush(stdout);
}

const OptionEntry* find_option(const char* arg)
{
    for (const OptionEntry& e : option_table)
        if (strncmp(arg, e.text, strlen(e.text)) == 0) return &e;
    return nullptr;
}

// Reads the options; later ones override earlier ones, unknown arguments
// are ignored. Returns false when the usage text was asked for.
bool parse_options(int argc, char** argv, CommandState& s)
{
    for (int i = 1; i < argc; i++) {
        const OptionEntry* e = find_option(argv[i]);
        if (!e) continue;
        switch (e->option) {
        case Option::config:
            if (i + 1 >= argc) {
                printf("WARNING: %s needs a file name; keeping %s\n", argv[i],
                       s.config_file.c_str());
                break;
            }
            s.config_file = argv[++i];
            printf("  %s Output config file is %s\n", s.program.c_str(), s.config_file.c_str());
            break;
        case Option::verbose: s.verbose = true; break;
        case Option::terse: s.verbose = false; break;
        case Option::cif: s.input_kind = 2; break;
        case Option::mol: s.input_kind = 1; break;
        case Option::module: s.module = true; break;
        case Option::oldconfig: s.oldconfig = true; break;
        case Option::orca: s.engine = 2; break;
        case Option::qchem: s.engine = 3; break;
        case Option::help: return false;
        }
    }
    return true;
}

// The writers do not quote values, and the readers cut a value at "!" or
// "#"; such an environment value would not survive a round trip.
void warn_unreadable_environment()
{
    for (const char* name : text_variables) {
        const char* value = getenv(name);
        if (value && strpbrk(value, "!#="))
            printf("WARNING: %s value \"%s\" holds '!', '#' or '=' and will not read back the "
                   "same from the configuration file\n",
                   name, value);
    }
}

void write_run_script()
{
    // Not reported when it cannot be written: the command still succeeds.
    write_text_file("run.sh", "#!/bin/sh\n\npython $VESKA_ROOT/bin/veska.py &> log &\n\n");
}

void generate(const CommandState& s)
{
    printf("*** Transport Veska Input Generation ...\n");
    Transport veska;
    veska.set_varables_default();
    if (s.oldconfig) {
        // The old format is always written for MOL input, without the
        // engine, the environment or the module flag.
        veska.write_config_inp("config.txt", 1, false);
    } else {
        veska.set_compute_engine(s.engine);
        veska.get_environment_variables();
        warn_unreadable_environment();
        if (s.module) veska.set_environment_module_gau_flag(true);
        if (s.verbose)
            veska.write_veska_inp_verbose(s.config_file.c_str(), s.input_kind, false);
        else
            veska.write_veska_inp_terse(s.config_file.c_str(), s.input_kind, false);
    }
    printf("Writting run script file 'run.sh' ...\n");
    write_run_script();
    printf("*** Succsessfully done.\n");
}

}  // namespace

int main(int argc, char** argv)
{
    CommandState state;
    state.program = program_name(argc > 0 ? argv[0] : nullptr);
    if (!parse_options(argc, argv, state)) {
        print_usage(state.program);
        return 0;
    }
    generate(state);
    return 0;
}
