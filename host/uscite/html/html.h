#pragma once

// The result as one self-contained HTML page, UTF-8.

#include <functional>
#include <string_view>

#include "host/uscite/documento.h"

namespace compensa {

// Passes the bytes of the file on in pieces.
void ScriviHtml(const Documento& documento, const std::function<void(std::string_view)>& scrivi);

}  // namespace compensa
