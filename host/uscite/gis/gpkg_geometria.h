#pragma once

// Geometries as a GeoPackage keeps them: a header with the extent, then well-known binary, both
// little-endian (OGC 12-128).

#include <optional>
#include <span>
#include <string>

#include "host/uscite/scala_ellissi.h"

namespace compensa {

// With three coordinates if there is a height.
std::string GeometriaPunto(int srs, PuntoPiano posto, std::optional<double> quota);
std::string GeometriaLinea(int srs, PuntoPiano da, PuntoPiano a);
// From an open ring; the polygon closes it.
std::string GeometriaPoligono(int srs, std::span<const PuntoPiano> anello);

}  // namespace compensa
