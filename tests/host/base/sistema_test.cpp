// What the program asks of the system: names of files, links, permissions, the time; its manual.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>

#include "host/base/data_ora.h"
#include "host/base/errori.h"
#include "host/base/file_sicuro.h"
#include "host/comando/pagine.h"
#include "host/comando/uscite_richieste.h"

using namespace compensa;

namespace {

namespace fs = std::filesystem;

std::string Contenuto(const char* nome) {
  std::ifstream file(nome, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

struct Cartella : testing::Test {  // in a folder of its own
  Cartella() { fs::create_directories(Luogo / "d"), fs::current_path(Luogo); }
  ~Cartella() override { fs::current_path(Prima), fs::remove_all(Luogo); }
  const fs::path Prima = fs::current_path(),
                 Luogo = fs::temp_directory_path() / ("sistema-" + std::to_string(getpid()));
};

// An output under the name of its option.
UscitaChiesta Uscita(std::string_view opzione, const char* valore) {
  for (const GenereUscita& genere : GeneriUscita())
    if (genere.Firma.find(opzione) != std::string_view::npos) return {&genere, valore};
  throw std::out_of_range("no such output");
}

TEST_F(Cartella, NomiDelleUscite) {
  const std::tuple<const char*, const char*, const char*, const char*> casi[] = {
      {"a.b/rete", "--gpkg", "", "a.b/rete.gpkg"},
      {"a/r.toml", "-o", "d", "d/r.txt"},
      {".toml", "--json", "", ".toml.json"},
      {"a/x.toml.toml", "--gkf", "n/", "n/x.toml.gkf"},
      {"r.toml", "--csv", "y/z.CSV", "y/z.osservazioni.csv"},
      {"r.toml", "--html", "n", "n"},
      {"r.toml", "--csv", "z.b", "z.b.osservazioni.csv"}};
  for (const auto& [rete, opzione, valore, ultima] : casi)
    EXPECT_EQ(Destinazioni({{rete, "x"}, {Uscita(opzione, valore)}}, rete).back().Percorso, ultima);
}

TEST_F(Cartella, StessoFilePerPiuVie) {
  std::ofstream("d/vecchio") << std::string(200001, 'a');
  fs::create_hard_link("d/vecchio", "duro"), fs::create_symlink("d", "d2");
  fs::create_symlink("d/nuovo", "verso"), fs::create_symlink("verso", "v2");
  const std::tuple<const char*, const char*, bool> casi[] = {
      {"d/vecchio", "duro", true},
      {"d/vecchio", "d2/../d/./vecchio", true},
      {"v2", "d2/nuovo", true},
      {"v2", "nuovo", false},
      {"/dev/null", "/dev/null", false}};
  for (const auto& [a, b, stesso] : casi)
    EXPECT_EQ(IdentitaFile(a) == IdentitaFile(b) && !IdentitaFile(a).empty(), stesso) << a;
  EXPECT_THROW(ControllaUscite({{"a/x.toml", "b/x.toml"}, {Uscita("--html", "d/")}}), ErroreUso);
  EXPECT_THROW(ControllaUscite({{"x.toml"}, {Uscita("--html", "v2"), Uscita("--json", "d/nuovo")}}),
               ErroreUso);
  EXPECT_THROW(RifiutaIngressi({{nullptr, "duro"}}, {"d/vecchio"}), ErroreUso);
}

TEST_F(Cartella, FileSicuri) {
  fs::create_symlink("d/file", "verso"), fs::create_symlink("../verso", "d/catena");
  fs::create_symlink("cane", "coda"), fs::create_symlink("coda", "cane");
  const auto scrivi = [](const char* file, bool conferma) {  // permissions, content after it
    FileSicuro aperto(file), sicuro(std::move(aperto));
    sicuro.Scrivi("ab"), sicuro.Scrivi("c");
    if (conferma) sicuro.Conferma();
    return std::pair(static_cast<int>(fs::status("d/file").permissions()), Contenuto("d/file"));
  };
  const mode_t maschera = umask(027);
  EXPECT_EQ(scrivi("d/catena", true), std::pair(0640, std::string("abc")));
  chmod("d/file", 04604);
  std::ofstream("d/file") << "vecchio";
  EXPECT_EQ(scrivi("verso", false), std::pair(04604, std::string("vecchio")));
  EXPECT_EQ(scrivi("verso", true), std::pair(0604, std::string("abc")));
  umask(maschera);
  EXPECT_THROW(scrivi("cane", true), ErroreUscita);
  EXPECT_TRUE(fs::is_symlink("verso") && fs::is_symlink("cane") && fs::is_symlink("coda"));
  EXPECT_EQ(std::distance(fs::directory_iterator("d"), {}), 2);
}

TEST(DataOra, MomentoFissato) {
  setenv("TZ", "XXX-12", 1), tzset(), unsetenv("SOURCE_DATE_EPOCH");  // 12 hours ahead of UTC
  const std::string adesso = DataOraCorrente().substr(0, 10);
  const std::pair<const char*, std::string> casi[] = {{"0", "01/01/1970 00:00"},
                                                      {"951782459", "29/02/2000 00:00"},
                                                      {"-1", "31/12/1969 23:59"},
                                                      {" 1", {}},
                                                      {"+1", {}},
                                                      {"1.0", {}},
                                                      {"0x10", {}},
                                                      {"", adesso},
                                                      {"99999999999999999999", {}},
                                                      {"9000000000000000000", {}}};
  for (const auto& [secondi, attesa] : casi) {
    setenv("SOURCE_DATE_EPOCH", secondi, 1);
    if (attesa.empty()) {
      EXPECT_THROW(DataOraCorrente(), ErroreUso) << secondi;
    } else {
      EXPECT_TRUE(DataOraCorrente().starts_with(attesa)) << secondi;
    }
  }
  setenv("TZ", "XXX+12", 1), tzset();
  unsetenv("SOURCE_DATE_EPOCH");
  EXPECT_NE(DataOraCorrente().substr(0, 10), adesso);
  unsetenv("TZ"), unsetenv("SOURCE_DATE_EPOCH"), tzset();
}

// What roff would take for a command, a quote or a dash.
TEST(Manuale, CaratteriParticolari) {
  const std::pair<const char*, const char*> casi[] = {{".a .b\n.c", "\\&.a .b\n\\&.c"},
                                                      {"'x'", "\\(aqx\\(aq"},
                                                      {"\\fB", "\\(rsfB"},
                                                      {"--a", "\\-\\-a"},
                                                      {"`^~\"", "\\(ga\\(ha\\(ti\\(dq"},
                                                      {"è𝄞", "\\[u00E8]\\[u1D11E]"}};
  for (const auto& [testo, roff] : casi) EXPECT_EQ(TestoRoff(testo), roff);
}

}  // namespace
