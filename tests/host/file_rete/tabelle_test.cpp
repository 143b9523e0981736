// Field books in tables: what cadastral booklets, CSV books and tables of coordinates become, and
// what is said of the traps in them.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>

#include "host/base/codifica.h"
#include "host/base/numeri.h"
#include "host/file_rete/csv.h"
#include "host/file_rete/lettura_rete.h"
#include "host/importazione/csv/coordinate_csv.h"
#include "host/importazione/lettore.h"

using namespace compensa;

namespace {

std::string Carica(const std::filesystem::path& percorso) {
  std::ifstream file(percorso, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}
const std::filesystem::path kSemi = CARTELLA_SEMI;

std::string Valore(std::optional<double> valore) { return valore ? NumeroBreve(*valore) : "-"; }

// All that was read, on one line: points, set-ups with their shots, counts, messages.
std::string Testo(const Libretto& libretto, const Diagnostica& diario) {
  std::string t;
  for (const PuntoLibretto& p : libretto.Punti) {
    t += p.Nome + '(' + Valore(p.Est) + ' ' + Valore(p.Nord) + ' ' + Valore(p.Quota) + ')';
    if (p.Ruoli.Pla) t += 'p' + std::to_string(*p.Ruoli.Pla);
    if (p.Ruoli.Alt) t += 'q' + std::to_string(*p.Ruoli.Alt);
  }
  for (const PostazioneLibretto& s : libretto.Postazioni) {
    t += '@' + s.Punto + ' ' + Valore(s.Altezza);
    for (const BattutaLibretto& b : s.Battute) {
      t += ';' + b.Punto + "?12"[static_cast<int>(b.Lato)] + ' ' + Valore(b.Direzione) + ' ' +
           Valore(b.Zenit) + ' ' + Valore(b.Distanza) + '/' + std::to_string(b.TipoDist) + ' ' +
           Valore(b.Segnale);
      if (b.SqmDirezione) t += " s" + Valore(b.SqmDirezione) + ' ' + Valore(b.SqmDistanza);
    }
  }
  for (const Tralasciati& e : libretto.Esclusi)
    t += '#' + std::to_string(e.Quanti) + ' ' + e.Genere + ':' + std::to_string(e.PrimaRiga);
  for (const std::string& riga : diario.Righe()) t += '!' + riga;
  return t;
}

// A text and how it is read. Opzioni: n, e = axes; d, c, p = degrees, with minutes packed or
// parted; m, t = Altro is the map or the table of coordinates.
struct Caso {
  std::string Testo, Opzioni, Altro;
};

std::string Leggi(const Caso& caso, const Lettore& lettore) {
  static const std::string nome =
      std::filesystem::temp_directory_path() / ("compensa-tabelle-" + std::to_string(getpid()));
  std::ofstream(nome, std::ios::binary) << caso.Altro;
  OpzioniLettura o;
  for (const char c : caso.Opzioni) {
    if (c == 'n' || c == 'e') o.AssiXY = c == 'n' ? Assi::NordEst : Assi::EstNord;
    if (c == 'd') o.Angoli = UnitaAngoli::GradiDecimali;
    if (c == 'c') o.Angoli = UnitaAngoli::GradiCompatti;
    if (c == 'p') o.Angoli = UnitaAngoli::GradiPrimi;
    if (c == 'm') o.Mappa = nome;
  }
  Libretto libretto;
  Diagnostica diario;
  lettore.Leggi(caso.Testo, libretto.NomiFile.emplace_back("f"), o, libretto, diario);
  if (caso.Opzioni == "t") LeggiCoordinateCsv(nome, o.AssiXY, libretto, diario);
  std::filesystem::remove(nome);
  return Testo(libretto, diario);
}

// Whether a text is the one awaited, or holds all its parts: they stand behind "…", parted by "|".
bool Corrisponde(const std::string& letto, std::string_view atteso) {
  constexpr std::string_view kParti = "…";
  if (!atteso.starts_with(kParti)) return letto == atteso;
  for (std::size_t da = kParti.size(), fine; da <= atteso.size(); da = fine + 1) {
    fine = std::min(atteso.find('|', da), atteso.size());
    if (letto.find(atteso.substr(da, fine - da)) == std::string::npos) return false;
  }
  return true;
}

// A field of the table of cases: its escapes undone, or the seed that it names.
std::string Campo(std::istream& riga) {
  std::string campo, testo;
  std::getline(riga, campo, '\t');
  if (campo.starts_with('<')) return Carica(kSemi / campo.substr(1));
  for (std::size_t i = 0; i < campo.size(); ++i) {
    const std::size_t quale = campo[i] == '\\' ? std::string_view("nrt").find(campo[i + 1]) : 3;
    testo += quale < 3 ? "\n\r\t"[quale] : campo[i];
    if (quale < 3) ++i;
  }
  return testo;
}

// Each line of the table: text, what it gives, options, other file; a line that begins with a blank
// field names the reader of those below it, which recognises them unless they need a map.
TEST(Tabelle, OgniRigaDaISuoiValoriOIlSuoMessaggio) {
  std::ifstream casi(std::filesystem::path(CARTELLA_DATI) / "tabelle.txt");
  const Lettore* lettore = nullptr;
  int quanti = 0;
  for (std::string linea; std::getline(casi, linea); ++quanti) {
    std::istringstream riga(linea);
    const std::string testo = Campo(riga), atteso = Campo(riga), opzioni = Campo(riga);
    if (testo.empty()) {
      lettore = LettoreDiNome(atteso);
      continue;
    }
    const Caso caso{testo, opzioni, Campo(riga)};
    EXPECT_TRUE(opzioni == "m" || RiconosciFormato(testo) == lettore) << linea;
    const std::string letto = Leggi(caso, *lettore);
    EXPECT_TRUE(Corrisponde(letto, atteso)) << linea << '\n' << letto;
  }
  EXPECT_GT(quanti, 50);
}

// No spreadsheet takes a written name for a formula, and every reader of tables gives it back.
TEST(Tabelle, NomiCheSembranoFormule) {
  const std::pair<const char*, const char*> casi[] = {
      {"=HYPERLINK(\"http://x\",\"a;b\")", "\"'=HYPERLINK(\"\"http://x\"\",\"\"a;b\"\")\""},
      {"=cmd|' /C calc'!A0", "'=cmd|' /C calc'!A0"},
      {"@SUM(1)", "'@SUM(1)"},
      {"+1", "'+1"},
      {"-", "'-"},
      {"'", "''"},
      {"'A", "''A"},
      {"''=1", "'''=1"},
      {"A=1", "A=1"},
      {"a\"b", "\"a\"\"b\""}};
  std::string tabella = "nome;est;nord\n", letture = "stazione;punto;direzione\n";
  for (const auto& [nome, scritto] : casi) {
    EXPECT_EQ(NomeInCsv(nome), scritto);
    tabella += NomeInCsv(nome) + ";1;2\n";
    letture +=
        NomeInCsv(nome) + ';' + NomeInCsv(casi[nome == casi[0].first ? 1 : 0].first) + ";5\n";
  }
  EXPECT_EQ(NomeInCsv("\t=1") + NomeInCsv("\rA"), "\"'\t=1\"\"'\rA\"");
  const auto cartella =
      std::filesystem::temp_directory_path() / ("nomi-" + std::to_string(getpid()));
  std::filesystem::create_directory(cartella);
  std::ofstream(cartella / "punti.csv") << tabella;
  std::ofstream(cartella / "rete.toml") << "formato = 1\npunti = 'punti.csv'\nosservazioni = "
                                           "'oss.csv'\n[opzioni]\nsqm_direzione = 0.001\n";
  std::ofstream(cartella / "oss.csv") << letture;
  Libretto libro;
  Diagnostica diario;
  EXPECT_TRUE(LeggiCoordinateCsv(cartella / "punti.csv", {}, libro, diario));
  const auto rete = LeggiRete(cartella / "rete.toml", diario);
  std::filesystem::remove_all(cartella);
  ASSERT_TRUE(rete) << Testo(libro, diario);
  ASSERT_EQ(rete->Nomi.size(), std::size(casi));
  for (std::size_t i = 0; i < std::size(casi); ++i) {
    EXPECT_EQ(rete->Nomi[i], casi[i].first);
    EXPECT_EQ(rete->Stazioni.at(i).Punto, static_cast<int>(i));
    EXPECT_EQ(libro.Punti.at(i).Nome, casi[i].first);
  }
}

TEST(Tabelle, ByteQualsiasiNonFermanoLaLettura) {
  std::mt19937 motore(7);
  const std::string_view pezzi[] = {"|", "\n2|", "\"", ";;", "\xFF", "nan", "1,2,3", "\r", "-"};
  std::set<std::string> semi;
  for (const auto& voce : std::filesystem::recursive_directory_iterator(kSemi))
    if (voce.is_regular_file()) semi.insert(Carica(voce.path()));
  for (int giro = 0; giro < 60; ++giro) {
    for (std::string testo : semi) {
      for (unsigned n = 1 + motore() % 4; n > 0; --n)
        testo.replace(motore() % testo.size(), motore() % 4, pezzi[motore() % std::size(pezzi)]);
      const Caso caso{testo, std::string(1, "nxmtd"[motore() % 5]), testo};
      for (const Lettore* lettore : {&kLettoreCatasto, &kLettoreCampagna})
        EXPECT_TRUE(Utf8Valido(Leggi(caso, *lettore)) || !Utf8Valido(testo)) << testo;
    }
  }
}

}  // namespace
