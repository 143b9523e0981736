#pragma once

// The network in the XML of a public adjustment program, in the equivalent angle model.

#include <functional>
#include <string_view>

#include "host/uscite/documento.h"

namespace compensa {

// Passes the bytes of the file on in pieces.
void ScriviGkf(const Documento& documento, const std::function<void(std::string_view)>& scrivi);

}  // namespace compensa
