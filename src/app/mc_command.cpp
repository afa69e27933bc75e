#include "mc_command.h"

#include <sched.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace {

[[noreturn]] void usage_error(const char* program, const std::string& what, const std::string& usage)
{
    fprintf(stderr, "%s: %s\n\n%s", program, what.c_str(), usage.c_str());
    exit(2);
}

// Digits only: no sign (strtoull would wrap "-1"), no trailing text.
bool read_whole_number(const char* text, unsigned long long* value)
{
    if (!text || !isdigit((unsigned char)text[0])) return false;
    char* end;
    errno = 0;
    *value = strtoull(text, &end, 10);
    return errno == 0 && *end == '\0';
}

}  // namespace

void parse_command_line(int argc, char** argv, std::vector<NumberOption>& options,
                        const std::string& usage)
{
    const char* program = argv[0] ? argv[0] : "command";
    if (const char* slash = strrchr(program, '/')) program = slash + 1;
    for (int i = 1; i < argc; i++) {
        std::string word = argv[i];
        if (word == "-h" || word == "--help") {
            printf("%s", usage.c_str());
            exit(0);
        }
        NumberOption* option = nullptr;
        for (NumberOption& o : options)
            if (word == o.name) option = &o;
        if (!option) usage_error(program, "unknown option '" + word + "'", usage);
        if (i + 1 >= argc) usage_error(program, word + " needs a value", usage);
        unsigned long long value;
        if (!read_whole_number(argv[++i], &value) || value < option->min || value > option->max)
            usage_error(program,
                        word + " needs a whole number from " + std::to_string(option->min) +
                            " to " + std::to_string(option->max) + ", not '" + argv[i] + "'",
                        usage);
        option->given = true;
        option->value = value;
    }
}

void load_run_directory(Transport& t)
{
    t.read_veska_inp("veska.inp", false);
    t.read_crystal_strcuture_files(false, false);
    t.post_data_read_treatment();
}

int available_threads()
{
    if (const char* env = getenv("OMP_NUM_THREADS")) {
        // A list ("4,2") gives the outermost level first.
        long n = strtol(env, nullptr, 10);
        if (n > 0 && n <= 4096) return (int)n;
        printf("WARNING: OMP_NUM_THREADS = \"%s\" is not a thread count; using every core\n", env);
    }
    cpu_set_t set;
    if (sched_getaffinity(0, sizeof set, &set) == 0 && CPU_COUNT(&set) > 0) return CPU_COUNT(&set);
    unsigned n = std::thread::hardware_concurrency();
    return n > 0 ? (int)n : 1;
}
