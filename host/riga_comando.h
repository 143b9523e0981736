#pragma once

// The command line of the program.

#include <optional>
#include <string>
#include <variant>

#include "host/rapporto.h"

struct Argomenti {
  std::string Rete;
  std::string Rapporto = "-";       // where the report goes; "-" = standard output
  std::optional<std::string> Json;  // where the results for programs go; "-" likewise
  Codifica CodificaRapporto = Codifica::Utf8;
  bool Quieto = false;              // no message but errors
};

// A text that was asked for instead of a run: the help or the version.
struct TestoRichiesto {
  std::string Testo;
};

// Throws ErroreUso.
std::variant<Argomenti, TestoRichiesto> LeggiRigaComando(int argc, const char* const* argv);
