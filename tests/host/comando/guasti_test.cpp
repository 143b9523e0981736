// What happens outside the network: no memory, no room on the disk, folders that vanish, signals.
// In every case the status tells, no temporary file stays, and every output is what it was before or
// all of the new one.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <new>
#include <thread>

#include "host/comando/esecuzione.h"
#include "tests/comuni/rete_prova.h"

using namespace compensa;

#ifdef __has_feature  // of clang
#if __has_feature(address_sanitizer)
#define __SANITIZE_ADDRESS__
#endif
#endif
#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>

constexpr bool kSanitizzatore = true;
bool Perdite() { return __lsan_do_recoverable_leak_check() != 0; }
// The JSON library loses nodes when memory fails it in the middle of a list; the program ends then.
extern "C" const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() { return "leak:nlohmann::"; }
#else
constexpr bool kSanitizzatore = false;
bool Perdite() { return false; }
#endif

namespace {

// Allocations until one fails; that one alone, or all from there on. 0 = none fails.
long mancano = 0;
bool finita = false;
bool fallita = false;  // whether one has

}  // namespace

void* operator new(std::size_t byte) {
  if (mancano > 0 && --mancano == 0) {
    mancano = finita ? 1 : 0;
    fallita = true;
    throw std::bad_alloc();
  }
  if (void* dove = std::malloc(byte + 1)) return dove;
  throw std::bad_alloc();
}
void* operator new(std::size_t byte, const std::nothrow_t& /*senza*/) noexcept {
  try {
    return operator new(byte);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t& /*senza*/) noexcept { std::free(p); }
void operator delete(void* p, std::size_t /*byte*/) noexcept { std::free(p); }

namespace {

namespace fs = std::filesystem;
using Uscita = std::tuple<int, std::string, std::string>;  // status and the two outputs

class Guasti : public testing::Test {
 protected:
  Guasti() {
    fs::copy(CARTELLA_ESEMPI, Luogo, fs::copy_options::recursive);
    setenv("SOURCE_DATE_EPOCH", "1700000000", 1);
  }
  ~Guasti() override { fs::remove_all(Luogo); }

  // A shell command where the examples are; $C is the program, $S writes a synthetic network.
  Uscita Esegui(const std::string& comando) const {
    const std::string intero = "cd '" + Luogo.string() +
                               "' && C='" COMPENSA "' S='" SCRIVI_RETE "' && { " + comando +
                               "\n} > uscita.out 2> uscita.err";
    const int stato = std::system(intero.c_str());
    return {WIFEXITED(stato) ? WEXITSTATUS(stato) : -1, LeggiFile(Luogo / "uscita.out"),
            LeggiFile(Luogo / "uscita.err")};
  }

  bool Temporanei() const {
    const fs::recursive_directory_iterator voci(Luogo);
    return std::any_of(begin(voci), end(voci), [](const fs::directory_entry& voce) {
      return voce.path().filename().string().starts_with(".compensa-");
    });
  }

  const fs::path Luogo =
      fs::temp_directory_path() / ("compensa-guasti-" + std::to_string(getpid()));
};

// --- memory

// The whole program in a copy of this process; its standard streams go into a file. The last value
// tells whether it came to the allocation that fails.
std::tuple<int, std::string, bool> Chiama(std::vector<const char*> parole, long quale, bool tutte) {
  constexpr int kNonArrivato = 100;
  const pid_t figlio = fork();
  if (figlio == 0) {
    const int registro = open("registro", O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0600);
    for (const int i : {1, 2}) dup2(registro, i);
    finita = tutte;
    mancano = quale;
    const int stato = Programma(static_cast<int>(parole.size()), parole.data());
    mancano = 0;
    _exit(Perdite() ? 99 : stato == 0 && !fallita ? kNonArrivato : stato);
  }
  int stato = 0;
  waitpid(figlio, &stato, 0);
  const int uscita = WIFEXITED(stato) ? WEXITSTATUS(stato) : -1;
  return {uscita == kNonArrivato ? 0 : uscita, LeggiFile("registro"), uscita != kNonArrivato};
}

TEST_F(Guasti, OgniAllocazione) {
  const std::vector<const char*> kRighe[] = {
      {"", "zeman.toml", "-ou/", "--html=u/", "--csv=u/", "--dxf=u/", "--gpkg=u/", "--json=u/"},
      {"", "zeman.toml", "stazione_libera.toml", "-q", "-o", "u/", "--gkf", "u/"},
      {"", "importa", "zeman.gkf", "--ignora-non-supportati", "-o", "u/r.toml"},
      {"", "verifica", "zeman.toml", "stazione_libera.toml"},
      {"", "genera", "man1"}};
  ASSERT_EQ(std::get<0>(Esegui("$C zeman.toml -q --gkf && mkdir u")), 0);
  fs::current_path(Luogo);
  for (const auto& riga : kRighe)
    for (const bool tutte : {false, true}) {
      std::ptrdiff_t attesi = 0;
      bool arrivato = true;
      for (long n = 0; arrivato; n += 1 + n / (kSanitizzatore ? 3 : 6)) {
        SCOPED_TRACE(testing::Message() << riga[1] << ", allocation " << n << (tutte ? " on" : ""));
        fs::remove_all("u");
        fs::create_directory("u");
        const auto [stato, messaggi, arriva] = Chiama(riga, n, tutte);
        arrivato = arriva || n == 0;
        const auto file = std::distance(fs::directory_iterator("u"), fs::directory_iterator());
        if (n == 0) attesi = file;
        EXPECT_FALSE(Temporanei());
        // It can come through without, and of two networks one can.
        EXPECT_TRUE(stato == 0 ? file == attesi : file == 0 || riga[2][0] == 's') << file;
        ASSERT_TRUE(stato == 0 || (stato == 4 && messaggi.find("memoria ins") != messaggi.npos))
            << stato << messaggi;
      }
    }
  fs::current_path("/");
}

// --- disks and folders

constexpr const char* kPrima =
    "rm -rf u p; mkdir u; Z=\"$C zeman.toml -q\"; P=Prepara; cp '" CARTELLA_ESEMPI
    "/'*.csv .\n"
    "Prepara() { mkfifo p; $Z -o u/r.txt --json p & for i in $(seq 100); do "
    "ls u/.comp* 2> n && break; sleep 0.1; done; }\n";

const struct CasoDisco {
  const char* Comando;
  int Stato;
  const char *Testo, *Errori;  // a piece of each; empty = nothing at all is written
} kDischi[] = {
    {"ulimit -f 8; for o in -o --html --csv --dxf --gpkg --gkf --json; do $Z $o u/; echo $?; done",
     0, "4\n4\n4\n4\n4\n4\n4\n", "zeman.punti.csv\": il file supera la grandezza"},
    {"ulimit -f 8; $C importa zeman.gkf --ignora-non-supportati -o u/r.toml", 4, "",
     "supera la grandezza"},
    {"echo vecchio > u/zeman.json; ulimit -f 250; $Z -o u/ --json u/ --dxf u/; ls u; cat u/*", 0,
     "zeman.json\nvecchio\n", "zeman.dxf\": il file supera"},
    {"ulimit -f 20; $C zeman.toml stazione_libera.toml -q -o u/", 4, "e_libera.toml", "supera"},
    {"$Z -o u/r.txt --json /dev/full; ls -A u", 0, "", "\"/dev/full\": spazio esaurito"},
    {"$Z -o u/r.txt --json - > /dev/full; cmp u/r.txt zeman.r*.txt && echo r", 0, "r\n",
     "esaurito"},
    {"$C zeman.toml -o u/r.txt 2> /dev/full; cmp u/r.txt zeman.rapporto.txt", 0, "", ""},
    {"unshare -rm true || { echo 4; echo pieno; echo spazio esaurito >&2; exit 0; }\n"
     "export C; unshare -rm sh -c 'mount -t tmpfs -o size=64k t u; $C zeman.toml -q -o u/r.txt "
     "--csv u/ --html u/; echo $?; ls -A u; echo pieno'",
     0, "4\npieno\n", "spazio esaurito"},
    // Between the opening of the outputs and their names: a pipe that nobody reads yet.
    {"$P; rm -r u; mkdir u; cat p > n; wait $!; echo $?; ls -A u", 0, "4\n",
     "non si può scrivere \"u/r.txt\": la cartella non esiste"},
    {"$P; mkdir u/r.txt; cat p > n; wait $!; echo $?; ls -A u", 0, "4\nr.txt\n", "è una cartella"},
    {"echo v > u/a; mkfifo p; $Z -o u/a --html u/b --dxf u/c --json p & for i in $(seq 100); do "
     "ls u/.*-2.tmp 2> n && break; sleep 0.1; done; mkdir u/c; cat p > n; wait $!; echo $?; cat "
     "u/a; "
     "ls -A u",
     0, "4\nv\na\nc\n", "\"u/c\": è una cartella"},
    {"$P; head -c 9 p > n; wait $!; echo $?; ls -A u", 0, "4\n", ""},
    {"$P; kill -HUP $!; { wait $!; } 2> n; echo $?; ls -A u", 0, "129\n", ""},
    // From what the loader alone needs to what the run does.
    {"$S 600 g; for k in $(seq 80 3 2000); do (ulimit -v ${k}00; $C --versione || exit 9\n"
     "$C g/rete.toml -q -o u/ --html u/ --gpkg u/ 2> e ) > n 2>&1; s=$?; [ $s = 0 ] && break\n"
     "[ $s = 9 ] || { grep -q 'memoria insuff' e || cat e; ls -A u; echo $s; }; done | uniq > t\n"
     "test \"$(cat t)\" = 4 && echo solo 4 || cat t",
     0, "solo 4\n", ""},
    {"rm zeman_punti.csv; $Z -o u/r.txt", 3, "", "\"zeman_punti.csv\" non esiste"},
};

TEST_F(Guasti, DischiECartelle) {
  ASSERT_EQ(std::get<0>(Esegui("$C zeman.toml -q --gkf")), 0);
  for (const CasoDisco& caso : kDischi) {
    SCOPED_TRACE(caso.Comando);
    if (kSanitizzatore && std::string_view(caso.Comando).find("ulimit -v") != std::string::npos)
      continue;  // the sanitizer takes the whole address space for itself
    const auto [stato, testo, errori] = Esegui(std::string(kPrima) + caso.Comando);
    EXPECT_EQ(stato, caso.Stato);
    EXPECT_FALSE(Temporanei());
    EXPECT_TRUE(*caso.Testo ? testo.find(caso.Testo) != testo.npos : testo.empty()) << testo;
    EXPECT_TRUE(*caso.Errori ? errori.find(caso.Errori) != errori.npos : errori.empty()) << errori;
  }
}

// --- signals

TEST_F(Guasti, SegnaliInOgniMomento) {
  constexpr int kVolte = 36;
  constexpr int kSegnali[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGXCPU, SIGALRM, SIGUSR1};
  const char* const kUscite[] = {"u/rete.txt", "u/rete.html", "u/rete.json", "u/rete.dxf"};
  const std::string comando = "cd '" + Luogo.string() +
                              "'; exec '" COMPENSA
                              "' g/rete.toml -q -o u/ --html u/ --json u/ --dxf u/";
  ASSERT_EQ(std::get<0>(Esegui("$S 400 g && mkdir u")), 0);
  const auto inizio = std::chrono::steady_clock::now();
  ASSERT_EQ(std::get<0>(Esegui("( " + comando + " )")), 0);
  const auto durata = std::chrono::steady_clock::now() - inizio;
  std::vector<std::string> nuovi;
  for (const char* uscita : kUscite) nuovi.push_back(LeggiFile(Luogo / uscita));

  Caso caso(1);
  int uccisi = 0;
  for (int i = 0; i < kVolte; ++i) {
    const int segnale = kSegnali[i % std::size(kSegnali)];
    SCOPED_TRACE(testing::Message() << "signal " << segnale << ", time " << i);
    Esegui("for f in txt html json dxf; do echo vecchio > u/rete.$f; done");
    const pid_t figlio = fork();
    if (figlio == 0) {
      execl("/bin/sh", "sh", "-c", comando.c_str(), nullptr);
    }
    std::this_thread::sleep_for(durata * caso.Reale(0.05, 1.0));
    kill(figlio, segnale);
    int stato = 0;
    waitpid(figlio, &stato, 0);
    const bool ucciso = WIFSIGNALED(stato);
    uccisi += ucciso ? 1 : 0;
    EXPECT_EQ(ucciso ? WTERMSIG(stato) : WEXITSTATUS(stato), ucciso ? segnale : 0);
    EXPECT_FALSE(Temporanei());
    for (std::size_t k = 0; k < nuovi.size(); ++k) {
      const std::string contenuto = LeggiFile(Luogo / kUscite[k]);
      EXPECT_TRUE(contenuto == nuovi[k] || (ucciso && contenuto == "vecchio\n"));
    }
  }
  EXPECT_GT(uccisi, kVolte / 4);
}

}  // namespace
