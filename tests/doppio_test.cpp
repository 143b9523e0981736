// Every number of one adjustment against the second computation: rows, step, residuals, sigma zero,
// cofactors, w, ellipses. Each is held to 1e-9 of its natural scale: the largest weighted known
// term for all that follows from the known terms; w also by the redundancy of its equation, for a
// residual that the network leaves hardly any room is all rounding.

#include "doppio.h"

#include <gtest/gtest.h>

namespace {

constexpr double kAccordo = 1e-9;

double Massimo(const std::vector<double>& v) {
  const auto [minimo, massimo] = std::ranges::minmax(v);
  return std::max(-minimo, massimo);
}

void Confronta(ProvaCalcolo& job, const Doppio& d) {
  const int n = d.Righe, u = d.Incognite;
  ASSERT_GT(n, u);
  std::vector<double> pesati, w(n);
  for (int r = 0; r < n; ++r) pesati.push_back(std::sqrt(d.Peso[r]) * d.Noti[r]);
  const double scala = kAccordo * Massimo(pesati);
  job.Baarda(job.Peso.get(), job.Coeff.Puntatori(), job.Indici.Puntatori(),
             job.Normale.Puntatori(), n, job.Residui.get(), w.data(), job.SigmaZero);
  for (int r = 0; r < n; ++r) {
    SCOPED_TRACE("row " + std::to_string(r));
    std::vector<double> densa(u), attesa(d.A.begin() + r * u, d.A.begin() + (r + 1) * u);
    for (int k = 0; k < 6; ++k)
      if (job.Indici[r][k] >= 0) densa[job.Indici[r][k]] += job.Coeff[r][k];
    for (int c = 0; c < u; ++c) EXPECT_NEAR(densa[c], attesa[c], kAccordo * Massimo(attesa));
    EXPECT_NEAR(job.Peso[r], d.Peso[r], kAccordo * d.Peso[r]);
    EXPECT_NEAR(job.TermineNoto[r], d.Noti[r], scala / std::sqrt(d.Peso[r]));
    EXPECT_NEAR(job.Residui[r], d.Residui[r], scala / std::sqrt(d.Peso[r]));
    if (d.Ridondanza[r] < kAccordo) continue;
    EXPECT_NEAR(w[r], d.W[r], scala / d.SigmaZero * (1 + d.W[r]) / d.Ridondanza[r]);
  }
  EXPECT_NEAR(job.SigmaZero, d.SigmaZero, scala);
  for (int i = 0; i < u; ++i) {
    const double si = std::sqrt(d.Q[i * u + i]);
    EXPECT_NEAR(job.Soluzione[i], d.Passo[i], std::max(kAccordo * Massimo(d.Passo), si * scala));
    for (int j = 0; j < u; ++j)
      EXPECT_NEAR(job.Normale[i][j], d.Q[i * u + j], kAccordo * si * std::sqrt(d.Q[j * u + j]));
  }
}

void ConfrontaPla(ReteProva rete) {
  const Doppio d = DoppioPla(rete);
  ProvaCalcolo job(rete);
  ASSERT_TRUE(job.Esegui());
  Confronta(job, d);
  int k = 0;
  for (const TCoorCr& p : rete.Punti) {
    if (p.TipoPla != kCompensato) continue;
    const EllisseDoppia e = DoppiaEllisse(d, k++);
    EXPECT_NEAR(p.EllAsseMag, e.AsseMag, kAccordo * e.AsseMag);
    EXPECT_NEAR(p.EllAsseMin, e.AsseMin, kAccordo * e.AsseMag);
    EXPECT_NEAR(p.EllTeta, e.Teta, kAccordo * 200 / e.Schiacciamento);
  }
}

void ConfrontaAlt(ReteProva rete) {
  const Doppio d = DoppioAlt(rete);
  ProvaCalcolo job(rete);
  ASSERT_TRUE(job.Esegui());
  if (d.Righe > 0) Confronta(job, d);
  EXPECT_EQ(job.Contiene("PIU' INCOGNITE (") || job.Contiene("IMPOSSIBILE ESEGUIRE"), d.Righe == 0);
}

TEST(Doppio, RetiPubblicate) {
  for (const char* nome : kReti) {
    SCOPED_TRACE(nome);
    const ReteProva rete = CaricaRete(nome);
    ConfrontaPla(rete.Con(kCalcoloPlanimetria, 1));
    ConfrontaPla(rete.Compensata().Con(kCalcoloPlanimetria, 1));  // where hardly a step is left
    if (rete.Opzioni.TipoCalcolo & kCalcoloAltimetria) ConfrontaAlt(rete.Con(kCalcoloAltimetria));
  }
}

TEST(Doppio, RetiCasuali) {
  for (unsigned seme = 0; seme < 36; ++seme) {
    SCOPED_TRACE("seed " + std::to_string(seme));
    ConfrontaPla(ReteCasuale(seme).Con(kCalcoloPlanimetria));
    ConfrontaAlt(ReteCasuale(seme).Con(kCalcoloAltimetria));
  }
}

}  // namespace
