#ifndef VESKA_WRITERS_TEST_SUPPORT_H
#define VESKA_WRITERS_TEST_SUPPORT_H

// Writer tests run in a fresh temporary directory and return afterwards.

#include "test_support.h"

// C, H and Cl: one- and two-letter symbols; -12.34567 rounds at four decimals.
inline int types3[3] = {6, 1, 17};
inline double coords3[9] = {0.0, 1.5, -12.34567, 10.25, -0.5, 2.0, 3.14159, 2.71828, -1.0};

using WriterDirTest = ScratchDirTest;

#endif
