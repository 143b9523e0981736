#pragma once

// Sights of a network as plane geometry needs them: directions in radians, distances on the
// horizontal and referred to the station centre. Shared by the approximate coordinates and by the
// checks that look a network over.

#include <vector>

#include "host/base/assente.h"
#include "host/base/unita.h"
#include "host/rete/geometria.h"
#include "host/rete/modello.h"

namespace compensa {

inline constexpr double kRaggioMedio = 6371000.0;  // of the earth [m]

// One sight; kAssente for what was not read.
struct Visuale {
  int Stazione = 0;                   // set-up
  int Osservazione = 0;               // of the set-up
  int Da = 0, A = 0;                  // points
  double Direzione = kAssente;        // as read at the instrument [rad]
  double Distanza = kAssente;         // horizontal, from the station centre [m]
  double DirezioneCentro = kAssente;  // brought to the centre; needs the distance [rad]
  bool Piana = false;                 // the distance is on the projection plane already

  bool ConDirezione() const { return Presente(Direzione); }
  bool ConDistanza() const { return Presente(Distanza); }
};

// Distance of the instrument from the station centre [m]; one that was not given is none.
inline double BraccioFuoriCentro(const TStaCr& stazione) {
  return Assegnato(stazione.EccDistanza) ? stazione.EccDistanza : 0.0;
}

// Reading at the instrument brought to the station centre, for a target at `distanza` from it
// [rad, m]: alpha + asin(e sin(alpha - phi) / D) (Bezoari, Monti, Selvini, Topografia generale).
double RiduciAlCentro(const TStaCr& stazione, double direzione, double distanza);

// Height of the target point above the station point from one sight [m], kAssente if something
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
