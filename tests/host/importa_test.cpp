// From field books to network files: faces, what is completed and how, and the file that is written.

#include <gtest/gtest.h>
#include <unistd.h>

#include <bit>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "host/campi.h"
#include "host/costruttore.h"
#include "host/errori.h"
#include "host/importazione/importa.h"
#include "host/lettura_rete.h"

namespace {

constexpr auto kManca = std::nullopt;
using Numero = std::optional<double>;

BattutaLibretto Letta(const char* punto, Numero dir, Numero zen, Numero dist = kManca,
                      Numero segnale = kManca, Faccia lato = Faccia::Ignota, int riga = 0) {
  return {punto, lato, dir, zen, segnale, dist, kInclinata, kManca, kManca, {"l.gsi", riga, 1}};
}

// A set-up on S, with the book around it.
Libretto Libro(std::vector<BattutaLibretto> battute) {
  Libretto libro;
  libro.NomiFile.emplace_back("l.gsi");
  libro.Postazioni.push_back({"S", 1.5, true, kManca, kManca, std::move(battute), {"l.gsi", 1, 1}});
  return libro;
}

std::string Testi(const Diagnostica& diario) {
  std::string testi;
  for (const std::string& riga : diario.Righe()) testi += riga + "\n";
  return testi;
}

const struct CasoFacce {
  const char* Nome;
  ModoFacce Modo;
  bool Medie;
  std::vector<BattutaLibretto> Battute;
  std::vector<std::pair<double, double>> Attese;  // directions and zenith angles
  const char* Messaggio;                          // a piece; empty = no message
} kFacce[] = {
    {"Coppia", ModoFacce::Media, false,
     {Letta("C", 88.39996, 100.61796), Letta("C", 288.40056, 299.38324)}, {{88.40026, 100.61736}}, ""},
    {"Giro", ModoFacce::Media, false,
     {Letta("C", 399.9998, 100.0), Letta("C", 200.0004, 300.0)}, {{0.0001, 100.0}}, ""},
    {"PrimaLaSeconda", ModoFacce::Media, false,
     {Letta("C", 200.0004, 300.0), Letta("B", 50.0, 90.0), Letta("C", 399.9998, 100.0)},
     {{0.0001, 100.0}, {50.0, 90.0}}, ""},
    {"InOrdine", ModoFacce::Media, false,
     {Letta("C", 10.0, 100.0), Letta("C", 20.0, 100.0), Letta("C", 220.002, 300.0),
      Letta("C", 210.0, 300.0), Letta("C", 30.0, 100.0)},
     {{15.001, 100.0}, {14.999999999999993, 100.0}, {30.0, 100.0}}, "collimazione"},
    {"Separate", ModoFacce::Separate, false,
     {Letta("C", 88.4, 100.6), Letta("C", 288.5, 299.3)}, {{88.4, 100.6}, {88.5, 100.7}}, ""},
    {"SolaSeconda", ModoFacce::Media, false, {Letta("C", 150.0, 299.0)}, {{350.0, 101.0}}, ""},
    {"Contraddetta", ModoFacce::Media, false,
     {Letta("C", 150.0, 99.0, 9.0, 1.5, Faccia::Seconda, 3)}, {{150.0, 99.0}}, "l.gsi:3:1: avviso"},
    {"SegnaliDiversi", ModoFacce::Media, false,
     {Letta("C", 10.0, 100.0, 9.0, 1.5), Letta("C", 210.0, 300.0, 9.0, 1.6)},
     {{10.0, 100.0}, {10.0, 100.0}}, "1.500 e 1.600 m"},
    {"DistanzeDiscordi", ModoFacce::Media, false,
     {Letta("C", 10.0, 100.0, 9.0), Letta("C", 210.0, 300.0, 9.1)}, {{10.0, 100.0}}, "da 9.0000 a 9.1000"},
    {"Ripetute", ModoFacce::Media, false, {Letta("C", 1.0, 99.0), Letta("C", 1.001, 99.0)},
     {{1.0, 99.0}, {1.001, 99.0}}, ""},
    {"Medie", ModoFacce::Media, true,
     {Letta("C", 399.999, 99.0), Letta("B", 5.0, 99.0), Letta("C", 0.002, 99.002)},
     {{0.0005, 99.001}, {5.0, 99.0}}, ""},
};

TEST(Facce, Casi) {
  for (const CasoFacce& caso : kFacce) {
    SCOPED_TRACE(caso.Nome);
    Libretto libro = Libro(caso.Battute);
    Diagnostica diario;
    RiduciFacce(libro, caso.Modo, caso.Medie, {0.001, 0.003, 0.002}, diario);
    const auto& battute = libro.Postazioni[0].Battute;
    ASSERT_EQ(battute.size(), caso.Attese.size());
    for (std::size_t i = 0; i < battute.size(); ++i) {
      EXPECT_NEAR(*battute[i].Direzione, caso.Attese[i].first, 1e-9);
      EXPECT_NEAR(*battute[i].Zenit, caso.Attese[i].second, 1e-9);
    }
    EXPECT_EQ(diario.Avvisi() == 0, std::string_view(caso.Messaggio).empty()) << Testi(diario);
    EXPECT_NE(Testi(diario).find(caso.Messaggio), std::string::npos) << Testi(diario);
  }
}

TEST(Facce, Collimazione) {
  Libretto libro = Libro({Letta("C", 88.39996, 100.61796), Letta("C", 288.40056, 299.38324),
                          Letta("B", 399.9999, 98.0), Letta("B", 200.0003, 302.001)});
  libro.Postazioni[0].Battute[2].SqmDirezione = libro.Postazioni[0].Battute[3].SqmDirezione = 0.002;
  Diagnostica diario;
  const EsitoFacce esito = RiduciFacce(libro, ModoFacce::Media, false, {0.001, 0.0, 0.0}, diario);
  EXPECT_NEAR(*esito.Coppie[0].Collimazione, 0.00030, 1e-9);
  EXPECT_NEAR(*esito.Coppie[0].Indice, 0.00060, 1e-9);
  EXPECT_NEAR(esito.Collimazione.Media, 0.00025, 1e-9);
  EXPECT_NEAR(esito.Collimazione.Scarto, 0.0001 / std::sqrt(2.0), 1e-9);
  EXPECT_NEAR(*libro.Postazioni[0].Battute[1].SqmDirezione, 0.002 / std::sqrt(2.0), 1e-12);
}

// A book with two known points, seen on both faces, and the same one with something changed.
Libretto Completo() {
  Libretto libro = Libro({Letta("A", 10.0, 99.0, 100.0, 1.5, Faccia::Ignota, 2), Letta("A", 210.0, 301.0, 100.0, 1.5),
                          Letta("B", 110.0, 98.0, 0.0, 1.5), Letta("P", 60.0, 97.5, 50.0, 1.5)});
  libro.Punti = {{"A", 1000.0, 2000.0, 100.0, {}, {"l.gsi", 8, 1}}, {"B", 1100.0, 2000.0, kManca, {}, {"l.gsi", 9, 1}}};
  return libro;
}

const struct CasoCompleta {
  const char* Nome;
  void (*Cambia)(OpzioniImporta&, Libretto&);
  const char* Messaggio;  // a piece of the messages
  const char* Scritto;    // a piece of the file; empty = no file, there are errors
} kCompleta[] = {
    {"Assunti", [](auto&, auto&) {}, "non dà quello degli angoli: assunto 0.0010 gon",
     "sqm_direzione = 0.0010             # gon, di un angolo fra due direzioni: valore usuale, assunto\n"},
    {"Fissi", [](auto& o, auto&) { o.Fissi = {"A", "B"}; }, "",
     "  { nome = \"A\", est = 1000.000, nord = 2000.000, quota = 100.000, planimetria = \"fisso\", altimetria = \"fisso\" },\n"
     "  { nome = \"B\", est = 1100.000, nord = 2000.000,                  planimetria = \"fisso\" },\n"
     "  { nome = \"S\" },\n"},
    {"Ignoto", [](auto& o, auto& l) { l.Punti[1].Nome = "Vertice"; o.FissiAltimetria = {"Vetrice"}; },
     "--fissi-altimetria: errore: punto \"Vetrice\": non è tra i punti (forse \"Vertice\"?)", ""},
    {"SenzaQuota", [](auto& o, auto&) { o.FissiAltimetria = {"B"}; }, "manca la quota a cui fissarlo", ""},
    {"SenzaCoordinate", [](auto& o, auto&) { o.Fissi = {"P"}; }, "mancano le coordinate est e nord", ""},
    {"FissoEscluso", [](auto& o, auto&) { o.Fissi = o.Escludi = {"A"}; }, "insieme fisso ed escluso", ""},
    {"Escluso", [](auto& o, auto&) { o.Escludi = {"P"}; }, "",
     "  { nome = \"P\",                                                     planimetria = \"escluso\", altimetria = \"escluso\" },\n"},
    {"Maiuscole", [](auto&, auto& l) { l.Postazioni[0].Battute[3].Punto = "a"; }, "differisce solo per le maiuscole da \"A\"", "nome = \"a\""},
    {"Doppio", [](auto&, auto& l) { l.Punti.push_back({"A", 1001.0, 2000.0, 5.0, {kFisso, kManca}, {"l.gsi", 10, 1}}); },
     "l.gsi:10:1: avviso: punto \"A\": coordinate diverse da quelle alla riga 8 di \"l.gsi\", fino a 95.000 m: valgono queste",
     "nome = \"A\", est = 1001.000, nord = 2000.000, quota = 5.000, planimetria = \"fisso\""},
    {"Orizzontale", [](auto&, auto& l) { auto& b = l.Postazioni[0].Battute[3]; b.Zenit = kManca; b.TipoDist = kOrizzontale; },
     "", "punto = \"P\", direzione =  60.0000, zenit = 100.0000,                  distanza =  50.0000 }"},
    {"SqmDiCiascuna", [](auto&, auto& l) { for (auto& b : l.Postazioni[0].Battute) b.SqmDirezione = b.Punto == "A" ? 0.002 : 0.001; },
     "0.001 (2), 0.001414", "sqm_direzione = 0.0014142 "},
    {"SqmDaOpzione", [](auto& o, auto& l) { l.Opzioni.SqmDistProporzionale = 0.007; o.SqmDistCostante = 0.005; }, "",
     "sqm_distanza_costante = 0.005      # m\nsqm_distanza_proporzionale = 0.007 # m per km\n"},
    {"Zenit", [](auto&, auto& l) { l.Postazioni[0].Battute[0].Zenit = -1.0; }, "l.gsi:2:1: errore: osservazione da \"S\" a \"A\", zenit: numero fuori dai limiti", ""},
    {"SenzaQuote", [](auto&, auto& l) { l.Postazioni[0].Altezza = kManca; }, "", "calcolo = \"planimetria\"\n"},
    {"NomeEmoji", [](auto&, auto& l) { l.Postazioni[0].Battute[0].Punto = "\xE2\x98\xBA"; }, "non esiste nella codifica", ""},
};

TEST(Completa, Casi) {
  for (const CasoCompleta& caso : kCompleta) {
    SCOPED_TRACE(caso.Nome);
    OpzioniImporta opzioni;
    opzioni.SenzaApprossimate = true;
    Libretto libro = Completo();
    caso.Cambia(opzioni, libro);
    Diagnostica diario;
    Resoconto resa;
    const std::optional<Rete> rete = PreparaRete(opzioni, libro, resa, diario);
    EXPECT_NE(Testi(diario).find(caso.Messaggio), std::string::npos) << Testi(diario);
    ASSERT_EQ(rete.has_value(), *caso.Scritto != '\0') << Testi(diario);
    std::string scritto;
    if (rete) ScriviRete(*rete, Intestazione(resa, *rete), [&](auto s) { scritto += s; });
    EXPECT_NE(scritto.find(caso.Scritto), std::string::npos) << scritto;
  }
}

// Every value of the records, the doubles by their bits.
std::string Impronta(const Rete& r) {
  std::string testo = r.DatiProgetto.Nome + std::to_string(r.DatiProgetto.Epsg.value_or(0));
  const auto aggiungi = [&](auto... v) { ((testo += std::to_string(v) + ' '), ...); };
  const auto bit = [&](auto... v) { aggiungi(std::bit_cast<std::uint64_t>(double{v})...); };
  bit(r.Opzioni.SqmDir, r.Opzioni.SqmDistCost, r.Opzioni.SqmDistProp, r.CurvaturaRifrazione.CoeffRifr,
      r.CurvaturaRifrazione.RaggioTerra);
  aggiungi(r.Opzioni.MaxIter, r.Opzioni.TipoCalcolo, r.Opzioni.Cartografiche, r.CurvaturaRifrazione.CorrCurvRifr);
  for (const TCoorCr& p : r.Punti) {
    testo += "\n" + std::string(p.Nome) + "|";
    bit(p.Est, p.Nord, p.Quota);
    aggiungi(p.TipoPla, p.TipoAlt);
  }
  for (const TStaCr& s : r.Stazioni) {
    testo += "\n";
    bit(s.AltStrum, s.EccDistanza, s.EccDirezione);
    aggiungi(s.Punto, s.AltStrumNota);
    for (const TOssCr& o : s.Osservazioni) {
      bit(o.Direzione, o.Zenit, o.AltSegnale, o.Distanza);
      aggiungi(o.Punto, o.TipoDist);
    }
  }
  return testo;
}

const std::filesystem::path kScritta =
    std::filesystem::temp_directory_path() / ("importa-" + std::to_string(getpid()) + ".toml");

void AndataRitorno(const Rete& rete) {
  std::ofstream file(kScritta, std::ios::binary);
  const auto versa = [&](std::string_view s) { file.write(s.data(), static_cast<std::streamsize>(s.size())); };
  ScriviRete(rete, {.Righe = {"a\nformato = 2", "", "\xFF \"" + std::string(300, 'x')}, .NotaSqmDirezione = "x\ny", .NotaSqmDistanza = "", .NotaSqmProporzionale = ""}, versa);
  file.close();
  Diagnostica diario;
  const std::optional<Rete> riletta = LeggiRete(kScritta, diario);
  ASSERT_TRUE(riletta) << Testi(diario);
  EXPECT_EQ(Impronta(*riletta), Impronta(rete));
  std::filesystem::remove(kScritta);
}

TEST(Scrittura, Esempi) {
  for (const auto& voce : std::filesystem::directory_iterator(CARTELLA_ESEMPI)) {
    if (voce.path().extension() != ".toml") continue;
    SCOPED_TRACE(voce.path());
    Diagnostica diario;
    const std::optional<Rete> rete = LeggiRete(voce.path(), diario);
    ASSERT_TRUE(rete);
    AndataRitorno(*rete);
  }
}

TEST(Scrittura, NomiENumeriDifficili) {
  Diagnostica diario;
  CostruttoreRete costruttore(diario);
  const std::vector<std::string> nomi = {"a\"b", "c\\", "\\u0041", "#[x]", "'", "1", "true", "a = b, {", "Città €", std::string(90, 'w')};
  const double numeri[] = {0.1 + 0.2, 1e21, -0.0, 1e-7, 5e-324, -1.25e-9, 123456789.123456789, 8e199, 1e15, 1.0 / 3.0};
  for (std::size_t i = 0; i < nomi.size(); ++i)
    costruttore.AggiungiPunto({.Nome = nomi[i], .Dove = {}, .DoveNome = {}, .Est = numeri[i], .Nord = -numeri[i]});
  costruttore.DatiProgetto() = {"Rete \"di\nprova\"\t\\ \x7F", 3003};
  costruttore.Opzioni().SqmDirezione = {1e-5, true, {}};
  costruttore.Opzioni().SqmDistCostante = {0.003, true, {}};
  costruttore.CurvaturaRifrazione() = {1, 0.1 + 0.2, 6.4e6};
  for (int i = 0; i + 1 < static_cast<int>(nomi.size()); ++i) {
    const int s = costruttore.AggiungiStazione({nomi[static_cast<std::size_t>(i)], i, {}, {1.5, true, {}}, {i == 2 ? std::optional(false) : kManca, false, {}}, {0.1, true, {}}, {1e-5, true, {}}});
    costruttore.AggiungiOsservazione(s, {{}, i + 1, 1e-7, kValoreMancante, -1.0 / 3.0, 1e-300, kTipiDistanza[static_cast<std::size_t>(i) % 8]}, {});
  }
  const std::optional<Rete> rete = costruttore.Completa();
  ASSERT_TRUE(rete) << Testi(diario);
  AndataRitorno(*rete);
}

TEST(Importa, RifiutaSenzaScrivere) {
  OpzioniImporta opzioni;
  opzioni.File = {CARTELLA_ESEMPI "/zeman.toml", "manca.gsi"};
  opzioni.Uscita = kScritta;
  testing::internal::CaptureStderr();
  EXPECT_EQ(Importa(opzioni), kStatoRete);
  const std::string errori = testing::internal::GetCapturedStderr();
  EXPECT_NE(errori.find("zeman.toml: errore: formato non riconosciuto"), std::string::npos) << errori;
  EXPECT_NE(errori.find("manca.gsi: errore: il file \"manca.gsi\" non esiste"), std::string::npos) << errori;
  EXPECT_FALSE(std::filesystem::exists(kScritta));
  opzioni.Formato = "dwg";
  EXPECT_THROW(Importa(opzioni), ErroreUso);
  opzioni.Uscita = CARTELLA_ESEMPI "/../examples/zeman.toml";
  EXPECT_THROW(Importa(opzioni), ErroreUso);
}

}  // namespace
