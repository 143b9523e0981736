#pragma once

// Constants and small rules that every room of the module shares.

#include <cmath>
#include <numbers>

#include "kzt5cmrg/record.h"

namespace kzt5cmrg {

inline constexpr double kPi = std::numbers::pi;
inline constexpr double kGiro = 2.0 * std::numbers::pi;  // full circle [rad]
inline constexpr double kRadPerGon = std::numbers::pi / 200.0;
inline constexpr double kGonPerRad = 200.0 / std::numbers::pi;
inline constexpr double kGradiPerGon = 0.9;
inline constexpr double kMetriPerKm = 1000.0;
inline constexpr double kKmPerMetro = 0.001;
inline constexpr double kSigmaZeroPriori = 1e-6;

// Up to this many unknowns the normal matrix is held dense: where a whole job takes as long either
// way.
inline constexpr int kOrdineDenso = 350;

inline constexpr int kSlot = 6;        // coefficients of an equation row
inline constexpr int kSlotVuoto = -1;  // number of the unknown in an empty slot

enum StatoDistanze : int { kSenzaDistanze = 1, kConDistanze = 2 };
enum StatoSolutore : int { kSolutoreRiuscito = 1, kSolutoreFallito = 100 };

// An eccentricity up to these lengths is not reduced [m]: in the angle equations, and in the
// orientations, the reports and the heights.
inline constexpr double kSogliaEccAngoli = 0.001;
inline constexpr double kSogliaEcc = 0.01;

// Additive constants of the instruments of types 6 and 7 [m].
inline constexpr double kAdditiva6 = 0.06;
inline constexpr double kAdditiva7 = 0.11;

// False eastings of the zones: west and east of Gauss-Boaga, and UTM [km].
inline constexpr double kFalsoEstOvest = 1500.0;
inline constexpr double kFalsoEstEst = 2520.0;
inline constexpr double kFalsoEstUtm = 500.0;

inline constexpr double kSemiampiezzaZona = 350.0;  // how far from it a point may lie [km]
inline constexpr double kEstMinimo = 80.0;        // a smaller easting says nothing of the zone [km]
inline constexpr double kScalaCentrale = 0.9996;  // of all zones, on their central meridian

// False easting of the zone that an easting lies in, 0 if in none [km].
inline double FalsoEstDi(double est) {
  for (const double falsoEst : {kFalsoEstOvest, kFalsoEstEst, kFalsoEstUtm})
    if (std::abs(est - falsoEst) < kSemiampiezzaZona) return falsoEst;
  return 0.0;
}

// Whether a value was given. A NaN is a value; the limit itself is neither given nor missing.
constexpr bool Dato(double valore) { return !(valore >= kNonDato); }
constexpr bool Mancante(double valore) { return valore > kNonDato; }

// Eccentricity of the set-up [m]; one that was not given is none.
constexpr double Eccentricita(const TStaCr& stazione) {
  return Mancante(stazione.EccDistanza) ? 0.0 : stazione.EccDistanza;
}

}  // namespace kzt5cmrg
