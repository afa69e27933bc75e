// MOL reader through the structure driver, as a configuration with one
// molecule file uses it: fractional coordinates and bond files included.

#include "fileio.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    run_reader(data, size, "in.mol", [](const char* path) {
        FileIO io;
        io.data_dir = fuzz_scratch_path("data");
        io.input_kind = 1;
        io.nmols = 1;
        io.mol_files = {path};
        const double cell[3][3] = {{10, 0, 0}, {1, 11, 0}, {0, 2, 12}};
        for (int r = 0; r < 3; ++r)
            for (int c = 0; c < 3; ++c) io.latt_vec[r][c] = cell[r][c];
        io.read_crystal_strcuture_files(true, true);
    });
    return 0;
}
