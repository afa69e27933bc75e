#include "veska_inp.h"

void VeskaInp::set_varables_default() {}
