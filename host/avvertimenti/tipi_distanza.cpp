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
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "host/approssimate/visuali.h"
#include "host/avvertimenti/dopo.h"
#include "host/avvertimenti/proiezione.h"
#include "host/campi.h"
#include "host/grandezze.h"
#include "host/numeri.h"
#include "host/statistica.h"

namespace {

constexpr double kVolteSqm = 3.0;         // a smaller d could not be told from the noise
constexpr double kResto = 0.1;            // of W that may be left where the errors are large
constexpr double kSignificativo = 16.0;   // four sigmas
constexpr double kConcorda = 0.2;         // of k from 1, where its standard deviation is large
constexpr double kCurvatura = 0.02;       // of k from 1 that the linear equations may miss by
constexpr double kPariMerito = 0.999;     // the same error by two ways, but for rounding
constexpr double kSenoMinimo = 1e-6;      // a sight along the vertical has no horizontal distance
constexpr double kQuasiVerticale = 50.0;  // a zenith angle nearer to 0 is hardly one [gon]
constexpr double kControllo = 0.01;       // smaller redundancy numbers show nothing
constexpr std::size_t kNumeroMolti = 2;
constexpr std::size_t kStazioniProvate = 3;
constexpr int kMosseMassime = 300;
constexpr int kMosseInsieme = 4;  // the first of them, of as many distances as there are
constexpr int kDecimali = 3;

// A distance that would be another one if it were of the other kind.
struct Sospetta {
  const Equazione* Eq;
  const RisultatoOsservazione* Oss;
  double D;  // d above [m]
  double InSqm() const { return D / Eq->SqmPriori; }
  double Spiegato() const { return Eq->Residuo / Eq->SqmPriori * InSqm(); }  // its share of t
  double Effetto() const { return Eq->Ridondanza * InSqm() * InSqm(); }      // its own S
};
using Gruppo = std::vector<Sospetta>;

const char* Detta(int tipo) { return tipo == kOrizzontale ? "orizzontale" : "inclinata"; }
const char* Altra(int tipo) { return tipo == kOrizzontale ? "inclinata" : "orizzontale"; }

// In standard deviations; 0 of what is not in plan.
double Residuo(const Equazione& e) {
  return e.Tipo != TipoEquazione::Dislivello && Presente(e.SqmPriori) ? e.Residuo / e.SqmPriori
                                                                      : 0.0;
}

double Spiegato(const Gruppo& gruppo) {
  double t = 0.0;
  for (const Sospetta& s : gruppo) t += s.Spiegato();
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
  std::vector<double> Residui(const Gruppo& gruppo);
  std::optional<double> SeSpiega(const Gruppo& gruppo);
  Gruppo MiglioreStazione();
  Gruppo MiglioreRete();
  struct Scelta {
    std::vector<char> Dentro;           // of each of the kind
    std::vector<std::size_t> Compagna;  // likewise: the other one of the same line, or itself
    Gruppo Scelte;
    std::vector<double> V;  // of each equation: its residual with these corrected
  };
  std::vector<std::size_t> Compagne(const Gruppo& tutte) const;
  double Guadagno(const Sospetta& s, const Scelta& scelta, std::size_t i, double soglia) const;
  static double EffettoInsieme(const Sospetta& a, const Sospetta& b);
  bool ScegliConcordi(const Gruppo& tutte, double soglia, Scelta& scelta);
  bool ScegliUna(const Gruppo& tutte, double soglia, Scelta& scelta);
  bool Prosegui(const Gruppo& tutte, double soglia, Scelta& scelta);
  Gruppo Scegli(const Gruppo& tutte);
  Gruppo MiglioreScelta();
  void Riferisci(const Gruppo& gruppo, std::string dove);
  const Sospetta* Singola() const;
  void RiferisciSingola(const Sospetta& s);
  const Posizione& Dove(const Sospetta& s) const {
    return R.PosizioniOsservazioni[static_cast<std::size_t>(s.Eq->Stazione)]
                                  [static_cast<std::size_t>(s.Eq->Osservazione)];
  }
  const std::string& NomeDi(int punto) const {
    return E.Punti[static_cast<std::size_t>(punto)].Nome;
  }
  const RisultatoStazione& StazioneDi(const Sospetta& s) const {
    return E.Stazioni[static_cast<std::size_t>(s.Eq->Stazione)];
  }
  std::size_t IndiceDi(const Sospetta& s) const {
    return static_cast<std::size_t>(s.Eq - E.Equazioni.data());
  }

  const Rete& R;
  const Risultati& E;
  std::array<Gruppo, 2> PerTipo;  // horizontal, slope
  std::optional<Proiezione> P;    // made when it is wanted
  double Omega = 0.0;             // W above
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
  const double daTipo = usato * std::abs(std::cos(o.Zenit * kRadDaGon)) / seno * parte;
  const double errore = std::abs(h.Residuo / h.Ridondanza);
  return std::abs(errore - daTipo) > errore / 2.0;
}

void Esame::Raccogli() {
  for (const Equazione& e : E.Equazioni) {
    if (e.Tipo == TipoEquazione::Dislivello || !Presente(e.SqmPriori)) continue;
    Omega += Residuo(e) * Residuo(e);
    if (e.Tipo != TipoEquazione::Distanza) continue;
    const RisultatoOsservazione& o = E.Stazioni[static_cast<std::size_t>(e.Stazione)]
                                         .Osservazioni[static_cast<std::size_t>(e.Osservazione)];
    if (o.TipoDist != kOrizzontale && o.TipoDist != kInclinata) continue;
    const double seno = std::abs(std::sin(o.Zenit * kRadDaGon));
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

std::vector<double> Esame::Residui(const Gruppo& gruppo) {
  std::vector<double> errori(E.Equazioni.size(), 0.0);
  for (const Sospetta& s : gruppo) errori[IndiceDi(s)] = s.InSqm();
  if (!P) P.emplace(E);
  return P->Residui(errori);
}

// What a group takes from W, if it explains it. That t is about W costs nothing to see.
std::optional<double> Esame::SeSpiega(const Gruppo& gruppo) {
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
Gruppo Esame::MiglioreStazione() {
  std::vector<Gruppo> provate;
  for (const Gruppo& tutte : PerTipo)
    for (auto inizio = tutte.begin(); inizio != tutte.end();) {
      const auto fine = std::find_if(inizio, tutte.end(), [&](const Sospetta& s) {
        return s.Eq->Stazione != inizio->Eq->Stazione;
      });
      if (fine - inizio >= std::ptrdiff_t{kNumeroMolti}) provate.emplace_back(inizio, fine);
      inizio = fine;
    }
  const auto lontananza = [&](const Gruppo& g) { return std::abs(Omega - Spiegato(g)); };
  std::stable_sort(provate.begin(), provate.end(),
                   [&](const Gruppo& a, const Gruppo& b) { return lontananza(a) < lontananza(b); });
  Gruppo migliore;
  double spiegato = 0.0;
  for (std::size_t i = 0; i < std::min(provate.size(), kStazioniProvate); ++i) {
    const std::optional<double> suo = SeSpiega(provate[i]);
    if (suo && *suo > spiegato) spiegato = *suo, migliore = provate[i];
  }
  return migliore;
}

Gruppo Esame::MiglioreRete() {
  Gruppo migliore;
  double spiegato = 0.0;
  for (const Gruppo& tutte : PerTipo) {
    const std::optional<double> suo = SeSpiega(tutte);
    if (suo && *suo > spiegato) spiegato = *suo, migliore = tutte;
  }
  return migliore;
}

// Two distances of one line that are both wrong agree with each other, and only together show it.
std::vector<std::size_t> Esame::Compagne(const Gruppo& tutte) const {
  std::map<std::pair<int, int>, std::size_t> linee;
  std::vector<std::size_t> compagne(tutte.size());
  for (std::size_t i = 0; i < tutte.size(); ++i) {
    const int da = StazioneDi(tutte[i]).Punto, a = tutte[i].Oss->Punto;
    const auto [linea, nuova] = linee.try_emplace(std::minmax(da, a), i);
    compagne[i] = linea->second;
    if (!nuova) compagne[linea->second] = i;
  }
  return compagne;
}

// Of W by taking a distance to be wrong, or right again, before its own S.
double Esame::Guadagno(const Sospetta& s, const Scelta& scelta, std::size_t i,
                       double soglia) const {
  const double effetto = 2.0 * scelta.V[IndiceDi(s)] * s.InSqm() - soglia;
  return scelta.Dentro[i] != 0 ? -effetto : effetto;
}

// The S of two distances of one line: their equations are the same but for the weight.
double Esame::EffettoInsieme(const Sospetta& a, const Sospetta& b) {
  const double q = std::sqrt((1.0 - a.Eq->Ridondanza) * (1.0 - b.Eq->Ridondanza));
  return a.Effetto() + b.Effetto() - 2.0 * q * a.InSqm() * b.InSqm();
}

// Takes to be wrong, all at once, those that agree each by itself; false if there are none.
bool Esame::ScegliConcordi(const Gruppo& tutte, double soglia, Scelta& scelta) {
  bool alcune = false;
  for (std::size_t i = 0; i < tutte.size(); ++i) {
    if (scelta.Dentro[i] != 0) continue;
    const double k = scelta.V[IndiceDi(tutte[i])] * tutte[i].InSqm() / tutte[i].Effetto();
    if (!(Guadagno(tutte[i], scelta, i, soglia) > tutte[i].Effetto()) ||
        !(std::abs(k - 1.0) < kConcorda))
      continue;
    scelta.Dentro[i] = 1;
    alcune = true;
  }
  return alcune;
}

// Takes the one to be wrong, or right again, that lessens W most; or two of one line. False if none
// does.
bool Esame::ScegliUna(const Gruppo& tutte, double soglia, Scelta& scelta) {
  std::size_t quale = 0;
  bool conCompagna = false;
  double guadagno = 0.0;
  for (std::size_t i = 0; i < tutte.size(); ++i) {
    const double suo = Guadagno(tutte[i], scelta, i, soglia);
    if (suo - tutte[i].Effetto() > guadagno)
      guadagno = suo - tutte[i].Effetto(), quale = i, conCompagna = false;
    const std::size_t j = scelta.Compagna[i];
    if (j <= i || scelta.Dentro[i] != scelta.Dentro[j]) continue;
    const double due =
        suo + Guadagno(tutte[j], scelta, j, soglia) - EffettoInsieme(tutte[i], tutte[j]);
    if (due > guadagno) guadagno = due, quale = i, conCompagna = true;
  }
  if (!(guadagno > 0.0)) return false;
  scelta.Dentro[quale] ^= 1;
  if (conCompagna) scelta.Dentro[scelta.Compagna[quale]] ^= 1;
  return true;
}

// Goes on choosing of the distances of one kind those that are wrong, each for at least so much of
// W. False when the work is used up.
bool Esame::Prosegui(const Gruppo& tutte, double soglia, Scelta& scelta) {
  for (int mossa = 0; mossa < kMosseMassime; ++mossa) {
    if (!(mossa < kMosseInsieme && ScegliConcordi(tutte, soglia, scelta)) &&
        !ScegliUna(tutte, soglia, scelta))
      break;
    scelta.Scelte.clear();
    for (std::size_t i = 0; i < tutte.size(); ++i)
      if (scelta.Dentro[i] != 0) scelta.Scelte.push_back(tutte[i]);
    const std::vector<double> tolti = Residui(scelta.Scelte);
    if (tolti.empty()) return false;
    for (std::size_t e = 0; e < tolti.size(); ++e) scelta.V[e] = Residuo(E.Equazioni[e]) - tolti[e];
  }
  return true;
}

// What is left once most are found tells how good the observations are, and by how much each must
// stand out.
Gruppo Esame::Scegli(const Gruppo& tutte) {
  Scelta scelta{std::vector<char>(tutte.size(), 0), Compagne(tutte), {}, {}};
  for (const Equazione& e : E.Equazioni) scelta.V.push_back(Residuo(e));
  if (!Prosegui(tutte, kSignificativo, scelta)) return {};
  double resto = 0.0;
  for (const double v : scelta.V) resto += v * v;
  const double sigma2 = std::max(1.0, resto / E.Planimetria.Ridondanza());
  if (!Prosegui(tutte, kSignificativo * sigma2, scelta)) return {};
  return std::move(scelta.Scelte);
}

Gruppo Esame::MiglioreScelta() {
  if (!(Omega > OmegaLecita)) return {};
  Gruppo migliore;
  double spiegato = 0.0;
  for (const Gruppo& tutte : PerTipo) {
    Gruppo gruppo = Scegli(tutte);
    const std::optional<double> suo = SeSpiega(gruppo);
    if (suo && *suo > spiegato) spiegato = *suo, migliore = std::move(gruppo);
  }
  return migliore;
}

void Esame::Riferisci(const Gruppo& gruppo, std::string dove) {
  const Sospetta& grande = *std::max_element(
      gruppo.begin(), gruppo.end(),
      [](const Sospetta& a, const Sospetta& b) { return std::abs(a.D) < std::abs(b.D); });
  const int tipo = grande.Oss->TipoDist;
  Trovati.push_back({Dove(grande),
                     {.Record = std::move(dove),
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
const Sospetta* Esame::Singola() const {
  const int massima = E.Planimetria.EquazioneWMassimo;
  for (const Gruppo& tutte : PerTipo)
    for (const Sospetta& s : tutte)
      if (massima != kNessuno && s.Eq == &E.Equazioni[static_cast<std::size_t>(massima)])
        return s.Eq->Ridondanza > kControllo && Concorda(s.Spiegato(), s.Effetto()) ? &s : nullptr;
  return nullptr;
}

void Esame::RiferisciSingola(const Sospetta& s) {
  const double errore = s.Eq->Residuo / s.Eq->Ridondanza;
  const int tipo = s.Oss->TipoDist;
  Trovati.push_back(
      {Dove(s),
       {.Record = NomeOsservazione(NomeDi(StazioneDi(s).Punto), NomeDi(s.Oss->Punto)),
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
  const Sospetta* singola = Singola();
  if (singola != nullptr && Omega - singola->Spiegato() < OmegaLecita) {
    RiferisciSingola(*singola);
    return std::move(Trovati);
  }
  Gruppo gruppo = MiglioreStazione();
  if (gruppo.empty()) gruppo = MiglioreRete();
  if (gruppo.empty()) gruppo = MiglioreScelta();
  if (!gruppo.empty()) {
    const bool unaStazione = std::all_of(gruppo.begin(), gruppo.end(), [&](const Sospetta& s) {
      return s.Eq->Stazione == gruppo.front().Eq->Stazione;
    });
    Riferisci(gruppo, unaStazione ? NomeStazione(NomeDi(StazioneDi(gruppo.front()).Punto))
                                  : "tutta la rete");
  } else if (singola != nullptr) {
    RiferisciSingola(*singola);
  }
  return std::move(Trovati);
}

}  // namespace

Rilievi ControllaTipiDistanza(const Rete& rete, const Risultati& risultati) {
  return Esame(rete, risultati).Esegui();
}
