// A title is looked for in the map, among X and Y, which the axes explain, and among the synonyms.
// What the map gives a column to, no synonym gives it to as well.

#include "host/importazione/csv/titoli_campagna.h"

#include <algorithm>
#include <utility>

#include "host/importazione/csv/colonne_campagna.h"
#include "host/importazione/csv/titoli_csv.h"
#include "host/rete/campi.h"

namespace compensa {

TitoliCampagna::TitoliCampagna(const OpzioniLettura& opzioni, std::vector<VoceMappa> mappa,
                               Libretto& libretto)
    : Opzioni(opzioni), Mappa(std::move(mappa)), L(libretto) {}

TitoloCsv TitoliCampagna::Cerca(std::string_view titolo) {
  const bool conMappa = Opzioni.Mappa.has_value();
  if (VoceMappa* voce = CercaNellaMappa(Mappa, titolo)) {
    voce->Trovata = true;
    return {.Colonna = voce->Colonna};
  }
  if (!conMappa || Opzioni.AssiXY) {
    if (auto ambigua = TitoloXY(titolo, Opzioni.AssiXY, kCEst, kCNord)) return *ambigua;
  }
  const auto colonna = CercaSinonimo(TitoloSemplice(titolo), kSinonimiCampagna);
  const bool mappata = std::any_of(Mappa.begin(), Mappa.end(),
                                   [&](const VoceMappa& voce) { return voce.Colonna == colonna; });
  if (colonna && !mappata) return {.Colonna = colonna};
  if (conMappa) {
    L.Tralascia("colonna " + Cita(titolo), "non è fra le nostre né nella mappa", 1);
    return {};
  }
  std::vector<std::string_view> note;
  for (const SinonimoCsv& sinonimo : kSinonimiCampagna) note.push_back(sinonimo.Titolo);
  Guasto guasto = ChiaveSconosciuta("intestazione", "colonna", titolo, note);
  if (guasto.Suggerimento.empty())
    guasto.Suggerimento = "le colonne di altri programmi si spiegano con --mappa";
  return {.Cosa = std::move(guasto)};
}

void TitoliCampagna::ControllaMappa(std::string_view file, Diagnostica& diagnostica) const {
  for (const VoceMappa& voce : Mappa) {
    if (voce.Trovata) continue;
    diagnostica.Errore(
        {*Opzioni.Mappa, voce.Riga, 1},
        {.Record = "mappa delle colonne",
         .Problema = "la tabella " + Cita(file) + " non ha la colonna " + Cita(voce.Titolo)});
  }
}

}  // namespace compensa
