// A choice among distances that may all be wrong or right: in turn the one is taken to be wrong, or
// right again, that lessens W = v^T v most. With the group chosen corrected the residuals are
//   v - Qvv P d
// and one more with the error d and S = r d^2 takes 2 d^T v - S from W.

#include "host/giudizio/avvertimenti/scelta_distanze.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace compensa {

namespace {

constexpr int kMosseMassime = 300;
constexpr int kMosseInsieme = 4;  // the first of them, of as many distances as there are

class Ricerca {
 public:
  Ricerca(const Risultati& risultati, const GruppoDistanze& tutte, const ResiduiDi& residui)
      : E(risultati), Tutte(tutte), Residui(residui) {}
  GruppoDistanze Scegli();

 private:
  struct Scelta {
    std::vector<char> Dentro;           // of each of the kind
    std::vector<std::size_t> Compagna;  // likewise: the other one of the same line, or itself
    GruppoDistanze Scelte;
    std::vector<double> V;  // of each equation: its residual with these corrected
  };
  std::vector<std::size_t> Compagne() const;
  double Guadagno(const DistanzaSospetta& s, const Scelta& scelta, std::size_t i,
                  double soglia) const;
  static double EffettoInsieme(const DistanzaSospetta& a, const DistanzaSospetta& b);
  bool ScegliConcordi(double soglia, Scelta& scelta);
  bool ScegliUna(double soglia, Scelta& scelta);
  bool Prosegui(double soglia, Scelta& scelta);
  std::size_t IndiceDi(const DistanzaSospetta& s) const {
    return static_cast<std::size_t>(s.Eq - E.Equazioni.data());
  }

  const Risultati& E;
  const GruppoDistanze& Tutte;
  const ResiduiDi& Residui;
};

// Two distances of one line that are both wrong agree with each other, and only together show it.
std::vector<std::size_t> Ricerca::Compagne() const {
  std::map<std::pair<int, int>, std::size_t> linee;
  std::vector<std::size_t> compagne(Tutte.size());
  for (std::size_t i = 0; i < Tutte.size(); ++i) {
    const int da = E.Stazioni[static_cast<std::size_t>(Tutte[i].Eq->Stazione)].Punto,
              a = Tutte[i].Oss->Punto;
    const auto [linea, nuova] = linee.try_emplace(std::minmax(da, a), i);
    compagne[i] = linea->second;
    if (!nuova) compagne[linea->second] = i;
  }
  return compagne;
}

// Of W by taking a distance to be wrong, or right again, before its own S.
double Ricerca::Guadagno(const DistanzaSospetta& s, const Scelta& scelta, std::size_t i,
                         double soglia) const {
  const double effetto = 2.0 * scelta.V[IndiceDi(s)] * s.InSqm() - soglia;
  return scelta.Dentro[i] != 0 ? -effetto : effetto;
}

// The S of two distances of one line: their equations are the same but for the weight.
double Ricerca::EffettoInsieme(const DistanzaSospetta& a, const DistanzaSospetta& b) {
  const double q = std::sqrt((1.0 - a.Eq->Ridondanza) * (1.0 - b.Eq->Ridondanza));
  return a.Effetto() + b.Effetto() - 2.0 * q * a.InSqm() * b.InSqm();
}

// Takes to be wrong, all at once, those that agree each by itself; false if there are none.
bool Ricerca::ScegliConcordi(double soglia, Scelta& scelta) {
  bool alcune = false;
  for (std::size_t i = 0; i < Tutte.size(); ++i) {
    if (scelta.Dentro[i] != 0) continue;
    const double k = scelta.V[IndiceDi(Tutte[i])] * Tutte[i].InSqm() / Tutte[i].Effetto();
    if (!(Guadagno(Tutte[i], scelta, i, soglia) > Tutte[i].Effetto()) ||
        !(std::abs(k - 1.0) < kConcorda))
      continue;
    scelta.Dentro[i] = 1;
    alcune = true;
  }
  return alcune;
}

// Takes the one to be wrong, or right again, that lessens W most; or two of one line. False if none
// does.
bool Ricerca::ScegliUna(double soglia, Scelta& scelta) {
  std::size_t quale = 0;
  bool conCompagna = false;
  double guadagno = 0.0;
  for (std::size_t i = 0; i < Tutte.size(); ++i) {
    const double suo = Guadagno(Tutte[i], scelta, i, soglia);
    if (suo - Tutte[i].Effetto() > guadagno)
      guadagno = suo - Tutte[i].Effetto(), quale = i, conCompagna = false;
    const std::size_t j = scelta.Compagna[i];
    if (j <= i || scelta.Dentro[i] != scelta.Dentro[j]) continue;
    const double due =
        suo + Guadagno(Tutte[j], scelta, j, soglia) - EffettoInsieme(Tutte[i], Tutte[j]);
    if (due > guadagno) guadagno = due, quale = i, conCompagna = true;
  }
  if (!(guadagno > 0.0)) return false;
  scelta.Dentro[quale] ^= 1;
  if (conCompagna) scelta.Dentro[scelta.Compagna[quale]] ^= 1;
  return true;
}

// Goes on choosing of the distances of one kind those that are wrong, each for at least so much of
// W. False when the work is used up.
bool Ricerca::Prosegui(double soglia, Scelta& scelta) {
  for (int mossa = 0; mossa < kMosseMassime; ++mossa) {
    if (!(mossa < kMosseInsieme && ScegliConcordi(soglia, scelta)) && !ScegliUna(soglia, scelta))
      break;
    scelta.Scelte.clear();
    for (std::size_t i = 0; i < Tutte.size(); ++i)
      if (scelta.Dentro[i] != 0) scelta.Scelte.push_back(Tutte[i]);
    const std::vector<double> tolti = Residui(scelta.Scelte);
    if (tolti.empty()) return false;
    for (std::size_t e = 0; e < tolti.size(); ++e)
      scelta.V[e] = ResiduoInSqm(E.Equazioni[e]) - tolti[e];
  }
  return true;
}

// What is left once most are found tells how good the observations are, and by how much each must
// stand out.
GruppoDistanze Ricerca::Scegli() {
  Scelta scelta{std::vector<char>(Tutte.size(), 0), Compagne(), {}, {}};
  for (const Equazione& e : E.Equazioni) scelta.V.push_back(ResiduoInSqm(e));
  if (!Prosegui(kSignificativo, scelta)) return {};
  double resto = 0.0;
  for (const double v : scelta.V) resto += v * v;
  const double sigma2 = std::max(1.0, resto / E.Planimetria.Ridondanza());
  if (!Prosegui(kSignificativo * sigma2, scelta)) return {};
  return std::move(scelta.Scelte);
}

}  // namespace

GruppoDistanze ScegliSbagliate(const Risultati& risultati, const GruppoDistanze& tutte,
                               const ResiduiDi& residui) {
  return Ricerca(risultati, tutte, residui).Scegli();
}

}  // namespace compensa
