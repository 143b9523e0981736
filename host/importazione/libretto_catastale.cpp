// libretto delle misure catastale

#include "host/importazione/lettore.h"

namespace {

bool Riconosce(std::string_view /*testo*/) { return false; }

void Leggi(std::string_view /*testo*/, std::string_view /*file*/, const OpzioniLettura& /*opzioni*/,
           Libretto& /*libretto*/, Diagnostica& /*diagnostica*/) {}

}  // namespace

const Lettore kLettoreCatasto = {"libretto", "libretto delle misure catastale", Riconosce, Leggi};
