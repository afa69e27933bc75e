// Input-generation command: writes the workflow configuration and run.sh.
#include "transport.h"

int main(int, char**)
{
    Transport veska;
    veska.set_varables_default();
    return 0;
}
