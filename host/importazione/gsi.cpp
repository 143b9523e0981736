// Leica GSI-8 e GSI-16

#include "host/importazione/lettore.h"

namespace {

bool Riconosce(std::string_view /*testo*/) { return false; }

void Leggi(std::string_view /*testo*/, std::string_view /*file*/, const OpzioniLettura& /*opzioni*/,
           Libretto& /*libretto*/, Diagnostica& /*diagnostica*/) {}

}  // namespace

const Lettore kLettoreGsi = {"gsi", "Leica GSI-8 e GSI-16", Riconosce, Leggi};
