// Free motions: each kind by its words, and random networks where they are known by counting.

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sstream>

#include "host/calcolo/calcolo.h"
#include "host/calcolo/rapporto.h"
#include "host/giudizio/indeterminazione/parole.h"

using namespace compensa;

namespace {

constexpr double kNo = kValoreMancante, kGon = M_PI / 200, kEst0 = 1.5e6, kNord0 = 5e6;
constexpr int kPla = kCalcoloPlanimetria, kAlt = kCalcoloAltimetria;
constexpr char kNomi[] = "ABCDPQRSTU";
// A to D on a circle, with S; U in line with A and B.
constexpr double kLuoghi[][2] = {{1000, 1000}, {1400, 1000}, {1400, 1400}, {1000, 1400},
                                 {1250, 1130}, {1700, 1250}, {1730, 1600}, {1200, 1482.8427124746},
                                 {1900, 1400}, {1800, 1000}};

void Punto(Rete& rete, char nome, double est, double nord, int ruolo) {
  rete.Punti.push_back({"", kEst0 + est, kNord0 + nord, 100, 0, ruolo, ruolo, 0, 0, 0});
  rete.Nomi.emplace_back(1, nome);
  rete.RuoliIniziali.push_back({ruolo, ruolo});
}

void Stazione(Rete& rete, int punto, bool nota = true) {
  rete.Stazioni.push_back({{}, punto, 1.5, nota ? kAltezzaNota : kAltezzaIncognita, 0, 0, {}});
  rete.Osservazioni.emplace_back();
}

// What the last set-up would read on a point.
void Osserva(Rete& rete, int punto, bool direzione, bool distanza, bool quota = false) {
  const TCoorCr &p = rete.Punti[rete.Stazioni.back().Punto], &t = rete.Punti[punto];
  const double dE = t.Est - p.Est, dN = t.Nord - p.Nord, D = std::hypot(dE, dN);
  TOssCr o{{}, punto, kNo, kNo, kNo, kNo, kOrizzontale};
  if (direzione) o.Direzione = std::fmod(std::atan2(dE, dN) / kGon + 437, 400);
  if (distanza || quota) o.Zenit = 100, o.Distanza = D;
  if (quota) o.AltSegnale = 1.5;
  rete.Osservazioni.back().push_back(o);
  rete.Stazioni.back().Osservazioni = rete.Osservazioni.back();
}

// "A: Bd Pds": set-up on A, direction to B, direction and distance to P; q a height, - nothing;
// "A?:" of unknown instrument height. Fixed points by name; those in lower case are left out.
Rete Costruisci(const std::string& rilievo, const std::string& fissi, int calcolo) {
  Rete rete;
  rete.Opzioni = {0.005, 0.002, 0.001, 10, calcolo, 0};
  const auto ha = [](const std::string& testo, char c) { return testo.find(c) + 1 != 0; };
  for (std::size_t i = 0; kNomi[i] != 0; ++i) {
    const bool usato = ha(rilievo, kNomi[i]) && !ha(fissi, char(kNomi[i] + 32));
    Punto(rete, kNomi[i], kLuoghi[i][0], kLuoghi[i][1],
          !usato                ? kNonUsato
          : ha(fissi, kNomi[i]) ? kFisso
                                : kIncognito);
  }
  std::istringstream parole(rilievo);
  for (std::string p; parole >> p;) {
    const int punto = int(std::string(kNomi).find(p[0]));
    if (ha(p, ':'))
      Stazione(rete, punto, !ha(p, '?'));
    else if (!ha(p, '-'))
      Osserva(rete, punto, ha(p, 'd'), ha(p, 's'), ha(p, 'q'));
  }
  return rete;
}

const struct {
  const char *Rilievo, *Fissi;
  int Calcolo;
  std::vector<std::string> Parole;  // beginnings, of all motions
} kCasi[] = {
    {"A: Bd Cd Pd Qs",
     "ABC",
     kPla,
     {R"("P" libero lungo 69.5 gon: lo vede in direzione solo "A")",
      R"("Q" libero lungo 178.2 gon: lo fissa solo la distanza)"}},
    {"P: Ad Bd Cd Dd", "ABCD", kPla, {}},
    {"S: Ad Bd Cd Dd", "ABCD", kPla, {R"("S" libero lungo 100.0 gon: sta sul cerchio per "A", )"}},
    {"P: Ad Bd", "AB", kPla, {R"("P" libero lungo 114.9 gon: dalla sua stazione c'è solo l'ang)"}},
    {"A: Bd Uds B: Us", "AB", kPla, {}},
    {"A: Bd Us P- B: Us",
     "AB",
     kPla,
     {R"("P" libero in ogni direzione: nessuno lo osserva)",
      R"("U" libero lungo 0.0 gon: le sue 2 osservazioni lo fi)"}},
    {"A: Pds Qds P: Ad Qds Q: Pd Ad", "A", kPla, {R"(rete libera di ruotare attorno a "A": man)"}},
    {"A: Pd Qd P: Ad Qd Q: Pd Ad", "A", kPla, {R"(rete libera di ruotare e dilatarsi attorno a)"}},
    {"P: Qd Rds Q: Pd Rd R: Pd Qd", "", kPla, {"rete libera di traslare e ruotare: mancano i"}},
    {"P: Qd Rd Q: Pd Rd R: Pd Qd", "", kPla, {"rete libera di traslare, ruotare e dilatarsi"}},
    {"A: Bd Cd P: Qds Rd Q: Pd Rd R: Pd Qd", "ABC", kPla, {"rete libera di traslare e ruotare: n"}},
    {"A: Bd Pds P: Ad Qd Rd Q: Pd Rd R: Pd Qd", "AB", kPla, {R"(i punti "Q", "R" liberi di dila)"}},
    {"A: Bd Cd Pd Qd P: Ad Qd Q: Ad Pd", "ABC", kPla, {R"(rete libera di dilatarsi da "A": ness)"}},
    {"A: Bd Ps P: Rs R: Qs Cs Q: Bs",
     "ABC",
     kPla,
     {R"(i punti "P", "Q", "R" liberi di muoversi insieme, ciascuno a suo modo ("P" lungo 169.5)"}},
    {"A: Bd Ps Qs P: Qs R: Ps Ts T: Us P: Us Ts B: Cd",
     "ABC",
     kPla,
     {R"(rete libera di ruotare attorno a "A")", R"(i punti "R", "T", "U" liberi di ruotare)"}},
    {"A: Bd Pd B: Ad Pd P: Ad Bd Rd Td R: Td Qd T: Rd Qd Q: Rd Td",
     "AB",
     kPla,
     {R"(i punti "Q", "R", "T" liberi di ruotare insieme attorno a un punto in (1501881.0, )"
      R"(5001445.8) e di dilatarsi da "P": manca un legame con un secondo punto determinato)"}},
    {"A: Bq P: Qq Rq Sq Tq Uq", "AB", kAlt, {R"(quote di "P", "Q", "R", "S", "T" e un altro)"}},
    {"A: Bq Cq P: Qq Rq", "ABC", kAlt, {R"(quote di "P", "Q", "R" libere di salire insieme: man)"}},
    {"P?: Aq Bq A: Cq", "ABC", kAlt, {R"(quota di "P" e altezza dello strumento in "P" libere)"}},
    {"A?: Pq B: Cq", "ABC", kAlt, {R"(altezza dello strumento in "A" e quota di "P" libere)"}},
    {"A: Pq Q?: P-", "A", kAlt, {R"(quota di "Q" libera: ness)", R"(altezza dello strumento i)"}},
    {"A: Bdq Pq Pdsq B: Ad Qs Qdsq", "ABq", kPla + kAlt, {}},
};

TEST(Indeterminazione, Parole) {
  for (const auto& caso : kCasi) {
    Rete rete = Costruisci(caso.Rilievo, caso.Fissi, caso.Calcolo);
    Rapporto rapporto;
    const Risultati r = Compensa(rete, rapporto);
    const RisultatoCompensazione& c = caso.Calcolo == kAlt ? r.Altimetria : r.Planimetria;
    ASSERT_EQ(c.MotiLiberi.size(), caso.Parole.size()) << caso.Rilievo;
    for (std::size_t i = 0; i < caso.Parole.size(); ++i)
      EXPECT_EQ(c.MotiLiberi[i].Parole.substr(0, caso.Parole[i].size()), caso.Parole[i]);
  }
}

// Weights so small that the module stops at the limit of its pivots.
TEST(Indeterminazione, MotoDebole) {
  Rete rete = Costruisci("A: Ps C: Ps B: Ps", "ABC", kPla);
  rete.Opzioni.SqmDistCost = 1e5;
  Rapporto rapporto;
  const RisultatoCompensazione c = Compensa(rete, rapporto).Planimetria;
  ASSERT_EQ(c.MotiLiberi.size(), 1);
  const MotoLibero& m = c.MotiLiberi[0];
  EXPECT_TRUE(m.Parole.starts_with("\"P\" quasi libero lungo")) << m.Parole;
  double lungo = 0, misto = 0;  // A^t A of the motion with itself and with the one across
  for (const auto& l : {kLuoghi[0], kLuoghi[1], kLuoghi[2]}) {
    const double a = std::atan2(1250 - l[0], 1130 - l[1]) - m.Azimut * kGon;
    lungo += std::cos(a) * std::cos(a), misto += std::cos(a) * std::sin(a);
  }
  EXPECT_NEAR(misto, 0, 1e-6);
  EXPECT_NEAR(m.Sqm, 1e5 / std::sqrt(lungo), 1);
}

// Sum of the motions found; each leaves the observations as they are, and all of them are told.
int Conta(Rete& rete, std::size_t& corpi) {
  const auto sistema = EquazioniPlanimetria(rete, RisultatiIniziali(rete), Coordinate::DelFile);
  Nucleo nucleo = CalcolaNucleo(sistema);
  int gradi = 0, detti = 0;
  for (const NodoLibero& n : nucleo.Nodi) {
    gradi += n.Gradi;
    EXPECT_LT(EffettoDi(sistema, {n.Nodo}, {n.Est, n.Nord}).Relativo, 1e-11);
  }
  for (const ParteLibera& parte : nucleo.Parti) {
    gradi += int(parte.Moti.size());
    for (const auto& z : parte.Moti) EXPECT_LT(EffettoDi(sistema, parte.Nodi, z).Relativo, 1e-11);
    for (const MotoInsieme& m : Scomponi(sistema, parte)) {
      EXPECT_LT(EffettoDi(sistema, m.Nodi, m.Moto).Relativo, 1e-6);
      detti += int(std::max(m.Similitudini.size(), std::size_t{1}));
      corpi += m.Similitudini.size();
    }
    detti -= int(parte.Moti.size());
  }
  EXPECT_EQ(detti, 0);
  return gradi;
}

// Points at random along a strip, a set-up on each that sees the next ones; points that hang on it
// by a distance, and points that nobody sees. Nobody sees from one thousand into the next.
struct Caso {
  int Punti, Fissi, Vicini;
  bool Distanze;
  int Appesi, Isolati, Attesi;
};
constexpr Caso kContati[] = {
    {40, 2, 3, true, 0, 0, 0},    {40, 2, 3, false, 0, 0, 0}, {40, 1, 3, true, 0, 0, 1},
    {40, 1, 3, false, 0, 0, 2},   {40, 0, 3, true, 0, 0, 3},  {40, 0, 3, false, 0, 0, 4},
    {40, 2, 3, true, 12, 5, 22},  {40, 0, 3, true, 3, 1, 8},  {40, 1, 3, false, 3, 0, 5},
    {300, 2, 1, true, 0, 0, 0},   {300, 1, 1, true, 0, 0, 1}, {100, 2, 1, false, 0, 0, 98},
    {900, 0, 3, true, 40, 0, 43}, {2000, 2, 3, true, 0, 0, 3}};

TEST(Indeterminazione, GradiContati) {
  for (const Caso& caso : kContati)
    for (unsigned seme = 0; seme < (caso.Punti >= 100 ? 1 : 20); ++seme) {
      std::mt19937 motore(seme);
      const auto reale = [&](double a) { return a * double(motore()) / 4294967295.0; };
      Rete rete;
      for (int i = 0; i < caso.Punti + caso.Appesi + caso.Isolati; ++i)
        Punto(rete, 'N', 90.0 * i + reale(80), reale(400), i < caso.Fissi ? kFisso : kIncognito);
      for (int i = 0; i < caso.Punti + caso.Appesi; ++i) {
        Stazione(rete, i);
        if (i >= caso.Punti) Osserva(rete, i % caso.Punti, false, true);
        for (int k = std::max(i - caso.Vicini, 0); k <= i + caso.Vicini; ++k)
          if (k != i && std::max(i, k) < caso.Punti && k / 1000 == i / 1000)
            Osserva(rete, k, true, caso.Distanze);
      }
      std::size_t corpi = 0;
      EXPECT_EQ(Conta(rete, corpi), caso.Attesi) << caso.Punti << " " << seme;
    }
}

// A triangle known in its shape that two sights or distances hold: turned and stretched about the
// centres that are said, it leaves the observations as they are.
TEST(Indeterminazione, CentriDetti) {
  int diversi = 0;
  for (unsigned seme = 0; seme < 200; ++seme) {
    std::mt19937 motore(seme);
    Rete rete;
    for (int i = 0; i < 6; ++i)
      Punto(rete, kNomi[i], int(motore() % 1000), int(motore() % 1000),
            i < 3 ? kFisso : kIncognito);
    for (int i = 3; i < 6; ++i)
      for (int k = (Stazione(rete, i), 3); k < 6; ++k)
        if (k != i) Osserva(rete, k, true, false);
    for (int legame = 0; legame < 2; ++legame) {
      const int da = int(motore() % 3), a = 3 + int(motore() % 3);
      const bool direzione = motore() % 2 == 0;
      Stazione(rete, da);
      if (direzione) Osserva(rete, (da + 1) % 3, true, false);
      Osserva(rete, a, direzione, !direzione);
    }
    const Risultati r = RisultatiIniziali(rete);
    const auto sistema = EquazioniPlanimetria(rete, r, Coordinate::DelFile);
    for (const ParteLibera& parte : CalcolaNucleo(sistema).Parti)
      for (const MotoInsieme& m : Scomponi(sistema, parte)) {
        const MotoLibero detto = MotoDiInsieme(r, sistema, m);
        const bool due = Presente(detto.CentroScala.Est);
        diversi += due;
        if (detto.Gradi == 1 && detto.Tipo == TipoMoto::RotazioneDilatazione) continue;
        for (const bool scala : {false, true}) {
          if (detto.Tipo == (scala ? TipoMoto::Rotazione : TipoMoto::Dilatazione)) continue;
          const CentroMoto& c = scala && due ? detto.CentroScala : detto.Centro;
          Vettore moto;
          for (const int nodo : m.Nodi) {
            const Posto q = sistema.Luoghi[nodo] + sistema.Origine - Posto{c.Est, c.Nord};
            moto.insert(moto.end(), {scala ? q.Est : q.Nord, scala ? q.Nord : -q.Est});
          }
          if (Presente(c.Est))
            EXPECT_LT(EffettoDi(sistema, m.Nodi, moto).Relativo, 1e-6) << detto.Parole;
        }
      }
  }
  EXPECT_GT(diversi, 100);
}

// Trusses of four points, each hinged to a point of an earlier one, the first to a fixed point: one
// rotation for each of them.
TEST(Indeterminazione, CorpiIncernierati) {
  for (unsigned seme = 0; seme < 20; ++seme) {
    std::mt19937 motore(seme);
    Rete rete;
    const auto nuovo = [&](int ruolo) {
      Punto(rete, 'N', int(motore() % 100000) / 50.0, int(motore() % 100000) / 50.0, ruolo);
      return int(rete.Punti.size()) - 1;
    };
    nuovo(kFisso);
    const std::size_t corpi = 1 + seme;
    for (std::size_t c = 0; c < corpi; ++c) {
      const int q[] = {int(motore() % rete.Punti.size()), nuovo(0), nuovo(0), nuovo(0)};
      for (int i = 0; i < 3; ++i)
        for (int j = (Stazione(rete, q[i]), i + 1); j < 4; ++j) Osserva(rete, q[j], false, true);
    }
    std::size_t trovati = 0;
    EXPECT_EQ(Conta(rete, trovati), int(corpi));
    EXPECT_EQ(trovati, corpi);
  }
}

}  // namespace
