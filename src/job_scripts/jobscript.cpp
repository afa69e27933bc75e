// Jobscript's own small operations: scheduler selection and file names.

#include <strings.h>

#include "job_scripts.h"

void Jobscript::parse_scheduling_type()
{
    job_sched_type = 0;
    for (int i = 0; i < 4; ++i) {
        if (strcasecmp(sched_type.c_str(), sched_names[i].c_str()) == 0) {
            job_sched_type = i;
            return;
        }
    }
}

std::string Jobscript::getFileName(const std::string& path)
{
    size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(slash + 1);
}
