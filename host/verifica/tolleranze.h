#pragma once

// How much two readings of the same thing may differ.

#include <algorithm>

#include "host/approssimate/visuali.h"
#include "host/modello.h"

inline constexpr double kSigma = 3.0;  // differences beyond 3 sigma are reported
inline constexpr double kRadiceDue = 1.4142135623730951;
inline constexpr double kSqmZenitMinimo = 0.001;   // of a zenith angle, refraction apart [gon]
inline constexpr double kSqmDistMinimo = 0.001;    // where the options give none [m]
inline constexpr double kRaggioTerra = 6371000.0;  // [m]

// Standard deviation of a distance by the options [m].
inline double SqmDistanza(const Rete& rete, double distanza) {
  constexpr double kMetriPerChilometro = 1000.0;
  const TOpzCr& o = rete.Opzioni;
  return std::max(kSqmDistMinimo, o.SqmDistCost + o.SqmDistProp * distanza / kMetriPerChilometro);
}

// Standard deviations of a direction and of a zenith angle [rad].
inline double SqmDirezione(const Rete& rete) {
  return std::max(rete.Opzioni.SqmDir, kSqmZenitMinimo / 10.0) * kRadDaGon;
}
inline double SqmZenit(const Rete& rete) {
  return std::max(rete.Opzioni.SqmDir, kSqmZenitMinimo) * kRadDaGon;
}
