// The table of coordinates: its rows first, then what they change in the points of a book.

#include "host/importazione/csv/coordinate_csv.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/base/numeri.h"
#include "host/base/percorsi.h"
#include "host/base/testo_file.h"
#include "host/file_rete/csv.h"
#include "host/file_rete/riga_csv.h"
#include "host/importazione/csv/titoli_csv.h"
#include "host/rete/campi.h"

namespace compensa {

namespace {

constexpr double kScartoNotevole = 1.0;  // between the table and the book [m]
constexpr int kDecimaliScarto = 3;

enum Colonna : std::size_t { kCNome, kCEst, kCNord, kCQuota, kCRuolo, kCPla, kCAlt };
constexpr std::array<ColonnaCsv, 7> kColonne{{
    {"nome", true},
    {"est"},
    {"nord"},
    {"quota"},
    {"ruolo"},
    {"planimetria"},
    {"altimetria"},
}};
constexpr std::array<SinonimoCsv, 23> kSinonimi{{
    {"nome", kCNome},       {"punto", kCNome},
    {"id", kCNome},         {"name", kCNome},
    {"nome_punto", kCNome}, {"est", kCEst},
    {"e", kCEst},           {"east", kCEst},
    {"easting", kCEst},     {"nord", kCNord},
    {"n", kCNord},          {"north", kCNord},
    {"northing", kCNord},   {"quota", kCQuota},
    {"q", kCQuota},         {"z", kCQuota},
    {"elevation", kCQuota}, {"ruolo", kCRuolo},
    {"planimetria", kCPla}, {"ruolo_planimetria", kCPla},
    {"altimetria", kCAlt},  {"ruolo_altimetria", kCAlt},
    {"ruolo_quota", kCAlt},
}};

TitoloCsv Titolo(std::string_view titolo, std::optional<Assi> assi) {
  if (auto ambigua = TitoloXY(titolo, assi, kCEst, kCNord)) return *ambigua;
  if (const auto colonna = CercaSinonimo(TitoloSemplice(titolo), kSinonimi))
    return {.Colonna = colonna};
  std::vector<std::string_view> note;
  note.reserve(kColonne.size());
  for (const ColonnaCsv& colonna : kColonne) note.push_back(colonna.Nome);
  return {.Cosa = ChiaveSconosciuta("intestazione", "colonna", titolo, note)};
}

// The rows of the table, in their order.
class Tabella {
 public:
  Tabella(std::string_view testo, std::string_view file, std::optional<Assi> assi,
          Diagnostica& diagnostica)
      : Csv(testo, file, kColonne, diagnostica,
            [assi](std::string_view titolo) { return Titolo(titolo, assi); }),
        Riga(Csv, diagnostica, [this] { return NomePunto(Csv.Nome(kCNome)); }),
        Diario(diagnostica),
        Alterati(diagnostica) {}

  void Leggi() {
    if (!Csv.LeggiIntestazione()) return;
    while (Csv.ProssimaRiga()) {
      if (Csv.RigaIntera()) LeggiPunto();
    }
    if (Punti.empty() && !Diario.HaErrori())
      Diario.Errore(Csv.DoveRiga(), {.Problema = "la tabella non ha punti"});
  }

  std::vector<PuntoLibretto> Punti;
  std::unordered_map<std::string, std::size_t> Indice;  // of the names in Punti

 private:
  void LeggiPunto() {
    PuntoLibretto punto;
    punto.Nome = Csv.Nome(kCNome);
    punto.Dove = Csv.DoveRiga();
    if (punto.Nome.empty())
      return Errore(kCNome, {.Record = "punto", .Problema = "il nome è vuoto"});
    Alterati.Controlla(punto.Nome, Csv.Dove(kCNome));
    const auto [voce, nuovo] = Indice.try_emplace(punto.Nome, Punti.size());
    if (!nuovo) {
      const int riga = Punti[voce->second].Dove.Riga;
      return Errore(kCNome, {.Record = NomePunto(punto.Nome),
                             .Problema = "punto doppio: è già alla riga " + std::to_string(riga)});
    }
    punto.Est = Numero(kCEst, kEst);
    punto.Nord = Numero(kCNord, kNord);
    punto.Quota = Numero(kCQuota, kQuota);
    LeggiRuoli(punto);
    if (Riga.Vuoto(kCEst) != Riga.Vuoto(kCNord)) {
      Errore(Riga.Vuoto(kCEst) ? kCEst : kCNord,
             {.Record = NomePunto(punto.Nome),
              .Problema = "est e nord si danno insieme",
              .Voluto = Riga.Vuoto(kCEst) ? "anche est" : "anche nord"});
    }
    Punti.push_back(std::move(punto));
  }

  void LeggiRuoli(PuntoLibretto& punto) {
    const std::optional<int> unico = Ruolo(kCRuolo, "ruolo");
    punto.Ruoli.Pla = Ruolo(kCPla, "planimetria");
    punto.Ruoli.Alt = Ruolo(kCAlt, "altimetria");
    if (!punto.Ruoli.Pla) punto.Ruoli.Pla = unico;
    if (punto.Ruoli.Pla == kFisso && Riga.Vuoto(kCEst) && Riga.Vuoto(kCNord))
      Errore(kCEst, {.Record = NomePunto(punto.Nome),
                     .Problema = "punto fisso in planimetria senza est e nord"});
    if (punto.Ruoli.Alt == kFisso && Riga.Vuoto(kCQuota))
      Errore(kCQuota, {.Record = NomePunto(punto.Nome),
                       .Problema = "punto fisso in altimetria senza quota"});
    const bool perQuota = unico != kFisso || !Riga.Vuoto(kCQuota);
    if (!punto.Ruoli.Alt && perQuota) punto.Ruoli.Alt = unico;
  }

  std::optional<double> Numero(std::size_t colonna, const RegolaNumero& regola) {
    const double valore = Riga.Numero(colonna, regola);
    return Assegnato(valore) ? std::optional(valore) : std::nullopt;
  }

  std::optional<int> Ruolo(std::size_t colonna, std::string_view nome) {
    if (Riga.Vuoto(colonna)) return std::nullopt;
    return Riga.Ruolo(colonna, nome);
  }

  void Errore(std::size_t colonna, Guasto guasto) {
    Diario.Errore(Csv.Dove(colonna), std::move(guasto));
  }

  LettoreCsv Csv;
  RigaCsv Riga;
  Diagnostica& Diario;
  NomiAlterati Alterati;
};

// How far apart the two are, of what both have: the larger of the distances in plan and in height.
double Scarto(const PuntoLibretto& a, const PuntoLibretto& b) {
  double scarto = 0.0;
  if (a.Est && a.Nord && b.Est && b.Nord) scarto = std::hypot(*a.Est - *b.Est, *a.Nord - *b.Nord);
  if (a.Quota && b.Quota) scarto = std::max(scarto, std::abs(*a.Quota - *b.Quota));
  return scarto;
}

void Prevale(const PuntoLibretto& tabella, PuntoLibretto& punto) {
  if (tabella.Est && tabella.Nord) {
    punto.Est = tabella.Est;
    punto.Nord = tabella.Nord;
  }
  if (tabella.Quota) punto.Quota = tabella.Quota;
  if (tabella.Ruoli.Pla) punto.Ruoli.Pla = tabella.Ruoli.Pla;
  if (tabella.Ruoli.Alt) punto.Ruoli.Alt = tabella.Ruoli.Alt;
  punto.Dove = tabella.Dove;
}

}  // namespace

bool LeggiCoordinateCsv(const std::string& percorso, std::optional<Assi> assi, Libretto& libretto,
                        Diagnostica& diagnostica) {
  const std::size_t errori = diagnostica.Errori();
  const std::string_view file = libretto.NomiFile.emplace_back(percorso);
  const auto testo = LeggiTesto(PercorsoDa(percorso), kMassimoCsv, {file, 0, 0}, "", diagnostica);
  if (!testo) return false;
  Tabella tabella(*testo, file, assi, diagnostica);
  tabella.Leggi();
  if (diagnostica.Errori() != errori) return false;
  std::vector<bool> usati(tabella.Punti.size(), false);
  for (PuntoLibretto& punto : libretto.Punti) {
    const auto voce = tabella.Indice.find(punto.Nome);
    if (voce == tabella.Indice.end()) continue;
    const PuntoLibretto& dato = tabella.Punti[voce->second];
    const double scarto = Scarto(dato, punto);
    if (scarto > kScartoNotevole) {
      diagnostica.Avviso(
          dato.Dove,
          {.Record = NomePunto(punto.Nome),
           .Problema = "la tabella dista " + NumeroFisso(scarto, kDecimaliScarto) +
                       " m dalle coordinate alla riga " + std::to_string(punto.Dove.Riga) + " di " +
                       std::string(punto.Dove.File) + ": vale la tabella"});
    }
    Prevale(dato, punto);
    usati[voce->second] = true;
  }
  for (std::size_t i = 0; i < usati.size(); ++i) {
    if (!usati[i]) libretto.Punti.push_back(std::move(tabella.Punti[i]));
  }
  return true;
}

}  // namespace compensa
