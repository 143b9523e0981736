// Arbitrary text given to the readers of CSV tables: points up to the first zero byte, observations
// after it.

#include <cstdint>
#include <string>

#include "host/base/codifica.h"
#include "host/file_rete/lettura_csv.h"

using namespace compensa;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dati, std::size_t quanti);

int LLVMFuzzerTestOneInput(const std::uint8_t* dati, std::size_t quanti) {
  const auto testo = InUtf8(std::string(dati, dati + quanti));
  if (!testo) return 0;
  const std::size_t taglio = std::min(testo->find('\0'), testo->size());
  Diagnostica diagnostica;
  CostruttoreRete rete(diagnostica);
  LeggiPuntiCsv(std::string_view(*testo).substr(0, taglio), rete.RegistraFile("punti.csv"), rete,
                diagnostica);
  LeggiOsservazioniCsv(std::string_view(*testo).substr(taglio),
                       rete.RegistraFile("osservazioni.csv"), rete, diagnostica);
  if (!rete.Completa() && diagnostica.Righe().empty()) std::abort();
  return 0;
}
