// XYZ reader.

#include "fileio.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    run_reader(data, size, "in.xyz", [](const char* path) {
        FileIO io;
        io.debug_print = true;
        io.read_data_xyz(path);
    });
    return 0;
}
