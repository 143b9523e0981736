// Measurements predicted exactly, from where the instruments really stood: the adjustment must come
// back to the points, with nothing left over; and when one of them is then spoilt, no other may
// have a larger normalised residual.

#include <gtest/gtest.h>

#include <complex>

#include "tests/comuni/rete_prova.h"

using namespace kzt5cmrg;

namespace {

using Z = std::complex<double>;  // North + i East [m]

double Gon(Z lato) { return std::fmod(std::arg(lato) / kRadPerGon + 800, 400); }

// Every point sees every other. Instruments of unknown height and eccentric ones take turns with
// plain ones; the heights of all points but the first two, and the plane coordinates, are unknown.
ReteProva ReteEsatta(unsigned seme) {
  Caso caso(seme);
  ReteProva rete;
  rete.Opzioni = {0.003, 0.002, 0.001, 9, 0, 0};
  rete.DsOr = {seme % 2 == 1, 0.13, 6378000};
  const double lato = caso.Scelta({200.0, 3000.0});
  const int n = 4 + caso.Intero(4);
  for (int i = 0; i < n; ++i) {
    rete.Punti.push_back({{},
                          caso.Reale(0, lato),
                          caso.Reale(0, lato),
                          caso.Reale(300, 360),
                          0,
                          i < 2,
                          i < 2,
                          0,
                          0,
                          0});
    rete.Nomi.push_back("P" + std::to_string(i));
  }
  for (int s = 0; s < n; ++s) {
    const TCoorCr& p = rete.Punti[s];
    const double zero = caso.Reale(0, 400), phi = caso.Reale(0, 400);
    const double strumento = caso.Reale(1.4, 1.7), fuori = s % 3 == 2 ? caso.Reale(0.02, 4) : 0;
    const Z centro(p.Nord, p.Est), sta = centro - std::polar(fuori, (zero + phi) * kRadPerGon);
    rete.Stazioni.push_back({{}, s, strumento, s % 3 != 1, fuori, phi, {}});
    rete.Osservazioni.emplace_back();
    for (int t = 0; t < n; ++t) {
      const TCoorCr& q = rete.Punti[t];
      if (t == s) continue;
      const Z meta(q.Nord, q.Est);
      const int tipo = fuori > 0 ? 10 * (1 + caso.Intero(3)) : caso.Scelta({0, 1, 1, 3});
      const double d = std::abs(meta - sta), segnale = caso.Reale(1, 2);
      const double k = rete.DsOr.CorrCurvRifr != 0 ? 0.87 / 2 / 6378000 : 0;
      const double su = q.Quota + segnale - p.Quota - strumento - k * d * d;
      const double direzione = std::fmod(Gon(meta - sta) - zero + 400, 400);
      rete.Osservazioni.back().push_back({{},
                                          t,
                                          direzione,
                                          std::atan2(d, su) / kRadPerGon,
                                          segnale,
                                          tipo == 1 ? std::hypot(d, su) : d,
                                          tipo});
    }
  }
  rete.Collega();
  return rete;
}

// The largest w is that of a row, among rows that share it.
void ControllaPeggiore(const ProvaCalcolo& job, int righe, int guasta) {
  std::vector<double> w(job.MaxEquaz);
  job.Baarda(job.Peso.get(), job.Coeff.Puntatori(), job.Indici.Puntatori(), job.Normale.Puntatori(),
             righe, job.Residui.get(), w.data(), job.SigmaZero);
  EXPECT_GE(w[guasta] * (1 + 1e-6), *std::ranges::max_element(w));
  EXPECT_GT(w[guasta], 1);
}

class MisureEsatte : public testing::TestWithParam<unsigned> {};

TEST_P(MisureEsatte, Pianta) {
  const ReteProva vera = ReteEsatta(GetParam());
  ReteProva rete = vera.Con(kCalcoloPlanimetria);
  Caso caso(GetParam());
  for (TCoorCr& p : rete.Punti)
    if (p.TipoPla == kIncognito) p.Est += caso.Reale(-0.5, 0.5), p.Nord += caso.Reale(-0.5, 0.5);
  // The readings of an eccentric instrument are reduced by the coordinates of the step before.
  for (int k = 0; k < 4; ++k) rete = rete.Compensata();
  for (int i = 0; i < std::ssize(rete.Punti); ++i) {
    EXPECT_NEAR(rete.Punti[i].Est, vera.Punti[i].Est, 1e-6) << i;
    EXPECT_NEAR(rete.Punti[i].Nord, vera.Punti[i].Nord, 1e-6) << i;
  }
  ReteProva guasta = rete;
  ProvaCalcolo job(rete);
  ASSERT_TRUE(job.Esegui());
  EXPECT_LT(job.SigmaZero, 1e-3 * kSigmaZeroPriori);

  guasta.Osservazioni.back().back().Distanza += 0.2;
  ProvaCalcolo altro(guasta);
  ASSERT_TRUE(altro.Esegui());
  const int righe = altro.Numero("N. Osservazioni");
  ControllaPeggiore(altro, righe, righe - 1);
}

TEST_P(MisureEsatte, Quote) {
  const ReteProva vera = ReteEsatta(GetParam());
  ReteProva rete = vera.Con(kCalcoloAltimetria);
  // Off the centre the height goes along the sight, which is not what the instrument did.
  for (int s = 2; s < std::ssize(rete.Stazioni); s += 3) rete.Stazioni[s].Punto = -1;
  for (TCoorCr& p : rete.Punti) p.Quota += p.TipoAlt == kIncognito ? 7 : 0;
  ReteProva guasta = rete;
  ProvaCalcolo job(rete);
  ASSERT_TRUE(job.Esegui());
  int k = 0;
  for (int i = 0; i < std::ssize(rete.Punti); ++i) {
    EXPECT_NEAR(rete.Punti[i].Quota, vera.Punti[i].Quota, 1e-7) << i;
    k += rete.Punti[i].TipoAlt == kCompensato;
  }
  for (int s = 1; s < std::ssize(rete.Stazioni); s += 3)
    EXPECT_NEAR(job.Soluzione[k++], rete.Stazioni[s].AltStrum, 1e-7) << s;
  EXPECT_LT(job.SigmaZero, 1e-7);

  guasta.Osservazioni[0][0].Zenit += 0.05;
  ProvaCalcolo altro(guasta);
  ASSERT_TRUE(altro.Esegui());
  ControllaPeggiore(altro, altro.Numero("N. Osservazioni"), 0);
}

INSTANTIATE_TEST_SUITE_P(Reti, MisureEsatte, testing::Range(0u, 20u));

}  // namespace
