#pragma once

// Why a network could not be adjusted: what its observations leave free.

#include "host/rete/risultati.h"

namespace compensa {

// Fills in MotiLiberi and GradiLiberi of the adjustments that ended because the observations do not
// fix the network, or were not run for that reason, and of those that came to an end but did not
// converge or have standard deviations beyond all bounds. Memory that cannot be had leaves them
// without. To be called when the run has ended.
void SpiegaIndeterminazione(const Rete& rete, Risultati& risultati);

}  // namespace compensa
