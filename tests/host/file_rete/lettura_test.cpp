// The network file: what good ones become, what is said of bad ones, and of records to no purpose.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "host/base/codifica.h"
#include "host/base/impronta.h"
#include "host/base/numeri.h"
#include "host/calcolo/rapporto.h"
#include "host/file_rete/lettura_rete.h"
#include "host/giudizio/record_ignorati.h"
#include "kzt5cmrg.h"

using namespace compensa;

namespace {

std::string Carica(const char* nome) {
  std::ifstream file(std::filesystem::path(CARTELLA_DATI) / nome, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// One network, with its points on lines 3 to 6 and its sights on 19 and 20 and on 27 and 28; the same
// with tables; and every value that both stand for.
const std::string kRete = Carica("rete.toml"), kTesta = Carica("tabelle.toml"),
                  kPunti = Carica("punti.csv"), kOss = Carica("oss.csv"),
                  kValori = Carica("valori.txt");

struct CartellaProva {
  const std::filesystem::path Percorso =
      std::filesystem::temp_directory_path() / ("compensa-" + std::to_string(getpid()));
  Diagnostica Diario;

  CartellaProva() { std::filesystem::create_directories(Percorso); }
  ~CartellaProva() { std::filesystem::remove_all(Percorso); }

  void Scrivi(const char* nome, const std::string& testo) const {
    std::ofstream(Percorso / nome, std::ios::binary) << testo;
  }
  std::optional<Rete> Leggi(const std::string& rete, const std::string& punti = "",
                            const std::string& oss = "") {
    Scrivi("rete.toml", rete);
    Scrivi("punti.csv", punti);
    Scrivi("oss.csv", oss);
    return LeggiRete(Percorso / "rete.toml", Diario = Diagnostica());
  }
  // The messages without the folder, one a line.
  std::string Messaggi() const {
    std::string testi;
    for (const std::string& riga : Diario.Righe())
      testi += riga.substr(riga.find(Percorso) == 0 ? Percorso.string().size() + 1 : 0) + '\n';
    return testi;
  }
};

// The text with the first occurrence of a piece replaced, or more at its end if there is no piece.
std::string Cambia(std::string_view testo, std::string_view da, std::string_view a) {
  const std::size_t dove = da.empty() ? testo.size() : testo.find(da);
  return std::string(testo).replace(dove, da.size(), a);  // throws if the piece is not there
}

std::string Valori(const Rete& r) {
  std::string testo = r.DatiProgetto.Nome;
  const auto scrivi = [&](std::initializer_list<double> valori, std::string_view fine) {
    for (const double v : valori) testo += ' ' + NumeroBreve(v);
    testo += fine;
  };
  const TOpzCr& o = r.Opzioni;
  const CCalcDsOr& d = r.CurvaturaRifrazione;
  scrivi({1.0 * r.DatiProgetto.Epsg.value_or(0), 1.0 * o.MaxIter, 1.0 * o.TipoCalcolo, o.SqmDir,
          o.SqmDistCost, o.SqmDistProp, 1.0 * o.Cartografiche, 1.0 * d.CorrCurvRifr, d.CoeffRifr,
          d.RaggioTerra},
         "\n");
  for (const TCoorCr& p : r.Punti) {
    testo += DaWindows1252(p.Nome);
    scrivi({p.Est, p.Nord, p.Quota, 1.0 * p.TipoPla, 1.0 * p.TipoAlt}, "|");
  }
  for (const TStaCr& s : r.Stazioni) {
    testo += '\n' + std::to_string(s.Punto);
    scrivi({s.AltStrum, 1.0 * s.AltStrumNota, s.EccDistanza, s.EccDirezione}, ":");
    for (const TOssCr& v : s.Osservazioni) {
      scrivi({1.0 * v.Punto, v.Direzione, v.Zenit, v.AltSegnale, v.Distanza, 1.0 * v.TipoDist},
             ",");
    }
  }
  return testo + '\n';
}

std::string Sostituisci(std::string testo, char da, std::string_view a) {
  for (std::size_t i = testo.find(da); i < testo.size(); i = testo.find(da, i + a.size()))
    testo.replace(i, 1, a);
  return testo;
}

TEST(Lettura, OgniScritturaDaGliStessiRecord) {
  const std::string italiana = Sostituisci(Sostituisci(kOss, '.', ","), '\n', "\r\n");
  const std::string citata = Sostituisci(Sostituisci(kOss, ';', "\",\""), '\n', "\"\n\"");
  const struct {
    std::string Toml, Punti, Oss;
  } casi[] = {
      {kRete, "", ""},
      {Sostituisci(*InWindows1252(kRete), '\n', "\r\n"), "", ""},
      {"\xEF\xBB\xBF" + kTesta, "\xEF\xBB\xBF" + kPunti, "sep=;\r\n" + *InWindows1252(italiana)},
      {kTesta, Sostituisci(kPunti, ';', "\t"),
       Sostituisci(Sostituisci(italiana, ';', "\t"), '\n', "")},
      {kTesta, Sostituisci(kPunti, ';', " , ") + " , , ,,,\n\n\x1A",
       '"' + citata.substr(0, citata.size() - 1)},
  };
  for (const auto& caso : casi) {
    CartellaProva cartella;
    const std::optional<Rete> rete = cartella.Leggi(caso.Toml, caso.Punti, caso.Oss);
    EXPECT_EQ(cartella.Messaggi(), "") << caso.Punti << caso.Oss;
    EXPECT_EQ(rete ? Valori(*rete) : "", kValori);
  }
}

// A change to a good file, and place and part of the text of the one message that it must give.
struct CasoGuasto {
  std::string_view Da, A, Dove, Parte;
};

constexpr CasoGuasto kGuastiToml[] = {
    {"formato = 1", "", "1:1", "manca la chiave \"formato\": serve formato = 1"},
    {"formato = 1", "formato = 3", "1:11", "formato: trovato 3, serve 1"},
    {"epsg", "eps", "10:1", "progetto: chiave \"eps\" sconosciuta (forse \"epsg\"?)"},
    {"epsg =", "punti =", "10:1", "va scritta all'inizio del file"},
    {"sqm_direzione = 0.001", "", "11:1", "opzioni, sqm_direzione: manca lo scarto"},
    {"= 0.001", "= 0", "12:17", "scarto quadratico medio delle direzioni è nullo"},
    {"= 0.003", "= 1\niterazioni = 1001", "14:14", "serve un intero da 1 a 1000"},
    {"= 0.003", "= 1\ncartografiche = 1", "14:17", "serve true o false"},
    {"= 0.003", "= 1\ncalcolo = \"planimetrico\"", "14:11", "(forse \"planimetria\"?)"},
    {"[opzioni]", "[curvatura_rifrazione]\nraggio = 0.0\n[opzioni]", "12:10", "maggiore di 0 [m]"},
    {"quota = 12 ", "quote = 12 ", "5:47", "punto \"Città\": chiave \"quote\" sconosciuta"},
    {"= 500.25", "= \"500,25\"", "5:27", "senza virgolette e con il punto decimale"},
    {"= 500.25", "= nan", "5:27", "punto \"Città\", est: numero non finito"},
    {"= 500.25", "= -8.5e199", "5:27", "numero troppo grande"},
    {"= 500.25", "= 500,25", "5:27", "virgola in un numero: trovato \"500,25\" (i decimali"},
    {"nome = 12", "nome = 012", "4:12", "i nomi come 007 vanno fra virgolette"},
    {"nome = \"D\"", "nome = \" A\"", "6:12", "punto \"A\": punto doppio: è già alla riga 3"},
    {"nome = \"D\"", "nome = \" \"", "6:12", "il nome è vuoto"},
    {"nome = \"D\"", "nome = \"\\u0141\"", "6:12", "il carattere \"Ł\" (U+0141) non esiste"},
    {"nome = \"D\"", "nome = \"a\\nb\"", "6:12", "\"a\\x0Ab\", nome: il nome contiene caratteri"},
    {"\"escluso\"", "\"esculso\"", "6:61",
     "serve una parola tra \"incognito\", \"fisso\", \"escluso\""},
    {"punto = \"Città\", ", "punto = \"citta\", ", "20:13", "(forse \"Città\"?)"},
    {"altezza = 1.7", "", "25:16", "altezza_nota: altezza dello strumento incognita senza valore"},
    {", direzione = 152.3", "", "17:29", "manca la direzione dell'eccentricità"},
    {"= 0.084", "= -0.1", "17:29", "eccentricita, distanza: numero fuori dai limiti"},
    {"= 350", "= 401", "20:34",
     "direzione: numero fuori dai limiti: trovato 401, serve un numero da"},
    {"= 900 }", "= 0 }", "19:73", "serve un numero maggiore di 0 [m]"},
    {"tipo = 1 }", "tipo = 2 }", "20:89", "0, 1, 3, 6, 7, 10, 20, 30"},
    {"\"fuori_centro\"", "\"fuori centro\"", "28:85", "forse \"fuori_centro\"?"},
    {"punto = \"12\"", "punto = \"A\"", "19:3", "il punto osservato è la stazione stessa"},
    {"nome = 12", "nome = 1o='\u00D5'", "4:12", "valore non riconosciuto: trovato \"1o\""},
    {"nome = 12", "nome = 1[['\u00D5'", "4:13", "serve una virgola o }"},
    {"nome = 12", "nome = [1='\u00D5'", "4:14", "serve una virgola o ] (manca forse"},
    {"nome = 12", "nome = [\n1.'\u00D5'", "5:1", "un numero si scrive 12.5 o 1e-3"},
    {"epsg", "città", "10:5", "carattere \"à\" (U+00E0) fuori dalle virgolette"},
    {"\"Rete di città\"", "[[}]]", "9:10", "serve un valore o ]"},
    {"formato = 1", "formato = 1\ncurvatura_rifrazione = 0.13", "2:24", "trovato 0.13, serve"},
    {"  { nome = 12", "  3, { nome = 12", "4:3", "punti n. 2: trovato 3, serve una tabella"},
    {"  { punto = \"12\"", "  \"12\", { punto = \"12\"", "19:3", "serve una tabella"},
    {"= 350", "= [1]", "20:34", "direzione: trovato un elenco"},
    {"\"Rete di città\"", "true", "9:8", "nome: trovato true, serve"},
    {"\"Rete di città\"", "2021-05-27 07:32:00", "9:8", "nome: trovato una data o un'ora"},
    {"\"Rete di città\"", "\"\"\"a\nb", "9:8", "virgolette non chiuse"},
    {"\"Rete di città\"", "\"C:\\rete\\x\"", "9:16", "nei percorsi usare /"},
    {"\"Rete di città\"", "[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[",
     "9:72", "uno dentro l'altro"},
    {"[progetto]", "[,x]", "8:2", "serve [nome], o [[nome]]"},
    {"epsg = 3003", "nome = 3", "10:1", "chiave ripetuta \"nome\": è già alla riga 9, colonna 1"},
    {"[opzioni]", "[progetto]", "11:2", "tabella ripetuta \"progetto\": è già alla riga 8"},
    {"epsg =", "epsg", "10:6", "trovato \"3003\", serve il segno ="},
    {"= 3003", "=", "10:7", "manca il valore: trovato la fine della riga"},
    {"600, quota = 12 },", "600, quota = 12 ", "5:58", "non chiusa: trovato la fine della riga"},
    {"[progetto]\nnome", "[progetto]\r\r\rnom", "11:1", "chiave \"nom\" sconosciuta"},
};
// The same on the file that names two tables.
constexpr CasoGuasto kGuastiTesta[] = {
    {"\"punti.csv\"", "[]", "rete.toml:2:9", "[[punti]] o il nome di un file CSV"},
    {"\"punti.csv\"", "7", "rete.toml:2:9", "punti: trovato 7"},
    {"\"punti.csv\"", "\"\"", "rete.toml:2:9", "il nome di un file CSV"},
    {"\"punti.csv\"", "\"a\\nb.csv\"", "rete.toml:2:9", "il nome di un file CSV"},
    {"\"punti.csv\"", "\"manca.csv\"", "rete.toml:2:9", "manca.csv"},
    {"punti = \"punti.csv\"", "", "rete.toml:1:1", "manca la chiave \"punti\""},
    {"\"oss.csv\"", "[{ punto = 1 }]", "rete.toml:3:16", "stanno dentro [[stazioni]]"},
    {"osservazioni = \"oss.csv\"", "", "rete.toml:1:1", "manca la chiave \"stazioni\""},
    {"[progetto]", "[[stazioni]]\npunto = 12\n[progetto]", "rete.toml:3:16", "o in [[stazioni]]"},
};
constexpr CasoGuasto kGuastiPunti[] = {
    {"QUOTA", "est", "punti.csv:1:15", "intestazione: colonna \"est\" ripetuta"},
    {"500.25", "1.500,25", "punti.csv:4:11", "senza separatori delle migliaia"},
    {"500.25", "500.25m", "punti.csv:4:11", "punto \"Città\", est: trovato \"500.25m\", serve"},
    {";12;;-", ";12;", "punti.csv:4:1", ": trovato 5, serve 6 come nell'intestazione"},
    {"\nCittà", "\n\"Città", "punti.csv:4:1", "virgolette non chiuse"},
    {"\nCittà", "\n\"Città\"x", "punti.csv:4:8", "dopo le virgolette chiuse serve il separatore"},
    {"", "12;1;1;;;\n", "punti.csv:6:1", "punto \"12\": punto doppio: è già alla riga 3"},
};
constexpr CasoGuasto kGuastiOss[] = {
    {"giro", "giri", "oss.csv:1:10", "colonna \"giri\" sconosciuta (forse \"giro\"?)"},
    {"\nA;1;1.5", "\nAB;1;1.5", "oss.csv:2:1",
     "stazione \"AB\", stazione: \"AB\" non è tra i punti"},
    {"\nA;1;;", "\nA;1;1,6;", "oss.csv:4:5", "trovato \"1,6\" (alla riga 2 c'è \"1.5\")"},
    {";No;", ";forse;", "oss.csv:3:13", "serve \"si\" o \"no\""},
    {"inclinata", "8", "oss.csv:3:35",
     "osservazione da \"Città\" a \"A\", tipo: parola sconosciuta"},
};

void ControllaGuasto(const CasoGuasto& caso, const std::string& toml, const std::string& punti,
                     const std::string& oss) {
  CartellaProva cartella;
  EXPECT_FALSE(cartella.Leggi(toml, punti, oss));
  const std::string testo = cartella.Messaggi();
  const std::string file = punti.empty() ? "rete.toml:" : "";
  EXPECT_EQ(testo.find(file + std::string(caso.Dove) + ": errore: "), 0u) << caso.A << '\n'
                                                                          << testo;
  EXPECT_NE(testo.find(caso.Parte), std::string::npos) << caso.A << '\n' << testo;
  EXPECT_EQ(cartella.Diario.Errori(), 1u) << testo;
}

TEST(Lettura, OgniGuastoHaPostoEMotivo) {
  for (const auto& c : kGuastiToml) ControllaGuasto(c, Cambia(kRete, c.Da, c.A), "", "");
  for (const auto& c : kGuastiTesta) ControllaGuasto(c, Cambia(kTesta, c.Da, c.A), kPunti, kOss);
  for (const auto& c : kGuastiPunti) ControllaGuasto(c, kTesta, Cambia(kPunti, c.Da, c.A), kOss);
  for (const auto& c : kGuastiOss) ControllaGuasto(c, kTesta, kPunti, Cambia(kOss, c.Da, c.A));
  ControllaGuasto({"", "", "rete.toml:3:16", "è una cartella"}, Cambia(kTesta, "oss.csv", "."),
                  kPunti, "");
}

TEST(Lettura, TuttiGliErroriInUnaPassataNeMostraCinquanta) {
  std::string oss = kOss.substr(0, kOss.find('\n') + 1);
  for (int i = 0; i < 30; ++i) oss += "12;a;;;;;A;500;-1;;;\n";
  CartellaProva cartella;
  cartella.Leggi(Cambia(kTesta, "= 3003", "= 0"), kPunti + "X;1;a;;;\n", oss);
  const std::string testo = cartella.Messaggi();
  EXPECT_EQ(testo.find("rete.toml:6:8: errore: progetto, epsg"), 0u) << testo;
  EXPECT_LT(testo.find("punti.csv:6:5"), testo.find("oss.csv:2:12: errore")) << testo;
  EXPECT_NE(testo.find("oss.csv:25:16: errore"), std::string::npos) << testo;
  EXPECT_EQ(testo.substr(testo.rfind('\n', testo.size() - 2)), "\naltri 12 errori non mostrati\n");
}

TEST(Lettura, ByteQualsiasiDannoUnaReteODegliErrori) {
  std::mt19937 motore(20);
  const auto caso = [&] { return static_cast<unsigned>(motore()); };
  const std::string_view pezzi[] = {"[", "{", "\"", "a.", "\xFF", "nan", std::string_view("\0", 1)};
  CartellaProva cartella;
  for (int giro = 0; giro < 300; ++giro) {
    std::string file[] = {giro % 2 == 0 ? kRete : kTesta, kPunti, kOss};
    std::string& testo = file[giro % 2 == 0 ? 0 : giro % 3];
    for (unsigned n = 1 + caso() % 3; n > 0; --n) {
      std::string pezzo(caso() % 2 == 0 ? pezzi[caso() % 7]
                                        : testo.substr(caso() % testo.size(), 9));
      for (unsigned k = caso() % 40 == 0 ? 12 : 0; k > 0; --k) pezzo += pezzo;
      testo.replace(caso() % testo.size(), caso() % 4, pezzo);
    }
    const bool letta = cartella.Leggi(file[0], file[1], file[2]).has_value();
    EXPECT_NE(letta, cartella.Diario.HaErrori()) << testo;
    EXPECT_TRUE(Utf8Valido(cartella.Messaggi())) << testo;
  }
}

// Of the bytes that were read, the byte order mark with them; the files in the order of their names.
TEST(Lettura, ImpronteDeiFileLetti) {
  CartellaProva cartella;
  cartella.Leggi(kTesta, "\xEF\xBB\xBF" + kPunti, kOss + '\x1A');
  const auto rete = LeggiRete(cartella.Percorso / "rete.toml", cartella.Diario, true);
  ASSERT_TRUE(rete) << cartella.Messaggi();
  const std::vector<std::string> attese = {Impronta(kTesta), Impronta("\xEF\xBB\xBF" + kPunti),
                                           Impronta(kOss + '\x1A')};
  EXPECT_EQ(rete->Impronte, attese);
  EXPECT_TRUE(rete->NomiFile[1].ends_with("punti.csv"));
}

TEST(Numeri, LettiPerInteroEScrittiSenzaPerdite) {
  constexpr EsitoNumero kSi = EsitoNumero::Valido, kNo = EsitoNumero::NonNumero,
                        kMille = EsitoNumero::Migliaia, kOltre = EsitoNumero::NonFinito;
  const struct {
    std::string_view Testo;
    bool Virgola;
    EsitoNumero Esito;
    double Valore;
  } casi[] = {
      {"12.5", false, kSi, 12.5},   {"-0,25", true, kSi, -0.25},
      {"+3", false, kSi, 3},        {"1e5", true, kSi, 1e5},
      {".5", false, kSi, 0.5},      {"12,5", false, EsitoNumero::Virgola, 0},
      {"1.500,5", true, kMille, 0}, {"1.500.100", false, kMille, 0},
      {"1 500", true, kMille, 0},   {"1'500,5", false, kMille, 0},
      {"inf", false, kOltre, 0},    {"1e999", true, kOltre, 0},
      {"12.5m", true, kNo, 0},      {"", false, kNo, 0},
      {"+-3", false, kNo, 0},       {"0x1", true, kNo, 0},
  };
  for (const auto& caso : casi) {
    const NumeroLetto letto = LeggiNumero(caso.Testo, caso.Virgola);
    EXPECT_EQ(letto.Esito, caso.Esito) << caso.Testo;
    EXPECT_TRUE(caso.Esito != kSi || letto.Valore == caso.Valore) << caso.Testo;
  }
  EXPECT_EQ(NumeroFisso(-1.7e308, 4).size(), 1u + 309u + 5u);
  EXPECT_EQ(LeggiNumero(NumeroBreve(0.1 + 0.2)).Valore, 0.1 + 0.2);
}

TEST(Codifica, AndataERitorno) {
  std::string tutti = "\x80\xE0";
  EXPECT_EQ(DaWindows1252(tutti), "€à");
  for (int c = 0; c < 256; ++c) tutti += static_cast<char>(c);
  EXPECT_EQ(InWindows1252(DaWindows1252(tutti)), tutti);
  for (const char* rotto : {"\xC3", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\x80",
                            "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80"})
    EXPECT_FALSE(Utf8Valido(rotto)) << rotto;
}

// The warnings on a network, "riga: motivo", one a line.
std::string Avvisi(const std::string& testo) {
  CartellaProva cartella;
  std::optional<Rete> rete = cartella.Leggi(testo);
  if (!rete) return cartella.Messaggi();
  const TVettCr<TCoorCr> punti(rete->Punti);
  const TVettCr<TStaCr> stazioni(rete->Stazioni);
  Rapporto rapporto;
  const CalcCmpRigVelid1 calcolo(&rete->Opzioni, &punti, &stazioni, &rete->CurvaturaRifrazione,
                                 &rapporto);
  AvvisaRecordIgnorati(*rete, cartella.Diario);
  std::string avvisi;
  for (const Messaggio& m : cartella.Diario.Messaggi()) {
    avvisi += std::to_string(m.Riga) + ": " + m.Cosa.Problema + '\n';
  }
  return avvisi;
}

// A change to the network, and the line and a part of each warning that it must give.
struct CasoAvvisi {
  std::string_view Da, A;
  std::vector<std::pair<std::string_view, std::string_view>> Attesi;
};

const CasoAvvisi kCasi[] = {
    {"", "", {}},
    {", zenit = 100, segnale = 1.5, distanza = 900", "", {}},
    {", zenit = 100", "", {{"19: ", "distanza senza zenit"}}},
    {", segnale = 1.5", "", {{"19: ", "zenit senza altezza del segnale: "}}},
    {", distanza = 900", "", {{"19: ", "zenit senza distanza: "}}},
    {"direzione = 0, zenit = 100, segnale = 1.5, distanza = 900",
     "segnale = 1",
     {{"14: ", "una sola direzione utilizzabile (verso \"Città\")"},
      {"19: ", "non ha né direzione né zenit né distanza"}}},
    {"punto = 12",
     "punto = \"D\"",
     {{"22: ", "una sola direzione"},
      {"28: ", "è escluso dalla planimetria; il punto osservato è escluso dall'altimetria"}}},
    {"punto = \"Città\"\n",
     "punto = \"D\"\n",
     {{"22: ",
       "è escluso dalla planimetria: le sue osservazioni non vi entrano; il punto è escluso "
       "dall'altimetria"}}},
    {"altezza = 1.5\n", "", {{"14: ", "manca l'altezza dello strumento"}}},
    {", quota = 12 ",
     " ",
     {{"5: ", "manca la quota"}, {"20: ", "osservato è escluso"}, {"22: ", "il punto è escluso"}}},
    {"est = 500.25, nord = 600",
     "nord = 600",
     {{"5: ", "mancano le coordinate est e nord"},
      {"14: ", "una sola direzione"},
      {"20: ", "è escluso dalla planimetria; mancano le coordinate est e nord di un estremo"},
      {"22: ", "il punto è escluso dalla planimetria"},
      {"27: ", "mancano le coordinate"},
      {"28: ", "mancano le coordinate"}}},
    {"planimetria = \"escluso\"", "planimetria = \"fisso\"", {{"6: ", "fisso che nessuna"}}},
    {"direzione = 10, zenit = 101, segnale = 1.8, distanza = 781, tipo = \"Inclinata\"",
     "direzione = 0, zenit = 101, segnale = 1.8, distanza = 781, tipo = 20",
     {{"27: ", "fuori centro con direzione 0"}, {"28: ", "segue, nella stazione"}}},
    {"est = 500.25, nord = 600", "est = 900, nord = 0.00001", {{"28: ", "le stesse coordinate"}}},
    {"zenit = 101", "zenit = 301", {{"27: ", "oltre 200 gon"}}},
    {"", "[[stazioni]]\npunto = 12\n", {{"30: ", "non ha osservazioni"}}},
    {"",
     "[[stazioni]]\npunto = 12\naltezza = 1\naltezza_nota = false\nosservazioni = [{ punto = "
     "\"A\", direzione = 1 }, { punto = \"Città\", direzione = 50 }]\n",
     {{"30: ", "nessuna visuale in quota la determina"}}},
};

TEST(Avvisi, UnoPerRecordConIlMotivo) {
  for (const CasoAvvisi& caso : kCasi) {
    const std::string tutti = Avvisi(Cambia(kRete, caso.Da, caso.A));
    std::string avvisi = '\n' + tutti;
    for (const auto& [riga, testo] : caso.Attesi) {
      const std::size_t dove = avvisi.find('\n' + std::string(riga));
      ASSERT_NE(dove, std::string::npos) << caso.A << '\n' << tutti;
      const std::size_t fine = avvisi.find('\n', dove + 1);
      EXPECT_NE(avvisi.substr(dove, fine - dove).find(testo), std::string::npos) << tutti;
      avvisi.erase(dove, fine - dove);
    }
    EXPECT_EQ(avvisi, "\n") << caso.A;
  }
}

TEST(Avvisi, SoloDiCioCheSiCalcola) {
  const std::string pianta = Cambia(kRete, "[opzioni]", "[opzioni]\ncalcolo = \"planimetria\"");
  EXPECT_EQ(Avvisi(Cambia(Cambia(pianta, "altezza = 1.5\n", ""), ", segnale = 1.5", "")), "");
  EXPECT_EQ(Avvisi(Cambia(pianta, ", quota = 12 ", " ")), "");
  const std::string quote = Cambia(pianta, "\"planimetria\"", "\"altimetria\"");
  EXPECT_EQ(Avvisi(Cambia(quote, "direzione = 350, ", "")), "");
  EXPECT_EQ(Avvisi(Cambia(quote, ", zenit = 99", "")).find("21: visuale in quota senza zenit"), 0u);
}

}  // namespace
