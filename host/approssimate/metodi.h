#pragma once

// The single constructions by which a point is found on the plane. Metres and radians; azimuths
// and directions clockwise from North or from the zero of the circle.

#include <optional>
#include <vector>

#include "host/rete/visuali.h"

namespace compensa {

// A half-line on which the sought point lies.
struct Raggio {
  Posto Origine;
  double Azimut = 0.0;
  int Punto = 0;  // where it starts
};

// A circle on which it lies.
struct Cerchio {
  Posto Centro;
  double Raggio = 0.0;
  int Punto = 0;
};

// A known point seen from the sought one.
struct Collimato {
  Posto Luogo;
  double Direzione = 0.0;  // [rad]
  double Distanza = kAssente;
  int Punto = 0;
};

// Where two rays cut. Nothing if they cut at less than about 5 gon or behind one of the origins.
std::optional<Posto> Interseca(const Raggio& a, const Raggio& b);
// Sine of the angle at which they cut.
double SenoTaglio(const Raggio& a, const Raggio& b);

// The points that two loci share, none to two. Circles that miss each other by little touch.
std::vector<Posto> Interseca(const Cerchio& a, const Cerchio& b);
std::vector<Posto> Interseca(const Raggio& a, const Cerchio& b);

// Resection of three directions by the cotangents of their differences, in closed form (V. Pierlot
// and M. Van Droogenbroeck, IEEE Transactions on Robotics 30, 2014). Amplificazione: displacement
// for an error of one radian, in units of the mean length of the sights; it grows without limit
// towards the circle through the three points.
struct Inversa {
  Posto Luogo;
  double Orientamento = 0.0;
  double Amplificazione = 0.0;
};
std::optional<Inversa> IntersezioneInversa(const Collimato& a, const Collimato& b,
                                           const Collimato& c);

// Above this amplification a resection is refused.
inline constexpr double kAmplificazioneMassima = 20.0;

// Azimuth of the circle's zero that fits the sights best from a place, and the largest misfit.
struct Orientazione {
  double Zero = 0.0;
  double ScartoMassimo = 0.0;
  int Escluse = 0;  // sights left out because they contradict the others
};
Orientazione Orienta(const std::vector<double>& zeri);

// Rotation and translation without scale that bring a set of local positions onto known ones, by
// least squares; pairs that contradict the others are left out one by one.
struct Rototraslazione {
  double Angolo = 0.0;  // added to azimuths [rad]
  Posto Da, A;          // centroids
  double ScartoMassimo = 0.0;
  int Escluse = 0;
  Posto operator()(Posto p) const;
};
// Nothing with fewer than two pairs, or with those that are left too near to each other.
std::optional<Rototraslazione> Sovrapponi(std::vector<Posto> locali, std::vector<Posto> noti,
                                          double tolleranza);

}  // namespace compensa
