// What goes to the terminal. Colours are ANSI sequences around single words: without them the text
// is the same, byte by byte.

#include "host/base/terminale.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <utility>

#include "host/base/piattaforma/piattaforma.h"
#include "host/base/versione.h"

namespace compensa {

namespace {

constexpr std::string_view kRosso = "\x1b[1;31m";
constexpr std::string_view kGiallo = "\x1b[1;33m";
constexpr std::string_view kVerde = "\x1b[32m";
constexpr std::string_view kAzzurro = "\x1b[36m";
constexpr std::string_view kNormale = "\x1b[0m";

constexpr std::string_view kErrore = "errore";
constexpr std::string_view kAvviso = "avviso";
constexpr std::string_view kNota = "nota";

// Longer texts before those that they contain.
constexpr std::pair<std::string_view, std::string_view> kEsiti[] = {
    {"non riuscita", kRosso},
    {"riuscita", kVerde},
    {"incompleta", kGiallo},
    {"non convergente", kRosso},
    {"punti non determinabili", kRosso},
    {"punto non determinabile", kRosso},
    {"non determinabile", kRosso},
    {"non eseguita", kGiallo},
    {"interrotta", kRosso},
    {kErrore, kRosso},
};

std::atomic<Colori> scelta = Colori::Auto;

std::string Tinta(std::string_view parola, std::string_view colore, bool attivi) {
  if (!attivi) return std::string(parola);
  return std::string(colore) + std::string(parola) + std::string(kNormale);
}

// The kind of a message coloured, where it stands: after the place, before the text.
std::string ColoraMessaggio(const std::string& riga) {
  for (const auto& [parola, colore] : {std::pair(kErrore, kRosso), std::pair(kAvviso, kGiallo)}) {
    const std::string cercata = ": " + std::string(parola) + ": ";
    const std::size_t dove = riga.find(cercata);
    if (dove == std::string::npos) continue;
    return riga.substr(0, dove + 2) + Tinta(parola, colore, true) +
           riga.substr(dove + 2 + parola.size());
  }
  return riga;
}

void ScriviMessaggio(std::string_view chi, std::string_view genere, std::string_view colore,
                     std::string_view testo) {
  ScriviErrori(std::string(chi) + ": " + Tinta(genere, colore, ColoriSu(kErroriStandard)) + ": " +
               std::string(testo) + "\n");
}

}  // namespace

void ImpostaColori(Colori colori) { scelta = colori; }

bool ColoriSu(int descrittore) {
  const Colori colori = scelta;
  if (colori != Colori::Auto) return colori == Colori::Sempre;
  const char* senza = std::getenv("NO_COLOR");
  return (senza == nullptr || *senza == '\0') && TerminaleCapace(descrittore);
}

bool TerminaleConErrori() { return TerminaleCapace(kErroriStandard); }

std::string ColoraEsiti(std::string_view testo, bool attivi) {
  std::string colorato;
  while (!testo.empty()) {
    const auto* esito = !attivi ? std::end(kEsiti)
                                : std::find_if(std::begin(kEsiti), std::end(kEsiti),
                                               [&](auto& e) { return testo.starts_with(e.first); });
    const std::size_t lunghezza = esito == std::end(kEsiti) ? 1 : esito->first.size();
    const std::string_view pezzo = testo.substr(0, lunghezza);
    colorato += esito == std::end(kEsiti) ? std::string(pezzo) : Tinta(pezzo, esito->second, true);
    testo.remove_prefix(lunghezza);
  }
  return colorato;
}

void ScriviErrori(std::string_view testo) {
  while (!testo.empty()) {
    const std::ptrdiff_t scritti = ScriviParte(kErroriStandard, testo);
    if (scritti <= 0) return;
    testo.remove_prefix(static_cast<std::size_t>(scritti));
  }
}

void ScriviErrore(std::string_view testo) {
  ScriviMessaggio(kNomeProgramma, kErrore, kRosso, testo);
}

void ScriviErrore(std::string_view file, std::string_view testo) {
  ScriviMessaggio(file, kErrore, kRosso, testo);
}

void ScriviAvviso(std::string_view file, std::string_view testo) {
  ScriviMessaggio(file, kAvviso, kGiallo, testo);
}

void ScriviNota(std::string_view file, std::string_view testo) {
  ScriviMessaggio(file, kNota, kAzzurro, testo);
}

std::string TestoMessaggi(const Diagnostica& diagnostica) {
  const bool colori = ColoriSu(kErroriStandard);
  std::string testo;
  for (const std::string& riga : diagnostica.Righe())
    testo += (colori ? ColoraMessaggio(riga) : riga) + "\n";
  return testo;
}

void MostraMessaggi(const Diagnostica& diagnostica) { ScriviErrori(TestoMessaggi(diagnostica)); }

}  // namespace compensa
