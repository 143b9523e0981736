#pragma once

// The command line of the program.

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/base/terminale.h"
#include "host/calcolo/rapporto.h"
#include "host/comando/verifica.h"
#include "host/importazione/opzioni.h"
#include "host/uscite/tabelle_csv.h"

namespace compensa {

enum class GenereUscita { Rapporto, Html, Csv, Dxf, GeoPackage, Gkf, Json };

// An output that was asked for. Nothing as its value: the name of the network.
struct UscitaChiesta {
  GenereUscita Genere = GenereUscita::Rapporto;
  std::optional<std::string> Valore;  // file, folder, or "-" = standard output
};

// A run over one or more networks.
struct Argomenti {
  std::vector<std::string> Reti;
  std::vector<UscitaChiesta> Uscite;  // the report first if it was asked for
  Codifica CodificaRapporto = Codifica::Utf8;
  Decimali DecimaliCsv = Decimali::Punto;
  bool Quieto = false;  // no message but errors
};

// A look over networks without adjusting them.
struct ArgomentiVerifica {
  std::vector<OpzioniVerifica> Reti;
};

// A text that was asked for instead of a run: the help, the version, the manual.
struct TestoRichiesto {
  std::string Testo;
};

using Richiesta = std::variant<Argomenti, OpzioniImporta, ArgomentiVerifica, TestoRichiesto>;

// Sets the colours as asked, too. Throws ErroreUso.
Richiesta LeggiRigaComando(int argc, const char* const* argv);

// What an output is called by messages and by its option: "rapporto", "html" and so on.
std::string_view NomeOpzione(GenereUscita genere);

}  // namespace compensa
