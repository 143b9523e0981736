#pragma once

// How far the iterations of an adjustment in plan move its points.

#include <optional>

#include "host/rete/risultati.h"

namespace compensa {

// The equations are linear around the approximate coordinates: what that leaves out of a sight of
// length D whose end moves by d is about d^2 / 2D, and beyond this part of D the iterations may find
// another solution than the true one, or none.
inline constexpr double kParteLecita = 0.1;

// The first correction beyond that part of the shortest sight of its point, at the coordinates that
// the iterations began with. However the adjustment has ended; of each iteration only the largest
// correction is known.
struct CorrezioneEccessiva {
  int Iterazione = kNessuno;  // from 1
  int Punto = kNessuno;
  double Correzione = 0.0;  // of one coordinate [m]
  double Visuale = 0.0;     // the shortest of the point [m]
};
std::optional<CorrezioneEccessiva> CercaCorrezioneEccessiva(const Risultati& risultati);

}  // namespace compensa
