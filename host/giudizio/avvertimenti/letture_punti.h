#pragma once

// Readings in plan that nothing controls, point by point.

#include <vector>

#include "host/rete/risultati.h"

namespace compensa {

// A reading on which a point hangs: an error of it moves the point and shows in no residual.
struct LetturaSola {
  int Punto = kNessuno;
  int Stazione = kNessuno;
  int Osservazione = kNessuno;  // of the set-up
  bool Distanza = false;        // or its direction
  bool Tutte = false;           // the other readings of the point are no better
};

// The first such reading of each point that has any, in the order of the points. At the coordinates
// that the adjustment in plan has ended with.
std::vector<LetturaSola> CercaLettureSole(const Risultati& risultati);

}  // namespace compensa
