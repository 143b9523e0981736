// Checks and warnings on both sides of limits worked by hand, what hangs together by counting,
// heights from sights, and motions of hand-made equations.

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sstream>

#include "host/approssimate/approssimate.h"
#include "host/calcolo/calcolo.h"
#include "host/calcolo/rapporto.h"
#include "host/giudizio/avvertimenti/dopo.h"
#include "host/giudizio/avvertimenti/prima.h"
#include "host/giudizio/controlli/connessione.h"
#include "host/giudizio/indeterminazione/moti.h"
#include "host/rete/statistica.h"
#include "host/rete/visuali.h"

using namespace compensa;

namespace {

constexpr double kNo = kValoreMancante, kN0 = 5e6;

// "A: Bd Pdsq": on A direction to B; direction, level distance and target height to P. "A?:" of
// unknown instrument height. Capitals in `fissi` are fixed, points that are not named unused.
Rete Costruisci(const std::string& rilievo, const std::string& fissi) {
  Rete rete;
  rete.Opzioni = {0.005, 0.002, 0.001, 10, kCalcoloPlanimetria | kCalcoloAltimetria, 0};
  for (char c = 'A'; c < 'G'; ++c) {
    const int ruolo = rilievo.find(c) == rilievo.npos ? kNonUsato : fissi.find(c) + 1 != 0;
    rete.Punti.push_back({"", 1.5e6, kN0 + 1000 * (c - 'A'), 0, 0, ruolo, ruolo});
    rete.Nomi.emplace_back(1, c);
    rete.RuoliIniziali.push_back({ruolo, ruolo});  // kFisso is 1, kIncognito 0
  }
  std::istringstream parole(rilievo);
  for (std::string p; parole >> p;) {
    const auto ha = [&](char c) { return p.find(c) + 1 != 0; };
    if (ha(':')) rete.Stazioni.push_back({{}, p[0] - 'A', 1.5, ha('?') ? 0 : 1, 0, 0, {}});
    rete.Osservazioni.resize(rete.Stazioni.size());
    if (!ha(':'))
      rete.Osservazioni.back().push_back({{},
                                          p[0] - 'A',
                                          ha('d') ? 0 : kNo,
                                          ha('s') ? 100 : kNo,
                                          ha('q') ? 1.5 : kNo,
                                          ha('s') ? 1000 : kNo,
                                          kOrizzontale});
  }
  rete.PosizioniPunti.resize(rete.Punti.size());
  rete.PosizioniStazioni.resize(rete.Stazioni.size());
  rete.PosizioniOsservazioni.assign(rete.Stazioni.size(), std::vector<Posizione>(2));
  for (TStaCr& s : rete.Stazioni) s.Osservazioni = rete.Osservazioni[&s - rete.Stazioni.data()];
  return rete;
}

std::string Testo(const Rilievi& rilievi) {
  std::string testo;
  for (const Rilievo& r : rilievi) testo += r.Cosa.Record.Testo() + ": " + r.Cosa.Problema + "\n";
  return testo;
}

Rilievi Chiusure(const Rete& r) { return ControllaChiusure(r); }
constexpr auto *Ripetute = ControllaRipetizioni, *Coordinate = ControllaCoordinate;
TOssCr& Oss(Rete& r, int s, int i) { return r.Stazioni[s].Osservazioni[i]; }

// A value at which the check is silent, and one at which it says what it says.
const struct {
  Rilievi (*Controlla)(const Rete&);
  const char* Rilievo;
  void (*Metti)(Rete&, double);
  double Sotto, Sopra;
  const char* Testo;
} kLimiti[] = {
    // 3 sqrt 2 (5 + 2 mm) + 4e-6 D; between levels 1 km apart D dh / R = 157 mm more
    {Chiusure, "A: Bs B: As", [](Rete& r, double x) { Oss(r, 1, 0).Distanza = x; }, 1000.0336,
     1000.0338, "(riga 0) 1000.0000 m: differiscono di 0.0338 m, limite 0.0337 m"},
    {Chiusure, "A: Bs B: As",
     [](Rete& r, double x) {
       Oss(r, 1, 0).Zenit = 150;
       Oss(r, 1, 0).Distanza = x;
     },
     999.8095, 999.8090, "differiscono di 0.1910 m, limite 0.1906 m"},
    // 3 sqrt 2 (D 1 mgon + 5 mm) and D^2 / R
    {Chiusure, "A: Bsq B: Asq",
     [](Rete& r, double x) {
       r.Stazioni[0].AltStrum = 2.5;
       Oss(r, 1, 0).AltSegnale = x;
     },
     2.7446, 2.75,
     "dislivello -1.250 m, all'inverso (riga 0) 1.000 m: la somma è -0.250 m, limite 0.245 m"},
    // 3 sqrt 3 mgon; with a side of 10 km (D / R)^2 = 0.00016 gon more
    {Chiusure, "A: Bd Cd B: Cd Ad C: Ad Bd",
     [](Rete& r, double x) {
       Oss(r, 0, 0).Distanza = 1e4;
       Oss(r, 0, 1).Direzione = 50, Oss(r, 1, 1).Direzione = x, Oss(r, 2, 1).Direzione = 50;
     },
     100.0053, 100.0055, "\"B\", \"C\": errore di chiusura angolare 0.0055 gon, limite 0.0054 gon"},
    // 3 mgon: an angle, across zero
    {Ripetute, "A: Bd Bd",
     [](Rete& r, double x) { Oss(r, 0, 0).Direzione = 399.999, Oss(r, 0, 1).Direzione = x; },
     0.0019, 0.0021, "le direzioni differiscono di 0.0031 gon"},
    // -4e-4 + 1e10 / 2R^2 - 637.1 / R against a third of 5 mm
    {Coordinate, "A: Bs",
     [](Rete& r, double x) {
       for (TCoorCr& p : r.Punti) p.Est += 1e5, p.Quota = 637.1;
       Oss(r, 0, 0).Distanza = x;
     },
     4, 1000, "la distanza cambierebbe di -0.377"},
    {Coordinate, "A: Bs",
     [](Rete& r, double x) {
       for (TCoorCr& p : r.Punti) p.Quota = kNo;
       r.Opzioni.Cartografiche = 1, Oss(r, 0, 0).Distanza = x;
     },
     20, 2000, "(così per 1 distanza); a 500 m di quota sarebbe di 0.157 m più corta"}};

TEST(Limiti, DaUnaParteEDallAltra) {
  for (const auto& caso : kLimiti) {
    Rete sotto = Costruisci(caso.Rilievo, "A"), sopra = Costruisci(caso.Rilievo, "A");
    caso.Metti(sotto, caso.Sotto), caso.Metti(sopra, caso.Sopra);
    EXPECT_EQ(Testo(caso.Controlla(sotto)), "") << caso.Testo;
    const std::string testo = Testo(caso.Controlla(sopra));
    EXPECT_NE(testo.find(caso.Testo), std::string::npos) << testo;
  }
}

// Equations and unknowns in plan and in height, sizes of the groups in plan, what is said.
using Numeri = std::vector<std::size_t>;
const struct {
  const char *Rete, *Fissi;
  Numeri Conti, Gruppi;
  const char* Testo;
} kConteggi[] = {
    {"A?: Bdsq Edsq", "AB", {3, 2, 2, 2}, {3}, ""},
    {"A?: Bdsq Cdsq Ddsq",
     "BCD",
     {5, 2, 3, 2},
     {4},
     "altimetria: il punto \"A\" non è collegato ad abbastanza punti fissi (0): l'altezza "
     "strumentale è incognita in \"A\"\n"},
    {"A?: Bdsq Cdsq Ddsq B: Asq", "BCD", {6, 2, 4, 2}, {4}, ""},
    {"A?: Edsq Fdsq B: Eds Fds", "AB", {6, 4, 2, 3}, {4}, "i punti \"E\", \"F\" non sono coll"},
    {"A?: Eds Fds B: Edsq Fdsq", "AB", {6, 4, 2, 3}, {4}, "nessuna visuale in quota determina l'"},
    {"A: Bd Ed", "AB", {1, 2, 0, 1}, {3}, "in planimetria lo determina una sola direzione"},
    {"A: Bd Ed", "AB", {1, 2, 0, 1}, {3}, "altimetria: 1 incognita, ma nessuna equazione\n"},
    {"A: Ed", "AB", {0, 2, 0, 1}, {1}, "una sola direzione (verso \"E\"): non forma angoli"},
    {"A: Bds Cds D: Eds Fd",
     "ABD",
     {5, 6, 0, 3},
     {3, 3},
     ": i punti \"D\", \"E\", \"F\" non sono collegati ad abbastanza punti fissi (1)\n"}};

TEST(Limiti, Connessione) {
  for (const auto& caso : kConteggi) {
    const Connessione c = EsaminaConnessione(Costruisci(caso.Rete, caso.Fissi));
    std::string testo = Testo(c.Trovati);
    Numeri conti, gruppi;
    for (const auto& g : c.Pla.Gruppi) gruppi.push_back(g.size());
    for (const Collegamento* x : {&c.Pla, &c.Alt}) {
      conti.push_back(x->Equazioni), conti.push_back(x->Incognite);
      for (const auto& o : x->Ostacoli) testo += o + "\n";
    }
    EXPECT_EQ(conti, caso.Conti);
    EXPECT_EQ(gruppi, caso.Gruppi);
    EXPECT_TRUE(*caso.Testo ? testo.find(caso.Testo) + 1 != 0 : testo.empty()) << testo;
  }
}

// Small random networks of heights, with unused points, lost coordinates and two points in one
// place: what is counted is what the adjustment solves, and it runs where nothing stands against it.
TEST(Limiti, VerdettoComeLaCompensazione) {
  std::mt19937 motore(1);
  const auto caso = [&](unsigned n) { return motore() % n; };
  int riuscite = 0;
  for (int rete = 0; rete < 1000; ++rete) {
    std::string rilievo, fissi;
    const auto punto = [&] { return static_cast<char>('A' + caso(6)); };
    for (unsigned s = 2 + caso(5); s-- > 0;) {
      rilievo += std::string(1, punto()) + (caso(3) == 0 ? "?: " : ": ");
      for (unsigned o = caso(6); o-- > 0;) rilievo += std::string(1, punto()) + "sq ";
    }
    for (unsigned f = caso(4); f-- > 0;) fissi += punto();
    Rete r = Costruisci(rilievo, fissi);
    r.Opzioni.TipoCalcolo = kCalcoloAltimetria;
    r.NomiAnsi = r.Nomi;
    if (caso(4) == 0) r.Punti[caso(6)].Nord = kNo;
    if (caso(4) == 0) r.Punti[0].Nord = r.Punti[caso(6)].Nord;
    for (std::size_t i = 0; i < r.Punti.size(); ++i) r.Punti[i].TipoAlt = r.RuoliIniziali[i].Alt;
    const Connessione c = EsaminaConnessione(r);
    Rapporto rapporto;
    const RisultatoCompensazione a = Compensa(r, rapporto, {}).Altimetria;
    EXPECT_EQ(c.Alt.Ostacoli.empty(), a.Fine == Esito::Riuscita) << rilievo << "fissi " << fissi;
    if (!a.Contate()) continue;
    EXPECT_EQ(c.Alt.Equazioni, a.Equazioni) << rilievo;
    EXPECT_EQ(c.Alt.Incognite, a.Incognite) << rilievo;
    riuscite += a.Fine == Esito::Riuscita;
  }
  EXPECT_GT(riuscite, 200);
}

// Half of 100 m at 60 degrees; 4e6 0.87 / 2R over 2 km, 1.2e7 0.87 / 2R over 4 km at 60 degrees.
const struct {
  double Zenit, Distanza;
  int Tipo;
  bool Curva;
  double Atteso;
} kSalite[] = {{200 / 3.0, 100, kInclinata, false, 50},
               {150, 100, kPiana, false, -100},
               {100, 2000, kPiana, true, 0.272813},
               {200 / 3.0, 4000, kInclinata, true, 2000.818438}};

// Heights of three points, level sights from two and to the third; the mean by 1 / D^2.
const struct {
  double Quota[3], Distanza[3], Attesa;
  const char* Testo;
} kMedie[] = {
    {{100, 100.05, 0}, {100, 200, kNo}, 100.01, "(media di 2, scarto massimo 0.040 m)\n"},
    {{100, 100.59, 0}, {100, 100, kNo}, 100.295, "scarto massimo 0.295 m)\n"},
    {{100, 100.61, 0}, {100, 100, kNo}, 100.305, "0.305 m); le visuali discordano: da contr"},
    {{100, 100, 100.297}, {50, 50, 50}, 100.099, "\"C\" (media di 3, scarto massimo 0.198 m)\n"},
    {{100, 100, 100.31}, {50, 50, 50}, 100, "\"B\" (media di 2, scarto massimo 0.000 m); scart"}};

TEST(Limiti, Quote) {
  for (const auto& caso : kSalite) {
    Rete rete = Costruisci("A: Esq", "A");
    rete.CurvaturaRifrazione = {caso.Curva, 0.13, 6378000};
    rete.Osservazioni[0] = {{{}, 4, kNo, caso.Zenit, 1.7, caso.Distanza, caso.Tipo}};
    EXPECT_NEAR(Dislivello(rete, Visuali(rete).Tutte[0]), caso.Atteso + 1.5 - 1.7, 1e-6);
  }
  for (const auto& caso : kMedie) {
    Rete rete = Costruisci("A: Esq B: Esq E: Csq", "ABC");
    for (int i = 0; i < 3; ++i)
      rete.Punti[i].Quota = caso.Quota[i], Oss(rete, i, 0).Distanza = caso.Distanza[i];
    rete.Punti[4].Quota = kNo;
    const std::string nota = CalcolaApprossimate(rete).Note.front() + "\n";
    EXPECT_NEAR(rete.Punti[4].Quota, caso.Attesa, 1e-9) << nota;
    EXPECT_NE(nota.find(caso.Testo), std::string::npos) << nota;
  }
}

// Two nodes tied to the origin and to each other: bars let them turn about it, normals stretch.
TEST(Limiti, MotiFattiAMano) {
  const auto lega = [](int a, int b, double est, double nord) {
    return RigaLibera{{a, b, kNessuno}, {{{est, nord}, {-est, -nord}, {0, 0}}}};
  };
  for (const bool gira : {true, false}) {
    const double x = gira ? 1 : 0, y = 1 - x;
    SistemaLibero s;
    s.Punti = {0, 1}, s.Luoghi = {{100, 0}, {0, 100}};
    s.Righe = {lega(0, kNessuno, x, y), lega(1, kNessuno, y, x), lega(0, 1, 1, y - x)};
    s.Indicizza();
    const Nucleo n = CalcolaNucleo(s);
    ASSERT_TRUE(n.Nodi.empty() && n.Parti.size() == 1 && n.Parti[0].Moti.size() == 1);
    const MotoInsieme m = Scomponi(s, n.Parti[0]).at(0);
    const Similitudine z = m.Similitudini.at(0);
    const double k = gira ? z.Rotazione : z.Scala;  // at -Centro, the origin, nothing moves
    EXPECT_NEAR((gira ? z.Scala : z.Rotazione) / k, 0, 1e-9);
    EXPECT_NEAR((gira ? z.TraslNord : -z.TraslEst) / k + m.Centro.Est, 0, 1e-6);
    EXPECT_NEAR((gira ? -z.TraslEst : -z.TraslNord) / k + m.Centro.Nord, 0, 1e-6);
  }
}

// With two degrees of freedom chi2 = -2 ln(1 - p): just inside and just outside of 95 %.
TEST(Limiti, SigmaZero) {
  const double basso = std::sqrt(-std::log(0.975)), alto = std::sqrt(-std::log(0.025));
  Risultati r;
  r.Planimetria = {Esito::Riuscita, {}, 2, 1, 0, 2, 4};
  r.Equazioni.push_back({.SqmPriori = 1});
  for (const double s :
       {basso * (1 - 1e-9), basso * (1 + 1e-9), alto * (1 - 1e-9), alto * (1 + 1e-9)}) {
    r.Planimetria.SigmaZero = r.Planimetria.SigmaZeroRapporto = s;
    EXPECT_EQ(ControllaSigmaZero(Rete{}, r).empty(), s > basso && s < alto) << s;
  }
  EXPECT_NEAR(FattoreEllisse(0.96, 4), 4, 1e-12);  // sqrt(4 (1 / sqrt 0.04 - 1))
  r.Planimetria.Equazioni = r.Planimetria.Incognite = 1;
  EXPECT_NE(Testo(ControllaSigmaZero(Rete{}, r)).find("0 (1 equazione, 1 incognita)"),
            std::string::npos);
}

}  // namespace
