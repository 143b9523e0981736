// Names of the outputs.

#include "host/comando/nomi_uscite.h"

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
#include "host/base/suggerimenti.h"
#include "host/uscite/gis/gpkg.h"

namespace compensa {

namespace {

constexpr std::string_view kPuntiCsv = ".punti.csv";
constexpr std::string_view kOsservazioniCsv = ".osservazioni.csv";

std::string_view Estensione(GenereUscita genere) {
  switch (genere) {
    case GenereUscita::Rapporto: return ".txt";
    case GenereUscita::Html: return ".html";
    case GenereUscita::Csv: return ".csv";
    case GenereUscita::Dxf: return ".dxf";
    case GenereUscita::GeoPackage: return ".gpkg";
    case GenereUscita::Gkf: return ".gkf";
    case GenereUscita::Json: return ".json";
  }
  return {};
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
  if (percorso.size() <= estensione.size()) return percorso;
  const std::size_t radice = percorso.size() - estensione.size();
  const bool ce = DistanzaTesti(percorso.substr(radice), estensione, 0) == 0;
  return ce ? percorso.substr(0, radice) : percorso;
}

void Aggiungi(std::vector<Destinazione>& destinazioni, const UscitaChiesta& uscita,
              const std::string& rete) {
  std::string base = SenzaEstensione(rete, ".toml");
  const auto cartella = uscita.Valore ? Cartella(*uscita.Valore) : std::nullopt;
  if (cartella) base = (*cartella / PercorsoDa(base).filename()).string();
  const bool predefinito = !uscita.Valore || cartella;
  if (uscita.Genere != GenereUscita::Csv) {
    const std::string percorso =
        predefinito ? base + std::string(Estensione(uscita.Genere)) : *uscita.Valore;
    destinazioni.push_back({uscita.Genere, false, percorso});
    return;
  }
  const std::string punti = predefinito ? base + std::string(kPuntiCsv) : *uscita.Valore;
  if (!predefinito) base = SenzaEstensione(punti, Estensione(GenereUscita::Csv));
  destinazioni.push_back({GenereUscita::Csv, false, punti});
  destinazioni.push_back({GenereUscita::Csv, true, base + std::string(kOsservazioniCsv)});
}

std::string NomeUscita(const Destinazione& destinazione) {
  switch (destinazione.Genere) {
    case GenereUscita::Rapporto: return "rapporto";
    case GenereUscita::Json: return "JSON";
    case GenereUscita::Csv: return destinazione.Osservazioni ? "CSV (osservazioni)" : "CSV (punti)";
    default: return "--" + std::string(NomeOpzione(destinazione.Genere));
  }
}

// Outputs that no network can share.
void ControllaValori(const Argomenti& argomenti) {
  for (const UscitaChiesta& uscita : argomenti.Uscite) {
    const std::string opzione = "opzione --" + std::string(NomeOpzione(uscita.Genere));
    if (uscita.Genere == GenereUscita::GeoPackage && !SaScrivereGeoPackage())
      throw ErroreUso(opzione + ": questa versione del programma non scrive GeoPackage");
    if (!uscita.Valore) continue;
    if (uscita.Genere == GenereUscita::Csv && UscitaStandard(*uscita.Valore))
      throw ErroreUso(opzione + ": sono due tabelle e non possono andare sull'uscita standard");
    if (argomenti.Reti.size() > 1 && !Cartella(*uscita.Valore))
      throw ErroreUso(opzione + ": più reti non possono scrivere in " + Cita(*uscita.Valore) +
                      "; serve una cartella (con / alla fine), o nessun nome");
  }
}

}  // namespace

bool VuoleDocumento(const std::vector<Destinazione>& destinazioni) {
  return std::ranges::any_of(destinazioni, [](const Destinazione& d) {
    return d.Genere != GenereUscita::Rapporto && d.Genere != GenereUscita::Json;
  });
}

std::vector<Destinazione> Destinazioni(const Argomenti& argomenti, const std::string& rete) {
  std::vector<Destinazione> destinazioni;
  const bool chiesto =
      !argomenti.Uscite.empty() && argomenti.Uscite.front().Genere == GenereUscita::Rapporto;
  if (!chiesto && argomenti.Reti.size() == 1)
    destinazioni.push_back({GenereUscita::Rapporto, false, "-"});
  for (const UscitaChiesta& uscita : argomenti.Uscite) Aggiungi(destinazioni, uscita, rete);
  return destinazioni;
}

void ControllaDestinazioni(const Argomenti& argomenti) {
  ControllaValori(argomenti);
  std::unordered_set<std::string> reti;
  for (const std::string& rete : argomenti.Reti)
    if (const std::string chi = IdentitaFile(rete); !chi.empty() && !reti.insert(chi).second)
      throw ErroreUso("la rete " + Cita(rete) + " è data due volte");
  std::unordered_map<std::string, std::string> scritti;  // what each file will hold
  std::string sullUscita;
  for (const std::string& rete : argomenti.Reti)
    for (const Destinazione& destinazione : Destinazioni(argomenti, rete)) {
      const std::string nome = NomeUscita(destinazione);
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
      if (reti.contains(chi))
        throw ErroreUso("l'uscita " + Cita(destinazione.Percorso) +
                        " è un file della rete: non viene sovrascritto");
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
    if (letti.contains(IdentitaFile(destinazione.Percorso)))
      throw ErroreUso("l'uscita " + Cita(destinazione.Percorso) +
                      " è un file della rete: non viene sovrascritto");
}

}  // namespace compensa
