// Misclosures that need no coordinates.
//   distance there and back   |D_AB - D_BA|          3 sigma_D sqrt 2, and D |dh| / R for the two
//                                                    levels that they are reduced to
//   height there and back     |dh_AB + dh_BA|        3 sqrt 2 (D sigma_z + heights), and refraction
//   triangle                  |a + b + c| - 200 gon  3 sigma_a sqrt 3, and the spherical excess
// with sigma_a of an angle. The triangles as a whole give Ferrero's standard deviation of an angle,
// sqrt([ww] / 3n). (Bezoari, Monti, Selvini, Topografia generale.)

#include <algorithm>
#include <cmath>
#include <iterator>
#include <set>
#include <tuple>
#include <utility>

#include "host/base/numeri.h"
#include "host/base/testi.h"
#include "host/giudizio/controlli/rilievi.h"
#include "host/giudizio/controlli/spiegazioni.h"
#include "host/giudizio/controlli/tolleranze.h"
#include "host/rete/statistica.h"
#include "host/rete/visuali.h"

namespace compensa {

namespace {

constexpr double kSqmAltezze = 0.005;           // instrument and target heights together [m]
constexpr double kIncertezzaRifrazione = 0.15;  // of the refraction coefficient, each way
constexpr double kScalaIncerta = 4e-6;          // of distances reduced in different ways
constexpr int kVisteMassime = 60;               // of a set-up that are looked through for triangles
constexpr std::size_t kTriangoliSignificativi = 20;  // from here on they tell their own precision
constexpr double kSigmaDaMediana = 1.4826;           // of absolute values of a normal distribution

class Esame {
 public:
  Esame(const Rete& rete, ChiusureControllate& controllate, TolleranzaChiusure tolleranza)
      : R(rete),
        V(rete),
        K(rete),
        N(controllate),
        Tolleranza(tolleranza),
        Sigma(tolleranza.Margine * VolteSigma(V.Tutte.size())) {}
  void AndataRitorno();
  void Triangoli();
  Rilievi Trovati;

 private:
  struct Coppia {
    int Minore, Maggiore;
    std::size_t Indice;
  };
  const std::string& Nome(int i) const { return R.Nomi[static_cast<std::size_t>(i)]; }
  const Posizione& Dove(const Visuale& v) const {
    return R.PosizioniOsservazioni[static_cast<std::size_t>(v.Stazione)]
                                  [static_cast<std::size_t>(v.Osservazione)];
  }
  double Eccentricita(const Visuale& v) const {
    return BraccioFuoriCentro(R.Stazioni[static_cast<std::size_t>(v.Stazione)]);
  }
  double SuiPiani(const Visuale& v) const;
  void EsaminaCoppia(const Coppia* primo, const Coppia* ultimo);
  void ConfrontaDistanze(const Visuale& andata, const Visuale& ritorno);
  void ConfrontaDislivelli(const Visuale& andata, const Visuale& ritorno);
  void PreparaDirezioni();
  double Angolo(int vertice, int da, int a) const;
  void EsaminaTriangolo(const Visuale& v, int a, int b, int c);
  double Direzione(int s, int punto) const;

  const Rete& R;
  Visuali V;
  Riduzioni K;
  ChiusureControllate& N;
  TolleranzaChiusure Tolleranza;
  std::vector<std::tuple<int, int, double>> Direzioni;  // set-up, point, direction at the centre
  struct Triangolo {
    const Visuale* Dove;
    int A, B, C;
    double Chiusura, Eccesso;  // [rad]
  };
  void RiferisciTriangolo(const Triangolo& t, double limite);

  std::set<std::tuple<int, int, int>> Fatti;
  std::vector<Triangolo> Chiusi;
  double Sigma = 0.0;  // times which a standard deviation may be exceeded
};

double Esame::SuiPiani(const Visuale& v) const {
  const TCoorCr& p = R.Punti[static_cast<std::size_t>(v.Da)];
  const TCoorCr& t = R.Punti[static_cast<std::size_t>(v.A)];
  const double quota = Assegnato(p.Quota) && Assegnato(t.Quota) ? (p.Quota + t.Quota) / 2.0
                       : Assegnato(p.Quota)                     ? p.Quota
                                                                : t.Quota;
  return v.Distanza * K.Scala(v, (p.Est + t.Est) / 2.0, quota);
}

void Esame::AndataRitorno() {
  std::vector<Coppia> coppie;
  for (std::size_t i = 0; i < V.Tutte.size(); ++i)
    coppie.push_back(
        {std::min(V.Tutte[i].Da, V.Tutte[i].A), std::max(V.Tutte[i].Da, V.Tutte[i].A), i});
  std::sort(coppie.begin(), coppie.end(), [](const Coppia& a, const Coppia& b) {
    return std::tie(a.Minore, a.Maggiore, a.Indice) < std::tie(b.Minore, b.Maggiore, b.Indice);
  });
  for (std::size_t i = 0; i < coppie.size();) {
    std::size_t j = i;
    while (j < coppie.size() && coppie[j].Minore == coppie[i].Minore &&
           coppie[j].Maggiore == coppie[i].Maggiore)
      ++j;
    EsaminaCoppia(&coppie[i], coppie.data() + j);
    i = j;
  }
}

// The first complete sight of each direction; repeats within a set-up are another check's.
void Esame::EsaminaCoppia(const Coppia* primo, const Coppia* ultimo) {
  const Visuale* distanze[2] = {};
  const Visuale* dislivelli[2] = {};
  for (const Coppia* c = primo; c != ultimo; ++c) {
    const Visuale& v = V.Tutte[c->Indice];
    const int verso = v.Da == c->Minore ? 0 : 1;
    if (distanze[verso] == nullptr && v.ConDistanza()) distanze[verso] = &v;
    const TStaCr& stazione = R.Stazioni[static_cast<std::size_t>(v.Stazione)];
    const double dh = Dislivello(R, v);
    if (dislivelli[verso] == nullptr && Presente(dh) && stazione.AltStrumNota == kAltezzaNota)
      dislivelli[verso] = &v;
  }
  if (distanze[0] != nullptr && distanze[1] != nullptr)
    ConfrontaDistanze(*distanze[0], *distanze[1]);
  if ((Tolleranza.Calcolo & kCalcoloAltimetria) != 0 && dislivelli[0] != nullptr &&
      dislivelli[1] != nullptr)
    ConfrontaDislivelli(*dislivelli[0], *dislivelli[1]);
}

void Esame::ConfrontaDistanze(const Visuale& andata, const Visuale& ritorno) {
  ++N.Distanze;
  const double a = SuiPiani(andata);
  const double b = SuiPiani(ritorno);
  const TOssCr& o = R.Stazioni[static_cast<std::size_t>(ritorno.Stazione)]
                        .Osservazioni[static_cast<std::size_t>(ritorno.Osservazione)];
  const double dh = Assegnato(o.Zenit) ? std::abs(b / std::tan(o.Zenit * kRadPerGon)) : 0.0;
  const double limite =
      Sigma * std::numbers::sqrt2 * SqmDistanza(R, a) + kScalaIncerta * a + dh * a / kRaggioMedio;
  if (!(std::abs(a - b) > limite)) return;
  std::string forse = SpiegaDistanza(b, a, limite);
  Trovati.push_back(
      {Dove(ritorno),
       {.Quale = Codice::DistanzaNonTorna,
        .Record = NomeOsservazione(Nome(ritorno.Da), Nome(ritorno.A)),
        .Problema = "distanza ridotta " + NumeroFisso(b, 4) + " m, all'inverso (riga " +
                    std::to_string(Dove(andata).Riga) + ") " + NumeroFisso(a, 4) +
                    " m: differiscono di " + NumeroFisso(std::abs(a - b), 4) + " m, limite " +
                    NumeroFisso(limite, 4) + " m",
        .Suggerimento =
            forse.empty() ? "una delle due è sbagliata, o il punto è un altro?" : forse}});
}

void Esame::ConfrontaDislivelli(const Visuale& andata, const Visuale& ritorno) {
  ++N.Dislivelli;
  const double a = Dislivello(R, andata);
  const double b = -Dislivello(R, ritorno);
  const double D = std::max(andata.Distanza, ritorno.Distanza);
  const double pendenza = std::abs(a) / std::max(D, 1.0);
  const bool corretta = R.CurvaturaRifrazione.CorrCurvRifr != 0;
  const double sfera = 2.0 * D * D / (2.0 * kRaggioMedio);
  const double limite =
      Sigma * std::numbers::sqrt2 * (D * SqmZenit(R) + kSqmAltezze + pendenza * SqmDistanza(R, D)) +
      (corretta ? kIncertezzaRifrazione : 1.0) * sfera +
      pendenza * (Eccentricita(andata) + Eccentricita(ritorno));
  if (!(std::abs(a - b) > limite)) return;
  Trovati.push_back({Dove(ritorno),
                     {.Quale = Codice::DislivelloNonTorna,
                      .Record = NomeOsservazione(Nome(ritorno.Da), Nome(ritorno.A)),
                      .Problema = "dislivello " + NumeroFisso(-b, 3) + " m, all'inverso (riga " +
                                  std::to_string(Dove(andata).Riga) + ") " + NumeroFisso(a, 3) +
                                  " m: la somma è " + NumeroFisso(a - b, 3) + " m, limite " +
                                  NumeroFisso(limite, 3) + " m",
                      .Suggerimento = "zenit, altezza dello strumento o del segnale sbagliata?"}});
}

void Esame::PreparaDirezioni() {
  for (const Visuale& v : V.Tutte) {
    if (!v.ConDirezione()) continue;
    if (Eccentricita(v) > 0.0 && !v.ConDistanza()) continue;
    Direzioni.emplace_back(v.Stazione, v.A,
                           Eccentricita(v) > 0.0 ? v.DirezioneCentro : v.Direzione);
  }
  std::stable_sort(Direzioni.begin(), Direzioni.end(), [](const auto& a, const auto& b) {
    return std::tie(std::get<0>(a), std::get<1>(a)) < std::tie(std::get<0>(b), std::get<1>(b));
  });
}

double Esame::Direzione(int s, int punto) const {
  const auto voce = std::lower_bound(
      Direzioni.begin(), Direzioni.end(), std::pair(s, punto),
      [](const auto& a, const auto& b) { return std::pair(std::get<0>(a), std::get<1>(a)) < b; });
  const bool trovata =
      voce != Direzioni.end() && std::get<0>(*voce) == s && std::get<1>(*voce) == punto;
  return trovata ? std::get<2>(*voce) : kAssente;
}

// At a vertex, clockwise from one point to the other, in the first set-up that sees both.
double Esame::Angolo(int vertice, int da, int a) const {
  for (const int s : V.Postazioni[static_cast<std::size_t>(vertice)]) {
    const double angolo = Direzione(s, a) - Direzione(s, da);
    if (Presente(angolo)) return MezzoGiro(angolo);
  }
  return kAssente;
}

void Esame::EsaminaTriangolo(const Visuale& v, int a, int b, int c) {
  const double somma = Angolo(a, b, c) + Angolo(b, c, a) + Angolo(c, a, b);
  if (!Presente(somma)) return;
  Fatti.emplace(a, std::min(b, c), std::max(b, c));
  const double lato = v.ConDistanza() ? v.Distanza : 0.0;
  Chiusi.push_back(
      {&v, a, b, c, std::abs(somma) - kPi, lato * lato / (kRaggioMedio * kRaggioMedio)});
}

void Esame::RiferisciTriangolo(const Triangolo& t, double limite) {
  Trovati.push_back(
      {Dove(*t.Dove),
       {.Quale = Codice::TriangoloNonChiude,
        .Record = {TipoSoggetto::Triangolo, {Nome(t.A), Nome(t.B), Nome(t.C)}},
        .Problema = "errore di chiusura angolare " + NumeroFisso(t.Chiusura / kRadPerGon, 4) +
                    " gon, limite " + NumeroFisso(limite / kRadPerGon, 4) + " gon"}});
}

void Esame::Triangoli() {
  PreparaDirezioni();
  for (std::size_t s = 0; s < R.Stazioni.size(); ++s) {
    const int inizio = V.Inizio[s];
    const int fine = std::min(V.Inizio[s + 1], inizio + kVisteMassime);
    for (int i = inizio; i < fine; ++i) {
      for (int j = i + 1; j < fine; ++j) {
        const Visuale& v = V.Tutte[static_cast<std::size_t>(i)];
        const Visuale& w = V.Tutte[static_cast<std::size_t>(j)];
        if (v.A <= v.Da || w.A <= v.Da || v.A == w.A) continue;
        if (V.Postazioni[static_cast<std::size_t>(v.A)].empty() ||
            V.Postazioni[static_cast<std::size_t>(w.A)].empty())
          continue;
        const std::tuple triangolo(v.Da, std::min(v.A, w.A), std::max(v.A, w.A));
        // Another set-up on the same vertex may have closed it before.
        if (V.Postazioni[static_cast<std::size_t>(v.Da)].size() > 1 && Fatti.contains(triangolo))
          continue;
        EsaminaTriangolo(v, v.Da, v.A, w.A);
      }
    }
  }
  N.Triangoli = static_cast<int>(Chiusi.size());
  std::vector<double> chiusure;
  double quadrati = 0.0;
  for (const Triangolo& t : Chiusi) {
    chiusure.push_back(std::abs(t.Chiusura));
    quadrati += t.Chiusura * t.Chiusura;
  }
  if (Chiusi.empty()) return;
  N.Ferrero = std::sqrt(quadrati / (3.0 * static_cast<double>(Chiusi.size()))) / kRadPerGon;
  // Many triangles that all close worse than the options promise are no slips.
  double sqm = SqmAngolo(R);
  if (Chiusi.size() >= kTriangoliSignificativi)
    sqm = std::max(sqm, kSigmaDaMediana * Mediana(std::move(chiusure)) / std::numbers::sqrt3);
  const double limite = Tolleranza.Margine * VolteSigma(Chiusi.size()) * std::numbers::sqrt3 * sqm;
  for (const Triangolo& t : Chiusi)
    if (std::abs(t.Chiusura) > limite + t.Eccesso) RiferisciTriangolo(t, limite + t.Eccesso);
}

}  // namespace

Rilievi ControllaChiusure(const Rete& rete, ChiusureControllate* controllate,
                          TolleranzaChiusure tolleranza) {
  ChiusureControllate conteggio;
  Esame esame(rete, controllate != nullptr ? *controllate : conteggio, tolleranza);
  esame.AndataRitorno();
  if ((tolleranza.Calcolo & kCalcoloPlanimetria) != 0) esame.Triangoli();
  return std::move(esame.Trovati);
}

}  // namespace compensa
