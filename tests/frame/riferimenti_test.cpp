// Every network of reti/ gives its reference within the rounding of what the reference prints: six
// decimals of the metre, six digits of sigma zero, four decimals of the gon. The published networks
// have standard deviations, the synthetic ones ellipses.

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <string_view>

#include "tests/comuni/rete_prova.h"

using namespace kzt5cmrg;

namespace {

using nlohmann::json;

constexpr double kCoordinate = 1e-6;    // [m]: half a micrometre is rounding
constexpr double kPrecisioni = 0.6e-6;  // standard deviations and axes [m]
constexpr double kRotazione = 0.6e-4;   // of an ellipse [gon]
constexpr double kSigmaZero = 1e-5;     // relative: the rounding of six digits is up to half of it

// References without the sigma zero of the plan.
constexpr std::string_view kSenzaSigmaZero[] = {"jezerka", "zeman"};

// The comparisons with one reference: a value that it lacks ends the test, by the exception of at.
class Confronto {
 public:
  explicit Confronto(const std::string& nome)
      : Nome(nome),
        Atteso(json::parse(LeggiFile(CARTELLA_PROVE "/reti/" + nome + ".ref.json"))),
        Sintetica(Atteso.at("source") == "synthetic") {}
  ~Confronto() {
    for (const auto& [chiave, differenza] : Peggio)
      testing::Test::RecordProperty(chiave, std::to_string(differenza * 1e9) + "e-9");
  }
  bool UnSoloLavoro() const { return Sintetica; }
  bool ConQuote() const { return Atteso.contains("heights"); }
  void Prova(ReteProva rete);

 private:
  void Vicino(const json& dove, const char* chiave, double trovato, double tolleranza) {
    const double differenza = std::abs(trovato - dove.at(chiave).get<double>());
    EXPECT_LE(differenza, tolleranza) << chiave;
    Peggio[chiave] = std::max(Peggio[chiave], differenza);
  }
  double ProvaSigmaZero(const ProvaCalcolo& job, const json& parte, bool pianta);

  std::string Nome;
  json Atteso;
  bool Sintetica;
  std::map<std::string, double> Peggio;  // largest differences by key, sigma zero relative
};

// Sigma zero and redundancy. Observations between fixed points hold no unknown. Where the reference
// leaves them out, their squares and their redundancy come off exactly.
double Confronto::ProvaSigmaZero(const ProvaCalcolo& job, const json& parte, bool pianta) {
  const int equazioni = job.Numero("N. Osservazioni"), incognite = job.Numero("N. Incognite   ");
  int ridondanza = equazioni - incognite;
  EXPECT_EQ(ridondanza, parte.value("redundancy", parte.value("equations", 0) - incognite));
  double somma = job.SigmaZero * job.SigmaZero * ridondanza;
  for (int r = 0; r < equazioni && !parte.value("note", "").empty(); ++r)
    if (std::ranges::all_of(job.Indici[r], job.Indici[r] + 6, [](int i) { return i < 0; }))
      somma -= job.Peso[r] * job.Residui[r] * job.Residui[r], --ridondanza;
  const double sigma = std::sqrt(somma / ridondanza);
  const char* chiave = pianta      ? "sigma0_1e-6"
                       : Sintetica ? "sigma0_m"
                                   : "sigma0_weight_0p001_over_Dkm2_m";
  if (pianta && std::ranges::count(kSenzaSigmaZero, Nome) != 0) {
    EXPECT_FALSE(parte.contains(chiave));
  } else {
    const double atteso = parte.at(chiave).get<double>() * (pianta ? kSigmaZeroPriori : 1);
    const char* relativo = pianta ? "s0" : "s0H";
    Vicino({{relativo, 1}}, relativo, sigma / atteso, kSigmaZero);
  }
  return sigma;
}

// One adjustment against its part of the reference.
void Confronto::Prova(ReteProva rete) {
  const bool pianta = rete.Opzioni.TipoCalcolo == kCalcoloPlanimetria;
  ProvaCalcolo job(rete);
  ASSERT_TRUE(job.Esegui());
  const json& parte =
      pianta ? (Atteso.contains("plan") ? Atteso["plan"] : Atteso) : Atteso.at("heights");
  const double sigma = ProvaSigmaZero(job, parte, pianta);
  int k = 0;  // number of the next unknown
  const auto sqm = [&](double unita) { return std::sqrt(job.Normale[k][k]) * sigma * unita; };
  for (const TCoorCr& p : rete.Punti) {
    if ((pianta ? p.TipoPla : p.TipoAlt) != kCompensato) continue;
    SCOPED_TRACE(p.Nome);
    const json& punto = Atteso.at("points").at(std::string(p.Nome));
    if (!pianta) Vicino(punto, "H", p.Quota, kCoordinate);
    if (!pianta && !Sintetica) Vicino(punto, "sH", sqm(1), kPrecisioni), ++k;
    if (!pianta) continue;
    Vicino(punto, "E", p.Est, kCoordinate);
    Vicino(punto, "N", p.Nord, kCoordinate);
    if (Sintetica) {
      Vicino(punto, "ellipse_major", p.EllAsseMag, kPrecisioni);
      Vicino(punto, "ellipse_minor", p.EllAsseMin, kPrecisioni);
      Vicino(punto, "ellipse_teta_gon", p.EllTeta, kRotazione);
    } else {
      Vicino(punto, "sE", sqm(1000), kPrecisioni), ++k;
      Vicino(punto, "sN", sqm(1000), kPrecisioni), ++k;
    }
  }
  EXPECT_TRUE(Peggio.contains(pianta ? "E" : "H"));  // points were compared
}

class Riferimenti : public testing::TestWithParam<const char*> {};

// A step is the last when no correction exceeds 2 cm: only a second job, from the result of the
// first, is converged, as the references of the published networks are. The synthetic ones stop
// where one job stops.
TEST_P(Riferimenti, Rete) {
  Confronto confronto(GetParam());
  const ReteProva rete = CaricaRete(GetParam()), vicina = rete.Compensata();
  confronto.Prova((confronto.UnSoloLavoro() ? rete : vicina).Con(kCalcoloPlanimetria));
  ASSERT_EQ(confronto.ConQuote(), (rete.Opzioni.TipoCalcolo & kCalcoloAltimetria) != 0);
  if (confronto.ConQuote()) confronto.Prova(vicina.Con(kCalcoloAltimetria));
}

INSTANTIATE_TEST_SUITE_P(Reti, Riferimenti, testing::ValuesIn(kReti),
                         [](const auto& nome) { return std::string(nome.param); });

}  // namespace
