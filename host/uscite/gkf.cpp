// The network as a .gkf file, in the model that this program adjusts.
//
//   plan      angles from the first used reading of each set-up, independent, all of one weight,
//             and distances reduced to the plane: as the last iteration's equations have them
//   height    height differences of weight p = 0.001 / D^2 (D in km), hence of standard deviation
//             1 / sqrt p in the unit of sigma zero, which the file takes to be 1 mm: 31.6 mm per km
//
// The other program works with directions, one unknown orientation a set-up: as directions the same
// readings would have other weights. As angles both normal equations are the same, and so are
// coordinates and residuals. A height difference of a set-up whose instrument height is unknown
// starts at a point of its own, the instrument's axis: its height stands for that unknown.
//
// Without equations the readings are written as they stand in the field book.

#include "host/uscite/gkf.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <unordered_set>

#include "host/base/numeri.h"
#include "host/base/unita.h"
#include "host/base/versione.h"
#include "host/file_rete/parole_gkf.h"
#include "host/rete/grandezze.h"
#include "host/uscite/html/html_scrittura.h"

namespace compensa::gkf {

namespace {

constexpr std::string_view kSpazioNomi = "http://www.gnu.org/software/gama/gama-local";
constexpr double kSqmUnitario = 1e-3;  // of an angle, where all weigh alike and none is given [gon]
constexpr double kMmDiSigmaZero = 1.0;  // standard deviation of unit weight in height
constexpr int kDecimaliGon = 8;
constexpr int kDecimaliMetri = 6;
constexpr int kDecimaliStdev = 4;

class ScrittoreGkf {
 public:
  ScrittoreGkf(const Documento& documento, const std::function<void(std::string_view)>& scrivi)
      : R(documento.Esiti), Scrivi(scrivi) {}

  void Documenta() {
    ConPiano = Fatta(TipoEquazione::Angolo) || Fatta(TipoEquazione::Distanza);
    ConQuote = Fatta(TipoEquazione::Dislivello);
    Grezza = !ConPiano && !ConQuote;
    NominaStrumenti();
    Scrivi("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    ScriviConvenzioni();
    Apri(kRoot, {{"xmlns", std::string(kSpazioNomi)}}, ">\n");
    Apri(kNetwork, {{kAxes, "en"}, {kSense, kClockwise}}, ">\n");
    std::string progetto = R.DatiProgetto.Nome;  // on one line, which makes it a name
    std::replace_if(
        progetto.begin(), progetto.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    Scrivi("<description>" + Protetto(progetto) + "</description>\n");
    Vuoto(kParameters, {{"sigma-apr", "1"}, {"conf-pr", "0.95"}, {"sigma-act", "aposteriori"}});
    Apri(kObservations, {}, ">\n");
    ScriviPunti();
    for (const RisultatoStazione& s : R.Stazioni) Grezza ? ScriviLetture(s) : ScriviStazione(s);
    if (ConQuote) ScriviDislivelli();
    for (const std::string_view nome : {kObservations, kNetwork, kRoot}) Chiudi(nome);
  }

 private:
  using Attributi = std::initializer_list<std::pair<std::string_view, std::string>>;

  void Apri(std::string_view nome, Attributi attributi, std::string_view coda) {
    std::string riga = "<" + std::string(nome);
    for (const auto& [chiave, valore] : attributi) {
      if (valore.empty()) continue;
      riga.append(" ").append(chiave).append("=\"").append(Protetto(valore)).append("\"");
    }
    Scrivi(riga += coda);
  }

  std::string Nome(int punto) const { return std::string(NomePunto(R, punto)); }

  std::string StdevAngolo(double sqm) const {
    const double dato = Presente(sqm) ? sqm : ValoreDato(R.Opzioni.SqmDir);
    return NumeroCorto((dato > 0.0 ? dato : kSqmUnitario) / kGonPerCc, kDecimaliStdev);
  }

  bool Fatta(TipoEquazione tipo) const {
    return std::any_of(R.Equazioni.begin(), R.Equazioni.end(),
                       [&](const Equazione& e) { return e.Tipo == tipo; });
  }

  void ScriviConvenzioni() {
    Commento("Scritto da " + std::string(kNomeProgramma) + " " + std::string(kVersioneProgramma));
    Commento(
        "Assi: x verso est, y verso nord. Angoli orari in gon; stdev in cc (1 cc = 0.0001 gon) "
        "per gli angoli, in mm per distanze e dislivelli, tutti a priori (sigma-apr = 1).");
    if (Grezza) {
      Commento(
          "Rete non compensata: letture del libretto di campagna, non ridotte. stdev delle "
          "direzioni e degli zenit = scarto di un angolo / radice di 2. Mancano le letture delle "
          "stazioni fuori centro, che non hanno posto in questo formato.");
    } else {
      Commento(
          "Modello equivalente: angle = angolo dalla prima direzione della stazione, ridotto in "
          "centro e al piano, ciascuno indipendente dagli altri; distance = distanza ridotta al "
          "piano; dh = dislivello fra i punti.");
      if (ConQuote)
        Commento(
            "stdev dei dislivelli proporzionale alla distanza: radice di 1/p, peso p = 0.001/D^2 "
            "con D in km, unità di peso 1 mm (31.6 mm su 1 km). Planimetria e altimetria sono "
            "indipendenti, con due sigma zero: quello comune a posteriori è un altro numero.");
      if (std::any_of(Strumenti.begin(), Strumenti.end(), [](const auto& s) { return !s.empty(); }))
        Commento("I punti «… (strumento n)» sono gli assi degli strumenti di altezza incognita.");
    }
  }

  // Only what takes part in an adjustment that was made has a role, else what the file asked for.
  void ScriviPunto(const RisultatoPunto& p) {
    const RuoliPunto& ruoli = Grezza ? p.RuoliIniziali : p.Ruoli;
    std::string fisso;
    std::string incognito;
    const auto aggiungi = [&](bool presente, int ruolo, std::string_view assi) {
      if (!presente) return;
      if (ruolo == kFisso) fisso += assi;
      if (ruolo == kIncognito || ruolo == kCompensato) incognito += assi;
    };
    const bool piano = Presente(p.EstIniziale) && Presente(p.NordIniziale);
    aggiungi(ConPiano || Grezza, ruoli.Pla, "xy");
    aggiungi(ConQuote || Grezza, ruoli.Alt, "z");
    const auto numero = [](double v, bool se) { return se ? NumeroBreve(v) : std::string(); };
    Vuoto(kPoint, {{kId, p.Nome},
                   {"x", numero(p.EstIniziale, piano)},
                   {"y", numero(p.NordIniziale, piano)},
                   {"z", numero(p.QuotaIniziale, Presente(p.QuotaIniziale))},
                   {kFix, fisso},
                   {kAdj, incognito}});
  }

  void ScriviPunti() {
    for (const RisultatoPunto& p : R.Punti) ScriviPunto(p);
    for (std::size_t i = 0; i < Strumenti.size(); ++i) {
      if (Strumenti[i].empty()) continue;
      const RisultatoStazione& s = R.Stazioni[i];
      const double quota = R.Punti[static_cast<std::size_t>(s.Punto)].QuotaIniziale + s.AltStrum;
      Vuoto(kPoint, {{kId, Strumenti[i]},
                     {"z", Presente(quota) ? NumeroBreve(quota) : std::string()},
                     {kAdj, "z"}});
    }
  }

  // Names for the axes of the instruments of unknown height, that no point has.
  void NominaStrumenti() {
    Strumenti.resize(R.Stazioni.size());
    std::unordered_set<std::string_view> nomi;
    for (const RisultatoPunto& p : R.Punti) nomi.insert(p.Nome);
    for (std::size_t i = 0; ConQuote && i < R.Stazioni.size(); ++i) {
      const RisultatoStazione& s = R.Stazioni[i];
      if (s.AltStrumNota || !Presente(s.AltStrumCompensata) || Nome(s.Punto).empty()) continue;
      Strumenti[i] = Nome(s.Punto) + " (strumento " + std::to_string(i + 1) + ")";
      while (nomi.contains(Strumenti[i])) Strumenti[i] += '\'';
    }
  }

  void ScriviStazione(const RisultatoStazione& s) {
    const bool usata = std::any_of(s.Osservazioni.begin(), s.Osservazioni.end(), [](const auto& o) {
      return o.Angolo != kNessuno || o.EqDistanza != kNessuno;
    });
    if (!usata) return;
    Apri(kObs, {{kFrom, Nome(s.Punto)}}, ">\n");
    for (const RisultatoOsservazione& o : s.Osservazioni) {
      if (o.Angolo == kNessuno) continue;
      const Equazione& e = Di(o.Angolo);
      const auto riferimento = static_cast<std::size_t>(e.Riferimento);
      Vuoto(kAngle, {{kBs, Nome(s.Osservazioni[riferimento].Punto)},
                     {kFs, Nome(o.Punto)},
                     {kVal, NumeroFisso(e.Usato, kDecimaliGon)},
                     {kStdev, StdevAngolo(e.SqmPriori)}});
    }
    for (const RisultatoOsservazione& o : s.Osservazioni) {
      if (o.EqDistanza == kNessuno) continue;
      const Equazione& e = Di(o.EqDistanza);
      if (!Presente(e.Usato)) continue;  // the ends coincide
      Vuoto(kDistance, {{kTo, Nome(o.Punto)},
                        {kVal, NumeroFisso(e.Usato, kDecimaliMetri)},
                        {kStdev, NumeroCorto(e.SqmPriori / kMetriPerMm, kDecimaliMetri)}});
    }
    Chiudi(kObs);
  }

  void ScriviDislivelli() {
    Apri(kHeights, {}, ">\n");
    for (std::size_t i = 0; i < R.Stazioni.size(); ++i) {
      const RisultatoStazione& s = R.Stazioni[i];
      const bool strumento = !Strumenti[i].empty();
      for (const RisultatoOsservazione& o : s.Osservazioni) {
        if (o.Dislivello == kNessuno) continue;
        const Equazione& e = Di(o.Dislivello);
        const double usato = strumento ? e.Usato - s.AltStrumCompensata : e.Usato;
        Vuoto(kDh, {{kFrom, strumento ? Strumenti[i] : Nome(s.Punto)},
                    {kTo, Nome(o.Punto)},
                    {kVal, NumeroFisso(usato, kDecimaliMetri)},
                    {kStdev, NumeroCorto(kMmDiSigmaZero / std::sqrt(e.Peso), kDecimaliMetri)}});
      }
    }
    Chiudi(kHeights);
  }

  // The readings of a set-up as they are. A slope distance without the heights of instrument and
  // target is reduced to the horizontal here, since a missing height would be taken for zero.
  void ScriviLetture(const RisultatoStazione& s) {
    if (Presente(s.EccDistanza) && s.EccDistanza > 0.0) return;
    const bool inQuota = Presente(s.AltStrum) && s.AltStrumNota;
    const std::string direzione =
        StdevAngolo((R.Opzioni.SqmDir > 0.0 ? ValoreDato(R.Opzioni.SqmDir) : kSqmUnitario) /
                    std::numbers::sqrt2);
    const auto distanza = [&](double metri) {
      const double mm =
          (R.Opzioni.SqmDistCost + R.Opzioni.SqmDistProp * metri / kMetriPerKm) / kMetriPerMm;
      return mm > 0.0 ? NumeroCorto(mm, kDecimaliMetri) : std::string();
    };
    Apri(kObs, {{kFrom, Nome(s.Punto)}, {kFromHeight, inQuota ? NumeroBreve(s.AltStrum) : ""}},
         ">\n");
    for (const RisultatoOsservazione& o : s.Osservazioni) {
      const std::string a = Nome(o.Punto);
      const bool completa = inQuota && Presente(o.Zenit) && Presente(o.AltSegnale);
      const std::string segnale = completa ? NumeroBreve(o.AltSegnale) : "";
      if (Presente(o.Direzione))
        Vuoto(kDirection, {{kTo, a}, {kVal, NumeroBreve(o.Direzione)}, {kStdev, direzione}});
      if (completa)
        Vuoto(kZAngle,
              {{kTo, a}, {kVal, NumeroBreve(o.Zenit)}, {kStdev, direzione}, {kToHeight, segnale}});
      if (!Presente(o.Distanza)) continue;
      if (o.TipoDist == kInclinata && completa)
        Vuoto(kSDistance, {{kTo, a},
                           {kVal, NumeroBreve(o.Distanza)},
                           {kStdev, distanza(o.Distanza)},
                           {kToHeight, segnale}});
      else if (o.TipoDist == kOrizzontale || (o.TipoDist == kInclinata && Presente(o.Zenit)))
        Vuoto(kDistance,
              {{kTo, a},
               {kVal, NumeroBreve(o.TipoDist == kOrizzontale
                                      ? o.Distanza
                                      : o.Distanza * std::abs(std::sin(o.Zenit * kRadPerGon)))},
               {kStdev, distanza(o.Distanza)}});
    }
    Chiudi(kObs);
  }

  void Vuoto(std::string_view nome, Attributi attributi) { Apri(nome, attributi, "/>\n"); }
  void Chiudi(std::string_view nome) { Scrivi("</" + std::string(nome) + ">\n"); }
  void Commento(const std::string& testo) { Scrivi("<!-- " + testo + " -->\n"); }

  const Equazione& Di(int indice) const { return R.Equazioni[static_cast<std::size_t>(indice)]; }

  const Risultati& R;
  const std::function<void(std::string_view)>& Scrivi;
  bool ConPiano = false, ConQuote = false, Grezza = false;
  std::vector<std::string> Strumenti;  // by station: the point of its axis, empty = none
};

}  // namespace

}  // namespace compensa::gkf

void compensa::ScriviGkf(const Documento& documento,
                         const std::function<void(std::string_view)>& scrivi) {
  gkf::ScrittoreGkf(documento, scrivi).Documenta();
}
