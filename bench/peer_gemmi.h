#ifndef VESKA_BENCH_PEER_GEMMI_H
#define VESKA_BENCH_PEER_GEMMI_H

#include <cstddef>

// gemmi's pipeline on one CIF: read, expand the listed operators to the
// full cell, merge coincident images, group atoms into molecules by
// covalent radii (distance < scale x (r_a + r_b)) and unwrap each molecule
// around its first atom. Returns the number of molecules; `natoms` gets
// the number of atoms in the cell.
size_t gemmi_whole_molecules(const char* path, double scale, size_t* natoms);

#endif
