// The small Python scripts that the job scripts and drivers lean on: the
// output checks, the Q-Chem checkpoint renaming and the scripts that gather
// reorganisation energies from the normal-mode runs.

#include <vector>

#include "mmutil.h"
#include "script_output.h"
#include "transport.h"

namespace {

// ---- output checks: exit status 0 for a normal end, 1 otherwise, silent --

// The argument and existence tests every check begins with.
const char* const check_py_head[] = {
    "import os,sys",
    "# Exit status 0 when the @ENGINE@ output named on the command line ended normally, 1 otherwise.",
    "",
    "if len(sys.argv) == 1:",
    "    # sys.stdout.write('Usage: python @SCRIPT@ <@ENGINE@ output>\\n')",
    "    sys.exit(1)",
    "",
    "Input=sys.argv[1]",
    "if not os.path.isfile(Input):",
    "    # sys.stdout.write('%s does not exist.\\n' % Input)",
    "    sys.exit(1)",
    "",
};

// Only the last line counts: a log that goes on after a normal end belongs
// to a later step that did not finish. An empty log has no normal end.
const char* const gaussian_log_check_tail[] = {
    "GauNormEndStr=' Normal termination of Gaussian'",
    "",
    "with open(Input, errors='replace') as f:",
    "    lines = f.readlines()",
    "last = lines[-1] if lines else ''",
    "if last.find(GauNormEndStr) != -1:",
    "    # sys.stdout.write('Normal termination of Gaussian detected.\\n')",
    "    sys.exit(0)",
    "else:",
    "    # sys.stdout.write('No normal termination of Gaussian found.\\n')",
    "    sys.exit(1)",
};

// ORCA and Q-Chem print their closing words once, anywhere near the end.
const char* const whole_output_check_tail[] = {
    "if @MARKER@ in open(Input).read():",
    "    # sys.stdout.write('Normal termination of @ENGINE@ detected.\\n')",
    "    sys.exit(0)",
    "else:",
    "    # sys.stdout.write('No normal termination of @ENGINE@ found.\\n')",
    "    sys.exit(1)",
};

struct OutputCheck {
    const char* script;
    const char* engine;
    const char* marker;  // Python literal searched in the whole output; nullptr: Gaussian's last line
};
const OutputCheck gaussian_log_check_py = {"gaussian_log_check.py", "Gaussian", nullptr};
const OutputCheck orca_out_check_py = {"orca_out_check.py", "ORCA", "'ORCA TERMINATED NORMALLY'"};
const OutputCheck qchem_out_check_py = {"qchem_out_check.py", "Q-Chem", "'Have a nice day.'"};

const char* const qchem_fchk_ext_lowercase_py[] = {
    "import os,sys",
    "import shutil",
    "# Renames every .FChk file of the folder given to .fchk; an existing .fchk is replaced.",
    "if len(sys.argv) == 1:",
    "    sys.exit(1)",
    "directory = sys.argv[1]",
    "if not os.path.isdir(directory):",
    "    sys.exit(1)",
    "",
    "for name in sorted(os.listdir(directory)):",
    "    if not name.endswith('.FChk'):",
    "        continue",
    "    new_path = os.path.join(directory, name[:name.rfind('.')] + '.fchk')",
    "    if os.path.exists(new_path):",
    "        os.remove(new_path)",
    "    shutil.move(os.path.join(directory, name), new_path)",
};

// ---- reorganisation energies from the normal-mode runs -------------------

// Follows the banner.
const char* const exp_re_py_head[] = {
    "",
    "import os",
    "import sys",
    "from shutil import copyfile",
    "",
    "sys.stdout.write(\"Calculating NM data ...\\n\")",
    "",
    "lamda_line = \"Total reorganization energy\"",
    "",
    "# cm-1 to meV",
    "ener_scale = 0.1239842",
    "",
    "cwd = os.getcwd()",
    "access_rights = 493",
    "",
    "if not os.path.isdir(\"evc\"):",
    "    os.mkdir(\"evc\", access_rights)",
    "",
    "os.chdir(\"evc\")",
    "cwd2 = os.getcwd()",
    "",
};

// One carrier's energies (@C@ is e or h), in meV; zero when the run
// reported none.
const char* const exp_re_py_read_lamda[] = {
    "@C@_lam1 = 0.0",
    "@C@_lam2 = 0.0",
    "@C@_lam = 0.0",
    "if os.path.isfile(\"evc.cart.dat\"):",
    "    with open(\"evc.cart.dat\") as f:",
    "        for line in f:",
    "            if lamda_line in line:",
    "                items = line.split()",
    "                @C@_lam1 = float(items[-2]) * ener_scale",
    "                @C@_lam2 = float(items[-1]) * ener_scale",
    "                @C@_lam = @C@_lam1 + @C@_lam2",
    "                break",
    "else:",
    "    sys.stdout.write(\"  No evc.cart.dat in %s\\n\" % os.getcwd())",
};

const char* const exp_re_py_write_lamda_eh[] = {
    "with open(\"lamda.dat\", \"w\") as f:",
    "    f.write(\"elec:\\n\")",
    "    f.write(\"lam lam1 lam2 [meV]\\n\")",
    "    f.write(\"%12.8f %12.8f %12.8f\\n\" % (e_lam, e_lam1, e_lam2))",
    "    f.write(\"hole:\\n\")",
    "    f.write(\"lam lam1 lam2 [meV]\\n\")",
    "    f.write(\"%12.8f %12.8f %12.8f\\n\" % (h_lam, h_lam1, h_lam2))",
    "",
};

// The normal-mode program's reading of the Gaussian runs.
const std::vector<const char*> kGaussianEvcExts = {"fchk", "log"};

// One molecule of a reorganisation-energy script. With `evc_cmd` the
// molecule's run directories are laid out and the program run first;
// without it the results of earlier runs are only gathered.
std::string re_molecule_text(int mol, const char* indent, const char* evc_cmd, const std::string& data_dir)
{
    std::string name = format_string("mol%d", mol);
    std::string text = format_string("sys.stdout.write(\"%sTreating mol%02d ...\\n\")\n", indent, mol);
    text += "os.chdir(cwd2)\n";
    if (evc_cmd) text += python_mkdir(name);
    text += format_string("os.chdir(\"%s\")\n", name.c_str());
    for (const ScriptCarrier& c : kScriptCarriers) {
        if (evc_cmd) text += python_mkdir(c.dir) + evc_copy_lines(c, mol, kGaussianEvcExts);
        text += format_string("os.chdir(\"%s\")\n", c.dir);
        if (evc_cmd) text += evc_cmd;
        text += expand_template(table_text(exp_re_py_read_lamda), {{"C", c.letter}}) + "os.chdir(\"..\")\n";
    }
    text += table_text(exp_re_py_write_lamda_eh);
    text += format_string(
        "copyfile(\"elec/NM.dat\", \"../mol%d_NM-e.dat\")\n"
        "copyfile(\"hole/NM.dat\", \"../mol%d_NM-h.dat\")\n\n",
        mol, mol);
    text += format_string(
        "copyfile(\"elec/NM.dat\", \"../../%s/NM%02d-e.dat\")\n"
        "copyfile(\"hole/NM.dat\", \"../../%s/NM%02d-h.dat\")\n\n",
        data_dir.c_str(), mol, data_dir.c_str(), mol);
    return text;
}

}  // namespace

// ---- the writers ---------------------------------------------------------

static void write_output_check(Transport& t, const OutputCheck& check, int line)
{
    std::string text = table_text(check_py_head);
    text += check.marker ? table_text(whole_output_check_tail) : table_text(gaussian_log_check_tail);
    TemplateValues values = {
        {"ENGINE", check.engine}, {"SCRIPT", check.script}, {"MARKER", check.marker ? check.marker : ""}};
    create_directory(t.scr_dir.c_str());
    write_script_file(t.scr_dir + "/" + check.script, expand_template(text, values), line);
}

void Transport::write_gaussian_log_check_py_file()
{
    write_output_check(*this, gaussian_log_check_py, 5301);
}

void Transport::write_orca_out_check_py_file()
{
    write_output_check(*this, orca_out_check_py, 5302);
}

void Transport::write_qchem_out_check_py_file()
{
    write_output_check(*this, qchem_out_check_py, 5303);
}

void Transport::write_qchem_fchk_ext_lowercase_py_file()
{
    create_directory(scr_dir.c_str());
    write_script_file(scr_dir + "/qchem_fchk_ext_lowercase.py", table_text(qchem_fchk_ext_lowercase_py), 5304);
}

static void write_re_script(Transport& t, const char* name, const std::vector<int>& ids, const char* indent,
                            const char* evc_cmd, int line)
{
    std::string text = python_banner("reorganisation energies and normal modes") + table_text(exp_re_py_head);
    for (int id : ids) text += re_molecule_text(id, indent, evc_cmd, t.data_dir);
    create_directory(t.scr_dir.c_str());
    write_script_file(t.scr_dir + "/" + name, text, line);
}

void Transport::write_exp_re_py_file(const char* name, const char* evc_cmd)
{
    write_re_script(*this, name, molecule_ids(nmols), "", evc_cmd ? evc_cmd : "", 5305);
}

void Transport::write_exp_re_py_file_unique(const char* name, const char* evc_cmd)
{
    write_re_script(*this, name, unique_re_ids(*this), "  ", evc_cmd ? evc_cmd : "", 5306);
}

void Transport::write_get_re_py_file(const char* name)
{
    write_re_script(*this, name, molecule_ids(nmols), "  ", nullptr, 5307);
}

void Transport::write_get_re_py_file_unique(const char* name)
{
    write_re_script(*this, name, unique_re_ids(*this), "  ", nullptr, 5308);
}
