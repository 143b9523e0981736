// Networks in .gkf in a build without pugixml: they are recognised, and refused before anything is
// computed.

#include "host/base/errori.h"
#include "host/base/testi.h"
#include "host/file_rete/parole_gkf.h"
#include "host/importazione/lettore.h"

namespace compensa {

namespace {

bool Riconosce(std::string_view testo) {
  constexpr std::size_t kInizioCercato = 65536;
  return SenzaBianchi(testo, kBianchiEFini).starts_with('<') &&
         testo.substr(0, kInizioCercato).find(gkf::kRoot) != std::string_view::npos;
}

void Leggi(std::string_view /*testo*/, std::string_view file, const OpzioniLettura& /*opzioni*/,
           Libretto& /*libretto*/, Diagnostica& /*diagnostica*/) {
  throw ErroreUso("il file " + Cita(file) +
                  " è in formato gkf, che questa versione del programma non legge");
}

}  // namespace

const Lettore kLettoreGkf{"gkf", "rete in XML; non letto da questa versione", 0, Riconosce, Leggi};

}  // namespace compensa
