// config.inp reader: the old line format.

#include "fuzz_support.h"
#include "veska_inp.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    run_reader(data, size, "config.inp", [](const char* path) {
        VeskaInp v;
        v.read_config_inp(path, true);
    });
    return 0;
}
