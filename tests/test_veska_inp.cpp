// The configuration: the veska.inp block grammar and the config.inp line
// grammar, the key table and the checks after reading; the layouts the
// writers produce, against data/golden; and the input-generation command run
// as a real process with a controlled environment.
//
// The layouts in their default state (defaults, engine 1, no environment, no
// module flag) live in data/golden: terse.inp, verbose.inp, config.inp (input
// kind 2, no CIF file in the directory) and full.inp (the full state of a
// fresh Transport). Tests derive the variants by line edits and values set by key.

#include <sys/stat.h>

#include <memory>
#include <type_traits>

#include "test_support.h"
#include "transport.h"

static_assert(std::is_base_of_v<VeskaInp, Transport> && std::is_base_of_v<FileIO, VeskaInp> &&
              std::is_base_of_v<Jobscript, VeskaInp> && !std::is_polymorphic_v<Transport>);

namespace {

const char* const kEnvironment[] = {"VESKA_JOB_SCHED", "VESKA_JOB_QUEUE", "VESKA_QC_EXE",
                                    "VESKA_QC_NODES",  "VESKA_QC_PPN",    "VESKA_MODULE_QC"};
void clear_veska_environment()
{
    for (const char* name : kEnvironment) unsetenv(name);
}

// Reads `text` as veska.inp in a scratch directory.
std::unique_ptr<VeskaInp> read_inp(const std::string& text)
{
    ScratchDir dir;
    clear_veska_environment();
    put_file("veska.inp", text);
    auto v = std::make_unique<VeskaInp>();
    v->read_veska_inp("veska.inp", false);
    return v;
}

// The lattice-vector lines of MOL input in veska.inp, with their empty line.
const std::string vector_lines = "  vector_a        =     8.098000     0.000000     0.000000\n"
                                 "  vector_b        =     0.000000     5.953000     0.000000\n"
                                 "  vector_c        =    -4.888095     0.000000     7.138882\n\n";
const char* const terse_lat_cutoff = "  lat_cutoff      = 4       ! for neighbor list construction";
const char* const verbose_lat_cutoff = "  lat_cutoff      = 4      ! for neighbor list construction";
const char* const module_off = "#  module_qc = gaussian/g09.e01";
const char* const crystal_default = "  crystal         = naphthalene.cif";
const char* const old_crystal_default = "crystal         naphthalene.cif";

// Replaces each whole line `first` (given without its line feed, found
// exactly once) by the lines `second` (each with its line feed).
std::string edit(std::string text, const std::vector<std::pair<std::string, std::string>>& edits)
{
    for (const auto& e : edits) {
        size_t at = text.find("\n" + e.first + "\n");
        EXPECT_NE(at, std::string::npos) << "golden line not found: " << e.first;
        EXPECT_EQ(text.find("\n" + e.first + "\n", at + 1), std::string::npos) << e.first;
        if (at != std::string::npos) text.replace(at + 1, e.first.size() + 1, e.second);
    }
    return text;
}

// Gives each key its value: the word after "= " on the one line starting
// "  key " is replaced, the rest of the line kept.
std::string with(std::string text, const std::vector<std::pair<std::string, std::string>>& values)
{
    for (const auto& [key, value] : values) {
        size_t at = text.find("\n  " + key + " ");
        EXPECT_NE(at, std::string::npos) << "golden key not found: " << key;
        EXPECT_EQ(text.find("\n  " + key + " ", at + 1), std::string::npos) << key;
        if (at == std::string::npos) continue;
        size_t first = text.find("= ", at) + 2;
        text.replace(first, text.find_first_of(" \n", first) - first, value);
    }
    return text;
}

std::string insert_before(const std::string& text, const std::string& line, const std::string& lines)
{
    return edit(text, {{line, lines + line + "\n"}});
}

using Writer = bool (VeskaInp::*)(const char*, int, bool);
const Writer terse = &VeskaInp::write_veska_inp_terse, verbose = &VeskaInp::write_veska_inp_verbose,
             old = &VeskaInp::write_config_inp;

// Writes with `w` (`full`: the full state, unannounced) in a fresh directory
// holding `files`; returns the text.
std::string written(VeskaInp& v, Writer w, int kind, std::vector<std::string> files = {}, bool full = false)
{
    ScratchDir dir;
    for (const std::string& f : files) put_file(f, "x\n");
    testing::internal::CaptureStdout();
    EXPECT_TRUE(full ? v.write_veska_inp("out.inp", false, false) : (v.*w)("out.inp", kind, false));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), full ? "" : "Writing config file \"out.inp\" ... \n");
    return read_text_file("out.inp");
}

}  // namespace

TEST(VeskaInpReader, GrammarKeysAndChecksAfterReading)
{
    // Blocks, comments, quotes, tabs, CR LF, aliases, key case, repeated and
    // partial values, one 5000-character value: data/inputs/veska_grammar.inp.
    const std::string long_text(5000, 'n');
    auto v = read_inp(read_text_file(data_file("inputs/veska_grammar.inp")));
    EXPECT_EQ(v->qc_inp_append, "%chk=a\n / kept\npop=full\r\nlast line without end");
    EXPECT_EQ(v->qc_method + v->mater_name + v->queue_name, "b3lypmy matlong");
    EXPECT_EQ(v->nsimu, 2000);
    EXPECT_DOUBLE_EQ(v->temp + v->tsimu, 850.0);
    EXPECT_EQ(v->super_cell[0] * 100 + v->super_cell[2], 201);
    EXPECT_EQ(v->nei_scell[1] * 10 + v->nei_scell[2], 53);  // the third is not given: unchanged
    EXPECT_TRUE(v->module_gau_flag && v->module_mpich2_gnu_flag && !v->sched_job_array);
    EXPECT_EQ(v->module_qc + v->module_mpich2, "g16" + long_text);
    EXPECT_EQ(v->run_ppn + v->qc_memory + v->lat_site_energy, 117);
    EXPECT_DOUBLE_EQ(v->latt_vec[1][2], 3.5);
    EXPECT_EQ(v->homo_adjustment, (std::vector<int>{1, -2, 3}));
    EXPECT_EQ(v->scratch, "'/scr'");  // stripped text keeps its quotes
    EXPECT_EQ(v->mol_files, (std::vector<std::string>{"a.mol", "b.mol"}));
    EXPECT_EQ(v->nmols * 10 + v->input_kind, 21);
    // after reading: default data-file name, LSF node list, uniqueness copies, lines freed
    EXPECT_EQ(v->veska_dat_file + "|" + v->nodelist, "veska-marcus.dat|alpha beta");
    EXPECT_FALSE(v->unique_uc_mol_one_calc_flag || v->unique_nei_mol_one_calc_flag || v->unique_2mol_calc_flag);
    EXPECT_TRUE(v->unique_RE_calc_flag && v->lines.empty() && v->nlines == 0);

    // Keys whose effect depends on order and case.
    auto a = read_inp("&transport\nqc_basis_re = def2-svp\nqc_basis = 6-31g\n/\n");
    EXPECT_EQ(a->qc_basis + " " + a->qc_basis_re, "6-31g 6-31g");
    EXPECT_EQ(read_inp("&transport\nqc_exe = /opt/orca/orca\ncompute_engine = 2\n/\n")->qc_exe, "fullpath/orca");
    auto w = read_inp("&transport\nsched_type = LSF\nnodelist = a,b\nveska_dat_file = r.dat\n/\n");
    EXPECT_EQ(w->nodelist + " " + w->veska_dat_file, "a,b r.dat");
}

// The environment lies between the defaults and the file (veska.inp only).
// The crystal key is left to the end-to-end runs, which all go through it.
TEST(VeskaInpReader, EnvironmentAndTheOldLineGrammar)
{
    ScratchDir dir;
    clear_veska_environment();
    setenv("VESKA_JOB_QUEUE", "envq", 1);
    setenv("VESKA_QC_PPN", "12", 1);
    put_file("veska.inp", "&transport\nqc_ppn = 4\n/\n");
    put_file("config.inp", read_text_file(data_file("inputs/config_grammar.inp")));
    VeskaInp v, c;
    v.read_veska_inp("veska.inp", false);
    testing::internal::CaptureStdout();
    c.read_config_inp("config.inp", false);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Reading config file \"config.inp\" ... \n");
    clear_veska_environment();
    EXPECT_EQ(v.queue_name + std::to_string(v.run_ppn), "envq4");
    EXPECT_DOUBLE_EQ(c.do_transport_prepare + c.do_transport_submit_HL_job + c.temp + c.tsimu + c.lat_site_energy, 313.5);
    EXPECT_EQ(c.mater_name + c.qc_exe + " " + c.qc_basis_re, "a 'b'g16 6-31g");
    EXPECT_EQ(c.mol_files, (std::vector<std::string>{"m.mol"}));
    EXPECT_EQ(c.queue_name + c.veska_dat_file, "workq");  // no environment, no default data-file name here
}

static void read_in_child(const char* file, const std::string& text)
{
    clear_veska_environment();
    child_with_file(file, text);
    VeskaInp v;
    file[0] == 'v' ? v.read_veska_inp(file, false) : v.read_config_inp(file, false);
}

TEST(ConfigReaderDeathTest, Errors)
{
    ScratchDir dir;
    auto inp = [](const std::string& t) { read_in_child("veska.inp", t); };
    auto cfg = [](const std::string& t) { read_in_child("config.inp", t); };
    const auto fail = testing::ExitedWithCode(255);
    EXPECT_EXIT(inp("&transport\n Qc_Exe2 = x\n/\n"), fail, "^\nERROR  transport : veska_inp : line 649 : "
                "\n\nUnknown parameter \"Qc_Exe2\" in file veska.inp!!!\n\n$");
    EXPECT_EXIT(inp("&transport\ncompute_engine = 3\n/\n"), testing::ExitedWithCode(1),
                "line 740 : \nIncomptiable settings:\n  The compute_engine = 3, while qc_exe is set "
                "to g09\n  1 - Gaussian, 2 - ORCA, 3 - QCHEM\n$");
    EXPECT_EXIT(inp("&transport\nqc_exe = orca\n/\n"), testing::ExitedWithCode(1),
                "line 716 : \nIncomptiable settings:\n  The compute_engine = 1, while qc_exe is set to orca\n");
    EXPECT_EXIT(inp("&transport\ncompute_engine = 2\nqc_exe = g16\n/\n"), testing::ExitedWithCode(1),
                "line 728 : \nIncomptiable settings:\n");
    EXPECT_EXIT(inp("&transport\nmolecule = 3 a.mol b.mol\n/\n"), fail,
                "The key molecule announces 3 MOL files but names 2 in file veska.inp");
    EXPECT_EXIT(cfg("lat_site_energy 1\n"), fail, "line 1119 : \n\nUnknown parameter \"lat_site_energy\" "
                "in file config.inp!!!\n\nLook up the conf.out for available parameters.\n$");
    VeskaInp v;
    for (const char* path : {"missing.inp", "."}) {
        EXPECT_EXIT((dup2(2, 1), v.read_veska_inp(path, false)), fail,
                    "line 175 : \nFailed to open input file: " + std::string(path) + "\n$");
        EXPECT_EXIT((dup2(2, 1), v.read_config_inp(path, false)), fail,
                    "line 799 : \nFailed to open input file \"" + std::string(path) + "\"\n$");
    }
}

TEST(VeskaInpReader, WriteThenReadRoundTrip)
{
    ScratchDir dir;
    clear_veska_environment();
    VeskaInp out;
    out.set_varables_default();
    out.set_compute_engine(3);
    out.set_environment_module_gau_flag(true);  // every kind of value off its default
    out.module_qc = "qchem/6"; out.do_transport_run_ME = 1; out.do_transport_get_re_evc = 0;
    out.sched_type = "slurm"; out.queue_name = "gpu"; out.nodelist = "n1 n2"; out.sched_job_array = false;
    out.qc_basis = "6-31g(d)"; out.qc_basis_re = "def2-svp"; out.qc_memory = 8000; out.run_ppn = 24;
    out.scratch = "/scr"; out.temp = 250.5; out.end_temp = 400; out.ratetype = "marcus";
    out.chargetype = "h"; out.lat_cutoff = 4.5; out.nsimu = 300; out.tsnap = 2.5; out.nei_scell[0] = 2;
    out.super_cell[1] = 3; out.latt_vec[2][0] = -1.25; out.bond_dis_scale = 1.2; out.HL_unique_mol = 0;
    out.lat_site_energy = 1; out.output_level = 3; out.veska_dat_file = "r.dat"; out.eckart_mirror = 1;
    out.homo_adjustment = {1, -1}; out.input_kind = 1; out.nmols = 2; out.mol_files = {"a.mol", "b.mol"};
    VeskaInp in, v, c;
    testing::internal::CaptureStdout();
    ASSERT_TRUE(out.write_veska_inp("first.inp", false, false) && out.write_veska_inp_verbose("verbose.inp", 1, false) &&
                out.write_config_inp("config.inp", 1, false));
    in.read_veska_inp("first.inp", false);
    ASSERT_TRUE(in.write_veska_inp("second.inp", false, false));
    EXPECT_EQ(read_text_file("second.inp"), read_text_file("first.inp"));
    // The starting layouts read back too (the old one with its own reader).
    v.read_veska_inp("verbose.inp", false);
    c.read_config_inp("config.inp", false);
    testing::internal::GetCapturedStdout();
    for (VeskaInp* r : {&v, &c}) {
        EXPECT_EQ(r->qc_exe + r->queue_name + r->qc_basis_re, "qchemgpudef2-svp");
        EXPECT_DOUBLE_EQ(r->latt_vec[2][0] + r->nsimu, 298.75);
        EXPECT_EQ(r->mol_files, (std::vector<std::string>{"mol1.mol", "mol2.mol"}));
    }
    EXPECT_EQ(v.module_qc, "qchem/6");
}

// The layouts as the command writes them are checked by the command test;
// here what it cannot reach: modules in the old layout, number notation and
// the full state with its input kinds and adjustment lists.
TEST(ConfigWriters, LayoutVariantsAndFullState)
{
    Transport f, v;
    f.set_varables_default();
    const std::string full = golden("full.inp");
    EXPECT_EQ(written(f, nullptr, 0, {}, true), full);
    f.input_kind = 1, f.nmols = 2;
    f.mol_files = {"p.mol", "q.mol"};  // the state, not the directory, names them
    EXPECT_EQ(written(f, nullptr, 0, {}, true), edit(insert_before(full, "/", "  molecule        = 2 p.mol q.mol\n"),
                                                    {{"  homo_adjustment =", "  homo_adjustment = 0 0\n"},
                                                     {"  lumo_adjustment =", "  lumo_adjustment = 0 0\n"}}));
    f.set_environment_module_gau_flag(true);  // without the MPI flag: an empty line follows
    f.input_kind = 2, f.nmols = 0, f.crystal_file = "cryst/pentacene.cif";
    const std::string crystal = insert_before(full, "/", "  crystal         = cryst/pentacene.cif\n"),
                      module = "  module_qc       = gaussian/g09.e01    ! module load gaussian/g09.e01\n";
    EXPECT_EQ(written(f, nullptr, 0, {}, true), insert_before(crystal, "  # Temperature Dependence", module + "\n"));
    f.set_environment_module_mpich2_gnu_flag(true);  // with it: none
    EXPECT_EQ(written(f, nullptr, 0, {}, true), insert_before(crystal, "  # Temperature Dependence", module));

    v.set_varables_default();
    v.set_environment_module_gau_flag(true);
    v.module_qc = "g16/c01";
    EXPECT_EQ(written(v, old, 1, {"z.mol"}),
              edit(insert_before(golden("config.inp"), "qc_method       b3lyp", "module_qc   g16/c01\n\n"),
                   {{old_crystal_default, "molecule        1 z.mol\n"}}));
    v.set_environment_module_gau_flag(false);
    v.temp = 300.5, v.tsimu = 1e7, v.tsnap = 1000000.0, v.lat_cutoff = 12.3456789;
    EXPECT_EQ(written(v, terse, 2), edit(with(golden("terse.inp"), {{"temp", "300.5"}, {"tsimu", "1e+07"},
                                                                   {"tsnap", "1e+06"}, {"lat_cutoff", "12.3457"}}),
                                         {{module_off, "#  module_qc = g16/c01\n"}}));  // commented out, with its value
}

TEST(ConfigWriters, DataDirectoryAndUnopenableFile)
{
    ScratchDir dir;
    Transport v;
    v.set_varables_default();
    v.data_dir = "out";
    testing::internal::CaptureStdout();
    EXPECT_TRUE(v.write_veska_inp_terse("veska.inp", 2, true));
    EXPECT_TRUE(v.write_config_inp("c.inp", 2, true));  // the directory is reused
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Writing config file \"out/veska.inp\" ... \nWriting config file \"out/c.inp\" ... \n");
    struct stat st;
    ASSERT_EQ(stat("out", &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0750u & ~static_cast<unsigned>(umask(umask(0))));
    EXPECT_EQ(read_text_file("out/veska.inp"), golden("terse.inp"));
    EXPECT_EQ(names("."), "out");
    v.data_dir = "no/such/dir";  // one level only: parents are not created
    testing::internal::CaptureStdout();
    for (Writer w : {terse, verbose, old}) EXPECT_FALSE((v.*w)("missing/x.inp", 1, false));
    EXPECT_FALSE(v.write_veska_inp_terse("veska.inp", 2, true));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(names("."), "out");
}

namespace {

std::string quoted(const std::string& s)
{
    std::string q = "'";
    for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return q + "'";
}

// Runs the command as `argv0 args...` without the VESKA_* variables of this
// process, with `env` added; returns the exit status and the output.
std::pair<int, std::string> run_command(const std::vector<std::string>& args, const std::vector<std::string>& env = {},
                                        const std::string& argv0 = VESKA_INP_EXE)
{
    std::string line = "exec env";
    for (const char* name : kEnvironment) line += std::string(" -u ") + name;
    for (const std::string& e : env) line += " " + quoted(e);
    line += " bash -c 'exec -a \"$0\" " VESKA_INP_EXE " \"$@\"' " + quoted(argv0);
    for (const std::string& a : args) line += " " + quoted(a);
    std::string out;
    int status = run(line, &out);
    return {status, out};
}

const std::string start = "*** Transport Veska Input Generation ...\n";
const std::string done = "Writting run script file 'run.sh' ...\n*** Succsessfully done.\n";
const std::string plain = start + "Writing config file \"veska.inp\" ... \n" + done;

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
    const std::string verbose_mol =
        edit(insert_before(verbose, verbose_lat_cutoff, vector_lines), {{crystal_default, "  molecule        = 2 mol1.mol mol2.mol\n"}});
    const std::string terse_mol = insert_before(terse, terse_lat_cutoff, vector_lines);
    struct Case {
        std::vector<std::string> args, env, files;          // files present before the run
        std::string text, file = "veska.inp", out = plain;  // file "" : none written
    } cases[] = {
        {{}, {}, {"y.cif", "x.cif", "a.mol"}, with(terse, {{"crystal", "x.cif"}})},  // the first CIF by name
        // the last -config wins; prefixes select the first entry they begin with; unknown words and a
        // bare "-c" are ignored; a run.sh there is replaced
        {{"-config", "a.inp", "-c", "-configfile", "-x.inp", "-molecule", "-verbosely", "--mol", "zzz"}, {}, {"run.sh"},
         verbose_mol, "-x.inp", config("a.inp") + config("-x.inp") + start + writing("-x.inp") + done},
        {{"-verbose", "-mol", "-terse", "-cif", "-qchem", "-orca"}, {}, {},
         with(terse, {{"compute_engine", "2"}, {"qc_exe", "fullpath/orca"}})},
        {{"-verbose", "-config"}, {}, {}, verbose, "veska.inp", "WARNING: -config needs a file name; keeping veska.inp\n" + plain},
        {{"-config", "no/such/dir.inp"}, {}, {}, "", "", config("no/such/dir.inp") + start + done},
        // the old format ignores name, kind, engine, environment and module flag
        {{"-oldconfig", "-orca", "-config", "x.inp", "-cif", "-module"}, {"VESKA_QC_EXE=/opt/g16", "VESKA_MODULE_QC=g16"}, {},
         edit(golden("config.inp"), {{old_crystal_default, "molecule        2 mol1.mol mol2.mol\n"}}), "config.txt",
         config("x.inp") + start + writing("config.txt") + done},
        {{"-module"}, {}, {}, edit(terse, {{module_off, "  module_qc = gaussian/g09.e01\n"}})},
        {{}, {"VESKA_MODULE_QC="}, {}, edit(terse, {{module_off, "  module_qc = \n"}})},
        {{"-qchem", "-mol"},
         {"VESKA_JOB_SCHED=slurm", "VESKA_JOB_QUEUE=gpu", "VESKA_QC_EXE=/opt/qc/bin/qchem", "VESKA_QC_NODES=abc",
          "VESKA_QC_PPN= 16x", "VESKA_MODULE_QC=qchem/5.4"}, {"b.mol", "a.mol"},
         edit(with(terse_mol, {{"sched_type", "slurm"}, {"queue_name", "gpu"}, {"compute_engine", "3"},
                               {"qc_exe", "/opt/qc/bin/qchem"}, {"qc_nodes", "0"}, {"qc_ppn", "16"}}),
              {{module_off, "  module_qc = qchem/5.4\n"}, {crystal_default, "  molecule        = 2 a.mol b.mol\n"}})},
        // values that would not read back are written as given, with a warning
        {{}, {"VESKA_QC_EXE=g16 ! fast", "VESKA_JOB_QUEUE=q#1"}, {},
         with(terse, {{"queue_name", "q#1"}, {"qc_exe", "g16 ! fast"}}), "veska.inp",
         start + warning("VESKA_JOB_QUEUE", "q#1") + warning("VESKA_QC_EXE", "g16 ! fast") + writing("veska.inp") + done},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.args) + testing::PrintToString(c.env));
        ScratchDir dir;
        for (const std::string& f : c.files) put_file(f, "x\n");
        auto r = run_command(c.args, c.env);
        EXPECT_EQ(r.first, 0);
        EXPECT_EQ(r.second, c.out);
        EXPECT_EQ(c.file.empty() ? c.text : read_text_file(c.file), c.text);
        EXPECT_EQ(read_text_file("run.sh"), "#!/bin/sh\n\npython $VESKA_ROOT/bin/veska.py &> log &\n\n");  // truncated
        std::set<std::string> want(c.files.begin(), c.files.end());  // nothing else written
        want.insert({"run.sh", c.file.empty() ? "run.sh" : c.file});
        std::string listing;
        for (const std::string& f : want) listing += (listing.empty() ? "" : " ") + f;
        EXPECT_EQ(names("."), listing);
    }
}

// Banner and usage, with the program named after the last "/" or "\\".
TEST(Command, HelpPrintsTitleAndUsageAndWritesNothing)
{
    ScratchDir dir;
    const std::string usage = golden("usage.txt"), exe = "veska_transport_inp";
    for (const auto& [opt, argv0, name] : {std::tuple<std::string, std::string, std::string>{"-h", VESKA_INP_EXE, exe},
                                          {"--help", "C:\\tools\\vinp", "vinp"}}) {
        auto r = run_command({"-mol", opt, "-config"}, {}, argv0);
        EXPECT_EQ(r.first, 0);
        std::string want = usage;
        for (size_t at = 0; (at = want.find(exe, at)) != std::string::npos; at += name.size())
            want.replace(at, exe.size(), name);
        EXPECT_EQ(r.second, want) << argv0;
    }
    EXPECT_TRUE(fs::is_empty("."));
}
