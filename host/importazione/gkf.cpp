// rete in XML (.gkf)

#include "host/importazione/lettore.h"

namespace {

bool Riconosce(std::string_view /*testo*/) { return false; }

void Leggi(std::string_view /*testo*/, std::string_view /*file*/, const OpzioniLettura& /*opzioni*/,
           Libretto& /*libretto*/, Diagnostica& /*diagnostica*/) {}

}  // namespace

const Lettore kLettoreGkf = {"gkf", "rete in XML (.gkf)", Riconosce, Leggi};
