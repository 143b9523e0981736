// Networks in .gkf in a build without pugixml: they are recognised, and refused before anything is
// computed.

#include "host/base/diagnostica.h"
#include "host/base/errori.h"
#include "host/base/gkf_formato.h"
#include "host/importazione/lettore.h"

namespace compensa {

namespace {

constexpr std::string_view kBianchi = " \t\r\n";

bool Riconosce(std::string_view testo) {
  const std::size_t primo = testo.find_first_not_of(kBianchi);
  if (primo == std::string_view::npos || testo[primo] != '<') return false;
  return testo.substr(0, gkf::kInizioCercato).find(gkf::kRadice) != std::string_view::npos;
}

void Leggi(std::string_view /*testo*/, std::string_view file, const OpzioniLettura& /*opzioni*/,
           Libretto& /*libretto*/, Diagnostica& /*diagnostica*/) {
  throw ErroreUso("il file " + Cita(file) +
                  " è in formato gkf, che questa versione del programma non legge");
}

}  // namespace

extern const Lettore kLettoreGkf;
const Lettore kLettoreGkf{"gkf", "rete in XML; non letto da questa versione", 0, Riconosce, Leggi};

}  // namespace compensa
