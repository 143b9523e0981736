// Readings brought to the plane of the coordinates: from an eccentric instrument to the station
// centre, from the mean height of a sight to the ellipsoid, from there to the plane of the map.
//   d0 = d R / (h + R)      R mean radius of curvature, h mean height of the ends             [km]

#include <cmath>

#include "kzt5cmrg.h"
#include "records/costanti.h"

using namespace kzt5cmrg;

// Brings a reading [gon] to the projection plane and to the station centre; an eccentricity up to
// `soglia` [m] is left alone.
void CalcCmpRigVelid1::RiduciDirezione(const TStaCr& stazione, int collimato, double soglia,
                                       double& direzione) {
  if (Opzioni->Cartografiche != 0) {
    double scala = 0.0;
    double correzione = 0.0;
    Gauss(stazione.Punto, collimato, scala, correzione);
    direzione -= correzione;
  }
  if (Eccentricita(stazione) > soglia)
    ExCentro(stazione.Punto, collimato, stazione.EccDistanza, stazione.EccDirezione, direzione);
}

// The distance from the station centre when the instrument stood off it: cosine rule in the
// triangle of centre, instrument and target, the direction read at the instrument [m].
double CalcCmpRigVelid1::DistanzaAlCentro(const TStaCr& stazione, double direzione,
                                          double distanza) const {
  const double e = Eccentricita(stazione);
  const double angolo = (stazione.EccDirezione - direzione) * FattoreRad;
  const double quadrato = distanza * distanza + e * e - 2.0 * e * distanza * std::cos(angolo);
  return std::sqrt(quadrato < 0.0 ? 0.0 : quadrato);  // below 0 only by rounding
}

// A horizontal distance brought from the mean height of its ends to the ellipsoid, in its own unit.
// The radius is the one that the last projected point has left, or else that of the station point.
// An end without height takes the other's.
double CalcCmpRigVelid1::DistanzaEllissoide(int stazione, int collimato, double distanza) {
  if (RaggioMedio == 0.0) {
    double scala = 0.0;
    double correzione = 0.0;
    Gauss(stazione, collimato, scala, correzione);
  }
  double qP = Punto(stazione).Quota;
  double qT = Punto(collimato).Quota;
  if (Mancante(qP)) qP = Mancante(qT) ? 0.0 : qT;
  if (Mancante(qT)) qT = qP;
  const double h = (qP + qT) * FattoreKm / 2.0;
  return distanza * RaggioMedio / (h + RaggioMedio);
}
