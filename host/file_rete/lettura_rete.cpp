// A network from its file: the order in which the readers run.

#include "host/file_rete/lettura_rete.h"

#include <string>

#include "host/base/testo_file.h"
#include "host/file_rete/costruttore.h"
#include "host/file_rete/lettura_toml.h"

namespace compensa {

namespace {

constexpr std::uintmax_t kMassimoToml = 1u
                                        << 28;  // [bytes]; once parsed it takes three times as much

}  // namespace

std::optional<Rete> LeggiRete(const std::filesystem::path& percorso, Diagnostica& diagnostica,
                              bool impronte, std::string_view (*altro)(std::string_view testo)) {
  CostruttoreRete rete(diagnostica, impronte);
  const std::string_view file = rete.RegistraFile(percorso.string());
  std::optional<std::string> testo =
      LeggiTesto(percorso, kMassimoToml, {file, 0, 0}, "", diagnostica, rete.NuovaImpronta());
  if (!testo) return std::nullopt;
  const bool chiedi = altro != nullptr && percorso.extension() != ".toml";
  if (const std::string_view nome = chiedi ? altro(*testo) : std::string_view(); !nome.empty()) {
    diagnostica.Errore({file, 0, 0}, {.Problema = "non è una rete",
                                      .Trovato = std::string(nome),
                                      .Voluto = "un file TOML",
                                      .Suggerimento = "compensa importa ne fa una rete"});
    return std::nullopt;
  }
  LeggiToml(*testo, file, percorso.parent_path(), rete, diagnostica);
  return rete.Completa();
}

}  // namespace compensa
