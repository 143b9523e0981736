// The result model against computations of other makings: every equation against a QR solution and
// against the geometry of the adjusted points, and how an adjustment ended against its report.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "host/base/impronta.h"
#include "host/calcolo/calcolo.h"
#include "host/calcolo/rapporto.h"
#include "tests/comuni/doppio.h"
#include "tests/comuni/rete_prova.h"

using namespace compensa;

namespace {

constexpr double kAccordo = 1e-9;   // relative, of what follows from the known terms
constexpr double kAccordoQ = 1e-7;  // relative, of cofactors

// A network of the tests as the program holds one, adjusted.
Risultati Adatta(const ReteProva& prova, Rapporto& rapporto) {
  Rete rete;
  rete.Opzioni = prova.Opzioni;
  rete.CurvaturaRifrazione = prova.DsOr;
  rete.Punti = prova.Punti;
  rete.Stazioni = prova.Stazioni;
  rete.Nomi = prova.Nomi;
  for (const TCoorCr& p : rete.Punti) rete.RuoliIniziali.push_back({p.TipoPla, p.TipoAlt});
  return Compensa(rete, rapporto);
}

constexpr double kUnita[] = {1 / kRadPerGon, 1000, 1};  // of the kinds of equations

// What an equation observes, from the adjusted points, less its adjusted value [gon, m].
double Scarto(const Risultati& r, const Equazione& e) {
  const RisultatoStazione& s = r.Stazioni[e.Stazione];
  const RisultatoPunto& p = r.Punti[s.Punto];
  const RisultatoPunto& t = r.Punti[s.Osservazioni[e.Osservazione].Punto];
  if (e.Tipo == TipoEquazione::Dislivello) return t.Quota - p.Quota - e.Compensato;
  if (e.Tipo == TipoEquazione::Distanza)
    return std::hypot(t.Est - p.Est, t.Nord - p.Nord) - e.Compensato;
  const auto azimut = [&](const RisultatoPunto& x) {
    return std::atan2(x.Est - p.Est, x.Nord - p.Nord) / kRadPerGon;
  };
  const double angolo = azimut(t) - azimut(r.Punti[s.Osservazioni[e.Riferimento].Punto]);
  return std::remainder(angolo - e.Compensato, 400);
}

void ConfrontaEquazioni(const Risultati& r, const RisultatoCompensazione& c, const Doppio& d) {
  double quadrati = 0, ridondanza = 0, wMassimo = 0, scala = d.SigmaZero;
  for (int i = 0; i < d.Righe; ++i)
    scala = std::max(scala, std::abs(d.Noti[i]) * std::sqrt(d.Peso[i]));
  for (int i = 0; i < d.Righe; ++i) {
    SCOPED_TRACE("equation " + std::to_string(i));
    const Equazione& e = r.Equazioni[i];
    const double unita = kUnita[static_cast<int>(e.Tipo)];
    const double tolleranza = kAccordo * scala / std::sqrt(d.Peso[i]);
    EXPECT_NEAR(e.Residuo / unita, d.Residui[i], tolleranza);
    EXPECT_NEAR(e.Sqm / unita, d.SigmaZero / std::sqrt(d.Peso[i]), tolleranza);
    EXPECT_NEAR(e.Ridondanza, d.Ridondanza[i], kAccordoQ);
    EXPECT_NEAR(e.W, d.W[i], kAccordo * (1 + d.W[i]) * scala / d.SigmaZero / d.Ridondanza[i]);
    EXPECT_EQ(e.Compensato, e.Usato - e.Residuo);
    EXPECT_NEAR(Scarto(r, e), 0, 1e-6);
    quadrati += e.Peso * std::pow(e.Residuo / unita, 2);
    ridondanza += e.Ridondanza;
    if (d.Ridondanza[i] > 1e-5) wMassimo = std::max(wMassimo, e.W);
  }
  EXPECT_NEAR(ridondanza, d.Righe - d.Incognite, kAccordoQ * d.Righe);
  EXPECT_NEAR(quadrati / c.Ridondanza(), c.SigmaZero * c.SigmaZero, kAccordo * quadrati);
  EXPECT_EQ(r.Equazioni[c.EquazioneWMassimo].W, wMassimo);
}

int confrontate = 0;

// An adjustment whose points are already at their places, so that one step changes nothing.
void Confronta(const ReteProva& prova, int calcolo, const Doppio& d) {
  Rapporto rapporto;
  const Risultati r = Adatta(prova.Con(calcolo, 1), rapporto);
  const bool pla = calcolo == kCalcoloPlanimetria;
  const RisultatoCompensazione& c = pla ? r.Planimetria : r.Altimetria;
  if (c.Fine == Esito::NormaleSingolare) return;  // an instrument height of no sight
  ++confrontate;
  ASSERT_EQ(c.Fine, Esito::Riuscita);
  ASSERT_EQ(static_cast<int>(r.Equazioni.size()), d.Righe);
  ASSERT_EQ(c.Ridondanza(), d.Righe - d.Incognite);
  if (c.Ridondanza() == 0) {
    EXPECT_FALSE(Presente(c.SigmaZero) || Presente(r.Equazioni.front().Sqm));
    return;
  }
  ConfrontaEquazioni(r, c, d);
  int k = 0;
  const auto covarianza = [&](int a, int b, double trovata) {
    const double unita = std::pow(c.SigmaZero * (pla ? 1000 : 1), 2);
    const auto q = [&](int i, int j) { return d.Q[i * d.Incognite + j]; };
    EXPECT_NEAR(trovata / unita, q(a, b), kAccordoQ * std::sqrt(q(a, a) * q(b, b)));
  };
  for (const RisultatoPunto& p : r.Punti) {
    SCOPED_TRACE(p.Nome);
    if (!pla && p.Ruoli.Alt == kCompensato) covarianza(k, k, p.SqmQuota * p.SqmQuota), ++k;
    if (!pla || p.Ruoli.Pla != kCompensato) continue;
    covarianza(k, k, p.SqmEst * p.SqmEst);
    covarianza(k, k + 1, p.Covarianza);
    covarianza(k + 1, k + 1, p.SqmNord * p.SqmNord);
    k += 2;
  }
}

TEST(Risultati, Equazioni) {
  std::vector<ReteProva> reti;
  for (const char* nome : kReti) reti.push_back(CaricaRete(nome).Compensata());
  for (unsigned seme = 0; seme < 30; ++seme) reti.push_back(ReteCasuale(seme).Compensata());
  for (std::size_t i = 0; i < reti.size(); ++i) {
    SCOPED_TRACE("network " + std::to_string(i));
    const ReteProva rete = reti[i].Compensata().Compensata();
    Confronta(rete, kCalcoloPlanimetria, DoppioPla(rete));
    const Doppio d = DoppioAlt(rete);
    const bool altimetria = (rete.Opzioni.TipoCalcolo & kCalcoloAltimetria) != 0;
    if (altimetria && d.Righe > d.Incognite) Confronta(rete, kCalcoloAltimetria, d);
  }
  EXPECT_GT(confrontate, 70);
}

// Turned so that its first axis lies along the azimuth, a covariance is the diagonal of the
// semi-axes.
TEST(Risultati, EllisseGirata) {
  constexpr double kBlocchi[][3] = {{4, 1, 0},  {3, 2, 1.5}, {2, 3, -1.5},   {5, 1, -2},
                                    {2, 2, -1}, {1, 1, 0},   {4, 1, -1e-17}, {1, 4, -1e-17}};
  for (const auto& [a, b, c] : kBlocchi) {
    const Ellisse e = CalcolaEllisse(a, b, c);
    const double s = std::sin(e.Azimut * kRadPerGon), n = std::cos(e.Azimut * kRadPerGon);
    EXPECT_NEAR(s * s * a + 2 * s * n * c + n * n * b, e.AsseMag * e.AsseMag, 1e-12) << a << b << c;
    EXPECT_NEAR(n * n * a - 2 * s * n * c + s * s * b, e.AsseMin * e.AsseMin, 1e-12) << a << b << c;
    EXPECT_TRUE(e.Azimut >= 0 && e.Azimut < 200 && e.AsseMag >= e.AsseMin) << e.Azimut;
  }
}

// Two fixed points, a third and how it is seen.
const std::string kTesta = "OPZ 0.003 0 0.001 10 3 0\nDSOR 0 0 1\nPT A|0 0 10 1 1\n";
const std::string kBase = kTesta + "PT B|100 0 10 1 1\n", kC = "PT C|50 80 12 0 0\n";
const std::string kDaA = "ST 0 1.5 1 0 0\nOS 1 100 100 1.5 100.002 0\n", kDaB = "ST 1 1.5 1 0 0\n";
const std::string kVersoC = "OS 2 35.5 98 1.5 94.34 0\n", kD = "PT D|60 -70 12 0 0\n";
const std::string kMisure =
    kDaA + kVersoC + kDaB + "OS 0 300 100 1.5 100.002 0\nOS 2 364 98 1.5 94.34 0\n";

using enum Esito;
struct CasoEsito {
  const char* Nome;
  int Iterazioni, Calcolo;
  std::string Rete;
  Esito Pla, Alt;
  const char* Rapporto;
} const kEsiti[] = {
    {"both", 10, 3, kBase + kC + kMisure, Riuscita, Riuscita, "QUOTE COMPENSATE"},
    {"C unseen in plan", 10, 3, kBase + kC + kDaA + "OS 2 - 98 1.5 - 0\n", NonDeterminabile,
     NonEseguita, "non determinabile in planimetria"},
    {"one fixed point", 10, 1, kTesta + "PT B|100 0 0 0 0\n" + kDaA, PuntiFissiInsufficienti,
     NonRichiesta, "INFERIORE A  2"},
    {"one distance", 10, 1, kBase + kC + "ST 0 1.5 1 0 0\n" + kVersoC + kDaB, PiuIncognite,
     NonRichiesta, "PIU' INCOGNITE"},
    {"D by one distance", 10, 1, kBase + kC + kD + kMisure + "OS 3 - 98 1.5 80 0\n",
     NormaleSingolare, NonRichiesta, "ITERAZIONE N."},
    {"height of no sight", 10, 2, kBase + kC + kDaA + "OS 2 - 98 1.5 94 0\nST 2 1.5 0 0 0\n",
     NonRichiesta, NormaleSingolare, "IMPOSSIBILE ESEGUIRE"},
    {"a vertical sight", 10, 2, kBase + kC + kDaA + "OS 2 35.5 0 1.5 94.34 0\n" + kDaB + kVersoC,
     NonRichiesta, NonFinita, "QUOTE COMPENSATE"},
    {"one step", 1, 1, kBase + "PT C|50 90 12 0 0\n" + kMisure, NonConvergente, NonRichiesta,
     "CONVERGENZA NON RAGGIUNTA"},
    {"no redundancy", 10, 1, kBase + kC + "ST 0 1.5 1 0 0\n" + kVersoC + kDaB + kVersoC, Riuscita,
     NonRichiesta, "FINE ITERAZIONI"},
};

TEST(Risultati, Esiti) {
  for (const CasoEsito& caso : kEsiti) {
    SCOPED_TRACE(caso.Nome);
    Rapporto rapporto;
    const ReteProva rete = LeggiRete(caso.Rete).Con(caso.Calcolo, caso.Iterazioni);
    const Risultati r = Adatta(rete, rapporto);
    EXPECT_EQ(std::pair(r.Planimetria.Fine, r.Altimetria.Fine), std::pair(caso.Pla, caso.Alt));
    EXPECT_NE(rapporto.Byte().find(caso.Rapporto), std::string::npos) << rapporto.Byte();
    const auto bene = [](Esito esito) { return esito == Riuscita || esito == NonRichiesta; };
    EXPECT_EQ(TutteRiuscite(r), bene(caso.Pla) && bene(caso.Alt));
    EXPECT_NEAR(r.Punti[1].Est, 100, 1e-9);  // metres, however the run ended
    EXPECT_EQ(Presente(r.Punti.back().SqmEst), caso.Pla == NonConvergente || caso.Alt == Riuscita);
  }
}

// D without position or height: it counts as left out where it was asked for, and the others are
// adjusted all the same.
const struct {
  const char* Punto;
  int Calcolo;
  std::vector<int> Pla, Alt;
} kSenzaCoordinate[] = {{"PT D|- - 12 0 0\n", 3, {3}, {}}, {"PT D|60 -70 - 0 0\n", 2, {}, {3}},
                        {"PT D|- - - 0 0\n", 1, {3}, {}},  {"PT D|- - - 2 2\n", 3, {}, {}},
                        {"PT D|- - - 1 1\n", 3, {}, {}},   {"PT D|60 - - 0 2\n", 1, {3}, {}}};

TEST(Risultati, PuntiNonCalcolati) {
  for (const auto& [punto, calcolo, pla, alt] : kSenzaCoordinate) {
    SCOPED_TRACE(punto);
    Rapporto rapporto;
    const Risultati r = Adatta(LeggiRete(kBase + kC + punto + kMisure).Con(calcolo, 10), rapporto);
    EXPECT_EQ(r.Planimetria.PuntiNonCalcolati, pla);
    EXPECT_EQ(r.Altimetria.PuntiNonCalcolati, alt);
    EXPECT_EQ(TutteRiuscite(r), pla.empty() && alt.empty());
    EXPECT_FALSE(r.Planimetria.NienteCalcolato() || r.Altimetria.NienteCalcolato());
  }
}

// Where the builder leaves a station, the rows that follow still find their observations.
TEST(Risultati, DistanzaNonRiducibile) {
  ReteProva prova = CaricaRete("fuori_centro");
  prova.Osservazioni[1][3].Direzione = 0;
  Rapporto rapporto;
  const Risultati r = Adatta(prova, rapporto);
  EXPECT_EQ(r.Stazioni[1].Osservazioni[4].EqDistanza, kNessuno);
  EXPECT_NEAR(Scarto(r, r.Equazioni[r.Stazioni[2].Osservazioni[2].EqDistanza]), 0, 1e-5);
}

// The observer changes nothing in a report, and points named like its stages do not mislead it.
TEST(Risultati, RapportoInvariato) {
  for (const char* nome : kReti) {
    ReteProva prova = CaricaRete(nome);
    for (std::string& n : prova.Nomi)
      n = n.size() % 2 == 0 ? "ITERAZIONE N." : "RISUTATI STATISTICI";
    prova.Collega();
    Rapporto rapporto;
    Adatta(prova.Con(prova.Opzioni.TipoCalcolo), rapporto);
    ProvaCalcolo job(prova);
    job.Esegui();
    EXPECT_EQ(rapporto.Byte(), job.Rapporto.Testo) << nome;
  }
}

TEST(Rapporto, Numeri) {
  constexpr double kInfinito = std::numeric_limits<double>::infinity();
  const std::tuple<double, int, int, const char*> casi[] = {
      {1.5, 8, 3, "   1.500"},  {-0.0, 6, 1, "  -0.0"},      {-0.00001, 0, 4, "0.0000"},
      {2.5, 3, 0, "  2"},       {12345.6, 5, 1, "12345.6"},  {9e199, 4, 2, "   -"},
      {kInfinito, 3, 4, "  -"}, {-kInfinito, 5, 0, " -inf"}, {-kAssente, 5, 2, "  nan"}};
  for (const auto& [valore, larghezza, decimali, atteso] : casi) {
    Rapporto rapporto;
    rapporto.ScriviNumero(valore, larghezza, decimali);
    EXPECT_EQ(rapporto.Byte(), atteso);
  }
}

// FIPS 180-4: the examples published with it, and messages whose padding just fits and does not.
TEST(Impronta, EsempiPubblicati) {
  const std::pair<std::string, const char*> casi[] = {
      {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
      {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
      {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
       "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
      {std::string(55, 'a'), "9f4390f8d30c2dd92ec9f095b65e2b9ae9b0a925a5258e241c9f1e910f734318"},
      {std::string(1000000, 'a'),
       "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"}};
  for (const auto& [testo, attesa] : casi) EXPECT_EQ(Impronta(testo), attesa) << testo.size();
}

}  // namespace
