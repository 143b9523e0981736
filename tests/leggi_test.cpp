// Laws: what may not change when the origin moves, the axes turn, points and stations change order;
// jobs one after the other, side by side and under another locale write the same report.

#include <gtest/gtest.h>

#include <clocale>
#include <complex>
#include <future>

#include "rete_prova.h"

namespace {

using Z = std::complex<double>;

// The origin moved, the axes turned [gon], points and stations in reverse order or not.
ReteProva Trasformata(const ReteProva& rete, Z origine, double angolo, bool inversa) {
  ReteProva altra = rete;
  for (TCoorCr& p : altra.Punti) {
    const Z lato = (Z(p.Nord, p.Est) - origine) * std::polar(1.0, angolo * kRadPerGon);
    p.Nord = lato.real(), p.Est = lato.imag();
  }
  if (!inversa) return altra;
  const auto nuovo = [&](int& punto) { punto = static_cast<int>(rete.Punti.size()) - 1 - punto; };
  for (TStaCr& s : altra.Stazioni) nuovo(s.Punto);
  for (auto& giro : altra.Osservazioni)
    for (TOssCr& o : giro) nuovo(o.Punto);
  std::ranges::reverse(altra.Punti);
  std::ranges::reverse(altra.Stazioni), std::ranges::reverse(altra.Osservazioni);
  return altra;
}

// The network adjusted and then transformed is the network transformed and then adjusted.
TEST(Leggi, Trasformazioni) {
  for (const char* nome : {"altezze_strumentali", "barta12", "charamza218", "niemeier", "zeman"})
    for (const auto& [angolo, inversa] : {std::pair(0.0, false), {100.0, false}, {337.7, true}}) {
      SCOPED_TRACE(std::string(nome) + ", gon " + std::to_string(angolo));
      ReteProva rete = CaricaRete(nome);
      const Z origine(rete.Punti[0].Nord - 300, rete.Punti[0].Est + 700);
      ReteProva altra = Trasformata(rete, origine, angolo, inversa);
      ProvaCalcolo prima(rete), dopo(altra);
      ASSERT_TRUE(prima.Esegui() && dopo.Esegui());
      EXPECT_NEAR(dopo.SigmaZero, prima.SigmaZero, 1e-7 * prima.SigmaZero);
      const ReteProva attesa = Trasformata(rete, origine, angolo, inversa);
      for (int i = 0; i < std::ssize(rete.Punti); ++i) {
        const TCoorCr &p = attesa.Punti[i], &q = altra.Punti[i];
        EXPECT_NEAR(std::hypot(q.Est - p.Est, q.Nord - p.Nord, q.Quota - p.Quota), 0, 1e-7) << i;
        EXPECT_NEAR(std::hypot(q.EllAsseMag - p.EllAsseMag, q.EllAsseMin - p.EllAsseMin), 0, 1e-9);
      }
    }
}

std::string Rapporti() {
  std::string testo;
  for (const char* nome : kReti) {
    ReteProva rete = CaricaRete(nome);
    ProvaCalcolo job(rete);
    job.Esegui();
    testo += job.Rapporto.Testo;
  }
  return testo;
}

TEST(Leggi, LavoriIndipendenti) {
  constexpr auto kAccanto = std::launch::async;
  auto uno = std::async(kAccanto, Rapporti), altro = std::async(kAccanto, Rapporti);
  const std::string atteso = Rapporti();
  EXPECT_TRUE(uno.get() == atteso && altro.get() == atteso);
}

TEST(Leggi, AltroLocale) {
  std::setlocale(LC_ALL, "C");
  const std::string atteso = Rapporti();
  if (std::setlocale(LC_ALL, "it_IT.UTF-8") == nullptr) GTEST_SKIP() << "no Italian locale here";
  EXPECT_TRUE(Rapporti() == atteso);
}

}  // namespace
