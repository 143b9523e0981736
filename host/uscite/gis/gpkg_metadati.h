#pragma once

// What a GeoPackage says of itself in words: provenance, outcome, conventions, meaning and unit of
// every column.

#include <string>
#include <string_view>
#include <vector>

#include "host/rete/sistema_riferimento.h"
#include "host/uscite/documento.h"

namespace compensa {

struct VoceMetadati {
  std::string Chiave;
  std::string Valore;  // Italian
};

// fattore95 as FattoreEllisse gives it, kAssente if there is none.
std::vector<VoceMetadati> VociMetadati(const Documento& documento,
                                       const SistemaRiferimento& sistema, double esagerazione,
                                       double fattore95);

}  // namespace compensa
