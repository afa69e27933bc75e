#ifndef VESKA_WRITER_TEXT_H
#define VESKA_WRITER_TEXT_H

// Helpers shared by the structure writers and the quantum-chemistry input
// writers: every file is composed in memory first and then written in one
// go, so a file is either complete or absent.

#include <string>

#include "fileio.h"

// Element symbol of index i for output: one character when the table's
// second character is a blank, else two. An index outside the table is a
// caller error, reported with the atom number and the file being written.
std::string output_element_symbol(FileIO& fio, int i, int atom, const char* path);

// Writes `text` to `path`. Returns false when the file cannot be opened
// (the caller reports it in its own words). A failure while writing (a
// full disk) removes the partial regular file and ends the process with a
// message naming it.
bool write_whole_file(const char* path, const std::string& text);

// The module's verbose switch: off, and nothing turns it on. When on, the
// writers announce each file as "<what><path> ..." (path quoted on request).
void announce_output(const char* what, const char* path, bool quoted);

#endif
