// The input-generation command, run as a real process in a scratch directory
// with a controlled environment.

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <set>
#include <tuple>

#include "test_veska_inp_golden.h"

extern char** environ;

namespace {

// Runs the command as `argv0 args...` without this process's VESKA_*
// variables, with `env` added; returns the exit status and standard output.
std::pair<int, std::string> run_command(std::vector<std::string> args, std::vector<std::string> env = {},
                                        std::string argv0 = VESKA_INP_EXE)
{
    for (char** e = environ; *e; e++)
        if (strncmp(*e, "VESKA_", 6) != 0) env.push_back(*e);
    args.insert(args.begin(), argv0);
    std::vector<char*> argv, envp;
    for (auto& s : args) argv.push_back(&s[0]);
    for (auto& s : env) envp.push_back(&s[0]);
    argv.push_back(nullptr);
    envp.push_back(nullptr);
    FILE* out = tmpfile();  // not in the directory under test
    pid_t pid = fork();
    if (pid == 0) {
        dup2(fileno(out), 1);
        execve(VESKA_INP_EXE, argv.data(), envp.data());
        _exit(127);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    std::string text;
    rewind(out);
    for (int ch; (ch = fgetc(out)) != EOF;) text += static_cast<char>(ch);
    fclose(out);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, text};
}

const std::string start = "*** Transport Veska Input Generation ...\n";
const std::string done = "Writting run script file 'run.sh' ...\n*** Succsessfully done.\n";
const std::string plain = start + "Writing config file \"veska.inp\" ... \n" + done;
const std::string run_sh = "#!/bin/sh\n\npython $VESKA_ROOT/bin/veska.py &> log &\n\n";

std::string writing(const std::string& file) { return "Writing config file \"" + file + "\" ... \n"; }
std::string warning(const std::string& name, const std::string& value)
{
    return "WARNING: " + name + " value \"" + value + "\" holds '!', '#' or '=' and will not read back "
           "the same from the configuration file\n";
}
std::string config(const std::string& f) { return "  veska_transport_inp Output config file is " + f + "\n"; }

}  // namespace

TEST(Command, OptionsAndEnvironment)
{
    const std::string terse = golden("terse.inp"), verbose = golden("verbose.inp");
    const std::string engine = "  compute_engine  = 1      ! 1 = Gaussian, 2 = ORCA, 3 = QCHEM";
    const std::string exe = "  qc_exe          = g09    ! g09/g16 or fullpath/orca or qchem";
    const std::string verbose_mol =
        edit(insert_before(verbose, verbose_lat_cutoff, golden_vector_lines), {{crystal_default, mol_default}});
    const std::string terse_mol = insert_before(terse, terse_lat_cutoff, golden_vector_lines);
    struct Case {
        std::vector<std::string> args, env, files;  // files present before the run
        std::string out, file, text;                // file "" : none written
    } cases[] = {
        {{}, {}, {}, plain, "veska.inp", terse},
        {{}, {}, {"y.cif", "x.cif", "a.mol"}, plain, "veska.inp",  // the first CIF by name
         edit(terse, {{crystal_default, "  crystal         = x.cif\n"}})},
        {{"-config", "my.inp", "-verbose", "-mol"}, {}, {"run.sh"},
         config("my.inp") + start + writing("my.inp") + done, "my.inp", verbose_mol},
        // prefixes select the first entry they begin with; unknown words and a bare "-c" are ignored
        {{"-c", "-configfile", "-x.inp", "-molecule", "-verbosely", "--mol", "zzz"}, {}, {},
         config("-x.inp") + start + writing("-x.inp") + done, "-x.inp", verbose_mol},
        {{"-verbose", "-mol", "-terse", "-cif", "-qchem", "-orca"}, {}, {}, plain, "veska.inp",
         edit(terse, {{engine, "  compute_engine  = 2      ! 1 = Gaussian, 2 = ORCA, 3 = QCHEM\n"},
                      {exe, "  qc_exe          = fullpath/orca    ! g09/g16 or fullpath/orca or qchem\n"}})},
        {{"-config", "a.inp", "-config", "b.inp"}, {}, {},
         config("a.inp") + config("b.inp") + start + writing("b.inp") + done, "b.inp", terse},
        {{"-verbose", "-config"}, {}, {}, "WARNING: -config needs a file name; keeping veska.inp\n" + plain,
         "veska.inp", verbose},
        {{"-config", "no/such/dir.inp"}, {}, {}, config("no/such/dir.inp") + start + done, "", ""},
        // the old format ignores name, kind, engine, environment and module flag
        {{"-oldconfig", "-orca", "-config", "x.inp", "-cif", "-module"},
         {"VESKA_QC_EXE=/opt/g16", "VESKA_MODULE_QC=g16"}, {},
         config("x.inp") + start + writing("config.txt") + done, "config.txt",
         edit(golden("config.inp"), {{old_crystal_default, "molecule        2 mol1.mol mol2.mol\n"}})},
        {{"-module"}, {}, {}, plain, "veska.inp", edit(terse, {{module_off, "  module_qc = gaussian/g09.e01\n"}})},
        {{}, {"VESKA_MODULE_QC="}, {}, plain, "veska.inp", edit(terse, {{module_off, "  module_qc = \n"}})},
        {{"-qchem", "-mol"},
         {"VESKA_JOB_SCHED=slurm", "VESKA_JOB_QUEUE=gpu", "VESKA_QC_EXE=/opt/qc/bin/qchem",
          "VESKA_QC_NODES=abc", "VESKA_QC_PPN= 16x", "VESKA_MODULE_QC=qchem/5.4"},
         {"b.mol", "a.mol"}, plain, "veska.inp",
         edit(terse_mol, {{"  sched_type      = pbs    ! pbs, slurm, lsf, or local",
                           "  sched_type      = slurm    ! pbs, slurm, lsf, or local\n"},
                          {"  queue_name      = workq", "  queue_name      = gpu\n"},
                          {engine, "  compute_engine  = 3      ! 1 = Gaussian, 2 = ORCA, 3 = QCHEM\n"},
                          {exe, "  qc_exe          = /opt/qc/bin/qchem    ! g09/g16 or fullpath/orca or qchem\n"},
                          {module_off, "  module_qc = qchem/5.4\n"},
                          {"  qc_nodes        = 1", "  qc_nodes        = 0\n"},
                          {"  qc_ppn          = 8", "  qc_ppn          = 16\n"},
                          {crystal_default, "  molecule        = 2 a.mol b.mol\n"}})},
        // values that would not read back are written as given, with a warning
        {{}, {"VESKA_QC_EXE=g16 ! fast", "VESKA_JOB_QUEUE=q#1"}, {},
         start + warning("VESKA_JOB_QUEUE", "q#1") + warning("VESKA_QC_EXE", "g16 ! fast") +
             writing("veska.inp") + done, "veska.inp",
         edit(terse, {{"  queue_name      = workq", "  queue_name      = q#1\n"},
                      {exe, "  qc_exe          = g16 ! fast    ! g09/g16 or fullpath/orca or qchem\n"}})},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.args) + testing::PrintToString(c.env));
        ScratchDir dir;
        for (const std::string& f : c.files) put_file(f, "x\n");
        auto r = run_command(c.args, c.env);
        EXPECT_EQ(r.first, 0);
        EXPECT_EQ(r.second, c.out);
        EXPECT_EQ(c.file.empty() ? c.text : read_text_file(c.file), c.text);
        EXPECT_EQ(read_text_file("run.sh"), run_sh);  // truncated when present
        std::set<std::string> want(c.files.begin(), c.files.end()), have;  // nothing else written
        want.insert({"run.sh", c.file.empty() ? "run.sh" : c.file});
        for (const auto& e : std::filesystem::directory_iterator(".")) have.insert(e.path().filename());
        EXPECT_EQ(have, want);
    }
}

// Banner and usage, with the program named after the last "/" or "\\".
TEST(Command, HelpPrintsTitleAndUsageAndWritesNothing)
{
    ScratchDir dir;
    const std::string usage = golden("usage.txt"), exe = "veska_transport_inp";
    for (const auto& [opt, argv0, name] : {std::tuple<std::string, std::string, std::string>{"-h", VESKA_INP_EXE, exe},
                                          {"-help", VESKA_INP_EXE, exe}, {"-hx", VESKA_INP_EXE, exe},
                                          {"--help", "C:\\tools\\vinp", "vinp"}, {"-h", "plain", "plain"}}) {
        auto r = run_command({"-mol", opt, "-config"}, {}, argv0);
        EXPECT_EQ(r.first, 0);
        std::string want = usage;
        for (size_t at = 0; (at = want.find(exe, at)) != std::string::npos; at += name.size())
            want.replace(at, exe.size(), name);
        EXPECT_EQ(r.second, want) << argv0;
    }
    EXPECT_TRUE(std::filesystem::is_empty("."));
}
