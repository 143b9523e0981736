#pragma once

// Constants and small rules that every room of the module shares.

#include <numbers>

#include "kzt5cmrg/record.h"

inline constexpr double kPi = std::numbers::pi;
inline constexpr double kGiro = 2.0 * std::numbers::pi;  // full circle [rad]
inline constexpr double kRadPerGon = std::numbers::pi / 200.0;
inline constexpr double kKmPerMetro = 0.001;
inline constexpr double kSigmaZeroPriori = 1e-6;

inline constexpr int kSlot = 6;         // coefficients of an equation row
inline constexpr int kSlotVuoto = -1;   // number of the unknown in an empty slot

enum StatoDistanze : int { kSenzaDistanze = 1, kConDistanze = 2 };
enum StatoSolutore : int { kSolutoreRiuscito = 1, kSolutoreFallito = 100 };

// An eccentricity up to these lengths is not reduced [m]: in the equations, and elsewhere.
inline constexpr double kSogliaEccEquazioni = 0.001;
inline constexpr double kSogliaEcc = 0.01;

// Whether a value was given. A NaN is a value; the limit itself is neither given nor missing.
constexpr bool Dato(double valore) { return !(valore >= kNonDato); }
constexpr bool Mancante(double valore) { return valore > kNonDato; }

// Eccentricity of the set-up [m]; one that was not given is none.
constexpr double Eccentricita(const TStaCr& stazione) {
  return Mancante(stazione.EccDistanza) ? 0.0 : stazione.EccDistanza;
}
