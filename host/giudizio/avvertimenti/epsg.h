#pragma once

// The code of the coordinate system against the coordinates.

#include "host/giudizio/controlli/rilievi.h"

namespace compensa {

// A code that is not that of plane coordinates, one that the program does not know, and one whose
// zone is not that of most points. Nothing without a code. Coordinates in metres.
Rilievi ControllaEpsg(const Rete& rete);

}  // namespace compensa
