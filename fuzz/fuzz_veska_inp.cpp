// veska.inp reader: blocks, keys, value readings and the final checks.

#include "fuzz_support.h"
#include "veska_inp.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    run_reader(data, size, "veska.inp", [](const char* path) {
        VeskaInp v;
        v.read_veska_inp(path, true);
    });
    return 0;
}
