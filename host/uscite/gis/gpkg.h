#pragma once

// The result as a GeoPackage with the layers punti, visuali and ellissi.

#include <functional>
#include <string_view>

#include "host/uscite/documento.h"

namespace compensa {

// Whether this build of the program can write it.
bool SaScrivereGeoPackage();

// Passes the bytes of the file on in pieces.
void ScriviGeoPackage(const Documento& documento,
                      const std::function<void(std::string_view)>& scrivi);

}  // namespace compensa
