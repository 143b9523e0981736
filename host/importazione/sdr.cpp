// SDR33 e SDR20

#include "host/importazione/lettore.h"

namespace {

bool Riconosce(std::string_view /*testo*/) { return false; }

void Leggi(std::string_view /*testo*/, std::string_view /*file*/, const OpzioniLettura& /*opzioni*/,
           Libretto& /*libretto*/, Diagnostica& /*diagnostica*/) {}

}  // namespace

const Lettore kLettoreSdr = {"sdr", "SDR33 e SDR20", Riconosce, Leggi};
