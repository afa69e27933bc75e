#include "fileio.h"

#include "owned_arrays.h"
#include "structure_common.h"

FileIO::FileIO() {}

FileIO::~FileIO()
{
    free_cif_atom_arrays();
    free_molecule_arrays();
}

void FileIO::free_cif_atom_arrays()
{
    delete[] cif_atypes;
    delete[] cif_x_s;
    delete[] cif_x;
    delete[] cif_radius;
    cif_atypes = nullptr;
    cif_x_s = nullptr;
    cif_x = nullptr;
    cif_radius = nullptr;
}

void FileIO::free_molecule_arrays()
{
    free_rows(atypes_mol, nmols);
    free_rows(x_mol, nmols);
    free_rows(x_s_mol, nmols);
    free_rows(prin_moment, nmols);
    free_array(natoms_mol);
    free_array(x_com);
    free_array(x_s_com);
    free_array(mol_mass);
    free_array(mol_id);
    free_array(re_mol_index);
    free_array(re_unique_list);
    free_array(hl_mol_index);
    free_array(hl_unique_list);
}

void release_molecule(FileIO& f, int m)
{
    delete[] f.atypes_mol[m];
    delete[] f.x_mol[m];
    delete[] f.x_s_mol[m];
    f.atypes_mol[m] = nullptr;
    f.x_mol[m] = nullptr;
    f.x_s_mol[m] = nullptr;
    f.natoms_mol[m] = 0;
}

void allocate_molecule(FileIO& f, int m, int natoms)
{
    release_molecule(f, m);
    f.natoms_mol[m] = natoms;
    f.atypes_mol[m] = new int[(size_t)natoms]();
    f.x_mol[m] = new double[3 * (size_t)natoms]();
    f.x_s_mol[m] = new double[3 * (size_t)natoms]();
}
