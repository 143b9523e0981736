#pragma once

// What can be told after the adjustment, one subject a file.

#include "host/giudizio/controlli/rilievi.h"
#include "host/rete/risultati.h"

namespace compensa {

// Redundancy of none, sigma zero against its bounds, the largest w against its limit.
Rilievi ControllaSigmaZero(const Rete& rete, const Risultati& risultati);

// Points that nothing controls, and approximate coordinates too far for linear equations.
Rilievi ControllaPunti(const Rete& rete, const Risultati& risultati);

// Heights, whose weights are only relative, against what the options promise of a zenith angle.
Rilievi ControllaQuote(const Rete& rete, const Risultati& risultati);

// A-priori standard deviation that the options make one expect of a height difference [m]; kAssente
// where the sight has no length.
double SqmDislivelloAtteso(const Rete& rete, const Risultati& risultati,
                           const Equazione& equazione);

// Distances that fit as slope distances where they are said to be horizontal, and the reverse.
Rilievi ControllaTipiDistanza(const Rete& rete, const Risultati& risultati);

}  // namespace compensa
