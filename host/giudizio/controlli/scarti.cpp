// Readings against coordinates. Every sight misses by a length: across it the angle between reading
// and orientation times the computed distance, along it measured minus computed distance. The
// median of these lengths tells what the approximate coordinates of a network are worth, and a
// sight or a point that misses by many times that is named. Coordinates that were computed from the
// readings drift: where chains of sights meet that have come a long way, a whole neighbourhood
// misses, and its own median counts; what both ends of a line say alike is no slip of either.

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/approssimate/metodi.h"
#include "host/base/numeri.h"
#include "host/giudizio/controlli/rilievi.h"
#include "host/giudizio/controlli/spiegazioni.h"
#include "host/giudizio/controlli/tolleranze.h"
#include "host/rete/campi.h"
#include "host/rete/statistica.h"

namespace compensa {

namespace {

constexpr double kVolteMediana = 6.0;  // misses beyond this many medians are reported
// Approximations far from the fixed points are worth less than the median says: in a network of many
// sights the limit is this many times what one sight in two hundred exceeds, within bounds, because
// with many slips it would be they that exceed it.
constexpr std::size_t kVisualiMolte = 1000;
constexpr double kParteCoda = 0.005;
constexpr double kVolteCoda = 3.0;
constexpr double kCodaMassima = 10.0;  // times the limit that the median gives
// Where drifts meet, single sights exceed even the limit of their neighbourhood: by less than this
// in 97 of a hundred good networks of 800 points.
constexpr double kVolteCalcolate = 5.0;
constexpr double kSimile = 0.5;         // part of a miss by which a like one may differ
constexpr double kScartoMinimo = 0.05;  // of a sight with an approximate end [m]
constexpr double kAngoloMinimo = 0.05;  // and of its direction [gon]
constexpr double kScalaIncerta = 4e-6;  // of a distance reduced to the map
constexpr double kQuotaDiscordi = 0.6;  // part of its sights that a misplaced point misses
constexpr int kDiscordiMinime = 3;
constexpr int kPuntiMassimi = 20;     // misplaced points named
constexpr int kSpiegateMassime = 50;  // sights compared with every other point
constexpr double kVicini = 0.05;      // [m]

struct Scarto {
  double Trasversale = kAssente, Longitudinale = kAssente;  // signed [m]
  double Angolo = kAssente;                                 // computed less read [rad]
  double Lato = 0.0;                                        // computed [m]
};

class Esame {
 public:
  explicit Esame(const Rete& rete)
      : R(rete),
        V(rete),
        K(rete),
        Spostati(rete.Punti.size(), 0),
        Sigma(VolteSigma(V.Tutte.size())) {}
  Rilievi Esegui();

 private:
  const TCoorCr& Punto(int i) const { return R.Punti[static_cast<std::size_t>(i)]; }
  const std::string& Nome(int i) const { return R.Nomi[static_cast<std::size_t>(i)]; }
  bool ConPianta(int i) const {
    return Assegnato(Punto(i).Est) && Assegnato(Punto(i).Nord) &&
           Spostati[static_cast<std::size_t>(i)] == 0;
  }
  bool Fisso(int i) const { return R.RuoliIniziali[static_cast<std::size_t>(i)].Pla == kFisso; }
  Posto Luogo(int i) const { return {Punto(i).Est, Punto(i).Nord}; }

  void CalcolaScarti();
  void CalcolaStazione(std::size_t s);
  Scarto Misura(const Visuale& v) const;
  void TaraLimiti();
  void TaraVicinati();
  bool Calcolato(int punto) const;
  double Generale(const Visuale& v) const;
  bool Confermata(std::size_t i, double Scarto::*scarto) const;
  double LimiteAngolo(std::size_t i) const;
  double LimiteDistanza(std::size_t i) const;
  bool DirezioneDiscorde(std::size_t i) const;
  bool DistanzaDiscorde(std::size_t i) const;
  void CercaSpostati();
  void Sposta(int punto, int discordi, int esaminate);
  bool ScambiandoTorna(int punto) const;
  void Riferisci(std::size_t i);
  std::string AltroPunto(std::size_t i) const;

  const Rete& R;
  Visuali V;
  Riduzioni K;
  std::vector<char> Spostati;    // points already named
  std::vector<char> SoliFissi;   // set-ups on fixed points that see only such
  std::vector<Scarto> Scarti;    // of each sight
  std::vector<double> Zeri;      // of each set-up [rad]
  double Sigma = 0.0;            // times which a standard deviation may be exceeded
  double Comune = 0.0;           // limit of sights with an approximate end [m]
  std::vector<double> Vicinati;  // the same of the neighbourhood of each computed point, else 0
  int Spiegate = 0;
  Rilievi Trovati;
};

// What a sight gives as azimuth of the circle's zero, in Angolo until the set-up is oriented.
Scarto Esame::Misura(const Visuale& v) const {
  Scarto s;
  if (!ConPianta(v.Da) || !ConPianta(v.A)) return s;
  const Posto lato = Luogo(v.A) - Luogo(v.Da);
  s.Lato = Lunghezza(lato);
  if (s.Lato < kVicini) return s;
  const TCoorCr& p = Punto(v.Da);
  const TCoorCr& t = Punto(v.A);
  if (v.ConDirezione()) {
    const double direzione =
        RiduciAlCentro(R.Stazioni[static_cast<std::size_t>(v.Stazione)], v.Direzione, s.Lato) -
        K.CordaArco(Luogo(v.Da), Luogo(v.A));
    s.Angolo = MezzoGiro(Azimut(lato) - direzione);
  }
  if (v.ConDistanza()) {
    const double quota = Assegnato(p.Quota) && Assegnato(t.Quota) ? (p.Quota + t.Quota) / 2.0
                         : Assegnato(p.Quota)                     ? p.Quota
                                                                  : t.Quota;
    s.Longitudinale = v.Distanza * K.Scala(v, (p.Est + t.Est) / 2.0, quota) - s.Lato;
  }
  return s;
}

void Esame::CalcolaStazione(std::size_t s) {
  std::vector<double> fissi;
  std::vector<double> tutti;
  for (int i = V.Inizio[s]; i < V.Inizio[s + 1]; ++i) {
    const auto j = static_cast<std::size_t>(i);
    Scarti[j] = Misura(V.Tutte[j]);
    if (Scarti[j].Angolo != Scarti[j].Angolo) continue;
    tutti.push_back(Scarti[j].Angolo);
    if (Fisso(V.Tutte[j].Da) && Fisso(V.Tutte[j].A)) fissi.push_back(Scarti[j].Angolo);
  }
  Zeri[s] = kAssente;
  if (tutti.empty()) return;
  constexpr std::size_t kFissiBastanti = 3;
  Zeri[s] =
      Orienta(fissi.size() >= kFissiBastanti || fissi.size() == tutti.size() ? fissi : tutti).Zero;
  for (int i = V.Inizio[s]; i < V.Inizio[s + 1]; ++i) {
    Scarto& x = Scarti[static_cast<std::size_t>(i)];
    x.Angolo = MezzoGiro(x.Angolo - Zeri[s]);
    x.Trasversale = x.Angolo * x.Lato;
  }
}

void Esame::CalcolaScarti() {
  Scarti.assign(V.Tutte.size(), {});
  SoliFissi.assign(R.Stazioni.size(), 1);
  for (const Visuale& v : V.Tutte)
    if (!Fisso(v.Da) || !Fisso(v.A)) SoliFissi[static_cast<std::size_t>(v.Stazione)] = 0;
  Zeri.assign(R.Stazioni.size(), kAssente);
  for (std::size_t s = 0; s < R.Stazioni.size(); ++s) CalcolaStazione(s);
}

void Esame::TaraLimiti() {
  std::vector<double> lunghezze;
  for (std::size_t i = 0; i < Scarti.size(); ++i) {
    if (Fisso(V.Tutte[i].Da) && Fisso(V.Tutte[i].A)) continue;
    for (const double x : {Scarti[i].Trasversale, Scarti[i].Longitudinale})
      if (Presente(x)) lunghezze.push_back(std::abs(x));
  }
  double coda = 0.0;
  if (lunghezze.size() >= kVisualiMolte) {
    const auto n = static_cast<double>(lunghezze.size());
    const auto posto = lunghezze.begin() + static_cast<std::ptrdiff_t>(n * (1.0 - kParteCoda));
    std::nth_element(lunghezze.begin(), posto, lunghezze.end());
    coda = kVolteCoda * *posto;
  }
  const double mediana = lunghezze.empty() ? 0.0 : Mediana(std::move(lunghezze));
  Comune = std::max(kScartoMinimo, kVolteMediana * Sigma * mediana);
  Comune = std::max(Comune, std::min(coda, kCodaMassima * Comune));
  TaraVicinati();
}

// Of each point the median miss of its sights, then of these the median over the point and those
// that it sees or that see it.
void Esame::TaraVicinati() {
  Vicinati.assign(R.Punti.size(), 0.0);
  if (R.PiantaCalcolata.empty()) return;
  std::vector<std::vector<double>> scarti(R.Punti.size());
  for (std::size_t i = 0; i < Scarti.size(); ++i)
    for (const double x : {Scarti[i].Trasversale, Scarti[i].Longitudinale})
      for (const int p : {V.Tutte[i].Da, V.Tutte[i].A})
        if (Presente(x)) scarti[static_cast<std::size_t>(p)].push_back(std::abs(x));
  std::vector<double> mediane(R.Punti.size(), kAssente);
  std::vector<std::vector<double>> vicini(R.Punti.size());
  for (std::size_t p = 0; p < scarti.size(); ++p) {
    if (scarti[p].empty()) continue;
    mediane[p] = Mediana(std::move(scarti[p]));
    vicini[p].push_back(mediane[p]);
  }
  for (const Visuale& v : V.Tutte)
    for (const auto& [p, altro] : {std::pair(v.Da, v.A), std::pair(v.A, v.Da)})
      if (const double m = mediane[static_cast<std::size_t>(altro)]; Presente(m))
        vicini[static_cast<std::size_t>(p)].push_back(m);
  for (std::size_t p = 0; p < vicini.size(); ++p)
    if (R.PiantaCalcolata[p] != 0 && !vicini[p].empty())
      Vicinati[p] = kVolteMediana * Sigma * Mediana(std::move(vicini[p]));
}

bool Esame::Calcolato(int punto) const {
  return !R.PiantaCalcolata.empty() && R.PiantaCalcolata[static_cast<std::size_t>(punto)] != 0;
}

double Esame::Generale(const Visuale& v) const {
  if (!Calcolato(v.Da) && !Calcolato(v.A)) return Comune;
  return kVolteCalcolate * std::max({Comune, Vicinati[static_cast<std::size_t>(v.Da)],
                                     Vicinati[static_cast<std::size_t>(v.A)]});
}

// Whether the reading back from the other end misses alike: then it is the computed coordinates
// that are wrong, not both readings.
bool Esame::Confermata(std::size_t i, double Scarto::*scarto) const {
  const Visuale& v = V.Tutte[i];
  if (!Calcolato(v.Da) && !Calcolato(v.A)) return false;
  const double questo = Scarti[i].*scarto;
  const auto simile = [&](int j) {
    const Visuale& altra = V.Tutte[static_cast<std::size_t>(j)];
    return altra.Da == v.A && altra.A == v.Da &&
           std::abs(Scarti[static_cast<std::size_t>(j)].*scarto - questo) <
               kSimile * std::abs(questo);
  };
  // The shorter way to the sights back: one of the two ends may have a great many.
  const std::vector<int>& versoDa = V.VistoDa[static_cast<std::size_t>(v.Da)];
  const std::vector<int>& daA = V.Postazioni[static_cast<std::size_t>(v.A)];
  std::size_t viste = 0;
  for (const int s : daA)
    viste += static_cast<std::size_t>(V.Inizio[static_cast<std::size_t>(s) + 1] -
                                      V.Inizio[static_cast<std::size_t>(s)]);
  if (versoDa.size() < viste) return std::ranges::any_of(versoDa, simile);
  return std::ranges::any_of(daA, [&](int s) {
    for (int j = V.Inizio[static_cast<std::size_t>(s)];
         j < V.Inizio[static_cast<std::size_t>(s) + 1]; ++j)
      if (simile(j)) return true;
    return false;
  });
}

// The orientation has an error of its own where few sights give it.
double Esame::LimiteAngolo(std::size_t i) const {
  const Visuale& v = V.Tutte[i];
  const double stretto = Sigma * SqmAngolo(R);
  if (SoliFissi[static_cast<std::size_t>(v.Stazione)] != 0) return stretto;
  return std::max(
      {stretto, kAngoloMinimo * kRadPerGon, Generale(v) / std::max(Scarti[i].Lato, kVicini)});
}

double Esame::LimiteDistanza(std::size_t i) const {
  const Visuale& v = V.Tutte[i];
  const double stretto =
      Sigma * std::numbers::sqrt2 * SqmDistanza(R, Scarti[i].Lato) + kScalaIncerta * Scarti[i].Lato;
  return Fisso(v.Da) && Fisso(v.A) ? stretto : std::max(stretto, Generale(v));
}

bool Esame::DirezioneDiscorde(std::size_t i) const {
  return std::abs(Scarti[i].Angolo) > LimiteAngolo(i) && !Confermata(i, &Scarto::Angolo);
}

bool Esame::DistanzaDiscorde(std::size_t i) const {
  return std::abs(Scarti[i].Longitudinale) > LimiteDistanza(i) &&
         !Confermata(i, &Scarto::Longitudinale);
}

// Whether the point fits its distances with East and North exchanged.
bool Esame::ScambiandoTorna(int punto) const {
  const Posto scambiato{Punto(punto).Nord, Punto(punto).Est};
  std::vector<double> scarti;
  const auto esamina = [&](const Visuale& v, int altro) {
    if (v.ConDistanza() && ConPianta(altro))
      scarti.push_back(std::abs(Lunghezza(Luogo(altro) - scambiato) - v.Distanza) / v.Distanza);
  };
  const auto p = static_cast<std::size_t>(punto);
  for (const int i : V.VistoDa[p]) {
    const Visuale& v = V.Tutte[static_cast<std::size_t>(i)];
    esamina(v, v.Da);
  }
  for (const int s : V.Postazioni[p])
    for (int i = V.Inizio[static_cast<std::size_t>(s)];
         i < V.Inizio[static_cast<std::size_t>(s) + 1]; ++i)
      esamina(V.Tutte[static_cast<std::size_t>(i)], V.Tutte[static_cast<std::size_t>(i)].A);
  constexpr double kTorna = 0.02;
  return !scarti.empty() && Mediana(std::move(scarti)) < kTorna;
}

void Esame::Sposta(int punto, int discordi, int esaminate) {
  std::string forse = ScambiandoTorna(punto) ? "Est e Nord scambiati?"
                      : Fisso(punto)         ? "coordinate o nome del punto fisso sbagliati?"
                                             : "coordinate approssimate sbagliate?";
  Spostati[static_cast<std::size_t>(punto)] = 1;
  Trovati.push_back({R.PosizioniPunti[static_cast<std::size_t>(punto)],
                     {.Quale = Codice::CoordinateDiscordi,
                      .Record = NomePunto(Nome(punto)),
                      .Problema = "le coordinate discordano da " + std::to_string(discordi) +
                                  " misure su " + std::to_string(esaminate),
                      .Suggerimento = std::move(forse)}});
}

// The point that most of its sights miss, one after the other: taken out, its neighbours are judged
// without it.
void Esame::CercaSpostati() {
  for (int giro = 0; giro < kPuntiMassimi; ++giro) {
    std::vector<int> discordi(R.Punti.size(), 0);
    std::vector<int> esaminate(R.Punti.size(), 0);
    const auto conta = [&](const Visuale& v, bool male) {
      for (const int p : {v.Da, v.A}) {
        ++esaminate[static_cast<std::size_t>(p)];
        if (male) ++discordi[static_cast<std::size_t>(p)];
      }
    };
    for (std::size_t i = 0; i < Scarti.size(); ++i) {
      if (Scarti[i].Angolo == Scarti[i].Angolo) conta(V.Tutte[i], DirezioneDiscorde(i));
      if (Scarti[i].Longitudinale == Scarti[i].Longitudinale)
        conta(V.Tutte[i], DistanzaDiscorde(i));
    }
    int peggiore = -1;
    double massimo = 0.0;
    for (std::size_t p = 0; p < R.Punti.size(); ++p) {
      if (discordi[p] < kDiscordiMinime || discordi[p] < kQuotaDiscordi * esaminate[p]) continue;
      const double peso = discordi[p] * (static_cast<double>(discordi[p]) / esaminate[p]);
      if (peso > massimo) massimo = peso, peggiore = static_cast<int>(p);
    }
    if (peggiore < 0) return;
    const auto p = static_cast<std::size_t>(peggiore);
    Sposta(peggiore, discordi[p], esaminate[p]);
    CalcolaScarti();
    TaraLimiti();
  }
}

// Another point that the sight, with its distance where there is one, fits well; the only one.
std::string Esame::AltroPunto(std::size_t i) const {
  const Visuale& v = V.Tutte[i];
  const double zero = Zeri[static_cast<std::size_t>(v.Stazione)];
  if (!v.ConDistanza() || !v.ConDirezione() || !Presente(zero)) return {};
  int trovato = -1;
  for (std::size_t p = 0; p < R.Punti.size(); ++p) {
    const int punto = static_cast<int>(p);
    if (punto == v.A || punto == v.Da || !ConPianta(punto)) continue;
    const Posto lato = Luogo(punto) - Luogo(v.Da);
    const double D = Lunghezza(lato);
    const double limite = std::max(2.0 * Comune, kScartoMinimo + 1e-3 * D);
    if (std::abs(D - v.Distanza) > limite) continue;
    if (std::abs(MezzoGiro(Azimut(lato) - v.DirezioneCentro - zero)) * D > limite) continue;
    if (trovato >= 0) return {};
    trovato = punto;
  }
  return trovato < 0 ? std::string() : "il punto visto è " + Cita(Nome(trovato)) + "?";
}

void Esame::Riferisci(std::size_t i) {
  const bool direzione = DirezioneDiscorde(i);
  const bool distanza = DistanzaDiscorde(i);
  if (!direzione && !distanza) return;
  const Visuale& v = V.Tutte[i];
  const Scarto& s = Scarti[i];
  const TOssCr& o = R.Stazioni[static_cast<std::size_t>(v.Stazione)]
                        .Osservazioni[static_cast<std::size_t>(v.Osservazione)];
  std::string problema;
  std::string forse = ++Spiegate <= kSpiegateMassime ? AltroPunto(i) : std::string();
  if (direzione) {
    const double limite = LimiteAngolo(i) / kRadPerGon;
    problema = "direzione " + NumeroFisso(o.Direzione, 4) + " gon, si scosta di " +
               NumeroFisso(std::abs(s.Angolo) / kRadPerGon, 4) +
               " gon da quanto danno le coordinate e le altre letture della stazione, limite " +
               NumeroFisso(limite, 4) + " gon";
    if (forse.empty())
      forse = SpiegaDirezione(o.Direzione, o.Direzione + s.Angolo / kRadPerGon, limite);
  }
  if (distanza) {
    problema += problema.empty() ? "" : "; ";
    problema += "distanza ridotta " + NumeroFisso(s.Lato + s.Longitudinale, 3) +
                " m, dalle coordinate " + NumeroFisso(s.Lato, 3) + " m, limite " +
                NumeroFisso(LimiteDistanza(i), 3) + " m";
    // As it was read: a slope distance has other digits than its reduction.
    const double calcolata = o.Distanza * s.Lato / (s.Lato + s.Longitudinale);
    if (forse.empty()) forse = SpiegaDistanza(o.Distanza, calcolata, LimiteDistanza(i));
  }
  if (!Fisso(v.Da) || !Fisso(v.A)) problema += " (con coordinate approssimate)";
  Trovati.push_back({R.PosizioniOsservazioni[static_cast<std::size_t>(v.Stazione)]
                                            [static_cast<std::size_t>(v.Osservazione)],
                     {.Quale = Codice::LetturaDiscorde,
                      .Record = NomeOsservazione(Nome(v.Da), Nome(v.A)),
                      .Problema = std::move(problema),
                      .Suggerimento = std::move(forse)}});
}

Rilievi Esame::Esegui() {
  CalcolaScarti();
  TaraLimiti();
  CercaSpostati();
  for (std::size_t i = 0; i < Scarti.size(); ++i) Riferisci(i);
  return std::move(Trovati);
}

}  // namespace

Rilievi ControllaScarti(const Rete& rete) { return Esame(rete).Esegui(); }

}  // namespace compensa
