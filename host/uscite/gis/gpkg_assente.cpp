// GeoPackage in a build without SQLite: asking for it is refused before anything is computed.

#include <stdexcept>

#include "host/uscite/gis/gpkg.h"

namespace compensa {

bool SaScrivereGeoPackage() { return false; }

void ScriviGeoPackage(const Documento& /*documento*/,
                      const std::function<void(std::string_view)>& /*scrivi*/) {
  throw std::logic_error("GeoPackage asked of a build that cannot write it");
}

}  // namespace compensa
