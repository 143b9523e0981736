#pragma once

// Warnings on input that gives a plausible but wrong result: nothing is missing, the adjustment
// runs, and only a number that looks odd tells that something is not what the options say it is.

#include "host/base/diagnostica.h"
#include "host/giudizio/controlli/rilievi.h"
#include "host/rete/modello.h"
#include "host/rete/risultati.h"

namespace compensa {

// Before the adjustment: what coordinates, readings and options tell by themselves and against each
// other, as far as it may spoil the results. Of many failed closures only one is told; of many
// warnings those of single points and readings are cut, not those of the whole network, the options
// and the project. Coordinates in metres, approximate ones filled in.
void AvvertiPrima(const Rete& rete, Diagnostica& diagnostica);

// After it: what sigma zero, redundancy numbers, residuals and corrections tell. The network names
// the places only.
void AvvertiDopo(const Rete& rete, const Risultati& risultati, Diagnostica& diagnostica);

// Coordinates, readings and options against each other: what is wrong with the whole network and,
// unless its readings are, ControllaScarti on each of them. In no special order.
Rilievi ControllaPlausibilita(const Rete& rete);

}  // namespace compensa
