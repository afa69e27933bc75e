// One-call conversion of a CIF into a P1 CIF of whole molecules. Kept apart
// from the writers because it pulls in the CIF reader and structure driver.

#include <cstdio>

#include "fileio.h"

void FileIO::write_cif_unwrap(const char* cif_in, const char* cif_out, bool verbose,
                              bool write_bonds)
{
    read_data_cif(cif_in, verbose);
    input_kind = 2;
    read_crystal_strcuture_files(verbose, write_bonds);
    printf("Writting crystal file \"%s\"\n", cif_out);
    fflush(stdout);
    write_unitcell_cif(cif_out, nmols, natoms_mol, atypes_mol, x_s_mol);
}
