// From field books to network files: faces, what is completed and how, and the file that is
// written.

#include "host/importazione/importa.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <tuple>

#include "host/base/errori.h"
#include "host/file_rete/lettura_rete.h"
#include "tests/host/importazione/libro_prova.h"

using namespace compensa;

namespace {

const struct CasoFacce {
  const char *Letture, *Attese;
  const char* Messaggio;  // a piece; empty = no message
  ModoFacce Modo = ModoFacce::Media;
  bool Medie = false;
} kFacce[] = {
    {"C 88.39996 100.61796; C 288.40056 299.38324", "C 88.40026 100.61736;", ""},
    {"C 200.0004 300; B 5 9; C 399.9998 100", "C 0.00010 100.00000;B 5.00000 9.00000;", ""},
    {"C 1 99; C 2 99; C 201.002 301; C 202 301; C 3 99",
     "C 1.00100 99.00000;C 2.00000 99.00000;C 3.00000 99.00000;", ""},
    {"C 1 99; C 201 301; B 2 99; B 202 301; A 3 99; A 203.02 301",
     "C 1.00000 99.00000;B 2.00000 99.00000;A 3.01000 99.00000;",
     "l.gsi:5:1: avviso: osservazione da \"S\" a \"A\", collimazione: le letture coniugate"},
    {"C 88.4 99; C 150 299", "C 88.40000 99.00000;C 350.00000 101.00000;", "", ModoFacce::Separate},
    {"C 150 99 9 1.5 II", "C 150.00000 99.00000;", "l.gsi:1:1: avviso: osservazione da"},
    {"C 10 100 9 1.5; C 210 300 9 1.6", "C 10.00000 100.00000;C 10.00000 100.00000;", "1.600 m"},
    {"C 10 100 9; C 210 300 9.1", "C 10.00000 100.00000;", "da 9.0000 a 9.1000 m"},
    {"C 399.999 99; B 5 99; C 0.002 99.002", "C 0.00050 99.00100;B 5.00000 99.00000;", "",
     ModoFacce::Media, true},
};

TEST(Facce, Casi) {
  for (const CasoFacce& caso : kFacce) {
    Libretto libro = Libro(caso.Letture);
    Diagnostica diario;
    RiduciFacce(libro, caso.Modo, caso.Medie, {0.001, 0.003, 0.002}, diario);
    std::string ridotte;
    for (const BattutaLibretto& b : libro.Postazioni[0].Battute)
      ridotte +=
          b.Punto + " " + NumeroFisso(*b.Direzione, 5) + " " + NumeroFisso(*b.Zenit, 5) + ";";
    EXPECT_EQ(ridotte, caso.Attese) << caso.Letture;
    EXPECT_EQ(diario.Avvisi(), *caso.Messaggio == '\0' ? 0U : 1U) << Testi(diario);
    Contiene(Testi(diario), caso.Messaggio);
  }
}

TEST(Facce, CollimazioneIndiceESqm) {
  Libretto libro =
      Libro("C 88.39996 100.61796; C 288.40056 299.38324; B 399.9999 98; B 200.0003 302");
  for (BattutaLibretto& b : libro.Postazioni[0].Battute) b.SqmDirezione = 0.002;
  Diagnostica diario;
  const EsitoFacce esito = RiduciFacce(libro, ModoFacce::Media, false, {0.001, 0.0, 0.0}, diario);
  const double trovati[] = {*esito.Coppie[0].Collimazione, *esito.Coppie[0].Indice,
                            esito.Collimazione.Media, esito.Collimazione.Scarto,
                            *libro.Postazioni[0].Battute[1].SqmDirezione};
  const double attesi[] = {0.00030, 0.00060, 0.00025, 0.0001 / std::sqrt(2.),
                           0.002 / std::sqrt(2.)};
  for (int i = 0; i < 5; ++i) EXPECT_NEAR(trovati[i], attesi[i], 1e-9) << i;
}

std::string Scritta(const Rete& rete, const IntestazioneToml& testa) {
  std::string scritta;
  ScriviRete(rete, testa, [&](std::string_view pezzo) { scritta += pezzo; });
  return scritta;
}

using O = OpzioniImporta;
using L = Libretto;
BattutaLibretto& Ultima(L& l) { return l.Postazioni[0].Battute.back(); }

// clang-format off
const struct CasoCompleta {
  void (*Cambia)(O&, L&);
  const char* Messaggio;  // a piece of the messages
  const char* Scritto;    // a piece of the file or summary; empty = neither, there are errors
} kCompleta[] = {
    {[](O&, L&) {}, "il libretto non dà quello degli angoli: assunto 0.0010 gon",
     "sqm_direzione = 0.0010              # gon, di un angolo fra due direzioni: valore usuale, as"},
    {[](O& o, L&) { o.Fissi = {"A", "B"}; }, "",
     "nord = 2000.000, quota = 100.000, planimetria = \"fisso\", altimetria = \"fisso\" },\n"
     "  { nome = \"B\", est = 1100.000, nord = 2000.000,                  planimetria = \"fisso\" },\n"
     "  { nome = \"S\" },\n"},
    {[](O& o, L& l) { l.Punti[1].Nome = "Vertice", o.FissiAltimetria = {"Vetrice"}; },
     "--fissi-altimetria: errore: punto \"Vetrice\": non è tra i punti (forse \"Vertice\"?)", ""},
    {[](O& o, L&) { o.Fissi = {"P"}; }, "mancano le coordinate est e nord", ""},
    {[](O& o, L&) { o.Fissi = o.Escludi = {"A"}; }, "insieme fisso ed escluso", ""},
    {[](O& o, L&) { o.Escludi = {"P"}; }, "", "planimetria = \"escluso\", altimetria = \"escluso\" }"},
    {[](O&, L& l) { Ultima(l).Punto = "a"; }, "solo per le maiuscole da \"A\"", "nome = \"a\""},
    {[](O&, L& l) { l.Punti.push_back({"A", 1001, 2000, 5, {kFisso, {}}, {"l.gsi", 10, 1}}); },
     "l.gsi:10:1: avviso: punto \"A\": coordinate diverse da quelle alla riga 8 di \"l.gsi\", fino a "
     "95.000 m: valgono queste", "nome = \"A\", est = 1001.000, nord = 2000.000, quota = 5.000, plan"},
    {[](O&, L& l) { Ultima(l).Zenit.reset(), Ultima(l).TipoDist = kOrizzontale; }, "",
     "direzione =  60.0000, zenit = 100.0000,                  distanza =  50.0000 }"},
    {[](O&, L& l) {
       for (auto& b : l.Postazioni[0].Battute) b.SqmDirezione = b.Punto == "A" ? 0.002 : 0.001;
     }, "0.001 (2), 0.001414", "sqm_direzione = 0.0014142 "},
    {[](O& o, L& l) { l.Opzioni.SqmDistProporzionale = 0.007, o.SqmDistCostante = 0.005; }, "",
     "costante = 0.005       # m\nsqm_distanza_proporzionale = 0.007  # m per km\n"},
    {[](O&, L& l) { l.Postazioni[0].Battute[1].Zenit = -1.0; },
     "l.gsi:2:1: errore: osservazione da \"S\" a \"A\", zenit: numero fuori dai limiti", ""},
    {[](O&, L& l) { l.Postazioni[0].Altezza.reset(); }, "", "calcolo = \"planimetria\"\n"},
    // Roles: what options name must be there, with the coordinates that it is fixed to.
    {[](O& o, L&) { o.Fissi = {"a"}; }, "--fissi: errore: punto \"a\": non è tra i punti", ""},
    {[](O& o, L&) { o.FissiAltimetria = {"B"}; }, "\"B\": manca la quota a cui fissarlo", ""},
    {[](O& o, L& l) {
       l.Punti[1] = {"B", {}, {}, 9, {}, {}}, o.Fissi = {"B"}, o.TipoCalcolo = kCalcoloAltimetria;
     }, "", "quota =   9.000, altimetria = \"fisso\" },\n"},
    {[](O&, L& l) { l.Punti[0].Quota.reset(), l.Punti[0].Ruoli.Alt = kFisso; },
     "l.gsi:8:1: errore: punto \"A\": è fisso ma manca la sua quota", ""},
    {[](O& o, L& l) { l.Punti[1].Ruoli.Alt = kFisso, o.Escludi = {"B"}; }, "", "\"escluso\" },\n"},
    // Records of one point: the first, but each fixed value from where it is fixed.
    {[](O&, L& l) { l.Punti.push_back({"A", 1000, 2000.11, 100, {}, {}}); },
     "fino a 0.110 m: valgono le prime", "est = 1000.000, nord = 2000.000, quota = 100.000 }"},
    {[](O&, L& l) {
       l.Punti[0].Ruoli.Pla = kFisso, l.Punti.push_back({"A", 1001, 2000, 8, {{}, kFisso}, {}});
     }, "fino a 92.000 m: valgono quelle dette fisse",
     "est = 1000.000, nord = 2000.000, quota = 8.000, planimetria = \"fisso\", altimetria = \"fi"},
    // Standard deviations: option, file, observations, usual value.
    {[](O& o, L& l) { l.Opzioni.SqmDirezione = 2e-3, o.SqmDirezione = 3e-3; }, "",
     "sqm_direzione = 0.0030              # gon, di un angolo fra due direzioni\n"},
    {[](O&, L& l) { Ultima(l).SqmDirezione = 1e-3, l.Opzioni.SqmDirezione = 2e-3; }, "", "0.0020 "},
    {[](O& o, L&) { o.SqmDistProporzionale = 4e-3; }, "delle distanze: assunto 3 mm + 2 mm/km",
     "sqm_distanza_costante = 0.003       # m: valore usuale, assunto\n"
     "sqm_distanza_proporzionale = 0.004  # m per km\n"},
    {[](O&, L& l) {  // of equals the largest; what is not measured has no say
       l.Postazioni[0].Battute[2].SqmDirezione = 1e-3, Ultima(l).SqmDirezione = 2e-3;
       l.Postazioni[0].Battute[2].SqmDistanza = 7e-3, Ultima(l).SqmDistanza = 5e-3;
     }, "osservazioni: 0.002 (1), 0.001 (1) (si", "sqm_distanza_costante = 0.005       # m: dal va"},
    {[](O&, L& l) { Ultima(l).Direzione = 799.5; }, "", "direzione = 399.5000, zenit = 97.5000"},
    {[](O&, L& l) { l.Postazioni[0].EccDistanza = 0.5, l.Postazioni[0].EccDirezione = -10; }, "",
     "eccentricita = { distanza = 0.500, direzione = 390.0000 }\n"},
    {[](O&, L& l) { Ultima(l).Zenit.reset(); }, "l.gsi:4:1: avviso: 1 distanza inclinata: senza ze",
     "\n#\n# Assunto:\n#   2 punti che il libretto nomina solo nelle letture sono incogniti.\n"
     "#   1 distanza uguale a zero vale come non misurata.\n#\n# Cerchi dello strumento:\n"},
    {[](O&, L& l) { l = Libro("A 10 99 9 1; A 210.001 301.0004; B 20 99"); },
     "", "Cerchi:         1 coppia di letture coniugate mediata, collimazione media +0.00050 gon, "
     "indice medio +0.00020 gon.\nAssunto:"},
    {[](O&, L& l) {
       l.Tralascia("righe 7", "la rete non le porta", 12), l.Tralascia("codici", "non servono", 0);
       l.Tralascia("righe 7", "la rete non le porta", 13, 2), l.Note = {"c'era vento"};
     }, "", "\n# Tralasciato:\n#   righe 7 (3, dalla riga 12): la rete non le porta\n"
     "#   codici (1): non servono\n#\n# Manca ancora:\n#   nessun punto fisso: la planimetria ne"},
    {[](O& o, L&) { o.Fissi = {"A"}; }, "",
     "\n# Manca ancora:\n#   un solo punto fisso in planimetria: ne servono almeno due\n"
     "#   le coordinate approssimate di 2 punti: \"S\", \"P\"\n"
     "#   la quota approssimata di 3 punti: \"B\", \"S\", \"P\"\n\nformato = 1\n"},
    {[](O&, L& l) { l.Postazioni[0].Battute[2].Segnale.reset(); }, "",
     "1 visuale con lo zenit ma senza altezza del segnale: fuori dall'altimetria\n"},
    {[](O&, L& l) {
       BattutaLibretto& b = l.Postazioni[0].Battute[3];
       b.Zenit.reset(), b.TipoDist = kOrizzontale;
     }, "", "3: 3 direzioni, 2 angoli zenitali, 2 distanze\n"},
    {[](O& o, L& l) { l.Postazioni[0].Altezza.reset(), o.TipoCalcolo = kCalcoloAltimetria; }, "",
     "1 stazione con angoli zenitali ma senza altezza dello strumento: fuori dall'altimetria\n"},
    {[](O& o, L&) { o.Fissi = {"A", "B"}, o.Escludi = {"P"}; }, "",
     "\n]\nPunti:          4: in planimetria 2 fissi, 1 incognito, 1 escluso\n"
     "                in altimetria 1 fisso, 2 incogniti, 1 escluso\nStazioni:       1\n"
     "Osservazioni:   3: 3 direzioni, 3 angoli zenitali, 2 distanze\n"},
};
// clang-format on

TEST(Completa, Casi) {
  for (const CasoCompleta& caso : kCompleta) {
    OpzioniImporta opzioni;
    opzioni.SenzaApprossimate = true;
    Libretto libro = Libro("A 10 99 100 1.5; A 210 301 100 1.5; B 110 98 0 1.5; P 60 97.5 50 1.5");
    libro.Punti = {{"A", 1000, 2000, 100, {}, {"l.gsi", 8, 1}}, {"B", 1100, 2000, {}, {}, {}}};
    caso.Cambia(opzioni, libro);
    Diagnostica diario;
    Resoconto resa;
    const std::optional<Rete> rete = PreparaRete(opzioni, libro, resa, diario);
    Contiene(Testi(diario), caso.Messaggio);
    ASSERT_EQ(rete.has_value(), *caso.Scritto != '\0') << caso.Messaggio << Testi(diario);
    if (!rete) continue;
    Contiene(Scritta(*rete, Intestazione(resa, *rete)) + SommarioImportazione(resa, *rete, "-"),
             caso.Scritto);
  }
}

// Every value of the records; the doubles in hexadecimal, which keeps every bit.
std::string Impronta(const Rete& r) {
  std::ostringstream testo;
  const auto scrivi = [&](const auto&... v) { ((testo << std::hexfloat << v << ' '), ...); };
  const TOpzCr& o = r.Opzioni;
  scrivi(o.SqmDir, o.SqmDistCost, o.SqmDistProp, o.MaxIter, o.TipoCalcolo, +o.Cartografiche);
  scrivi(r.DatiProgetto.Nome, r.DatiProgetto.Epsg.value_or(0), +r.CurvaturaRifrazione.CorrCurvRifr,
         r.CurvaturaRifrazione.CoeffRifr, r.CurvaturaRifrazione.RaggioTerra);
  for (const TCoorCr& p : r.Punti) scrivi(p.Nome, p.Est, p.Nord, p.Quota, p.TipoPla, p.TipoAlt);
  for (const TStaCr& s : r.Stazioni) {
    scrivi("\n", s.Punto, s.AltStrum, s.AltStrumNota, s.EccDistanza, s.EccDirezione);
    for (const TOssCr& v : s.Osservazioni)
      scrivi(v.Punto, v.Direzione, v.Zenit, v.AltSegnale, v.Distanza, v.TipoDist);
  }
  return testo.str();
}

const std::filesystem::path kScritta =
    std::filesystem::temp_directory_path() / ("importa-" + std::to_string(getpid()) + ".toml");

// The network of a text, which the file is left with.
Rete Leggi(const std::string& testo) {
  std::ofstream(kScritta) << testo;
  Diagnostica diario;
  std::optional<Rete> rete = LeggiRete(kScritta, diario);
  std::filesystem::remove(kScritta);
  EXPECT_TRUE(rete) << Testi(diario) << testo;
  return rete ? *std::move(rete) : Rete();
}

void AndataRitorno(const Rete& rete) {
  IntestazioneToml testa;
  testa.Righe = {"a\nformato = 2", "", "\xFF \"" + std::string(300, 'x')};
  testa.NotaSqmDirezione = "x\ny = 1";
  EXPECT_EQ(Impronta(Leggi(Scritta(rete, testa))), Impronta(rete));
}

constexpr const char* kDifficile = R"(formato = 1
punti = [ { nome = 'a"b', est = 0.30000000000000004, nord = 1e21, quota = -0.0 },
  { nome = 'c\', est = 5e-324, nord = 123456789.12345679 }, { nome = '\u0041 b = 1, {', nord = 8e199 },
  { nome = "'#[x]€à", est = -1e-7, altimetria = "escluso" }, { nome = 1, quota = 1e-9 } ]
[progetto]
nome = "Rete \"di\nprova\"\t\\ \u007F"
[opzioni]
sqm_direzione = 1e-5
sqm_distanza_costante = 0
sqm_distanza_proporzionale = 1e-9
[[stazioni]]
punto = 1
altezza = -1e-300
altezza_nota = false
eccentricita = { distanza = 0, direzione = 1e-5 }
osservazioni = [ { punto = 'c\', distanza = 1e-300, zenit = 99.99999999999999, tipo = 6 },
  { punto = 'a"b', tipo = 30, segnale = -0.3333333333333333 }, { punto = "'#[x]€à", direzione = 400 } ]
[[stazioni]]
punto = 'a"b'
)";

TEST(Scrittura, AndataERitorno) {
  AndataRitorno(Leggi(kDifficile));
  Diagnostica diario;
  for (const auto& voce : std::filesystem::directory_iterator(CARTELLA_ESEMPI))
    if (voce.path().extension() == ".toml") AndataRitorno(LeggiRete(voce.path(), diario).value());
}

TEST(Scrittura, NumeriETesti) {
  const std::tuple<double, int, const char*> kNumeri[] = {
      {0, 3, "0.000"},    {1e-7, 3, "0.0000001"},         {0.1 + 0.2, 3, "0.30000000000000004"},
      {5, 0, "5.0"},      {1e14, 1, "100000000000000.0"}, {-2.5e-9, 3, "-0.0000000025"},
      {1e21, 3, "1e+21"}, {123456.5, 3, "123456.500"}};
  for (const auto& [valore, cifre, testo] : kNumeri) EXPECT_EQ(NumeroToml(valore, cifre), testo);
  EXPECT_EQ(TestoToml("a\"\\\n\x1f\x7fè"), "\"a\\\"\\\\\\u000A\\u001F\\u007Fè\"");
}

TEST(Importa, RifiutaSenzaScrivere) {
  OpzioniImporta opzioni;
  opzioni.File = {CARTELLA_ESEMPI "/zeman.rapporto.txt", "manca.gsi"};
  opzioni.Uscita = kScritta;
  testing::internal::CaptureStderr();
  EXPECT_EQ(Importa(opzioni), kStatoRete);
  const std::string errori = testing::internal::GetCapturedStderr();
  Contiene(errori, "zeman.rapporto.txt: errore: formato non riconosciuto");
  Contiene(errori, "manca.gsi: errore: il file \"manca.gsi\" non esiste");
  EXPECT_FALSE(std::filesystem::exists(kScritta));
  opzioni.Formato = "dwg";
  EXPECT_THROW(Importa(opzioni), ErroreUso);
  opzioni.Uscita = CARTELLA_ESEMPI "/../examples/zeman.rapporto.txt";
  EXPECT_THROW(Importa(opzioni), ErroreUso);
}

}  // namespace
