#pragma once

// The result as tables in CSV for spreadsheets: UTF-8 with byte order mark, fields separated by
// semicolons, lines ended by CR LF.

#include <functional>
#include <string_view>

#include "host/uscite/documento.h"

namespace compensa {

enum class Decimali { Punto, Virgola };

// Passes the bytes of one table on in pieces.
void ScriviPuntiCsv(const Documento& documento, Decimali decimali,
                    const std::function<void(std::string_view)>& scrivi);
void ScriviOsservazioniCsv(const Documento& documento, Decimali decimali,
                           const std::function<void(std::string_view)>& scrivi);

}  // namespace compensa
