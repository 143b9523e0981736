// Distances of the wrong kind. Had a distance been taken for the other of the two kinds, horizontal
// and slope, the value that enters the adjustment would be less by
//   d = D' (1 - |sin z|)       horizontal that is a slope distance
//   d = D' (1 - 1 / |sin z|)   slope distance that is horizontal
// which is a gross error of known size. With v the residuals and d such errors, in a-priori standard
// deviations, and W = v^T v, the hypothesis that the errors k d are in a group of distances has
//   t = d^T v,  S = d^T Qvv P d        S = r d^2 for a single distance of redundancy r
//   k = t / S, standard deviation 1 / sqrt(S)
// and takes t^2 / S from W (W. Baarda, Statistical Concepts in Geodesy, 1967). The group is of the
// wrong kind where k is 1, what is left of W is no more than good observations leave, and no gross
// error of a single observation would take as much.
// Few distances explain before many do: one, then those of one kind in a set-up, then in the
// network, then those of them that agree: one after the other is taken to be wrong, or right again,
// as long as W with them corrected,
//   |v - Qvv P d|^2
// falls by more than chance would let it.

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "host/base/numeri.h"
#include "host/giudizio/avvertimenti/dopo.h"
#include "host/giudizio/avvertimenti/effetto_errori.h"
#include "host/giudizio/avvertimenti/scelta_distanze.h"
#include "host/rete/campi.h"
#include "host/rete/grandezze.h"
#include "host/rete/statistica.h"
#include "host/rete/visuali.h"

namespace compensa {

namespace {

constexpr double kVolteSqm = 3.0;         // a smaller d could not be told from the noise
constexpr double kResto = 0.1;            // of W that may be left where the errors are large
constexpr double kCurvatura = 0.02;       // of k from 1 that the linear equations may miss by
constexpr double kPariMerito = 0.999;     // the same error by two ways, but for rounding
constexpr double kSenoMinimo = 1e-6;      // a sight along the vertical has no horizontal distance
constexpr double kQuasiVerticale = 50.0;  // a zenith angle nearer to 0 is hardly one [gon]
constexpr double kControllo = 0.01;       // smaller redundancy numbers show nothing
constexpr std::size_t kNumeroMolti = 2;
constexpr std::size_t kStazioniProvate = 3;
constexpr int kDecimali = 3;

const char* Detta(int tipo) { return tipo == kOrizzontale ? "orizzontale" : "inclinata"; }
const char* Altra(int tipo) { return tipo == kOrizzontale ? "inclinata" : "orizzontale"; }

double Spiegato(const GruppoDistanze& gruppo) {
  double t = 0.0;
  for (const DistanzaSospetta& s : gruppo) t += s.Spiegato();
  return t;
}

class Esame {
 public:
  Esame(const Rete& rete, const Risultati& risultati) : R(rete), E(risultati) {}
  Rilievi Esegui();

 private:
  void Raccogli();
  bool ZenitSmentito(const RisultatoOsservazione& o, double usato, double seno) const;
  bool Concorda(double t, double S) const;
  bool Spiega(double t, double S) const;
  std::vector<double> Residui(const GruppoDistanze& gruppo);
  std::optional<double> SeSpiega(const GruppoDistanze& gruppo);
  GruppoDistanze MiglioreStazione();
  GruppoDistanze MiglioreRete();
  GruppoDistanze MiglioreScelta();
  void Riferisci(const GruppoDistanze& gruppo, Soggetto dove);
  const DistanzaSospetta* Singola() const;
  void RiferisciSingola(const DistanzaSospetta& s);
  const Posizione& Dove(const DistanzaSospetta& s) const {
    return R.PosizioniOsservazioni[static_cast<std::size_t>(s.Eq->Stazione)]
                                  [static_cast<std::size_t>(s.Eq->Osservazione)];
  }
  const std::string& NomeDi(int punto) const {
    return E.Punti[static_cast<std::size_t>(punto)].Nome;
  }
  const RisultatoStazione& StazioneDi(const DistanzaSospetta& s) const {
    return E.Stazioni[static_cast<std::size_t>(s.Eq->Stazione)];
  }
  std::size_t IndiceDi(const DistanzaSospetta& s) const {
    return static_cast<std::size_t>(s.Eq - E.Equazioni.data());
  }

  const Rete& R;
  const Risultati& E;
  std::array<GruppoDistanze, 2> PerTipo;  // horizontal, slope
  std::optional<Proiezione> P;            // made when it is wanted
  double Omega = 0.0;                     // W above
  double OmegaLecita = 0.0;
  double OmegaSingola = 0.0;  // what the largest gross error of one observation takes from it
  Rilievi Trovati;
};

// A zenith angle that is wrong itself would make the distance look like one of the other kind. The
// heights tell it, where its height difference alone is most of what is wrong with them: with a
// distance of the wrong kind it is wrong too, but by D' |cot z| (1 - |sin z|), or as much over
// |sin z|.
bool Esame::ZenitSmentito(const RisultatoOsservazione& o, double usato, double seno) const {
  if (std::abs(std::remainder(o.Zenit, kGiroGon)) < kQuasiVerticale) return true;
  if (o.Dislivello == kNessuno || o.Dislivello != E.Altimetria.EquazioneWMassimo) return false;
  const Equazione& h = E.Equazioni[static_cast<std::size_t>(o.Dislivello)];
  if (h.W * h.W < E.Altimetria.Ridondanza() / 2.0) return false;
  const double parte = o.TipoDist == kOrizzontale ? 1.0 - seno : 1.0 / seno - 1.0;
  const double daTipo = usato * std::abs(std::cos(o.Zenit * kRadPerGon)) / seno * parte;
  const double errore = std::abs(h.Residuo / h.Ridondanza);
  return std::abs(errore - daTipo) > errore / 2.0;
}

void Esame::Raccogli() {
  for (const Equazione& e : E.Equazioni) {
    if (e.Tipo == TipoEquazione::Dislivello || !Presente(e.SqmPriori)) continue;
    Omega += ResiduoInSqm(e) * ResiduoInSqm(e);
    if (e.Tipo != TipoEquazione::Distanza) continue;
    const RisultatoOsservazione& o = E.Stazioni[static_cast<std::size_t>(e.Stazione)]
                                         .Osservazioni[static_cast<std::size_t>(e.Osservazione)];
    if (o.TipoDist != kOrizzontale && o.TipoDist != kInclinata) continue;
    const double seno = std::abs(std::sin(o.Zenit * kRadPerGon));
    if (!(seno > kSenoMinimo)) continue;
    const double d = e.Usato * (o.TipoDist == kOrizzontale ? 1.0 - seno : 1.0 - 1.0 / seno);
    if (std::abs(d) > kVolteSqm * e.SqmPriori && !ZenitSmentito(o, e.Usato, seno))
      PerTipo[o.TipoDist == kOrizzontale ? 0 : 1].push_back({&e, &o, d});
  }
  const RisultatoCompensazione& c = E.Planimetria;
  OmegaLecita = c.Ridondanza() * std::pow(CalcolaLimitiSigmaZero(c.Ridondanza()).Massimo, 2.0);
  if (c.EquazioneWMassimo == kNessuno) return;
  const double w = E.Equazioni[static_cast<std::size_t>(c.EquazioneWMassimo)].W;
  OmegaSingola = w * w * Omega / c.Ridondanza();
}

// Whether the errors are of the size d, and the best explanation of all by one number. What is left
// of W tells how good the observations are.
bool Esame::Concorda(double t, double S) const {
  const double spiegato = t * t / S;
  const int gradi = E.Planimetria.Ridondanza() - 1;
  const double sigma = std::sqrt(std::max(1.0, gradi > 0 ? (Omega - spiegato) / gradi : Omega));
  const double scarto = std::abs(t / S - 1.0);
  return spiegato > kSignificativo * sigma * sigma && spiegato > kPariMerito * OmegaSingola &&
         scarto < kConcorda && scarto < kCurvatura + kVolteSqm * sigma / std::sqrt(S);
}

bool Esame::Spiega(double t, double S) const {
  return Omega > OmegaLecita && Omega - t * t / S < std::max(OmegaLecita, kResto * Omega) &&
         Concorda(t, S);
}

std::vector<double> Esame::Residui(const GruppoDistanze& gruppo) {
  std::vector<double> errori(E.Equazioni.size(), 0.0);
  for (const DistanzaSospetta& s : gruppo) errori[IndiceDi(s)] = s.InSqm();
  if (!P) P.emplace(R, E);
  return P->Residui(errori);
}

// What a group takes from W, if it explains it. That t is about W costs nothing to see.
std::optional<double> Esame::SeSpiega(const GruppoDistanze& gruppo) {
  if (gruppo.size() < kNumeroMolti || !(Omega > OmegaLecita)) return {};
  const double t = Spiegato(gruppo);
  if (!(t > (1.0 - kConcorda) * (Omega - std::max(OmegaLecita, kResto * Omega)) &&
        t < Omega / (1.0 - kConcorda)))
    return {};
  double S = 0.0;
  for (const double r : Residui(gruppo)) S += r * r;
  if (!(S > 0.0) || !Spiega(t, S)) return {};
  return t * t / S;
}

// Equations come in the order of their set-ups.
GruppoDistanze Esame::MiglioreStazione() {
  std::vector<GruppoDistanze> provate;
  for (const GruppoDistanze& tutte : PerTipo)
    for (auto inizio = tutte.begin(); inizio != tutte.end();) {
      const auto fine = std::find_if(inizio, tutte.end(), [&](const DistanzaSospetta& s) {
        return s.Eq->Stazione != inizio->Eq->Stazione;
      });
      if (fine - inizio >= std::ptrdiff_t{kNumeroMolti}) provate.emplace_back(inizio, fine);
      inizio = fine;
    }
  const auto lontananza = [&](const GruppoDistanze& g) { return std::abs(Omega - Spiegato(g)); };
  std::stable_sort(provate.begin(), provate.end(),
                   [&](const GruppoDistanze& a, const GruppoDistanze& b) {
                     return lontananza(a) < lontananza(b);
                   });
  GruppoDistanze migliore;
  double spiegato = 0.0;
  for (std::size_t i = 0; i < std::min(provate.size(), kStazioniProvate); ++i) {
    const std::optional<double> suo = SeSpiega(provate[i]);
    if (suo && *suo > spiegato) spiegato = *suo, migliore = provate[i];
  }
  return migliore;
}

GruppoDistanze Esame::MiglioreRete() {
  GruppoDistanze migliore;
  double spiegato = 0.0;
  for (const GruppoDistanze& tutte : PerTipo) {
    const std::optional<double> suo = SeSpiega(tutte);
    if (suo && *suo > spiegato) spiegato = *suo, migliore = tutte;
  }
  return migliore;
}

GruppoDistanze Esame::MiglioreScelta() {
  if (!(Omega > OmegaLecita)) return {};
  GruppoDistanze migliore;
  double spiegato = 0.0;
  for (const GruppoDistanze& tutte : PerTipo) {
    GruppoDistanze gruppo =
        ScegliSbagliate(E, tutte, [&](const GruppoDistanze& g) { return Residui(g); });
    const std::optional<double> suo = SeSpiega(gruppo);
    if (suo && *suo > spiegato) spiegato = *suo, migliore = std::move(gruppo);
  }
  return migliore;
}

void Esame::Riferisci(const GruppoDistanze& gruppo, Soggetto dove) {
  const DistanzaSospetta& grande = *std::max_element(
      gruppo.begin(), gruppo.end(), [](const DistanzaSospetta& a, const DistanzaSospetta& b) {
        return std::abs(a.D) < std::abs(b.D);
      });
  const int tipo = grande.Oss->TipoDist;
  Trovati.push_back({Dove(grande),
                     {.Quale = Codice::TipoDistanzaSbagliato,
                      .Record = std::move(dove),
                      .Problema = std::to_string(gruppo.size()) + " distanze dette \"" +
                                  Detta(tipo) + "\" tornano come \"" + Altra(tipo) + "\": da " +
                                  Cita(NomeDi(StazioneDi(grande).Punto)) + " a " +
                                  Cita(NomeDi(grande.Oss->Punto)) + ", con zenit " +
                                  NumeroFisso(grande.Oss->Zenit, kDecimali + 1) + ", sarebbe " +
                                  NumeroFisso(std::abs(grande.D), kDecimali) +
                                  (grande.D > 0.0 ? " m più corta" : " m più lunga"),
                      .Suggerimento = "correggere il tipo delle distanze"}});
}

// The one with the largest w, if it is of the wrong kind: a gross error elsewhere gives others a
// residual of any size.
const DistanzaSospetta* Esame::Singola() const {
  const int massima = E.Planimetria.EquazioneWMassimo;
  for (const GruppoDistanze& tutte : PerTipo)
    for (const DistanzaSospetta& s : tutte)
      if (massima != kNessuno && s.Eq == &E.Equazioni[static_cast<std::size_t>(massima)])
        return s.Eq->Ridondanza > kControllo && Concorda(s.Spiegato(), s.Effetto()) ? &s : nullptr;
  return nullptr;
}

void Esame::RiferisciSingola(const DistanzaSospetta& s) {
  const double errore = s.Eq->Residuo / s.Eq->Ridondanza;
  const int tipo = s.Oss->TipoDist;
  Trovati.push_back(
      {Dove(s),
       {.Quale = Codice::TipoDistanzaSbagliato,
        .Record = NomeOsservazione(NomeDi(StazioneDi(s).Punto), NomeDi(s.Oss->Punto)),
        .Problema = std::string("distanza detta \"") + Detta(tipo) + "\" che torna come \"" +
                    Altra(tipo) + "\": l'errore visto è " + NumeroFisso(errore, kDecimali) +
                    " m, con zenit " + NumeroFisso(s.Oss->Zenit, kDecimali + 1) +
                    " la differenza fra i due tipi è " + NumeroFisso(s.D, kDecimali) + " m",
        .Suggerimento = "correggere il tipo"}});
}

Rilievi Esame::Esegui() {
  const RisultatoCompensazione& c = E.Planimetria;
  if (!c.Compiuta() || c.Ridondanza() <= 0) return {};
  Raccogli();
  const DistanzaSospetta* singola = Singola();
  if (singola != nullptr && Omega - singola->Spiegato() < OmegaLecita) {
    RiferisciSingola(*singola);
    return std::move(Trovati);
  }
  GruppoDistanze gruppo = MiglioreStazione();
  if (gruppo.empty()) gruppo = MiglioreRete();
  if (gruppo.empty()) gruppo = MiglioreScelta();
  if (!gruppo.empty()) {
    const bool unaStazione = std::all_of(
        gruppo.begin(), gruppo.end(),
        [&](const DistanzaSospetta& s) { return s.Eq->Stazione == gruppo.front().Eq->Stazione; });
    Riferisci(gruppo, unaStazione ? NomeStazione(NomeDi(StazioneDi(gruppo.front()).Punto))
                                  : Soggetto(TipoSoggetto::Rete));
  } else if (singola != nullptr) {
    RiferisciSingola(*singola);
  }
  return std::move(Trovati);
}

}  // namespace

Rilievi ControllaTipiDistanza(const Rete& rete, const Risultati& risultati) {
  return Esame(rete, risultati).Esegui();
}

}  // namespace compensa
