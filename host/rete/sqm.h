#pragma once

// Standard deviations where neither the options nor a field book give one: those of a usual total
// station.

#include "host/rete/modello.h"

namespace compensa {

inline constexpr double kSqmDirezioneUsuale = 0.0010;    // of an angle [gon]
inline constexpr double kSqmDistCostanteUsuale = 0.003;  // [m]
inline constexpr double kSqmDistPropUsuale = 0.002;      // [m/km]

// Of a distance where only the proportion to the directions matters [m].
inline constexpr double kSqmDistanzaIgnota = 0.01;

// A standard deviation that was given and weighs, else the other.
constexpr double OAltrimenti(double sqm, double altrimenti) {
  return sqm > 0.0 && Assegnato(sqm) ? sqm : altrimenti;
}

// Of an angle [gon].
constexpr double SqmDirezione(const TOpzCr& opzioni) {
  return OAltrimenti(opzioni.SqmDir, kSqmDirezioneUsuale);
}

}  // namespace compensa
