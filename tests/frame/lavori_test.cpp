// Jobs one after the other, side by side and under another locale write the same report.

#include <gtest/gtest.h>

#include <clocale>
#include <future>

#include "tests/comuni/rete_prova.h"

using namespace kzt5cmrg;

namespace {

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

TEST(Lavori, Indipendenti) {
  constexpr auto kAccanto = std::launch::async;
  auto uno = std::async(kAccanto, Rapporti), altro = std::async(kAccanto, Rapporti);
  const std::string atteso = Rapporti();
  EXPECT_TRUE(uno.get() == atteso && altro.get() == atteso);
}

TEST(Lavori, AltroLocale) {
  std::setlocale(LC_ALL, "C");
  const std::string atteso = Rapporti();
  if (std::setlocale(LC_ALL, "it_IT.UTF-8") == nullptr) GTEST_SKIP() << "no Italian locale here";
  EXPECT_TRUE(Rapporti() == atteso);
}

}  // namespace
