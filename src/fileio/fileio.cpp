#include "fileio.h"

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

template <typename T>
static void free_per_molecule(T**& arrays, int n)
{
    if (!arrays) return;
    for (int i = 0; i < n; i++) delete[] arrays[i];
    delete[] arrays;
    arrays = nullptr;
}

template <typename T>
static void free_flat(T*& array)
{
    delete[] array;
    array = nullptr;
}

void FileIO::free_molecule_arrays()
{
    free_per_molecule(atypes_mol, nmols);
    free_per_molecule(x_mol, nmols);
    free_per_molecule(x_s_mol, nmols);
    free_per_molecule(prin_moment, nmols);
    free_flat(natoms_mol);
    free_flat(x_com);
    free_flat(x_s_com);
    free_flat(mol_mass);
    free_flat(mol_id);
    free_flat(re_mol_index);
    free_flat(re_unique_list);
    free_flat(hl_mol_index);
    free_flat(hl_unique_list);
}
