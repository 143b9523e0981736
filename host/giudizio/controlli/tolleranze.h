#pragma once

// How much two readings of the same thing may differ.

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "host/base/unita.h"
#include "host/rete/modello.h"
#include "host/rete/visuali.h"

namespace compensa {

// How many sigmas a difference must exceed to be reported: three, or in a large network what the
// largest of so many good ones would be expected to reach.
inline double VolteSigma(std::size_t prove) {
  constexpr double kMinime = 3.0;
  const auto n = static_cast<double>(std::max<std::size_t>(prove, 1));
  return std::max(kMinime, std::sqrt(2.0 * std::log(n)));
}

inline constexpr double kSqmAngoloMinimo = 0.0001;  // [gon]
inline constexpr double kSqmZenitMinimo = 0.001;    // of a zenith angle, refraction apart [gon]
inline constexpr double kSqmDistMinimo = 0.001;     // where the options give none [m]

// Standard deviation of a distance by the options [m].
inline double SqmDistanza(const Rete& rete, double distanza) {
  const TOpzCr& o = rete.Opzioni;
  return std::max(kSqmDistMinimo, o.SqmDistCost + o.SqmDistProp * distanza / kMetriPerKm);
}

// Standard deviations of an angle, the difference of two directions, and of a zenith angle [rad].
inline double SqmAngolo(const Rete& rete) {
  return std::max(rete.Opzioni.SqmDir, kSqmAngoloMinimo) * kRadPerGon;
}
inline double SqmZenit(const Rete& rete) {
  return std::max(rete.Opzioni.SqmDir, kSqmZenitMinimo) * kRadPerGon;
}

}  // namespace compensa
