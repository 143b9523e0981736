#pragma once

// Every unit of the program: what one of them holds of another. Those that the adjustment itself
// works in are the module's.

#include "records/costanti.h"

namespace compensa {

using kzt5cmrg::kGiro;
using kzt5cmrg::kGonPerRad;
using kzt5cmrg::kGradiPerGon;
using kzt5cmrg::kMetriPerKm;
using kzt5cmrg::kPi;
using kzt5cmrg::kRadPerGon;

inline constexpr double kGiroGon = 400.0;
inline constexpr double kMezzoGiroGon = 200.0;
inline constexpr double kRettoGon = 100.0;
inline constexpr double kGiroGradi = 360.0;
inline constexpr double kGiroMil = 6400.0;
inline constexpr double kGonPerGrado = kGiroGon / kGiroGradi;
inline constexpr double kGonPerMil = kGiroGon / kGiroMil;
inline constexpr double kSecondiPerGon = 3240.0;  // seconds of a sexagesimal degree
inline constexpr double kMgonPerGon = 1000.0;
inline constexpr double kCcPerGon = 10000.0;
inline constexpr double kGonPerSecondo = 1.0 / kSecondiPerGon;
inline constexpr double kGonPerMgon = 1.0 / kMgonPerGon;
inline constexpr double kGonPerCc = 1.0 / kCcPerGon;

inline constexpr double kCmPerMetro = 100.0;
inline constexpr double kMmPerMetro = 1000.0;
inline constexpr double kMetriPerMm = 1.0 / kMmPerMetro;

}  // namespace compensa
