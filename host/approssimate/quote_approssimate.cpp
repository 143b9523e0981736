// Heights level by level: all points that a sight ties to a known height get the mean of what these
// sights give, weighted with the reciprocal of the squared length, before the next level begins.

#include "host/approssimate/quote_approssimate.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/approssimate/motivi.h"
#include "host/base/diagnostica.h"
#include "host/base/numeri.h"
#include "host/rete/statistica.h"
#include "host/rete/visuali.h"

namespace compensa {

namespace {

constexpr double kScartoMinimo = 0.30;     // heights nearer than this agree [m]
constexpr double kScartoRelativo = 0.001;  // and those nearer than this part of the sight
constexpr double kLunghezzaMinima = 1.0;   // shorter sights do not weigh more [m]
constexpr int kDecimali = 3;

struct Valore {
  double Quota, Lunghezza;
  int Base;
};

class Propagatore {
 public:
  Propagatore(Rete& rete, EsitoApprossimate& esito)
      : R(rete), E(esito), V(rete, kCalcoloAltimetria), InCoda(rete.Punti.size(), 0) {
    for (const Visuale& v : V.Tutte) Dislivelli.push_back(Dislivello(rete, v));
    Note.resize(rete.Punti.size());
  }
  void Esegui();

 private:
  bool Noto(int punto) const { return Assegnato(Punto(punto).Quota); }
  const TCoorCr& Punto(int i) const { return R.Punti[static_cast<std::size_t>(i)]; }
  void Sveglia(int punto);
  void SvegliaVicini(int punto);
  template <class Funzione>
  void PerOgniVicino(int punto, const Funzione& funzione) const;
  std::vector<Valore> Valori(int punto) const;
  double Media(int punto, const std::vector<Valore>& valori);
  void Riferisci();
  std::string Motivo(int punto) const;

  Rete& R;
  EsitoApprossimate& E;
  Visuali V;
  std::vector<double> Dislivelli;  // of each sight
  std::vector<char> InCoda;
  std::vector<int> Attesa;
  std::vector<std::string> Note;
};

void Propagatore::Sveglia(int punto) {
  if (Noto(punto) || InCoda[static_cast<std::size_t>(punto)] != 0) return;
  InCoda[static_cast<std::size_t>(punto)] = 1;
  Attesa.push_back(punto);
}

// Every point that a complete sight ties to this one, with the sight and the height difference
// towards this one.
template <class Funzione>
void Propagatore::PerOgniVicino(int punto, const Funzione& funzione) const {
  const auto p = static_cast<std::size_t>(punto);
  const auto chiama = [&](std::size_t i, int altro, double segno) {
    if (Dislivelli[i] == Dislivelli[i]) funzione(V.Tutte[i], altro, segno * Dislivelli[i]);
  };
  for (const int i : V.VistoDa[p])
    chiama(static_cast<std::size_t>(i), V.Tutte[static_cast<std::size_t>(i)].Da, 1.0);
  for (const int s : V.Postazioni[p])
    for (int i = V.Inizio[static_cast<std::size_t>(s)];
         i < V.Inizio[static_cast<std::size_t>(s) + 1]; ++i)
      chiama(static_cast<std::size_t>(i), V.Tutte[static_cast<std::size_t>(i)].A, -1.0);
}

void Propagatore::SvegliaVicini(int punto) {
  PerOgniVicino(punto, [&](const Visuale&, int altro, double) { Sveglia(altro); });
}

std::vector<Valore> Propagatore::Valori(int punto) const {
  std::vector<Valore> valori;
  PerOgniVicino(punto, [&](const Visuale& v, int altro, double dislivello) {
    if (Noto(altro)) valori.push_back({Punto(altro).Quota + dislivello, v.Distanza, altro});
  });
  return valori;
}

double Propagatore::Media(int punto, const std::vector<Valore>& valori) {
  std::vector<double> quote;
  quote.reserve(valori.size());
  for (const Valore& v : valori) quote.push_back(v.Quota);
  const double mediana = Mediana(quote);
  double pesi = 0.0;
  double somma = 0.0;
  std::vector<Valore> tenuti;
  for (const Valore& v : valori) {
    const double tolleranza = std::max(kScartoMinimo, kScartoRelativo * v.Lunghezza);
    if (valori.size() > 2 && std::abs(v.Quota - mediana) > tolleranza) continue;
    const double peso = 1.0 / std::pow(std::max(v.Lunghezza, kLunghezzaMinima), 2);
    pesi += peso;
    somma += peso * (v.Quota - mediana);
    tenuti.push_back(v);
  }
  const double quota = tenuti.empty() ? mediana : mediana + somma / pesi;
  const std::size_t escluse = tenuti.empty() ? 0 : valori.size() - tenuti.size();
  if (tenuti.empty()) tenuti = valori;
  double scarto = 0.0;
  double limite = kScartoMinimo;
  std::vector<int> basi;
  for (const Valore& v : tenuti) {
    scarto = std::max(scarto, std::abs(v.Quota - quota));
    limite = std::max(limite, kScartoRelativo * v.Lunghezza);
    if (std::find(basi.begin(), basi.end(), v.Base) == basi.end()) basi.push_back(v.Base);
  }
  std::string nota = NomePunto(R.Nomi[static_cast<std::size_t>(punto)]).Testo() +
                     ": quota approssimata per dislivelli da " + Elenco(R, basi);
  if (tenuti.size() > 1)
    nota += " (media di " + std::to_string(tenuti.size()) + ", scarto massimo " +
            NumeroFisso(scarto, kDecimali) + " m)";
  if (escluse > 0)
    nota += escluse == 1 ? "; scartata una visuale discorde"
                         : "; scartate " + std::to_string(escluse) + " visuali discordi";
  if (scarto > limite) nota += "; le visuali discordano: da controllare";
  Note[static_cast<std::size_t>(punto)] = std::move(nota);
  return quota;
}

std::string Propagatore::Motivo(int punto) const {
  const auto p = static_cast<std::size_t>(punto);
  bool lette = !V.VistoDa[p].empty();
  for (const int s : V.Postazioni[p])
    lette =
        lette || V.Inizio[static_cast<std::size_t>(s)] != V.Inizio[static_cast<std::size_t>(s) + 1];
  if (!lette) return "nessuna osservazione lo tocca; serve una quota approssimata";
  bool complete = false;
  PerOgniVicino(punto, [&](const Visuale&, int, double) { complete = true; });
  if (!complete)
    return "nessuna visuale completa (zenit, distanza, segnale, altezza dello strumento) da o "
           "verso "
           "il punto; serve completarne una, o una quota approssimata";
  return "le sue visuali vanno solo a punti senza quota; serve una quota nota che vi si colleghi";
}

void Propagatore::Riferisci() {
  for (std::size_t i = 0; i < R.Punti.size(); ++i) {
    const auto manca = [&](std::string motivo) {
      E.NonRaggiunti.push_back(AvvisoSu(R.PosizioniPunti[i], {.Quale = Codice::QuotaNonRaggiunta,
                                                              .Record = NomePunto(R.Nomi[i]),
                                                              .Problema = std::move(motivo)}));
    };
    if (!Note[i].empty()) {
      E.PuntiAlt.push_back(static_cast<int>(i));
      E.Note.push_back(std::move(Note[i]));
    } else if (!Assegnato(R.Punti[i].Quota) && R.RuoliIniziali[i].Alt == kFisso) {
      manca("fisso senza quota: va data, non si calcola");
    } else if (!Assegnato(R.Punti[i].Quota) && R.RuoliIniziali[i].Alt == kIncognito) {
      manca("senza quota: " + Motivo(static_cast<int>(i)));
    }
  }
}

void Propagatore::Esegui() {
  for (std::size_t i = 0; i < R.Punti.size(); ++i)
    if (Assegnato(R.Punti[i].Quota) && R.RuoliIniziali[i].Alt != kNonUsato)
      SvegliaVicini(static_cast<int>(i));
  while (!Attesa.empty()) {
    std::vector<std::pair<int, double>> trovate;
    for (const int punto : std::exchange(Attesa, {})) {
      InCoda[static_cast<std::size_t>(punto)] = 0;
      if (R.RuoliIniziali[static_cast<std::size_t>(punto)].Alt != kIncognito) continue;
      const std::vector<Valore> valori = Valori(punto);
      if (!valori.empty()) trovate.emplace_back(punto, Media(punto, valori));
    }
    for (const auto& [punto, quota] : trovate)
      R.Punti[static_cast<std::size_t>(punto)].Quota = quota;
    for (const auto& [punto, quota] : trovate) SvegliaVicini(punto);
  }
  Riferisci();
}

}  // namespace

void PropagaQuote(Rete& rete, EsitoApprossimate& esito) { Propagatore(rete, esito).Esegui(); }

}  // namespace compensa
