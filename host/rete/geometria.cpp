// Plane geometry. Azimuths count from North clockwise.

#include "host/rete/geometria.h"

#include <cmath>

#include "host/base/unita.h"

namespace compensa {

double Lunghezza(Posto a) { return std::hypot(a.Est, a.Nord); }
double Azimut(Posto a) { return std::atan2(a.Est, a.Nord); }
Posto Versore(double azimut) { return {std::sin(azimut), std::cos(azimut)}; }

double MezzoGiro(double angolo) { return std::remainder(angolo, kGiro); }

// A hair below zero is rounded up to a whole turn, which is none; so in the next.
double NelGiro(double gon) {
  const double resto = std::fmod(gon, kGiroGon);
  const double positivo = resto < 0.0 ? resto + kGiroGon : resto;
  return positivo < kGiroGon ? positivo : 0.0;
}

double AzimutRetta(double azimut) {
  const double gon = (azimut < 0.0 ? azimut + kPi : azimut) * kGonPerRad;
  return gon < kMezzoGiroGon ? gon : 0.0;
}

}  // namespace compensa
