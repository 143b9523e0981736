// Arbitrary text given to the reader of network files.

#include <cstdint>
#include <filesystem>
#include <string>

#include "host/base/codifica.h"
#include "host/file_rete/lettura_toml.h"

using namespace compensa;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* dati, std::size_t quanti);

int LLVMFuzzerTestOneInput(const std::uint8_t* dati, std::size_t quanti) {
  const auto testo = InUtf8(std::string(dati, dati + quanti));
  if (!testo) return 0;
  Diagnostica diagnostica;
  CostruttoreRete rete(diagnostica);
  LeggiToml(*testo, rete.RegistraFile("rete.toml"), "/dev/null/nessuna", rete, diagnostica);
  if (!rete.Completa() && diagnostica.Righe().empty()) std::abort();  // refused without a word
  return 0;
}
