#ifndef VESKA_STRUCTURE_COMMON_H
#define VESKA_STRUCTURE_COMMON_H

// Small rules shared by the structure files of this unit: the value of pi
// of the cell conversions, the stand-in for unknown elements, the one-step
// periodic wraps and the storage of one molecule.

#include "fileio.h"

// The value the cell conversions have always used; keeping it keeps the
// written coordinates identical to the last digit.
const double kCellPi = 3.1415926535898;

// Unknown elements (-1) use the dummy record 0 wherever a table is indexed.
inline int element_or_dummy(int t)
{
    return t >= 0 && t < 104 ? t : 0;
}

// A fractional component brought into [0, 1) by one step.
inline double wrap_into_cell(double v)
{
    return v < 0.0 ? v + 1.0 : (v >= 1.0 ? v - 1.0 : v);
}

// A fractional displacement brought into [-0.5, 0.5] by one step.
inline double min_image_step(double d)
{
    return d > 0.5 ? d - 1.0 : (d < -0.5 ? d + 1.0 : d);
}

// Releases molecule m's arrays and leaves null pointers and no atoms.
void release_molecule(FileIO& f, int m);
// Replaces molecule m's arrays by zeroed ones for `natoms` atoms.
void allocate_molecule(FileIO& f, int m, int natoms);

#endif
