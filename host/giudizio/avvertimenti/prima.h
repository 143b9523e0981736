#pragma once

// What can be told before the adjustment, one subject a file.

#include "host/giudizio/controlli/rilievi.h"

namespace compensa {

// Map coordinates taken for local ones and the reverse, East and North exchanged, points outside
// the zone of the others, distances reduced to the ellipsoid without a height.
Rilievi ControllaCoordinate(const Rete& rete);

// Readings that fit the coordinates only mirrored, in degrees, or at another scale. The whole
// network is judged, so that the approximations of single points do not matter.
Rilievi ControllaVersoScala(const Rete& rete);

// Options in another unit than theirs.
Rilievi ControllaOpzioni(const Rete& rete);

}  // namespace compensa
