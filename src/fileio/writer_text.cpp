#include "writer_text.h"

#include <cstdio>

#include "fatal.h"
#include "mmutil.h"

static bool bverbose_local = false;

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
    if (rc == WRITE_FAILED)
        veska_fatal("fileio", 3602, -1, stderr, "Failed to write output file %s\n", path);
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
