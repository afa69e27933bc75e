// Template expansion: the values a job script may name as @NAME@.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "job_compose.h"

namespace {

std::string str(const char* s) { return s ? s : ""; }

std::string suffix(const JobText& t) { return t.index.empty() ? "" : "-" + t.index; }

struct NamedValue {
    const char* name;
    std::string (*get)(const JobText&);
};

// clang-format off
const NamedValue kValues[] = {
    {"WORK", [](const JobText& t) { return t.js.work_dir; }},
    {"INPUT", [](const JobText& t) { return str(t.request.input_name) + suffix(t); }},
    {"MARKER", [](const JobText& t) { return str(t.request.marker_file) + suffix(t); }},
    {"INDEX", [](const JobText& t) { return t.index; }},
    {"TAG", [](const JobText& t) { return str(t.request.job_tag); }},
    {"NODES", [](const JobText& t) { return std::to_string(t.request.nodes); }},
    {"PPN", [](const JobText& t) { return std::to_string(t.request.ppn); }},
    {"SLOTS", [](const JobText& t) { return std::to_string(t.request.nodes * t.request.ppn); }},
    {"QUEUE", [](const JobText& t) { return t.js.queue_name; }},
    {"NODELIST", [](const JobText& t) { return t.js.nodelist; }},
    {"LIST", [](const JobText& t) { return array_list(t.request.count, t.request.indexes); }},
    {"STDOUT", [](const JobText& t) {
         std::string dir = t.request.kind->stdout_in_directory ? str(t.request.directory) + "/" : "";
         return dir + "stdout-" + str(t.request.job_tag) + (t.array() ? t.dialect.stdout_array_tail : "");
     }},
    {"JOBNAME", [](const JobText& t) {
         std::string name = t.request.kind->lsf_name + str(t.request.job_tag);
         return t.array() ? name + "[" + t.value("LIST") + "]" : name;
     }},
    {"AREA", [](const JobText& t) { return str(t.request.kind->area); }},
    {"SUBMIT_CD", [](const JobText& t) { return str(t.dialect.submit_dir_cd); }},
    {"SUBMIT_ECHO", [](const JobText& t) { return str(t.dialect.submit_dir_echo); }},
    {"QC_EXE", [](const JobText& t) { return t.js.qc_exe; }},
    {"FORMCHK", [](const JobText& t) { return t.js.formchk_exe; }},
    {"ORCA_2MKL", [](const JobText& t) { return t.js.orca_2mkl_exe; }},
    {"ORCA_ARGS", [](const JobText& t) { return t.js.orca_args; }},
    {"SCRATCH", [](const JobText& t) { return t.js.scratch; }},
    {"HL_SCRATCH", [](const JobText& t) {
         bool indexed = t.array() && t.scheduled();
         return t.expand(indexed ? t.dialect.hl_scratch_array : t.dialect.hl_scratch);
     }},
    {"RE_SCRATCH", [](const JobText& t) { return t.expand(t.dialect.re_scratch); }},
    // The local ORCA job works in its scratch directory by name; the
    // scheduled ones through the current directory after changing into it.
    {"DATADIR_REF", [](const JobText& t) { return std::string(t.array() ? "$DataDir" : "${DataDir}"); }},
    {"SCRATCH_CD", [](const JobText& t) { return std::string(t.scheduled() ? "${SCRDIR}" : "$SCRDIR"); }},
    {"COPY_FROM", [](const JobText& t) { return std::string(t.scheduled() ? "$CurrDir" : "$SCRDIR"); }},
    {"COPY_TEST", [](const JobText& t) {
         return std::string(t.scheduled() ? "$DataDir != $CurrDir" : "$CurrDir != $DataDir");
     }},
    {"DIR", [](const JobText& t) { return str(t.request.directory); }},
    {"PROGRAM", [](const JobText& t) { return str(t.request.program); }},
    {"TRANS_INT_FILES", [](const JobText& t) { return t.js.trans_int_files; }},
};
// clang-format on

}  // namespace

JobText::JobText(const Jobscript& js_, const JobDialect& dialect_, const JobRequest& request_)
    : js(js_), dialect(dialect_), request(request_)
{
}

std::string JobText::value(const std::string& name) const
{
    for (const NamedValue& v : kValues)
        if (name == v.name) return v.get(*this);
    // Only the templates of this unit are expanded, so this is a slip in them.
    fprintf(stderr, "job_scripts: template names unknown value @%s@\n", name.c_str());
    abort();
}

std::string JobText::expand(const char* tmpl) const
{
    std::string result;
    for (const char* p = tmpl; *p;) {
        const char* open = strchr(p, '@');
        const char* close = open ? strchr(open + 1, '@') : nullptr;
        if (!close) {
            result += p;
            break;
        }
        result.append(p, open);
        result += value(std::string(open + 1, close));
        p = close + 1;
    }
    return result;
}

void JobText::add(const char* tmpl) { out += expand(tmpl); }

void JobText::members(void (*member)(JobText&), const char* opener)
{
    if (!array()) {
        member(*this);
        return;
    }
    if (scheduled()) {
        index = dialect.index_var;
        member(*this);
    } else {
        for (int i = 0; i < request.count; ++i) {
            index = std::to_string(request.indexes ? request.indexes[i] : i + 1);
            if (opener) add(opener);
            member(*this);
        }
    }
    index.clear();
}

std::string array_list(int count, const int* indexes)
{
    if (!indexes) return "1-" + std::to_string(count);
    std::string list;
    for (int i = 0; i < count; ++i) list += (i ? "," : "") + std::to_string(indexes[i]);
    return list;
}
