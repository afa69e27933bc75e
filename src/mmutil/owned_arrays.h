#ifndef VESKA_OWNED_ARRAYS_H
#define VESKA_OWNED_ARRAYS_H

// Release of the plain heap arrays the workspace owns: each pointer is
// deleted and left null, so a second release does nothing.

template <typename T>
inline void free_array(T*& array)
{
    delete[] array;
    array = nullptr;
}

// An array of n rows, each its own array; rows may be null.
template <typename T>
inline void free_rows(T**& rows, int n)
{
    if (!rows) return;
    for (int i = 0; i < n; i++) delete[] rows[i];
    delete[] rows;
    rows = nullptr;
}

#endif
