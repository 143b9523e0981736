// Each output is a stream of bytes into a file that appears only when it is complete.

#include "host/comando/scrittura_uscite.h"

#include <cstddef>
#include <functional>
#include <utility>

#include "host/base/diagnostica.h"
#include "host/calcolo/rapporto.h"
#include "host/uscite/dxf.h"
#include "host/uscite/gis/gpkg.h"
#include "host/uscite/gkf.h"
#include "host/uscite/html/html.h"
#include "host/uscite/json.h"

namespace compensa {

namespace {

constexpr std::size_t kTampone = std::size_t{1} << 16;  // [bytes]

using Scrittore = std::function<void(std::string_view)>;

void Versa(const Destinazione& dove, const Documento& documento, const Rapporto& rapporto,
           const Argomenti& argomenti, const Scrittore& scrivi) {
  switch (dove.Genere) {
    case GenereUscita::Rapporto: return rapporto.Versa(argomenti.CodificaRapporto, scrivi);
    case GenereUscita::Html: return ScriviHtml(documento, scrivi);
    case GenereUscita::Csv:
      return dove.Osservazioni ? ScriviOsservazioniCsv(documento, argomenti.DecimaliCsv, scrivi)
                               : ScriviPuntiCsv(documento, argomenti.DecimaliCsv, scrivi);
    case GenereUscita::Dxf: return ScriviDxf(documento, scrivi);
    case GenereUscita::GeoPackage: return ScriviGeoPackage(documento, scrivi);
    case GenereUscita::Gkf: return ScriviGkf(documento, scrivi);
    case GenereUscita::Json:
      return ScriviJson(documento.Esiti, scrivi, {documento.Messaggi, documento.Note});
  }
}

// Small pieces are gathered: a call of the system for each would take longer than the computation.
void VersaRaccolto(const Destinazione& dove, const Documento& documento, const Rapporto& rapporto,
                   const Argomenti& argomenti, FileSicuro& file) {
  std::string tampone;
  Versa(dove, documento, rapporto, argomenti, [&](std::string_view byte) {
    tampone += byte;
    if (tampone.size() < kTampone) return;
    file.Scrivi(tampone);
    tampone.clear();
  });
  file.Scrivi(tampone);
}

}  // namespace

ScritturaUscite::ScritturaUscite(std::vector<Destinazione> destinazioni)
    : Dove(std::move(destinazioni)), Confermati(Dove.size(), false) {
  for (const Destinazione& dove : Dove) File.emplace_back(dove.Percorso);
}

void ScritturaUscite::Scrivi(const Documento& documento, const Rapporto& rapporto,
                             const Argomenti& argomenti) {
  for (const bool standard : {false, true}) {
    for (std::size_t i = 0; i < Dove.size(); ++i)
      if (UscitaStandard(Dove[i].Percorso) == standard)
        VersaRaccolto(Dove[i], documento, rapporto, argomenti, File[i]);
    for (std::size_t i = 0; i < Dove.size(); ++i) {
      if (UscitaStandard(Dove[i].Percorso) != standard) continue;
      File[i].Conferma();
      Confermati[i] = true;
    }
  }
}

std::vector<std::string> ScritturaUscite::Scritti() const {
  std::vector<std::string> scritti;
  for (std::size_t i = 0; i < Dove.size(); ++i)
    if (Confermati[i] && !UscitaStandard(Dove[i].Percorso)) scritti.push_back(Dove[i].Percorso);
  return scritti;
}

}  // namespace compensa
