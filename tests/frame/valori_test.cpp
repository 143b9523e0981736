// Worked values: one solution from rows written by hand, the instrument height brought to the
// centre, sexagesimal angles, the statistics of the precision, who keeps a fixed point in use.

#include <gtest/gtest.h>

#include "tests/comuni/rete_prova.h"

using namespace kzt5cmrg;

namespace {

constexpr double kNo = kValoreMancante;

// A row of at most six terms; the slots that are left stay empty.
struct RigaMano {
  std::vector<std::pair<int, double>> Termini;  // unknown, coefficient
  double Peso, Noto;
};
const struct CasoMano {
  const char* Nome;
  std::vector<RigaMano> Righe;
  std::vector<double> Soluzione, Residui;  // no solution = not positive definite
  double SigmaZero = 0;
} kCasiMano[] = {
    {"unit matrix",
     {{{{0, 1}}, 1, 5}, {{{1, 1}}, 1, -7}, {{{2, 1}}, 1, 0.3}},
     {5, -7, 0.3},
     {0, 0, 0}},
    {"as many rows as unknowns",
     {{{{0, 0.1}, {1, 0.3}}, 3, 0.7}, {{{0, 0.7}, {1, -0.9}}, 7, 1.9}},
     {4, 1},
     {0, 0}},
    {"weights", {{{{0, 1}}, 3, 1}, {{{0, 1}}, 1, 5}}, {2}, {-1, 3}, std::sqrt(12)},
    {"empty row", {{{{0, 1}}, 1, 1}, {{}, 4, 2}, {{{0, 1}}, 1, 3}}, {2}, {-1, 2, 1}, 3},
    {"one unknown in two slots",
     {{{{0, 1}, {0, 1}}, 1, 6}, {{{0, 1}}, 1, 1}},
     {2.6},
     {0.8, -1.6},
     std::sqrt(3.2)},
    {"last slot, unknowns not in order",
     {{{{1, 2}, {-1, 9}, {-1, 9}, {-1, 9}, {-1, 9}, {0, -1}}, 1, 1}, {{{1, 1}}, 1, 2}},
     {3, 2},
     {0, 0}},
    {"pivot too small", {{{{0, 1}}, 1, 1}, {{{1, 1}}, 1e-15, 1}}, {}, {}},
    {"pivot just enough", {{{{0, 1}}, 1, 1}, {{{1, 1}}, 1.1e-15, 6}}, {1, 6}, {0, 0}},
    {"the same row twice", {{{{0, 1}, {1, 2}}, 2, 1}, {{{0, 1}, {1, 2}}, 2, 1}}, {}, {}},
    {"an unknown without rows", {{{{1, 1}}, 1, 1}, {{{1, 1}}, 1, 1}}, {}, {}}};

TEST(Valori, MinimiQuadrati) {
  for (const CasoMano& c : kCasiMano)
    for (const int ordineDenso : {kOrdineDenso, -1}) {
      SCOPED_TRACE(c.Nome + (", dense up to " + std::to_string(ordineDenso)));
      ReteProva rete = CaricaRete("quadrato");
      ProvaCalcolo job(rete, ordineDenso);
      job.AzzeraEquazioni();
      const int n = static_cast<int>(c.Righe.size());
      for (int r = 0, k = 0; r < n; ++r, k = 0) {
        job.Peso[r] = c.Righe[r].Peso, job.TermineNoto[r] = c.Righe[r].Noto;
        for (const auto& [incognita, coeff] : c.Righe[r].Termini)
          job.Indici[r][k] = incognita, job.Coeff[r][k++] = coeff;
      }
      job.Soluzione[0] = job.Residui[0] = job.SigmaZero = 77;
      const bool riuscita = !c.Soluzione.empty();
      const int u = riuscita ? static_cast<int>(c.Soluzione.size()) : 2;
      job.MinQua2(n, u);
      EXPECT_EQ(job.StatoCalcolo == kSolutoreFallito, !riuscita);
      EXPECT_TRUE(riuscita || (job.Soluzione[0] == 77 && job.Residui[0] == 77));
      EXPECT_NEAR(job.SigmaZero, riuscita ? c.SigmaZero : 77, n == u ? 0 : 1e-14);
      for (int i = 0; riuscita && i < u; ++i) EXPECT_NEAR(job.Soluzione[i], c.Soluzione[i], 1e-13);
      for (int r = 0; riuscita && r < n; ++r) EXPECT_NEAR(job.Residui[r], c.Residui[r], 1e-13);
    }
}

// An instrument 1.5 m high and 10 m off the centre, which it sees at 30 gon; at 50 gon tan z = 1.
TEST(Valori, AltezzaAlCentro) {
  const double lato = std::sqrt(0.5), meta = std::sqrt(0.995) + std::sqrt(0.005);
  const double casi[][4] = {// plane distance [km], reading, zenith angle, height on the centre
                            {0.1, 30, 50, 11.5},
                            {0.1, 230, 50, -8.5},
                            {0.1, 130, 50, 0.5},
                            {0.1, 30, 150, -8.5},
                            {0.1, 80, 50, 1.5 + 10 * lato},
                            {0.1, -20, 50, 1.5 + 10 * lato},
                            {0.1, 30, 100, 1.5},
                            {0.1, 180, 50, 1.5 - 10 * lato * meta},
                            {0.1, -120, 50, 1.5 - 10 * lato * meta},
                            {0.005, 130, 50, -8.5},
                            {0, 130, 50, 1.5},
                            {0, 230, 50, -8.5},
                            {0.1, kNo, 50, 1.5}};
  for (const auto& [distanza, lettura, zenit, attesa] : casi) {
    double altezza = 77;
    ProvaCalcolo::ExZet(distanza, 10, 30, 1.5, lettura, zenit, altezza);
    EXPECT_NEAR(altezza, attesa, 1e-12) << distanza << ' ' << lettura << ' ' << zenit;
  }
}

TEST(Valori, Sessagesimali) {
  const double casi[][4] = {
      {100, 90, 0, 0},  {13.835802, 12, 27, 7.99848}, {-13.835802, -12, -27, -7.99848},
      {0.6, 0, 32, 24}, {-0.6, -0.0, -32, -24},       {-399.999, -359, -59, -56.76}};
  for (const auto& [gon, gradi, primi, secondi] : casi) {
    double g = 77, p = 77, s = 77;
    ProvaCalcolo::Angl2(gon, g, p, s);
    EXPECT_TRUE(g == gradi && std::signbit(g) == std::signbit(gradi) && p == primi) << gon;
    EXPECT_NEAR(s, secondi, 1e-7) << gon;
  }
}

// Two adjusted points; the fixed ones do not count, not even one that the host calls adjusted.
TEST(Valori, Statistica) {
  const struct {
    double nord[2], est[2], s0;
    const char* rms;
    const char* media;
    const char* sqm;
  } casi[] = {{{3, 5},
               {1, 7},
               2,
               "    4     Sy =     5\n",
               "    4     Sy =     4\n",
               "    1     Sy =     3\n"},
              {{3000, 5000},
               {7000, 7000},
               1e-6,
               " 4123     Sy =  7000\n",
               " 4000     Sy =  7000\n",
               " 1000     Sy =     0\n"}};
  for (const auto& c : casi) {
    ReteProva rete = CaricaRete("quadrato");
    ProvaCalcolo job(rete);
    job.Input();
    for (int k = 0; k < 2; ++k) {
      rete.Punti[0].TipoPla = rete.Punti[2 + k].TipoPla = kCompensato;
      job.Normale[2 * k][2 * k] = std::pow(c.est[k] * 1e-6 / c.s0, 2);
      job.Normale[2 * k + 1][2 * k + 1] = std::pow(c.nord[k] * 1e-6 / c.s0, 2);
    }
    job.SigmaZero = c.s0;
    job.Statistica();
    EXPECT_TRUE(job.Contiene(std::string("RMS        (in mm)   Sx = ") + c.rms) &&
                job.Contiene(std::string("Medi abs.  (in mm)   Sx = ") + c.media) &&
                job.Contiene(std::string("SQM        (in mm)   Sx = ") + c.sqm))
        << job.Rapporto.Testo;
  }
}

// A distance of 10 m between ends that the coordinates put at almost one place [m]: up to 0.1 mm
// it tells nothing of where they lie.
TEST(Valori, EstremiCoincidenti) {
  const struct {
    double dE, dN, misurata, termine, suEst, suNord;  // the known term in km
  } casi[] = {{0, 0, 10, 0, 0, 0},
              {0, 0, 0, 0, 0, 0},
              {3e-5, 4e-5, 10, 0, 3e-6, 4e-6},
              {9e-5, 12e-5, 10, 0.00999985, 0.6, 0.8}};
  for (const auto& c : casi) {
    ReteProva rete = CaricaRete("quadrato");
    rete.Punti[0].Est = rete.Punti[0].Nord = 0;
    rete.Punti[2].Est = c.dE, rete.Punti[2].Nord = c.dN;
    rete.Stazioni.resize(1);
    rete.Osservazioni[0] = {{{}, 2, kNo, 100, 1.5, c.misurata, 0}};
    ProvaCalcolo job(rete);
    job.Input();
    job.AzzeraEquazioni();
    int righe = 0;
    job.CreaEquazDis(righe);
    EXPECT_EQ(righe, 1);
    EXPECT_NEAR(job.TermineNoto[0], c.termine, 1e-15) << c.dE;
    EXPECT_NEAR(job.Coeff[0][2], c.suEst, 1e-12) << c.dE;
    EXPECT_NEAR(job.Coeff[0][3], c.suNord, 1e-12) << c.dE;
  }
}

// A sight of 1 km due East, read 0, of a circle turned by so much: the reference shows only what
// exceeds a whole turn, 10 gon = 157.0796 m; the next sight its difference within half a turn.
TEST(Valori, RiferimentoOltreIlGiro) {
  const struct {
    double orientamento;  // [gon]
    const char *riferimento, *lineare, *seguente;
  } casi[] = {{910, " 10.0000", " 157.0796\n", " 10.0000"},
              {510, "  0.0000", "   0.0000\n", " 10.0000"},
              {-290, "  0.0000", "   0.0000\n", " 10.0000"},
              {-310, "-10.0000", "-157.0796\n", "-10.0000"}};
  const std::string fino = "  2  B               0.0000   ",
                    poi = "      100.0000     1000.0000    ";
  for (const auto& c : casi) {
    SCOPED_TRACE(c.orientamento);
    ReteProva rete = CaricaRete("quadrato");
    rete.Punti[1].Nord = 1000;
    rete.Stazioni.resize(1);
    rete.Osservazioni[0].assign(2, {{}, 1, 0, kNo, kNo, kNo, 0});
    ProvaCalcolo job(rete);
    job.Input();
    rete.Punti[0].Orientamento = c.orientamento * kRadPerGon;
    const double w = 0;
    job.RisultatiPla(&w);
    EXPECT_TRUE(job.Contiene(fino + c.riferimento + poi + c.lineare + fino + c.seguente + poi))
        << job.Rapporto.Testo;
  }
}

// Two points and one station on one of them, with a sight to the other. Roles before and after.
TEST(Valori, ChiResta) {
  const TOssCr direzione{{}, 0, 10, kNo, kNo, kNo, 0}, distanza{{}, 0, kNo, 100, kNo, 50, 0};
  const TOssCr soloZenit{{}, 0, kNo, 100, 1.5, kNo, 0}, soloDistanza{{}, 0, kNo, kNo, 1.5, 50, 0};
  const struct {
    const char* nome;
    int stazione;
    TOssCr oss;
    double altStrum, manca;
    int ruoli[2], pianta[2], quota[2];
  } casi[] = {// `manca` = coordinates and height of the station point
              {"direction", 0, direzione, 1.5, 1, {0, 1}, {0, 1}, {0, 2}},
              {"distance", 1, distanza, 1.5, 1, {1, 0}, {1, 0}, {2, 0}},
              {"zenith angle", 0, soloZenit, 1.5, 1, {0, 1}, {0, 2}, {0, 1}},
              {"no instrument height", 0, soloZenit, kNo, 1, {0, 1}, {0, 2}, {0, 2}},
              {"distance without zenith angle", 0, soloDistanza, 1.5, 1, {0, 1}, {0, 2}, {0, 2}},
              {"observer out before", 0, direzione, 1.5, kNo, {0, 1}, {2, 2}, {2, 2}},
              {"observer out later", 1, direzione, 1.5, kNo, {1, 0}, {1, 2}, {2, 2}},
              {"height observer out later", 1, soloZenit, 1.5, kNo, {1, 0}, {2, 2}, {1, 2}},
              {"observer not used", 1, direzione, 1.5, 1, {1, 2}, {2, 2}, {2, 2}},
              {"a fixed station", 0, direzione, 1.5, 1, {1, 2}, {1, 2}, {1, 2}},
              {"a fixed station not given", 0, direzione, 1.5, kNo, {1, 1}, {2, 2}, {2, 2}}};
  for (const auto& c : casi) {
    SCOPED_TRACE(c.nome);
    ReteProva rete;
    rete.Nomi = {"A", "B"};
    for (const int i : {0, 1}) {
      const double x = i == c.stazione ? c.manca : 100;
      rete.Punti.push_back({{}, x, 100, x, 0, c.ruoli[i], c.ruoli[i], 0, 0, 0});
    }
    rete.Opzioni.TipoCalcolo = kCalcoloPlanimetria + kCalcoloAltimetria;
    rete.Stazioni = {{{}, c.stazione, c.altStrum, 1, 0, 0, {}}};
    rete.Osservazioni = {{c.oss}};
    rete.Osservazioni[0][0].Punto = 1 - c.stazione;
    const ProvaCalcolo job(rete);
    for (const int i : {0, 1})
      EXPECT_TRUE(rete.Punti[i].TipoPla == c.pianta[i] && rete.Punti[i].TipoAlt == c.quota[i]) << i;
  }
}

}  // namespace
