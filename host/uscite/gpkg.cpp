// To be written.

#include "host/uscite/gpkg.h"

void ScriviGeoPackage(const Documento& /*documento*/, const std::function<void(std::string_view)>& /*scrivi*/) {}
