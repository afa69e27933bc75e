#include "fileio.h"

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
