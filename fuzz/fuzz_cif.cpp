// CIF reader (symmetry expansion and molecule separation included), then the
// structure driver on the crystal read: whole molecules and bond files.

#include "fileio.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    run_reader(data, size, "in.cif", [](const char* path) {
        FileIO io;
        io.data_dir = fuzz_scratch_path("data");
        io.read_data_cif(path, true);
        io.input_kind = 2;
        io.read_crystal_strcuture_files(true, true);
    });
    return 0;
}
