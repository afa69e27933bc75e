#ifndef VESKA_TRANSPORT_H
#define VESKA_TRANSPORT_H

// The workspace of the transport stage: configuration, crystal, job
// settings and, as the workspace grows, neighbour analysis, job
// generation and the Monte Carlo simulation.

#include "veska_inp.h"

class Transport : public VeskaInp {
public:
    Transport();
    ~Transport();
};

#endif
