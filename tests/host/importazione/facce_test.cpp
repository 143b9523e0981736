// Which readings make a pair of faces or a mean, what their errors are, and from where on they
// are suspect.

#include "host/importazione/facce.h"

#include <cmath>

#include "host/importazione/resoconto.h"
#include "tests/host/importazione/libro_prova.h"

using namespace compensa;

namespace {

constexpr auto kMedia = ModoFacce::Media;
constexpr const char* kConcordi = "A 10 99; A 210.002 301; B 20 99; B 220.002 301; ";  // c = 0.001

// One direction is worth 0.001 gon, a distance 3 mm + 2 mm/km: the limits are 0.003 gon for an
// error of the instrument, 3 sqrt(2) 0.001 = 0.00424 gon and, at 1 km, 0.02121 m for a difference.
// clang-format off
const struct {
  const char *Letture, *Ultima;  // the last shot: direction zenith distance signal
  const char* Conti;             // pairs, turned alone, joined repetitions, means
  const char* Messaggio = "";    // a piece; empty = none
  bool Medie = false;
} kCasi[] = {
    {"C 210.004 300; C 10 100", "10.0020 100.0000 - -", "1 0 0 0"},
    {"C 210 301; C 211 301; C 10 99; C 11 99", "11.0000 99.0000 - -", "2 0 0 0"},
    {"C 10 300 - - I", "210.0000 100.0000 - -", "0 1 0 0", "dice cerchio sinistro, lo zenit l'al"},
    {"C 10 100; C 210 300 9 1.6", "10.0000 100.0000 9.0000 1.6000", "1 0 0 0"},
    {"C 10 100 9 1.5; C 210 300 9 1.5004", "10.0000 100.0000 9.0000 1.5000", "1 0 0 0"},
    {"C 10 100 9 1.5; C 210 300 9 1.5006", "10.0000 100.0000 9.0000 1.5006", "0 1 0 0",
     "letture coniugate non unite: le altezze del segnale sono diverse, 1.500 e 1.501 m"},
    {"C 30 99; C 230.0078 301", "30.0039 99.0000 - -", "3 0 0 0"},
    {"C 30 99; C 230.0082 301", "30.0041 99.0000 - -", "3 0 0 0", "l.gsi:5:1: avviso: osservazione "
     "da \"S\" a \"C\", collimazione: le letture coniugate discordano dalle altre: trovato +0.004"},
    {"C 30 99; C 229.9958 301", "29.9979 99.0000 - -", "3 0 0 0", "da -0.00200 a +0.00400 [gon]"},
    {"C 30 99; C 230.002 301.0058", "30.0010 98.9971 - -", "3 0 0 0"},
    {"C 30 99; C 230.002 301.0062", "30.0010 98.9969 - -", "3 0 0 0", "indice: le letture"},
    {"C 30 99 1000; C 230 301 1000.021", "30.0000 99.0000 1000.0105 -", "1 0 0 0"},
    {"C 30 99 1000; C 230 301 1000.022", "30.0000 99.0000 1000.0110 -", "1 0 0 0", "1000.0220 m"},
    {"C 399.999 99; C 0.0032 99", "0.0011 99.0000 - -", "0 0 2 1", "", true},
    {"C 399.999 99; C 0.0034 99", "0.0012 99.0000 - -", "0 0 2 1", "di 0.00440 gon", true},
    {"C 1 99 - 1.5; C 1 99 - 1.6; C 1.002 99 - 1.5", "1.0000 99.0000 - 1.6000", "0 0 2 1",
     "l.gsi:2:1: avviso: osservazione da \"S\" a \"C\": lettura ripetuta non", true},
    {"C 1 99; C 201.0004 301; C 1.0002 99; C 201.0006 301", "1.0003 99.0000 - -", "2 0 2 1", "",
     true},
};
// clang-format on

TEST(CoppieFacce, RegoleELimiti) {
  for (const auto& caso : kCasi) {
    SCOPED_TRACE(caso.Letture);
    Libretto libro = Libro((*caso.Conti == '3' ? kConcordi : "") + std::string(caso.Letture));
    Diagnostica diario;
    const EsitoFacce e = RiduciFacce(libro, kMedia, caso.Medie, {0.001, 0.003, 0.002}, diario);
    const BattutaLibretto& b = libro.Postazioni[0].Battute.back();
    std::string ultima, conti = std::to_string(e.Coppie.size());
    for (const auto& valore : {b.Direzione, b.Zenit, b.Distanza, b.Segnale})
      ultima += (ultima.empty() ? "" : " ") + (valore ? NumeroFisso(*valore, 4) : "-");
    for (const int n : {e.Girate, e.LettureUnite, e.Medie}) conti += ' ' + std::to_string(n);
    EXPECT_EQ(ultima, caso.Ultima);
    EXPECT_EQ(conti, caso.Conti);
    EXPECT_EQ(diario.Avvisi(), *caso.Messaggio == '\0' ? 0U : 1U) << Testi(diario);
    Contiene(Testi(diario), caso.Messaggio);
  }
}

// Pairs and means stay within a set-up; c = 1, 2, 6 and i = 0.5 tenths of a mgon.
TEST(CoppieFacce, RiassuntoDiPiuMesse) {
  Libretto libro = Libro("A 10 99; A 210.0002 301.0001; B 20 -; B 220.0004 - - - II");
  for (const char* altra : {"A 30 99; A 230.0012 301.0001 7; B 8 99", "B 208 301"})
    libro.Postazioni.push_back(Libro(altra).Postazioni[0]);
  BattutaLibretto *prima = libro.Postazioni[1].Battute.data(), *seconda = prima + 1;
  prima->SqmDirezione = 2e-3, seconda->SqmDirezione = 3e-3, seconda->SqmDistanza = 5e-3;
  Diagnostica diario;
  const EsitoFacce e = RiduciFacce(libro, kMedia, true, {0.001, 0.003, 0.002}, diario);
  const BattutaLibretto& a = libro.Postazioni[1].Battute[0];
  const double trovati[] = {e.Collimazione.Media, e.Collimazione.Mediana, e.Collimazione.Scarto,
                            e.Indice.Media,       *a.SqmDirezione,        *a.SqmDistanza};
  const double attesi[] = {3e-4, 2e-4, std::sqrt(7.) * 1e-4, 5e-5, 3e-3 / std::sqrt(2.), 5e-3};
  for (int i = 0; i < 6; ++i) EXPECT_NEAR(trovati[i], attesi[i], 1e-12) << i;
  EXPECT_EQ(e.Girate, 1);
  Contiene(TestoFacce(e), "\n  S                   B                         +0.00020         ");
  EXPECT_EQ(ConSegno(-1e-14), "+0.00000");  // what 288.4 - 200 - 88.4 leaves
}

}  // namespace
