// A thousand networks with fields of any value. No run may crash, hang or touch what is the host's;
// under the sanitizers this test looks for undefined behaviour.

#include "tests/comuni/corruzione.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace kzt5cmrg;

namespace {

constexpr auto Stesse = [](const auto& a, const auto& b) {
  return std::ranges::equal(std::as_bytes(std::span(a)), std::as_bytes(std::span(b)));
};

TEST(Corruzione, MilleReti) {
  for (unsigned seme = 0; seme < 1000; ++seme) {
    SCOPED_TRACE("seed " + std::to_string(seme));
    Caso caso(seme);
    ReteProva rete = seme % 2 ? CaricaRete(kReti[seme / 2 % std::size(kReti)]) : ReteCasuale(seme);
    rete.Opzioni.TipoCalcolo = caso.Scelta({3, 3, 3, 1, 2, 0, -1});
    rete.Opzioni.Cartografiche = caso.Scelta<unsigned char>({0, 0, 1, 255});
    for (int k = 1 << caso.Intero(7); k > 0; --k) Corrompi(rete, caso);
    if (seme % 50 == 0) rete.Punti.clear();
    ProvaCalcolo job(rete);
    const ReteProva copia = rete;
    const std::vector<TCoorCr>& prima = copia.Punti;
    const bool esito = job.Esegui();
    EXPECT_TRUE(Stesse(rete.Stazioni, copia.Stazioni) && rete.Nomi == copia.Nomi);
    EXPECT_TRUE(std::ranges::equal(rete.Osservazioni, copia.Osservazioni, Stesse));
    EXPECT_EQ(std::memcmp(&rete.Opzioni, &copia.Opzioni, sizeof copia.Opzioni), 0);
    EXPECT_EQ(std::memcmp(&rete.DsOr, &copia.DsOr, sizeof copia.DsOr), 0);
    EXPECT_EQ(job.Contiene("   RISULTATI  COMPENSAZIONE\n"), esito);
    EXPECT_EQ(job.Contiene("*** ERRORE NEL CONTROLLO\n\n  Punto   "), !esito && !prima.empty());
    for (int i = 0; i < std::ssize(prima); ++i) {  // what is not unknown comes back as it was
      const double est = prima[i].Est;
      if (!esito || prima[i].TipoPla == kIncognito || !(std::abs(est) < kNonDato)) continue;
      EXPECT_NEAR(rete.Punti[i].Est, est, 1e-15 * std::abs(est) + 1e-300) << i;
    }
  }
}

}  // namespace
