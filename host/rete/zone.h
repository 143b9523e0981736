#pragma once

// The map zones that coordinates in Italy may lie in, and how they are told from each other. By the
// first three the adjustment reduces observations; the other two are zones for the whole country,
// which only a code names.

#include <span>
#include <string_view>

#include "host/rete/modello.h"

namespace compensa {

struct Zona {
  double FalsoEst;      // [m]
  double Semiampiezza;  // how far from it a point may lie [m]
  std::string_view Dove;
  std::string_view Rimedio;  // which codes name it
};

extern const std::span<const Zona> kZone;

// Whether a position lies in the zone and between the parallels of Italy [m].
bool Dentro(const Zona& zona, double est, double nord);
// Whether a Nord is one of Italy [m].
bool InItalia(double nord);

// The zone that the adjustment takes an Est for [m]; null if none.
const Zona* ZonaDi(double est);
// Whether an Est is large enough to tell a zone [m].
bool DiceLaZona(double est);
// The point by which the adjustment recognises the zone of a network; null if none tells it.
const TCoorCr* PuntoDellaZona(std::span<const TCoorCr> punti);

}  // namespace compensa
