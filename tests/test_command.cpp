// The input-generation command, run as a real process in a scratch directory
// with a controlled environment.

#include <gtest/gtest.h>

#include <cstring>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "test_veska_inp_golden.h"
#include "test_veska_inp_scratch.h"

extern char** environ;

namespace {

struct RunResult {
    int status = -1;
    std::string out;
};

// Runs the command with `args` after the program word `argv0`, the VESKA_*
// variables of this process removed and `env` ("NAME=value") added.
RunResult run_command(const std::vector<std::string>& args,
                      const std::vector<std::string>& env = {}, const char* argv0 = VESKA_INP_EXE)
{
    std::vector<std::string> envs;
    for (char** e = environ; *e; e++)
        if (strncmp(*e, "VESKA_", 6) != 0) envs.push_back(*e);
    envs.insert(envs.end(), env.begin(), env.end());
    std::vector<char*> envp, argv{const_cast<char*>(argv0)};
    for (auto& s : envs) envp.push_back(&s[0]);
    envp.push_back(nullptr);
    std::vector<std::string> argcopy = args;
    for (auto& s : argcopy) argv.push_back(&s[0]);
    argv.push_back(nullptr);

    RunResult r;
    int fds[2];
    if (pipe(fds) != 0) return r;
    pid_t pid = fork();
    if (pid == 0) {
        dup2(fds[1], 1);
        close(fds[0]);
        close(fds[1]);
        execve(VESKA_INP_EXE, argv.data(), envp.data());
        _exit(127);
    }
    close(fds[1]);
    char buf[4096];
    ssize_t n;
    while ((n = read(fds[0], buf, sizeof buf)) > 0) r.out.append(buf, n);
    close(fds[0]);
    int status = 0;
    waitpid(pid, &status, 0);
    r.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return r;
}

const std::string prog = "veska_transport_inp";
const std::string start_line = "*** Transport Veska Input Generation ...\n";
const std::string end_lines = "Writting run script file 'run.sh' ...\n*** Succsessfully done.\n";
const std::string run_sh = "#!/bin/sh\n\npython $VESKA_ROOT/bin/veska.py &> log &\n\n";

std::string writing(const std::string& file)
{
    return "Writing config file \"" + file + "\" ... \n";
}

std::string config_line(const std::string& file)
{
    return "  " + prog + " Output config file is " + file + "\n";
}

std::string usage_text(const std::string& p)
{
    std::string u = "Transport Veska Input Generation\n\nUsage: " + p + " [opts]\n"
                    "      -config veska.inp : set config file, default to veska.inp\n"
                    "      -cif              : use cif file as molecule input (default)\n"
                    "      -mol              : use mol file as molecule input\n"
                    "      -module           : set to use environment module flag\n"
                    "      -terse            : generate terse veska.inp (default)\n"
                    "      -verbose          : generate verbose veska.inp\n"
                    "      -oldconfig        : generate old config.inp\n"
                    "      -orca             : use ORCA compute engine\n"
                    "      -qchem            : use Q-Chem compute engine\n\n"
                    "e.g.: " + p + "\n";
    for (const char* e : {" -config veska.inp", " -verbose", " -cif", " -mol", " -module",
                          " -config veska.inp -verbose", " -oldconfig", " -orca"})
        u += "      " + p + e + "\n";
    return u + "\n";
}

class Command : public ScratchDirTest {};

}  // namespace

TEST_F(Command, NoArgumentsWritesTerseCifGaussianAndRunScript)
{
    RunResult r = run_command({});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, start_line + writing("veska.inp") + end_lines);
    EXPECT_EQ(slurp("veska.inp"), golden_terse);
    EXPECT_EQ(slurp("run.sh"), run_sh);
}

TEST_F(Command, ConfigVerboseMolAndPrefixMatching)
{
    touch("run.sh");  // truncated, not appended to
    RunResult r = run_command({"-config", "my.inp", "-verbose", "-mol"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, config_line("my.inp") + start_line + writing("my.inp") + end_lines);
    std::string verbose_mol = replace_line(
        insert_before(golden_verbose, verbose_lat_cutoff, golden_vector_lines), new_crystal_default,
        new_mol_default);
    EXPECT_EQ(slurp("my.inp"), verbose_mol);
    EXPECT_EQ(slurp("run.sh"), run_sh);
    EXPECT_FALSE(exists("veska.inp"));

    // -configfile selects -config and -molecule selects -mol; unknown words
    // and a bare "-c" are ignored.
    r = run_command({"-c", "-configfile", "-x.inp", "-molecule", "-verbosely", "--mol", "zzz"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, config_line("-x.inp") + start_line + writing("-x.inp") + end_lines);
    EXPECT_EQ(slurp("-x.inp"), verbose_mol);
}

TEST_F(Command, LaterOptionsOverrideEarlierOnes)
{
    RunResult r = run_command({"-verbose", "-mol", "-terse", "-cif", "-qchem", "-orca"});
    EXPECT_EQ(r.status, 0);
    std::string expected = replace_line(golden_terse,
                                        "  compute_engine  = 1      ! 1 = Gaussian, 2 = ORCA, 3 = QCHEM",
                                        "  compute_engine  = 2      ! 1 = Gaussian, 2 = ORCA, 3 = QCHEM\n");
    expected = replace_line(expected, "  qc_exe          = g09    ! g09/g16 or fullpath/orca or qchem",
                            "  qc_exe          = fullpath/orca    ! g09/g16 or fullpath/orca or qchem\n");
    EXPECT_EQ(slurp("veska.inp"), expected);

    r = run_command({"-config", "a.inp", "-config", "b.inp"});
    EXPECT_EQ(r.out, config_line("a.inp") + config_line("b.inp") + start_line + writing("b.inp") +
                         end_lines);
    EXPECT_FALSE(exists("a.inp"));
    EXPECT_EQ(slurp("b.inp"), golden_terse);
}

TEST_F(Command, OldConfigIgnoresNameKindEngineEnvironmentAndModule)
{
    RunResult r = run_command({"-oldconfig", "-orca", "-config", "x.inp", "-cif", "-module"},
                              {"VESKA_QC_EXE=/opt/g16", "VESKA_MODULE_QC=g16"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, config_line("x.inp") + start_line + writing("config.txt") + end_lines);
    EXPECT_EQ(slurp("config.txt"), replace_line(golden_old, "crystal         naphthalene.cif",
                                                "molecule        2 mol1.mol mol2.mol\n"));
    EXPECT_FALSE(exists("x.inp") || exists("veska.inp"));
    EXPECT_EQ(slurp("run.sh"), run_sh);
}

TEST_F(Command, HelpPrintsUsageAndWritesNothing)
{
    const std::string title =
        "*******************************************************************\n"
        "*   VESKA Transport Calculation Utility, Version 2.0.0            *\n";
    for (const char* arg : {"-h", "-help", "-hx", "--help"}) {
        RunResult r = run_command({"-mol", arg, "-config"});
        EXPECT_EQ(r.status, 0) << arg;
        ASSERT_EQ(r.out.compare(0, title.size(), title), 0) << r.out;
        // Four title lines of 67 characters, the last one a row of stars.
        std::vector<std::string> lines;
        std::istringstream in(r.out);
        for (std::string l; std::getline(in, l);) lines.push_back(l);
        ASSERT_GT(lines.size(), 4u);
        for (int i = 0; i < 4; i++) EXPECT_EQ(lines[i].size(), 67u) << lines[i];
        EXPECT_EQ(lines[2].compare(0, 4, "*   "), 0);
        EXPECT_EQ(lines[2].back(), '*');
        EXPECT_EQ(lines[3], std::string(67, '*'));
        size_t after_title = 4 * 68;
        EXPECT_EQ(r.out.substr(after_title), usage_text(prog));
    }
    EXPECT_TRUE(std::filesystem::is_empty("."));

    // The program name is the last part of the first word, after "/" or "\".
    RunResult r = run_command({"--help"}, {}, "C:\\tools\\vinp");
    EXPECT_EQ(r.out.substr(4 * 68), usage_text("vinp"));
    r = run_command({"-h"}, {}, "plain");
    EXPECT_EQ(r.out.substr(4 * 68), usage_text("plain"));
}

TEST_F(Command, ConfigAsLastArgumentKeepsDefaultName)
{
    RunResult r = run_command({"-verbose", "-config"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out.rfind("WARNING: ", 0), 0u) << r.out;
    EXPECT_NE(r.out.find(start_line + writing("veska.inp") + end_lines), std::string::npos);
    EXPECT_EQ(slurp("veska.inp"), golden_verbose);
}

TEST_F(Command, UnwritableConfigIsSkippedSilently)
{
    RunResult r = run_command({"-config", "no/such/dir.inp"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, config_line("no/such/dir.inp") + start_line + end_lines);
    EXPECT_EQ(slurp("run.sh"), run_sh);
}

TEST_F(Command, ModuleFlagWithAndWithoutEnvironment)
{
    run_command({"-module"});
    EXPECT_EQ(slurp("veska.inp"), replace_line(golden_terse, "#  module_qc = gaussian/g09.e01",
                                               "  module_qc = gaussian/g09.e01\n"));
    // An empty VESKA_MODULE_QC turns the flag on with an empty name.
    run_command({}, {"VESKA_MODULE_QC="});
    EXPECT_EQ(slurp("veska.inp"),
              replace_line(golden_terse, "#  module_qc = gaussian/g09.e01", "  module_qc = \n"));
}

TEST_F(Command, EnvironmentOverridesEngineAndDefaults)
{
    touch("b.mol");
    touch("a.mol");
    RunResult r = run_command({"-qchem", "-mol"},
                              {"VESKA_JOB_SCHED=slurm", "VESKA_JOB_QUEUE=gpu", "VESKA_QC_EXE=/opt/qc/bin/qchem",
                               "VESKA_QC_NODES=abc", "VESKA_QC_PPN= 16x", "VESKA_MODULE_QC=qchem/5.4"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, start_line + writing("veska.inp") + end_lines);
    std::string e = golden_terse;
    e = replace_line(e, "  sched_type      = pbs    ! pbs, slurm, lsf, or local",
                     "  sched_type      = slurm    ! pbs, slurm, lsf, or local\n");
    e = replace_line(e, "  queue_name      = workq", "  queue_name      = gpu\n");
    e = replace_line(e, "  compute_engine  = 1      ! 1 = Gaussian, 2 = ORCA, 3 = QCHEM",
                     "  compute_engine  = 3      ! 1 = Gaussian, 2 = ORCA, 3 = QCHEM\n");
    e = replace_line(e, "  qc_exe          = g09    ! g09/g16 or fullpath/orca or qchem",
                     "  qc_exe          = /opt/qc/bin/qchem    ! g09/g16 or fullpath/orca or qchem\n");
    e = replace_line(e, "#  module_qc = gaussian/g09.e01", "  module_qc = qchem/5.4\n");
    e = replace_line(e, "  qc_nodes        = 1", "  qc_nodes        = 0\n");
    e = replace_line(e, "  qc_ppn          = 8", "  qc_ppn          = 16\n");
    e = insert_before(e, terse_lat_cutoff, golden_vector_lines);
    e = replace_line(e, new_crystal_default, "  molecule        = 2 a.mol b.mol\n");
    EXPECT_EQ(slurp("veska.inp"), e);
}

TEST_F(Command, WarnsAboutEnvironmentValuesThatDoNotReadBack)
{
    RunResult r = run_command({}, {"VESKA_QC_EXE=g16 ! fast", "VESKA_JOB_QUEUE=q#1"});
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("\nWARNING: VESKA_JOB_QUEUE value \"q#1\""), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\nWARNING: VESKA_QC_EXE value \"g16 ! fast\""), std::string::npos);
    // The values are still written as given.
    EXPECT_NE(slurp("veska.inp").find("  qc_exe          = g16 ! fast    ! g09/g16"), std::string::npos);
}
