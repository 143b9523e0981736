// Every number of one adjustment against the second computation: rows, step, residuals, sigma zero,
// cofactors, w, ellipses, printed standard deviations. Each is held to 1e-9 of its natural scale:
// the largest weighted known term for all that follows from the known terms; w also by the
// redundancy of its equation, for a residual that the network leaves hardly any room is all
// rounding.

#include "tests/comuni/doppio.h"

#include <gtest/gtest.h>

#include <charconv>
#include <sstream>

using namespace kzt5cmrg;

namespace {

constexpr double kAccordo = 1e-9;
constexpr double kSigmaZeroNullo = 1e-10;  // a smaller one is rounding [km-rad; m]
constexpr double kArrotondamento = 1e-18;  // of a sigma zero that is none [km-rad]

double Massimo(const std::vector<double>& v) {
  const auto [minimo, massimo] = std::ranges::minmax(v);
  return std::max(-minimo, massimo);
}

void Confronta(ProvaCalcolo& job, const Doppio& d) {
  const int n = d.Righe, u = d.Incognite;
  ASSERT_TRUE(n >= u && u > 0);
  std::vector<double> pesati, w(n);
  for (int r = 0; r < n; ++r) pesati.push_back(std::sqrt(d.Peso[r]) * d.Noti[r]);
  const double scala = kAccordo * Massimo(pesati);
  job.Baarda(job.Peso.get(), job.Coeff.Puntatori(), job.Indici.Puntatori(), job.Normale.Puntatori(),
             n, job.Residui.get(), w.data(), job.SigmaZero);
  for (int r = 0; r < n; ++r) {
    SCOPED_TRACE("row " + std::to_string(r));
    std::vector<double> densa(u), attesa(d.A.begin() + r * u, d.A.begin() + (r + 1) * u);
    for (int k = 0; k < 6; ++k)
      if (job.Indici[r][k] >= 0) densa[job.Indici[r][k]] += job.Coeff[r][k];
    for (int c = 0; c < u; ++c) EXPECT_NEAR(densa[c], attesa[c], kAccordo * Massimo(attesa));
    EXPECT_NEAR(job.Peso[r], d.Peso[r], kAccordo * d.Peso[r]);
    EXPECT_NEAR(job.TermineNoto[r], d.Noti[r], scala / std::sqrt(d.Peso[r]));
    EXPECT_NEAR(job.Residui[r], d.Residui[r], scala / std::sqrt(d.Peso[r]));
    if (n == u || d.Ridondanza[r] < kAccordo) continue;
    EXPECT_NEAR(w[r], d.W[r], scala / d.SigmaZero * (1 + d.W[r]) / d.Ridondanza[r]);
  }
  EXPECT_NEAR(job.SigmaZero, d.SigmaZero, scala);
  for (int i = 0; i < u; ++i) {
    const double si = std::sqrt(d.Q[i * u + i]);
    EXPECT_NEAR(job.Soluzione[i], d.Passo[i], std::max(kAccordo * Massimo(d.Passo), si * scala));
    for (int j = 0; n > u && j < u; ++j)
      EXPECT_NEAR(job.Normale[i][j], d.Q[i * u + j], kAccordo * si * std::sqrt(d.Q[j * u + j]));
  }
}

// The numbers of the line of a point in the table that stands under a title of the report.
void ConfrontaRiga(const ProvaCalcolo& job, const char* titolo, const TCoorCr& p,
                   const std::vector<double>& attesi) {
  std::string_view testo = job.Rapporto.Testo;
  for (const std::string& prima :
       {std::string(titolo), std::string("Nome"), "   " + std::string(p.Nome) + " "}) {
    ASSERT_NE(testo.find(prima), testo.npos) << prima;
    testo.remove_prefix(testo.find(prima) + prima.size());
  }
  std::string riga(testo.substr(0, testo.find('\n')));
  std::ranges::replace(riga, '\xB1', ' ');
  std::istringstream numeri(riga);
  for (const double atteso : attesi) {
    std::string numero;
    double stampato = NAN;
    if (numeri >> numero) std::from_chars(&*numero.begin(), &*numero.end(), stampato);
    EXPECT_NEAR(stampato, atteso, 0.50001e-4) << titolo << ' ' << p.Nome;
  }
}

// Those of the plane coordinates [m], given their last step.
void ConfrontaStampa(const ProvaCalcolo& job, const Doppio& d, const ReteProva& rete) {
  int c = 0;
  for (const TCoorCr& p : rete.Punti) {
    if (p.TipoPla != kCompensato) continue;
    const auto sqm = [&](int i) {
      return std::sqrt(d.Q[i * d.Incognite + i]) * d.SigmaZero * 1000;
    };
    ConfrontaRiga(job, "COORDINATE COMPENSATE", p, {p.Nord, sqm(c + 1), p.Est, sqm(c)});
    c += 2;
  }
}

// `ridondanti` counts the networks that have a sigma zero; so in the next. One without redundancy,
// or with no other than a sight that was repeated as it was, has none and no ellipses.
void ConfrontaPla(ReteProva rete, int& ridondanti) {
  const Doppio d = DoppioPla(rete);
  ProvaCalcolo job(rete);
  ASSERT_TRUE(job.Esegui());
  Confronta(job, d);
  ConfrontaStampa(job, d, rete);
  const bool ellissi = d.SigmaZero > kSigmaZeroNullo;
  ridondanti += ellissi;
  int k = 0;
  for (const TCoorCr& p : rete.Punti) {
    if (p.TipoPla != kCompensato) continue;
    if (!ellissi) {
      EXPECT_EQ(p.EllAsseMag, 0);
      continue;
    }
    const EllisseDoppia e = DoppiaEllisse(d, k++);
    EXPECT_NEAR(p.EllAsseMag, e.AsseMag, kAccordo * e.AsseMag);
    EXPECT_NEAR(p.EllAsseMin, e.AsseMin, kAccordo * e.AsseMag);
    EXPECT_NEAR(p.EllTeta, e.Teta, kAccordo * 200 / e.Schiacciamento);
  }
}

void ConfrontaAlt(ReteProva rete, int& ridondanti) {
  const Doppio d = DoppioAlt(rete);
  ProvaCalcolo job(rete);
  ASSERT_TRUE(job.Esegui());
  if (d.Righe > 0) Confronta(job, d);
  ridondanti += d.SigmaZero > kSigmaZeroNullo;
  int k = 0;
  for (const TCoorCr& p : rete.Punti) {
    if (p.TipoAlt != kCompensato) continue;
    EXPECT_EQ(p.Quota, job.Soluzione[k]);
    const double sqm = std::sqrt(d.Q[k * d.Incognite + k]) * d.SigmaZero;
    ConfrontaRiga(job, "QUOTE COMPENSATE", p, {d.Passo[k++], sqm});
  }
  EXPECT_EQ(job.Contiene("PIU' INCOGNITE (") || job.Contiene("IMPOSSIBILE ESEGUIRE"), d.Righe == 0);
}

// All steps. The coordinates differ by rounding already, and what follows from them by more.
void ConfrontaIterata(ReteProva rete) {
  ReteProva doppia = rete;
  const Doppio d = DoppioIterato(doppia);
  ProvaCalcolo job(rete);
  ASSERT_TRUE(job.Esegui());
  for (int i = 0; i < std::ssize(rete.Punti); ++i) {
    const TCoorCr &p = rete.Punti[i], &q = doppia.Punti[i];
    if (p.TipoPla != kCompensato) continue;
    EXPECT_NEAR(std::hypot(p.Est - q.Est, p.Nord - q.Nord), 0, 1e-7) << i;
  }
  EXPECT_NEAR(job.SigmaZero, d.SigmaZero, std::max(1e-6 * d.SigmaZero, kArrotondamento));
  ConfrontaStampa(job, d, rete);
}

TEST(Doppio, RetiPubblicate) {
  int pianta = 0, quote = 0;
  for (const char* nome : kReti) {
    SCOPED_TRACE(nome);
    const ReteProva rete = CaricaRete(nome);
    ConfrontaPla(rete.Con(kCalcoloPlanimetria, 1), pianta);
    ConfrontaIterata(rete.Con(kCalcoloPlanimetria));
    ConfrontaPla(rete.Compensata().Con(kCalcoloPlanimetria, 1), pianta);  // hardly a step is left
    if (rete.Opzioni.TipoCalcolo & kCalcoloAltimetria)
      ConfrontaAlt(rete.Con(kCalcoloAltimetria), quote);
  }
  EXPECT_EQ(pianta, 32);
  EXPECT_EQ(quote, 7);
}

// Drawn until as many as wanted were solved with redundancy, in plan and in height; those that
// have no solution in height, or no redundancy, must be told as well.
TEST(Doppio, RetiCasuali) {
  constexpr int kVolute = 200;
  int pianta = 0, quote = 0;
  unsigned seme = 0;
  for (; std::min(pianta, quote) < kVolute; ++seme) {
    ASSERT_LT(seme, 2u * kVolute) << "too few of them have a solution";
    SCOPED_TRACE("seed " + std::to_string(seme));
    const ReteProva rete = ReteCasuale(seme);
    ConfrontaPla(rete.Con(kCalcoloPlanimetria), pianta);
    ConfrontaIterata(rete.Con(kCalcoloPlanimetria, 9));
    ConfrontaAlt(rete.Con(kCalcoloAltimetria), quote);
  }
  RecordProperty("estratte", static_cast<int>(seme));
  RecordProperty("pianta", pianta);
}

}  // namespace
