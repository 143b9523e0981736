// Distances of the wrong kind. Had a distance been taken for the other of the two kinds, horizontal
// and slope, the value that enters the adjustment would be less by
//   d = D' (1 - |sin z|)       horizontal that is a slope distance
//   d = D' (1 - 1 / |sin z|)   slope distance that is horizontal
// which is a gross error of known size. With v the residuals, s the a-priori standard deviations, r
// the redundancy numbers and W = sum (v / s)^2:
//   one distance    the error that its residual tells of, v / r (W. Baarda, A Testing Procedure for
//                   Use in Geodetic Networks, 1968), is its d
//   many            v = Qvv P d makes W = d^T P Qvv P d = d^T P v: what the errors d explain of W
//                   is t = sum (v d / s^2), and all of them are of the wrong kind where what is
//                   left, W - t, is no more than good observations leave.
// Few distances explain before many do: one, then those of one kind in a set-up, then in the
// network.

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>
#include <utility>

#include "host/approssimate/visuali.h"
#include "host/avvertimenti/dopo.h"
#include "host/numeri.h"
#include "host/statistica.h"
#include "host/uscite/grandezze.h"

namespace {

constexpr double kVolteSqm = 3.0;        // a smaller d could not be told from the noise
constexpr double kResto = 0.1;           // of W that may be left where the errors are large
constexpr double kSignificativo = 16.0;  // four sigmas: t has its own value as variance
constexpr double kConcorda = 0.2;        // relative difference of what was seen and what d explains
constexpr double kSenoMinimo = 1e-6;     // a sight along the vertical has no horizontal distance
constexpr double kControllo = 0.01;      // smaller redundancy numbers show nothing
constexpr std::size_t kNumeroMolti = 2;
constexpr int kDecimali = 3;

// A distance that would be another one if it were of the other kind.
struct Sospetta {
  const Equazione* Eq;
  const RisultatoOsservazione* Oss;
  double D;  // d above [m]
  double Spiegato() const { return Eq->Residuo * D / (Eq->SqmPriori * Eq->SqmPriori); }
};

const char* Detta(int tipo) { return tipo == kOrizzontale ? "orizzontale" : "inclinata"; }
const char* Altra(int tipo) { return tipo == kOrizzontale ? "inclinata" : "orizzontale"; }

class Esame {
 public:
  Esame(const Rete& rete, const Risultati& risultati) : R(rete), E(risultati) {}
  Rilievi Esegui();

 private:
  void Raccogli();
  bool Spiega(double spiegato) const;
  void Migliore(const std::vector<Sospetta>& gruppo, std::vector<Sospetta>& migliore) const;
  std::vector<Sospetta> MiglioreStazione() const;
  void Riferisci(const std::vector<Sospetta>& gruppo, std::string dove);
  static bool Torna(const Sospetta& s);
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

  const Rete& R;
  const Risultati& E;
  std::array<std::vector<Sospetta>, 2> PerTipo;  // horizontal, slope
  double Omega = 0.0;                            // W above
  double OmegaLecita = 0.0;
  Rilievi Trovati;
};

void Esame::Raccogli() {
  for (const Equazione& e : E.Equazioni) {
    if (e.Tipo == TipoEquazione::Dislivello || !Presente(e.SqmPriori)) continue;
    Omega += e.Residuo * e.Residuo / (e.SqmPriori * e.SqmPriori);
    if (e.Tipo != TipoEquazione::Distanza) continue;
    const RisultatoOsservazione& o = E.Stazioni[static_cast<std::size_t>(e.Stazione)]
                                         .Osservazioni[static_cast<std::size_t>(e.Osservazione)];
    if (o.TipoDist != kOrizzontale && o.TipoDist != kInclinata) continue;
    const double seno = std::abs(std::sin(o.Zenit * kRadDaGon));
    if (!(seno > kSenoMinimo)) continue;
    const double d = e.Usato * (o.TipoDist == kOrizzontale ? 1.0 - seno : 1.0 - 1.0 / seno);
    if (std::abs(d) > kVolteSqm * e.SqmPriori)
      PerTipo[o.TipoDist == kOrizzontale ? 0 : 1].push_back({&e, &o, d});
  }
}

double Spiegato(const std::vector<Sospetta>& gruppo) {
  double t = 0.0;
  for (const Sospetta& s : gruppo) t += s.Spiegato();
  return t;
}

bool Esame::Spiega(double spiegato) const {
  return Omega > OmegaLecita && spiegato > kSignificativo && spiegato <= Omega &&
         Omega - spiegato < std::max(OmegaLecita, kResto * Omega);
}

// Of the groups that explain, the one that explains most.
void Esame::Migliore(const std::vector<Sospetta>& gruppo, std::vector<Sospetta>& migliore) const {
  if (gruppo.size() < kNumeroMolti) return;
  const double spiegato = Spiegato(gruppo);
  if (Spiega(spiegato) && spiegato > Spiegato(migliore)) migliore = gruppo;
}

// Equations come in the order of their set-ups.
std::vector<Sospetta> Esame::MiglioreStazione() const {
  std::vector<Sospetta> migliore;
  for (const std::vector<Sospetta>& tutte : PerTipo)
    for (auto inizio = tutte.begin(); inizio != tutte.end();) {
      const auto fine = std::find_if(inizio, tutte.end(), [&](const Sospetta& s) {
        return s.Eq->Stazione != inizio->Eq->Stazione;
      });
      Migliore({inizio, fine}, migliore);
      inizio = fine;
    }
  return migliore;
}

void Esame::Riferisci(const std::vector<Sospetta>& gruppo, std::string dove) {
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

// Whether the error that the residual tells of is the difference between the kinds.
bool Esame::Torna(const Sospetta& s) {
  const Equazione& e = *s.Eq;
  if (e.Ridondanza < kControllo) return false;
  const double sqm = e.SqmPriori / std::sqrt(e.Ridondanza);
  const double scarto = std::abs(e.Residuo / e.Ridondanza - s.D);
  return std::abs(e.Residuo / e.Ridondanza) > kWSospetta * sqm && scarto < kVolteSqm * sqm &&
         scarto < kConcorda * std::abs(s.D);
}

// The one with the largest w, if it is of the wrong kind: a gross error elsewhere gives others a
// residual of any size.
const Sospetta* Esame::Singola() const {
  const int massima = E.Planimetria.EquazioneWMassimo;
  for (const std::vector<Sospetta>& tutte : PerTipo)
    for (const Sospetta& s : tutte)
      if (massima != kNessuno && s.Eq == &E.Equazioni[static_cast<std::size_t>(massima)])
        return Torna(s) ? &s : nullptr;
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
  OmegaLecita = c.Ridondanza() * std::pow(CalcolaLimitiSigmaZero(c.Ridondanza()).Massimo, 2.0);
  const Sospetta* singola = Singola();
  if (singola != nullptr && Spiega(singola->Spiegato())) {
    RiferisciSingola(*singola);
    return std::move(Trovati);
  }
  std::vector<Sospetta> gruppo = MiglioreStazione();
  std::string dove =
      gruppo.empty() ? "tutta la rete" : NomeStazione(NomeDi(StazioneDi(gruppo.front()).Punto));
  if (gruppo.empty())
    for (const std::vector<Sospetta>& tutte : PerTipo) Migliore(tutte, gruppo);
  if (!gruppo.empty())
    Riferisci(gruppo, std::move(dove));
  else if (singola != nullptr)
    RiferisciSingola(*singola);
  return std::move(Trovati);
}

}  // namespace

Rilievi ControllaTipiDistanza(const Rete& rete, const Risultati& risultati) {
  return Esame(rete, risultati).Esegui();
}
