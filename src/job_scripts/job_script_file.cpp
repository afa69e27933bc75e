// The one routine every writer ends in: header, module line, body and
// ending composed from the dialect and kind tables, then the file.

#include <cstdio>

#include "job_compose.h"
#include "mmutil.h"

namespace {

bool header_line_wanted(HeaderWhen when, const JobText& t)
{
    switch (when) {
    case kPlainOnly: return !t.array();
    case kArrayOnly: return t.array();
    case kWithNodelist: return !t.js.nodelist.empty();
    case kOutputEarly: return !t.request.kind->slurm_output_last;
    case kOutputLate: return t.request.kind->slurm_output_last;
    default: return true;
    }
}

void write_header(JobText& t)
{
    if (t.dialect.shebang) t.out += std::string(t.dialect.shebang) + "\n\n";
    bool any = false;
    for (const HeaderLine* line = t.dialect.lines; line->text; ++line) {
        if (!header_line_wanted(line->when, t)) continue;
        t.add(line->text);
        t.out += '\n';
        any = true;
    }
    if (any) t.out += '\n';
}

void write_module_line(JobText& t)
{
    ModuleRule rule = t.request.kind->module;
    bool qc = rule == kModuleQc || (rule == kModuleMpiButQcLocally && !t.scheduled());
    bool load = qc ? t.js.module_gau_flag : t.js.module_mpich2_gnu_flag;
    if (load) t.out += "module load " + (qc ? t.js.module_qc : t.js.module_mpich2) + "\n\n";
}

bool valid_dialect(int code) { return code >= kPbs && code <= kLocal; }

}  // namespace

std::string compose_job_script(const Jobscript& js, const JobRequest& request, int dialect)
{
    const JobKind& kind = *request.kind;
    JobText t(js, kJobDialects[dialect], request);
    write_header(t);
    if (kind.before_module) kind.before_module(t);
    write_module_line(t);
    kind.after_module(t);
    t.out += "echo \"Ending job run at `date`\"\n";
    int blanks = t.scheduled() ? kind.trailing_blanks : kind.local_trailing_blanks;
    if (kind.array) blanks += t.dialect.array_extra_blanks;
    t.out.append(blanks, '\n');
    return t.out;
}

void emit_job_script(const Jobscript& js, const JobRequest& request, int dialect)
{
    const JobKind& kind = *request.kind;
    if (dialect == kDispatch) {
        create_directory(js.jobs_dir.c_str());
        dialect = js.job_sched_type;
        if (!valid_dialect(dialect))
            veska_fatal("job_scripts", kind.dispatcher_error, -1, stderr, "Unknown job scheduling type!\n");
    }
    // The extension follows the configured scheduler, as the drivers that
    // submit the script expect; a direct call with no valid one uses its own.
    int ext = valid_dialect(js.job_sched_type) ? js.job_sched_type : dialect;
    std::string path = kind.in_jobs_dir ? js.jobs_dir + "/" : "";
    path += std::string(request.script_name ? request.script_name : "") + "." + js.script_ext[ext];

    std::string text = compose_job_script(js, request, dialect);
    int rc = write_text_file(path.c_str(), text);
    if (rc == WRITE_OPEN_FAILED) veska_fatal_open_output("job_scripts", kind.writer_error[dialect], path.c_str());
    if (js.verbose) printf("Writing gaussian job %s script %s ...\n", kJobDialects[dialect].label, path.c_str());
    if (rc == WRITE_FAILED)
        veska_fatal("job_scripts", kind.writer_error[dialect], -1, stderr, "Failed to write output file %s\n",
                    path.c_str());
}
