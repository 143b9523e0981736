// Plane geometry, projection, reductions and quality figures: worked values, closed forms, edges.

#include <gtest/gtest.h>

#include "tests/comuni/doppio.h"

using namespace kzt5cmrg;

namespace {

constexpr double kFine = 1e-12, kNo = kValoreMancante;

TCoorCr Punto(double e, double n) { return {{}, e, n, 0, 0, 0, 0, 0, 0, 0}; }

// A job at its start: from A a reference to C, 1 km north, and one sight to B; all unknown [m].
struct Terna {
  ReteProva Rete;
  ProvaCalcolo Job;
  explicit Terna(TCoorCr a, double dE = 1000, double dN = 0, TOssCr oss = {}, double ecc = 0)
      : Rete{{0.005, 0, 0.001, 5, 3, a.Est > 1e6},
             {},
             {"A", "B", "C"},
             {a, Punto(a.Est + dE, a.Nord + dN), Punto(a.Est, a.Nord + 1000)},
             {{{}, 0, 1.5, 1, ecc, 50, {}}},
             {{{{}, 2, 0, kNo, 0, kNo, 0}, oss}}},
        Job(Rete) {
    Job.Input();
    Job.AzzeraEquazioni();
  }
};

TEST(Geometria, Anomalia) {
  const double casi[][3] = {{1, 0, kPi / 2},
                            {-1, 0, 3 * kPi / 2},
                            {0, 1, 0},
                            {0, -1, kPi},
                            {1, -1, 3 * kPi / 4},
                            {-1, 1, 7 * kPi / 4},
                            {-1, -1, 5 * kPi / 4},
                            {3, 4, std::atan(0.75)},
                            {0, 0, 3 * kPi / 2},
                            {1, 5e-8, kPi / 2},
                            {1, -5e-8, kPi / 2},
                            {-1, 5e-8, 3 * kPi / 2},
                            {1, 2e-7, kPi / 2 - 2e-7}};
  for (const auto& [dE, dN, atteso] : casi) {
    double azimut = -1, distanza = -1;
    ProvaCalcolo::Anomalia(0, 0, dE, dN, azimut, distanza);
    EXPECT_NEAR(azimut, atteso, kFine) << dE << ' ' << dN;
    EXPECT_NEAR(distanza, std::hypot(dE, dN), kFine) << dE << ' ' << dN;
  }
}

// The station point lies at e in direction phi as the instrument sees it. What the instrument
// reads, reduced, is what would be read from the point: from positions, without the sine rule.
TEST(Geometria, RiduzioneAlCentro) {
  Caso caso(7);
  for (int i = 0; i < 200; ++i) {
    const double e = caso.Reale(0.01, 15), phi = caso.Reale(0, 400), zero = caso.Reale(0, 400);
    const double tE = caso.Reale(-900, 900), tN = caso.Reale(20, 900);
    const double s = (phi + zero) * kRadPerGon;
    double d = std::atan2(tE + e * std::sin(s), tN + e * std::cos(s)) / kRadPerGon - zero;
    Terna(Punto(0, 0), tE, tN).Job.ExCentro(0, 1, e, phi, d);
    const double atteso = std::atan2(tE, tN) / kRadPerGon - zero;
    EXPECT_NEAR(std::remainder(d - atteso, 400), 0, 1e-9) << e << ' ' << tE << ' ' << tN;
  }
  double lontano = 100, sulPunto = 77;
  Terna(Punto(0, 0), 0, 3).Job.ExCentro(0, 1, 12.0, 0, lontano);  // longer than the sight
  Terna(Punto(0, 0), 0, 3).Job.ExCentro(0, 0, 12.0, 0, sulPunto);
  EXPECT_NEAR(lontano, 200, 1e-9);
  EXPECT_EQ(sulPunto, 77);
}

TEST(Geometria, Proiezione) {
  double scala = 0, correzione = 0, fi = 9, lambda = 9;
  Terna rete(Punto(1600e3, 4640e3), 10e3, 10e3);
  rete.Job.Gauss(0, 1, scala, correzione);
  EXPECT_NEAR(scala, 0.99973575299, 5e-12);
  EXPECT_NEAR(correzione, -0.00080972392, 5e-12);
  EXPECT_NEAR(rete.Job.RaggioMedio, 6376.0329177, 5e-8);
  Terna(Punto(1500e3, 4640e3)).Job.Gauss(0, 0, scala, correzione);
  EXPECT_TRUE(scala == 0.9996 && correzione == 0);
  const double casi[][4] = {
      {4640, 100, 46.5609773493, 1.3395707993}, {4640, 0, 46.5680099177, 0}, {0, 0, 0, 0}};
  for (const auto& [nord, y, latitudine, longitudine] : casi) {
    ProvaCalcolo::Geogra(nord, y, fi, lambda);
    EXPECT_NEAR(fi / kRadPerGon, latitudine, 1e-10);
    EXPECT_NEAR(lambda / kRadPerGon, longitudine, y == 0 ? 0 : 1e-10);
  }
  // Over Italy the closed formulas keep to the exact projection within a fifth of the last digit
  // that the report shows, 0.01".
  for (double nord = 3900; nord <= 5300; nord += 100)
    for (double y = -300; y <= 300; y += 50) {
      const Geografica g = DoppiaGeografica(nord, y);
      ProvaCalcolo::Geogra(nord, y, fi, lambda);
      EXPECT_NEAR(fi, g.Latitudine, 1e-8) << nord << ' ' << y;
      EXPECT_NEAR(lambda, g.Longitudine, 1e-8) << nord << ' ' << y;
    }
}

TEST(Geometria, Ellisse) {  // variances and covariance in 1e-12 km^2, axes in mm
  const double a15 = std::sqrt(1.5), a05 = std::sqrt(0.5);
  const double casi[][6] = {{4, 1, 0, 2, 1, 0},          {1, 4, 0, 2, 1, 0},
                            {1, 1, 0.5, a15, a05, 50},   {1, 1, 0, 1, 1, 0},
                            {1, 1, -0.5, a15, a05, 150}, {1, 1, 1 + 1e-14, M_SQRT2, 0, 50}};
  for (const auto& [a, b, c, asseMag, asseMin, angolo] : casi) {
    double mag = -1, min = -1, teta = -1;
    Terna(Punto(0, 0)).Job.SubEllisse(a * 1e-12, b * 1e-12, c * 1e-12, mag, min, teta);
    const double scarto = std::abs(mag * 1e6 - asseMag) + std::abs(min * 1e6 - asseMin);
    EXPECT_NEAR(scarto + std::abs(teta - angolo), 0, kFine) << a << ' ' << b << ' ' << c;
  }
}

// Cofactor 0.75 / p, s0 = 2: w = |v| / (2 sqrt(0.25 / p)). A deviation of zero tells nothing.
TEST(Geometria, Baarda) {
  double peso = 0.16, v = -2.5, w[2], q = 0.75 / peso, *inversa = &q;
  double coeff[] = {0, 0, 0, 1, 0, 0}, *riga = coeff;
  int numeri[] = {-1, -1, -1, 0, -1, -1}, *indici = numeri;
  ReteProva rete;
  const ProvaCalcolo job(rete);
  job.Baarda(&peso, &riga, &indici, &inversa, 1, &v, &w[0], 2.0);
  job.Baarda(&peso, &riga, &indici, &inversa, 1, &v, &w[1], 0.0);
  EXPECT_TRUE(std::abs(w[0] - 1) < kFine && w[1] == 0) << w[0] << ' ' << w[1];
}

// Each kind of distance, read off the known term of a 5 km line; -1 = message, -2 = no row.
TEST(Geometria, DistanzeRidotte) {
  const double seno = std::sin(0.45 * kPi);
  const struct {
    int tipo;
    double misura, zenit, direzione, ecc, attesa;
  } casi[] = {
      {-7, 100, 90, 10, 9, 100},
      {3, 100, 90, 10, 9, 100},
      {1, 100, 90, 10, 9, 100 * seno},
      {6, 100, 100, 10, 0, 99.94},
      {7, 100, 100, 10, 0, std::sqrt(99.89 * 99.89 - 0.16 * 0.16)},
      {7, 0.11, 90, 10, 0, 0.11 * seno},
      {7, 0.15, 90, 10, 0, 0.15 * seno},  // no triangle
      {20, 100, 100, 150, 0.5, std::hypot(100, 0.5)},
      {30, 100, 100, 50, 0.5, 99.5},
      {10, 100, 100, 50, kNo, 100},
      {10, 100, 100, kNo, 0.5, 100},
      {10, 100, 100, 0, 0.5, -1},
      {30, 100, 100, NAN, 0.5, -1},
      {7, 100, 0, 10, 0, 0},
      {20, 0.8700000000000002, 100, 50, 0.87, 0},  // where rounding makes the square negative
      {0, 100, kNo, 50, 0, -2},
      {0, kNo, 100, 50, 0, -2}};
  const char* messaggio = "La distanza    2 -   1 = 100.000 non pu\xF2 essere ridotta in centro\n";
  for (const auto& c : casi) {
    SCOPED_TRACE(std::to_string(c.tipo) + ": " + std::to_string(c.misura));
    Terna rete(Punto(0, 0), 3000, 4000, {{}, 1, c.direzione, c.zenit, 0, c.misura, c.tipo}, c.ecc);
    int righe = 0;
    rete.Job.CreaEquazDis(righe);
    EXPECT_EQ(righe, c.attesa >= 0);
    EXPECT_EQ(rete.Job.Contiene(messaggio), c.attesa == -1);
    const double ridotta = righe > 0 ? (rete.Job.TermineNoto[0] + 5) * 1000 : c.attesa;
    EXPECT_NEAR(ridotta, c.attesa, 1e-9);
  }
  Terna fermo(Punto(0, 0), 0, 0, {{}, 1, 50, 100, 0, 0, 0});  // no direction to measure along
  int righe = 0;
  fermo.Job.CreaEquazDis(righe);
  for (int k = 0; k < kSlot; ++k) EXPECT_EQ(fermo.Job.Coeff[0][k] + fermo.Job.TermineNoto[0], 0);
}

// A right angle over sights of 1 km, without distances in the network; values in gon.
TEST(Geometria, RigaAngolo) {
  const double casi[][2] = {{100, 0},           {100.01, 0.01}, {500, 0},
                            {99.0001, -0.9999}, {290, 190},     {101.0001, 1.0001},
                            {98.9999, -1.0001}, {310, -190},    {-299.9, 0.1}};
  for (const auto& [lettura, noto] : casi) {
    Terna rete(Punto(0, 0), 1000, 0, {{}, 1, lettura, 100, 0, kNo, 0});
    int righe = 0;
    rete.Job.CreaEquazAng(righe);
    EXPECT_NEAR(rete.Job.TermineNoto[0] / kRadPerGon, noto, 1e-10) << lettura;
    EXPECT_EQ(rete.Job.Contiene("DA  ST.1 a 2 ANOM.(MIS.-PROSS.)"), std::abs(noto) > 1) << lettura;
    EXPECT_TRUE(righe == 1 && rete.Job.Peso[0] == 1) << lettura;
  }
}

}  // namespace
