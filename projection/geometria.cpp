// Plane geometry shared by the equations and the reports: bearing and length of a line, reduction
// of a direction to the station centre, sexagesimal angles.

#include <algorithm>
#include <cmath>

#include "kzt5cmrg.h"
#include "records/costanti.h"

using namespace kzt5cmrg;

namespace {
constexpr double kEstOvest = 1e-7;    // a smaller difference of North makes a line due east or west
constexpr double kCentesimi = 100.0;  // minutes and seconds are split off as hundredths
constexpr double kSessantesimi = 0.6;  // hundredths of a part to its sixtieths
}  // namespace

// Bearing from point 1 to point 2, from North clockwise in [0, 2 pi), and distance in the unit of
// the coordinates. Coincident points count as due west.
int CalcCmpRigVelid1::Anomalia(double e1, double n1, double e2, double n2, double& azimut,
                               double& distanza) {
  const double dE = e2 - e1;
  const double dN = n2 - n1;
  if (std::abs(dN) < kEstOvest) {
    azimut = dE > 0.0 ? kPi / 2.0 : 3.0 * kPi / 2.0;
  } else {
    azimut = std::atan(dE / dN);
    if (dN < 0.0)
      azimut += kPi;
    else if (dE < 0.0)
      azimut += kGiro;
  }
  distanza = std::sqrt(dE * dE + dN * dN);
  return 0;
}

// Reduces a direction [gon] read by an instrument at distance e [m] from the station centre, which
// it sees in direction phi [gon]: the angle at the target is asin(e sin(direction - phi) / D). An
// eccentricity longer than the sight counts as as long; a target on the centre itself leaves the
// direction unchanged. (Bezoari, Monti, Selvini, Topografia generale.)
int CalcCmpRigVelid1::ExCentro(int stazione, int collimato, double eccDistanza, double eccDirezione,
                               double& direzione) const {
  const TCoorCr& p = Punto(stazione);
  const TCoorCr& t = Punto(collimato);
  const double dE = t.Est - p.Est;
  const double dN = t.Nord - p.Nord;
  const double D = std::sqrt(dE * dE + dN * dN);
  if (D == 0.0) return 0;
  const double x = (direzione - eccDirezione) * FattoreRad;
  const double seno = std::clamp(std::sin(x) * eccDistanza * FattoreKm / D, -1.0, 1.0);
  direzione += std::asin(seno) / FattoreRad;
  return 0;
}

// An angle in degrees, minutes and seconds, each with the sign of the angle; the seconds keep their
// fraction.
int CalcCmpRigVelid1::Angl2(double gon, double& gradi, double& primi, double& secondi) {
  const double d = gon * kGradiPerGon;
  gradi = std::trunc(d);
  const double f = (d - gradi) * kSessantesimi;
  primi = std::trunc(f * kCentesimi);
  secondi = (f * kCentesimi - primi) * kSessantesimi * kCentesimi;
  return 0;
}
