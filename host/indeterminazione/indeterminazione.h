#pragma once

// Why a network could not be adjusted: what its observations leave free.

#include "host/risultati.h"

// Fills in MotiLiberi of the adjustments that ended because the observations do not fix the
// network; others are left as they are. Memory that cannot be had leaves them without. To be called
// when the run has ended.
void SpiegaIndeterminazione(Risultati& risultati);
