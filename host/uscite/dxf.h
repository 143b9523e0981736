#pragma once

// The network as a drawing in DXF R12, Windows-1252, metres.

#include <functional>
#include <string_view>

#include "host/uscite/documento.h"

namespace compensa {

// Passes the bytes of the file on in pieces.
void ScriviDxf(const Documento& documento, const std::function<void(std::string_view)>& scrivi);

}  // namespace compensa
