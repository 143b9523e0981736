#pragma once

// What can be told after the adjustment, one subject a file.

#include "host/controlli/rilievi.h"
#include "host/risultati.h"

// Redundancy of none, sigma zero against its bounds, the largest w against its limit.
Rilievi ControllaSigmaZero(const Rete& rete, const Risultati& risultati);

// Points that nothing controls, and approximate coordinates too far for linear equations.
Rilievi ControllaPunti(const Rete& rete, const Risultati& risultati);

// Distances that fit as slope distances where they are said to be horizontal, and the reverse.
Rilievi ControllaTipiDistanza(const Rete& rete, const Risultati& risultati);
