#pragma once

// Default looks of the layers of a GeoPackage, in the two languages that GIS programs read.

#include <array>
#include <string>
#include <string_view>

namespace compensa {

struct StileStrato {
  std::string_view Strato;  // table
  std::string Qml;          // QGIS layer style
  std::string Sld;          // OGC Styled Layer Descriptor 1.0
};

std::array<StileStrato, 3> StiliStrati();

}  // namespace compensa
