#pragma once

// Free motions in words: who moves, how, and what to measure.

#include <string>

#include "host/giudizio/indeterminazione/moti.h"

namespace compensa {

// A point that moves by itself in plan.
MotoLibero MotoDiPunto(const Risultati& risultati, const SistemaLibero& sistema,
                       const NodoLibero& libero);

// Points that move together in plan. `sqm` is that of a motion that is not quite free.
MotoLibero MotoDiInsieme(const Risultati& risultati, const SistemaLibero& sistema,
                         const MotoInsieme& insieme, double sqm = kAssente);

// Heights and instrument heights.
MotoLibero MotoDiQuote(const Risultati& risultati, const SistemaLibero& sistema,
                       const MotoInsieme& insieme, double sqm = kAssente);

// The first of the points by name, and how many more there are.
std::string ElencoPunti(const Risultati& risultati, const std::vector<int>& punti);

// The a-priori standard deviation of a displacement, in brackets; empty for kAssente.
std::string TestoSqmMoto(double sqm);

}  // namespace compensa
