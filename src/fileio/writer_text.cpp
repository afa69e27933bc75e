#include "writer_text.h"

#include <cstdarg>
#include <cstdio>
#include <vector>

#include "fatal.h"
#include "mmutil.h"

static bool bverbose_local = false;

void append_format(std::string& text, const char* fmt, ...)
{
    va_list args;
    va_start(args, fmt);
    va_list again;
    va_copy(again, args);
    const int n = vsnprintf(nullptr, 0, fmt, args);
    va_end(args);
    if (n > 0) {
        std::vector<char> buf(static_cast<size_t>(n) + 1);
        vsnprintf(buf.data(), buf.size(), fmt, again);
        text.append(buf.data(), static_cast<size_t>(n));
    }
    va_end(again);
}

std::string output_element_symbol(FileIO& fio, int i, int atom, const char* path)
{
    if (i < 0 || i > 103)
        veska_fatal("fileio", 3601, -1, stdout,
                    "Unknown element index %d of atom %d written to %s\n", i, atom + 1, path);
    char symbol[3] = {0, 0, 0};
    fio.find_element_name_from_index(i, symbol);
    return symbol;
}

bool write_whole_file(const char* path, const std::string& text)
{
    const int rc = write_text_file(path, text);
    if (rc == WRITE_FAILED) veska_fatal("fileio", 3602, -1, stderr, "Failed to write output file %s\n", path);
    return rc == WRITE_OK;
}

void announce_output(const char* what, const char* path, bool quoted)
{
    if (!bverbose_local) return;
    if (quoted)
        printf("%s\"%s\" ...\n", what, path);
    else
        printf("%s%s ...\n", what, path);
}
