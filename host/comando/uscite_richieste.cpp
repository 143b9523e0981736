// The kinds of output, each with its option, its names and its writer, and the choice of the files
// that a call writes.

#include "host/comando/uscite_richieste.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "host/base/diagnostica.h"
#include "host/base/errori.h"
#include "host/base/file_sicuro.h"
#include "host/base/percorsi.h"
#include "host/base/testi.h"
#include "host/comando/riga_comando.h"
#include "host/uscite/dxf.h"
#include "host/uscite/gis/gpkg.h"
#include "host/uscite/gkf.h"
#include "host/uscite/html/html.h"
#include "host/uscite/json.h"

namespace compensa {

namespace {

template <void (*scrivi)(const Documento&, const Scrittore&)>
void Scrivi(const Materia& m, const Scrittore& dove) {
  scrivi(m.Tutto, dove);
}

template <void (*scrivi)(const Documento&, Decimali, const Scrittore&)>
void ScriviTabella(const Materia& m, const Scrittore& dove) {
  scrivi(m.Tutto, m.Come.DecimaliCsv.value_or(Decimali::Punto), dove);
}

void ScriviRapporto(const Materia& m, const Scrittore& dove) {
  m.Testo.Versa(m.Come.CodificaRapporto.value_or(Codifica::Utf8), dove);
}

void ScriviRisultati(const Materia& m, const Scrittore& dove) {
  ScriviJson(m.Tutto.Esiti, dove, {m.Tutto.Messaggi, m.Tutto.Note});
}

const std::vector<GenereUscita>& Generi() {
  static const std::vector<GenereUscita> generi = {
      {"-o, --rapporto [FILE]",
       "rapporto di calcolo; se manca, con una sola rete va sull'uscita standard",
       {{"rapporto", ".txt", ScriviRapporto, false}}},
      {"--html [FILE]",
       "pagina HTML con disegno, risultati e rapporto",
       {{"--html", ".html", Scrivi<ScriviHtml>}}},
      {"--csv [FILE]",
       "tabelle per il foglio di calcolo: punti (FILE) e osservazioni (FILE senza .csv, più "
       ".osservazioni.csv)",
       {{"CSV (punti)", ".punti.csv", ScriviTabella<ScriviPuntiCsv>},
        {"CSV (osservazioni)", ".osservazioni.csv", ScriviTabella<ScriviOsservazioniCsv>}}},
      {"--dxf [FILE]",
       "disegno della rete per il CAD (DXF R12)",
       {{"--dxf", ".dxf", Scrivi<ScriviDxf>}}},
      {"--gpkg [FILE]",
       "punti, visuali ed ellissi per il GIS (GeoPackage)",
       {{"--gpkg", ".gpkg", Scrivi<ScriviGeoPackage>}}},
      {"--gkf [FILE]",
       "la rete in XML per un altro programma di compensazione",
       {{"--gkf", ".gkf", Scrivi<ScriviGkf>}}},
      {"--json [FILE]",
       "tutti i risultati per altri programmi",
       {{"JSON", ".json", ScriviRisultati, false}}}};
  return generi;
}

// The folder that a value stands for, if it is one.
std::optional<std::filesystem::path> Cartella(const std::string& valore) {
  const std::filesystem::path percorso = PercorsoDa(valore);
  std::error_code guasto;
  if ((!valore.empty() && !percorso.has_filename()) ||
      std::filesystem::is_directory(percorso, guasto))
    return percorso;
  return std::nullopt;
}

// Whatever the case: systems that tell no case write RETE.TOML.
std::string SenzaEstensione(const std::string& percorso, std::string_view estensione) {
  const bool ce = percorso.size() > estensione.size() && Minuscole(percorso).ends_with(estensione);
  return percorso.substr(0, percorso.size() - (ce ? estensione.size() : 0));
}

[[noreturn]] void Rifiuta(const std::string& opzione, const std::string& perche) {
  throw ErroreUso("opzione " + opzione + ": " + perche);
}

// Values that no network can have, and options without an output that they are about.
void ControllaValori(const OpzioniCompensa& o) {
  const auto scrive = [&](void (*che)(const Materia&, const Scrittore&)) {
    return std::ranges::any_of(Destinazioni(o, o.Reti.front()),
                               [&](const Destinazione& d) { return d.Cosa->Scrivi == che; });
  };
  if (o.DecimaliCsv && !scrive(ScriviTabella<ScriviPuntiCsv>))
    Rifiuta("--decimali", "riguarda le tabelle CSV, che non sono richieste (--csv)");
  if (o.CodificaRapporto && !scrive(ScriviRapporto))
    Rifiuta("--codifica", "riguarda il rapporto, che con più reti si scrive solo con -o");
  for (const UscitaChiesta& uscita : o.Uscite) {
    const std::string opzione(Opzione{uscita.Genere->Firma, {}, {}}.Nome());
    const std::vector<FileUscita>& file = uscita.Genere->File;
    if (file.front().Scrivi == Scrivi<ScriviGeoPackage> && !SaScrivereGeoPackage())
      Rifiuta(opzione, "questa versione del programma non scrive GeoPackage");
    if (uscita.Valore.empty()) continue;
    if (file.size() > 1 && UscitaStandard(uscita.Valore))
      Rifiuta(opzione, "sono due tabelle e non possono andare sull'uscita standard");
    if (o.Reti.size() > 1 && !Cartella(uscita.Valore))
      Rifiuta(opzione, "più reti non possono scrivere in " + Cita(uscita.Valore) +
                           "; serve una cartella (con / alla fine), o nessun nome");
  }
}

[[noreturn]] void RifiutaIngresso(const Destinazione& uscita) {
  throw ErroreUso("l'uscita " + Cita(uscita.Percorso) +
                  " è un file della rete: non viene sovrascritto");
}

}  // namespace

std::span<const GenereUscita> GeneriUscita() { return Generi(); }

std::vector<Destinazione> Destinazioni(const OpzioniCompensa& o, const std::string& rete) {
  std::vector<Destinazione> destinazioni;
  const GenereUscita* rapporto = &Generi().front();
  if (o.Reti.size() == 1 && (o.Uscite.empty() || o.Uscite.front().Genere != rapporto))
    destinazioni.push_back({&rapporto->File.front(), "-"});
  for (const UscitaChiesta& uscita : o.Uscite) {
    const auto cartella = Cartella(uscita.Valore);
    std::string base = SenzaEstensione(rete, ".toml");
    if (cartella) base = (*cartella / PercorsoDa(base).filename()).string();
    const bool predefinito = uscita.Valore.empty() || cartella;
    const FileUscita& primo = uscita.Genere->File.front();
    if (!predefinito)
      base = SenzaEstensione(uscita.Valore, primo.Estensione.substr(primo.Estensione.rfind('.')));
    for (const FileUscita& file : uscita.Genere->File)
      destinazioni.push_back({&file, !predefinito && &file == &primo
                                         ? uscita.Valore
                                         : base + std::string(file.Estensione)});
  }
  return destinazioni;
}

void ControllaUscite(const OpzioniCompensa& o) {
  ControllaValori(o);
  std::unordered_set<std::string> reti;
  for (const std::string& rete : o.Reti)
    if (const std::string chi = IdentitaFile(rete); !chi.empty() && !reti.insert(chi).second)
      throw ErroreUso("la rete " + Cita(rete) + " è data due volte");
  std::unordered_map<std::string, std::string> scritti;  // what each file will hold
  std::string sullUscita;
  for (const std::string& rete : o.Reti)
    for (const Destinazione& destinazione : Destinazioni(o, rete)) {
      const std::string nome(destinazione.Cosa->Nome);
      if (UscitaStandard(destinazione.Percorso)) {
        if (!sullUscita.empty())
          throw ErroreUso(sullUscita + " e " + nome +
                          " andrebbero entrambi sull'uscita standard: serve " +
                          (sullUscita == "rapporto" ? "-o FILE" : "un FILE"));
        sullUscita = nome;
        continue;
      }
      const std::string chi = IdentitaFile(destinazione.Percorso);
      if (chi.empty()) continue;
      if (reti.contains(chi)) RifiutaIngresso(destinazione);
      const auto [voce, nuova] = scritti.try_emplace(chi, nome);
      if (!nuova)
        throw ErroreUso(voce->second + " e " + nome + " andrebbero nello stesso file " +
                        Cita(destinazione.Percorso));
    }
}

void RifiutaIngressi(const std::vector<Destinazione>& destinazioni,
                     const std::deque<std::string>& ingressi) {
  std::unordered_set<std::string> letti;
  for (const std::string& ingresso : ingressi) letti.insert(IdentitaFile(ingresso));
  letti.erase("");
  for (const Destinazione& destinazione : destinazioni)
    if (letti.contains(IdentitaFile(destinazione.Percorso))) RifiutaIngresso(destinazione);
}

}  // namespace compensa
