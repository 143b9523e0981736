#pragma once

// Sights of a network as plane geometry needs them: directions in radians, distances on the
// horizontal and referred to the station centre. Shared by the approximate coordinates and by the
// checks that look a network over.

#include <limits>
#include <vector>

#include "host/base/unita.h"
#include "host/rete/modello.h"

namespace compensa {

inline constexpr double kRaggioMedio = 6371000.0;  // of the earth [m]
inline constexpr double kSenzaValore = std::numeric_limits<double>::quiet_NaN();

// A position on the plane [m].
struct Posto {
  double Est = 0.0, Nord = 0.0;
};

inline Posto operator+(Posto a, Posto b) { return {a.Est + b.Est, a.Nord + b.Nord}; }
inline Posto operator-(Posto a, Posto b) { return {a.Est - b.Est, a.Nord - b.Nord}; }
inline Posto operator*(double k, Posto a) { return {k * a.Est, k * a.Nord}; }
double Lunghezza(Posto a);
// From North clockwise, -pi to pi [rad].
double Azimut(Posto a);
// The unit vector of an azimuth.
Posto Versore(double azimut);
// An angle brought between -pi and pi [rad].
double MezzoGiro(double angolo);

// Middle value; the mean of the two middle ones of an even number. Of no values kSenzaValore.
double Mediana(std::vector<double> valori);

// One sight; kSenzaValore for what was not read.
struct Visuale {
  int Stazione = 0;                       // set-up
  int Osservazione = 0;                   // of the set-up
  int Da = 0, A = 0;                      // points
  double Direzione = kSenzaValore;        // as read at the instrument [rad]
  double Distanza = kSenzaValore;         // horizontal, from the station centre [m]
  double DirezioneCentro = kSenzaValore;  // brought to the centre; needs the distance [rad]
  bool Piana = false;                     // the distance is on the projection plane already

  bool ConDirezione() const { return Direzione == Direzione; }
  bool ConDistanza() const { return Distanza == Distanza; }
};

// Distance of the instrument from the station centre [m]; one that was not given is none.
inline double BraccioFuoriCentro(const TStaCr& stazione) {
  return Assegnato(stazione.EccDistanza) ? stazione.EccDistanza : 0.0;
}

// Reading at the instrument brought to the station centre, for a target at `distanza` from it
// [rad, m]: alpha + asin(e sin(alpha - phi) / D) (Bezoari, Monti, Selvini, Topografia generale).
double RiduciAlCentro(const TStaCr& stazione, double direzione, double distanza);

// Height of the target point above the station point from one sight [m], kSenzaValore if something
// is missing: dh = D cot z + hi - hs, with the curvature and refraction that the network asks for.
double Dislivello(const Rete& rete, const Visuale& visuale);

// From what is measured on the ground to the plane of the coordinates. Near enough for
// approximations and checks: a sphere, one scale for a whole sight.
class Riduzioni {
 public:
  explicit Riduzioni(const Rete& rete) : Riduzioni(rete, rete.Opzioni.Cartografiche != 0) {}
  // As if the options said that the coordinates are, or are not, those of a map.
  Riduzioni(const Rete& rete, bool carta);
  // Factor of a horizontal distance around a place; without map coordinates 1. A height that was
  // not given, or an easting outside the zone, is that of the mean known point.
  double Scala(double est, double quota) const;
  double Scala(const Visuale& v, double est, double quota) const {
    return v.Piana ? 1.0 : Scala(est, quota);
  }
  // Arc-to-chord correction, subtracted from a direction read at `da` [rad].
  double CordaArco(Posto da, Posto a) const;

 private:
  bool Carta;
  double FalsoEst = 0.0;
  double QuotaMedia = 0.0;
  double EstMedio = 0.0;
};

// All sights of a network, the ones of a set-up together and in reading order, and who has to do
// with whom. Points excluded from that adjustment, and set-ups on them, do not appear.
struct Visuali {
  explicit Visuali(const Rete& rete, Calcolo quale = kCalcoloPlanimetria);

  std::vector<Visuale> Tutte;
  std::vector<int> Inizio;                   // of each set-up in Tutte, and the end
  std::vector<std::vector<int>> Postazioni;  // of each point: the set-ups on it
  std::vector<std::vector<int>> VistoDa;     // of each point: the sights towards it
};

}  // namespace compensa
