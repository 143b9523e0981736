// Whole reports against approved ones, kept as UTF-8. A difference leaves the received report
// beside the approved file, as NAME.ricevuto.txt: rename it only when it is the right one.

#include <gtest/gtest.h>

#include <fstream>

#include "tests/comuni/rete_prova.h"

using namespace kzt5cmrg;

namespace {

class Rapporti : public testing::TestWithParam<const char*> {};

TEST_P(Rapporti, Approvato) {
  const std::string base = std::string(CARTELLA_PROVE "/approvati/") + GetParam();
  ReteProva rete = LeggiRete(LeggiFile(base + ".net"));
  if (rete.Punti.empty()) rete = CaricaRete(GetParam());
  ProvaCalcolo job(rete);
  job.Esegui();
  std::string ricevuto;
  for (const char c : job.Rapporto.Testo) {  // Latin-1 range of Windows-1252
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x80) ricevuto += static_cast<char>(0xC0 | byte >> 6);
    ricevuto += static_cast<char>(byte < 0x80 ? byte : 0x80 | (byte & 0x3F));
  }
  if (ricevuto == LeggiFile(base + ".txt")) return;
  std::ofstream(base + ".ricevuto.txt", std::ios::binary) << ricevuto;
  ADD_FAILURE() << "received " << base << ".ricevuto.txt";
}

constexpr const char* kApprovati[] = {"altezze_strumentali", "avvisi", "fuori_centro",
                                      "non_determinabile", "tipi_distanza"};
INSTANTIATE_TEST_SUITE_P(Reti, Rapporti, testing::ValuesIn(kApprovati),
                         [](const auto& nome) { return std::string(nome.param); });

}  // namespace
