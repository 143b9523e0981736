// Every published network gives its reference: coordinates and heights to 0.1 mm, standard
// deviations, sigma zero and ellipses to 0.1 % (or the last digit of a reference in micrometres).

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "rete_prova.h"

namespace {

using nlohmann::json;

void Vicino(const json& atteso, const char* chiave, double trovato, double tolleranza = 0) {
  if (!atteso.contains(chiave) || atteso[chiave].is_null()) return;
  const double v = atteso[chiave];
  EXPECT_NEAR(trovato, v, tolleranza > 0 ? tolleranza : std::abs(v) * 1e-3 + 0.5e-6) << chiave;
}

// One adjustment against its part of the reference.
void Confronta(ReteProva rete, const json& parte, const json& punti) {
  ProvaCalcolo job(rete);
  ASSERT_TRUE(job.Esegui());
  const int equazioni = job.Numero("N. Osservazioni"), incognite = job.Numero("N. Incognite   ");
  int ridondanza = equazioni - incognite;
  EXPECT_EQ(ridondanza, parte.value("redundancy", parte.value("equations", 0) - incognite));
  // Observations between fixed points hold no unknown. Where the reference leaves them out, their
  // squares and their redundancy come off exactly.
  double somma = job.SigmaZero * job.SigmaZero * ridondanza;
  for (int r = 0; r < equazioni && !parte.value("note", "").empty(); ++r)
    if (std::ranges::all_of(job.Indici[r], job.Indici[r] + 6, [](int i) { return i < 0; }))
      somma -= job.Peso[r] * job.Residui[r] * job.Residui[r], --ridondanza;
  const double sigma = std::sqrt(somma / ridondanza);
  Vicino(parte, "sigma0_1e-6", sigma / 1e-6);
  for (const char* chiave : {"sigma0_m", "sigma0_weight_0p001_over_Dkm2_m"})
    Vicino(parte, chiave, sigma);
  const bool pianta = rete.Opzioni.TipoCalcolo == kCalcoloPlanimetria;
  int k = 0;  // number of the next unknown
  const auto sqm = [&](double unita) { return std::sqrt(job.Normale[k][k]) * sigma * unita; };
  for (const TCoorCr& p : rete.Punti) {
    if ((pianta ? p.TipoPla : p.TipoAlt) != kCompensato) continue;
    SCOPED_TRACE(p.Nome);
    const json& punto = punti.at(std::string(p.Nome));
    if (!pianta) Vicino(punto, "H", p.Quota, 1e-4), Vicino(punto, "sH", sqm(1)), ++k;
    if (!pianta) continue;
    Vicino(punto, "E", p.Est, 1e-4);
    Vicino(punto, "N", p.Nord, 1e-4);
    Vicino(punto, "sE", sqm(1000)), ++k;
    Vicino(punto, "sN", sqm(1000)), ++k;
    Vicino(punto, "ellipse_major", p.EllAsseMag);
    Vicino(punto, "ellipse_minor", p.EllAsseMin);
    Vicino(punto, "ellipse_teta_gon", p.EllTeta);
  }
}

class Riferimenti : public testing::TestWithParam<const char*> {};

// A step is the last when no correction exceeds 2 cm: only a second job, from the result of the
// first, is converged.
TEST_P(Riferimenti, Rete) {
  const std::string file = std::string(CARTELLA_PROVE "/reti/") + GetParam() + ".ref.json";
  const json atteso = json::parse(LeggiFile(file));
  const ReteProva rete = CaricaRete(GetParam()), vicina = rete.Compensata();
  Confronta(vicina.Con(kCalcoloPlanimetria), atteso.value("plan", atteso), atteso["points"]);
  if (rete.Opzioni.TipoCalcolo & kCalcoloAltimetria)
    Confronta(vicina.Con(kCalcoloAltimetria), atteso["heights"], atteso["points"]);
}

INSTANTIATE_TEST_SUITE_P(Reti, Riferimenti, testing::ValuesIn(kReti),
                         [](const auto& nome) { return std::string(nome.param); });

}  // namespace
