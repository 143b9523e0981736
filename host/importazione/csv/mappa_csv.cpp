// The map of foreign columns: lines, pairs, and the checks that every pair makes sense.

#include "host/importazione/csv/mappa_csv.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "host/base/codifica.h"
#include "host/base/percorsi.h"
#include "host/base/testi.h"
#include "host/base/testo_file.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

constexpr std::uintmax_t kMassimoMappa = 1u << 20;  // [bytes]
constexpr std::string_view kVoluto = "colonna nostra = \"colonna della tabella\"";

// A value, quoted or bare, with the comment after it left out; nothing if its quotes do not close
// or something else follows them.
std::optional<std::string> LeggiValore(std::string_view testo) {
  testo = SenzaBianchi(testo);
  if (testo.empty() || (testo.front() != '"' && testo.front() != '\''))
    return std::string(SenzaBianchi(testo.substr(0, testo.find('#'))));
  const char virgolette = testo.front();
  std::string valore;
  std::size_t i = 1;
  for (; i < testo.size() && testo[i] != virgolette; ++i) {
    if (virgolette == '"' && testo[i] == '\\' && i + 1 < testo.size()) ++i;
    valore += testo[i];
  }
  if (i >= testo.size()) return std::nullopt;
  const std::string_view resto = SenzaBianchi(testo.substr(i + 1));
  if (!resto.empty() && resto.front() != '#') return std::nullopt;
  return valore;
}

// One file being read; the lines go in one by one.
class LettoreMappa {
 public:
  LettoreMappa(std::string_view file, std::span<const ColonnaCsv> colonne,
               std::span<const SinonimoCsv> sinonimi, Diagnostica& diagnostica)
      : File(file), Colonne(colonne), Sinonimi(sinonimi), Diario(diagnostica) {}

  void LeggiRiga(const RigaTesto& letta) {
    Riga = letta.Numero;
    const std::string_view riga = Testo = letta.Testo;
    const std::string_view utile = SenzaBianchi(riga);
    if (utile.front() == '#' || utile.front() == '[') return;
    const std::size_t uguale = riga.find('=');
    if (uguale == std::string_view::npos)
      return Errore(utile, {.Trovato = Cita(utile), .Voluto = std::string(kVoluto)});
    const std::string_view destra = riga.substr(uguale + 1);
    const std::optional<std::string> nostra = LeggiValore(riga.substr(0, uguale));
    std::optional<std::string> loro = LeggiValore(destra);
    if (!loro) return Errore(destra, {.Problema = "virgolette sbagliate", .Trovato = Cita(destra)});
    if (loro->empty())
      return Errore(destra, {.Problema = "manca il nome della colonna della tabella",
                             .Voluto = std::string(kVoluto)});
    const std::optional<std::size_t> colonna =
        CercaSinonimo(TitoloSemplice(nostra.value_or("")), Sinonimi);
    if (!colonna) return Sconosciuta(utile, nostra.value_or(std::string(utile)));
    for (const VoceMappa& voce : Voci) {
      const bool stessa = voce.Colonna == *colonna;
      if (!stessa && voce.Titolo != *loro) continue;
      return Errore(stessa ? utile : destra,
                    {.Problema = "colonna " + Cita(stessa ? *nostra : *loro) +
                                 " già data alla riga " + std::to_string(voce.Riga)});
    }
    Voci.push_back({*colonna, std::move(*loro), Riga, false});
  }

  void Finisci() {
    if (Voci.empty() && !Sbagliata)
      Diario.Errore({File, 0, 0}, {.Problema = "la mappa non ha voci",
                                   .Voluto = "una riga per colonna: " + std::string(kVoluto)});
  }

  std::vector<VoceMappa> Voci;

 private:
  void Errore(std::string_view parte, Guasto guasto) {
    const auto prima = static_cast<std::size_t>(parte.data() - Testo.data());
    const std::size_t bianchi = std::min(parte.find_first_not_of(kBianchi), parte.size());
    guasto.Record = "mappa delle colonne";
    Sbagliata = true;
    Diario.Errore({File, Riga, 1 + ContaCaratteri(Testo.substr(0, prima + bianchi))},
                  std::move(guasto));
  }

  void Sconosciuta(std::string_view parte, const std::string& nome) {
    std::vector<std::string_view> note;
    for (const ColonnaCsv& colonna : Colonne) note.push_back(colonna.Nome);
    Guasto guasto = ChiaveSconosciuta("", "colonna", nome, note);
    guasto.Voluto = "a sinistra di = una tra";
    for (const std::string_view nota : note) {
      guasto.Voluto += (nota == note.front() ? " " : ", ") + std::string(nota);
    }
    Errore(parte, std::move(guasto));
  }

  std::string_view File;
  std::span<const ColonnaCsv> Colonne;
  std::span<const SinonimoCsv> Sinonimi;
  Diagnostica& Diario;
  std::string_view Testo;  // of the current line
  int Riga = 0;
  bool Sbagliata = false;
};

}  // namespace

std::optional<std::vector<VoceMappa>> LeggiMappaCsv(const std::string& percorso,
                                                    std::span<const ColonnaCsv> colonne,
                                                    std::span<const SinonimoCsv> sinonimi,
                                                    Diagnostica& diagnostica) {
  const std::size_t errori = diagnostica.Errori();
  const std::optional<std::string> testo =
      LeggiTesto(PercorsoDa(percorso), kMassimoMappa, {percorso, 0, 0}, "--mappa", diagnostica);
  if (!testo) return std::nullopt;
  LettoreMappa lettore(percorso, colonne, sinonimi, diagnostica);
  Righe righe(*testo);
  RigaTesto riga;
  while (righe.Prossima(riga)) lettore.LeggiRiga(riga);
  lettore.Finisci();
  if (diagnostica.Errori() != errori) return std::nullopt;
  return std::move(lettore.Voci);
}

VoceMappa* CercaNellaMappa(std::vector<VoceMappa>& mappa, std::string_view titolo) {
  const std::string semplice = TitoloSemplice(titolo);
  const auto trovata = std::find_if(mappa.begin(), mappa.end(), [&](const VoceMappa& voce) {
    return voce.Titolo == titolo || (!semplice.empty() && TitoloSemplice(voce.Titolo) == semplice);
  });
  return trovata == mappa.end() ? nullptr : &*trovata;
}

}  // namespace compensa
