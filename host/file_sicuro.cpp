// Atomic files: a temporary file in the target's folder, and the signals that must not leave it
// there.

#include "host/file_sicuro.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <utility>

#include "host/diagnostica.h"
#include "host/errori.h"
#include "host/numeri.h"

namespace {

constexpr int kCollegamentiMassimi = 40;
constexpr int kTentativi = 1000;         // names for a temporary file
constexpr mode_t kPermessiNuovo = 0666;  // less what the user's mask takes away
constexpr mode_t kPermessi = 07777;
constexpr std::size_t kPercorsoMassimo = 4096;
constexpr int kSegnali[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

// What the signal handler may touch: paths of the temporary files, in storage that never moves.
struct PostoTemporaneo {
  std::atomic<bool> Occupato = false;
  std::array<char, kPercorsoMassimo> Percorso{};
};
static_assert(std::atomic<bool>::is_always_lock_free);
std::array<PostoTemporaneo, 16> posti;

extern "C" void RimuoviTemporanei(int segnale) {
  for (PostoTemporaneo& posto : posti)
    if (posto.Occupato.load()) unlink(posto.Percorso.data());
  std::signal(segnale, SIG_DFL);
  raise(segnale);
}

// Holds back the signals above while a temporary file is neither here nor there.
class SegnaliSospesi {
 public:
  SegnaliSospesi() {
    sigset_t insieme;
    sigemptyset(&insieme);
    for (const int segnale : kSegnali) sigaddset(&insieme, segnale);
    sigprocmask(SIG_BLOCK, &insieme, &Prima);
  }
  ~SegnaliSospesi() { sigprocmask(SIG_SETMASK, &Prima, nullptr); }
  SegnaliSospesi(const SegnaliSospesi&) = delete;
  SegnaliSospesi& operator=(const SegnaliSospesi&) = delete;

 private:
  sigset_t Prima;
};

// Registers a temporary file. Returns its place, or -1 if there is none: then only the destructor
// removes the file.
int Registra(const std::string& percorso) {
  if (percorso.size() >= kPercorsoMassimo) return -1;
  const auto posto = std::ranges::find_if(posti, [](auto& p) { return !p.Occupato.load(); });
  if (posto == posti.end()) return -1;
  std::ranges::copy(percorso, posto->Percorso.begin());
  posto->Percorso[percorso.size()] = '\0';
  posto->Occupato = true;
  return static_cast<int>(posto - posti.begin());
}

// The descriptor that a path stands for: "-", /dev/stdout and so on; -1 for any other path.
int DescrittoreNominato(const std::string& percorso) {
  if (percorso == "-" || percorso == "/dev/stdout") return STDOUT_FILENO;
  if (percorso == "/dev/stderr") return STDERR_FILENO;
  for (const std::string_view cartella : {"/dev/fd/", "/proc/self/fd/"}) {
    if (!percorso.starts_with(cartella)) continue;
    return LeggiIntero(std::string_view(percorso).substr(cartella.size())).value_or(-1);
  }
  return -1;
}

bool EsisteNonRegolare(const std::string& percorso) {
  struct stat stato {};
  return stat(percorso.c_str(), &stato) == 0 && !S_ISREG(stato.st_mode);
}

}  // namespace

std::string DestinazioneFinale(const std::string& percorso) {
  std::filesystem::path finale = percorso;
  std::error_code guasto;
  for (int i = 0; i < kCollegamentiMassimi && std::filesystem::is_symlink(finale, guasto); ++i) {
    const std::filesystem::path prossimo = std::filesystem::read_symlink(finale, guasto);
    if (guasto) break;
    finale = finale.parent_path() / prossimo;  // an absolute one stands for itself
  }
  return finale.string();
}

std::string IdentitaFile(const std::string& percorso) {
  struct stat stato {};
  if (DescrittoreNominato(percorso) >= 0) return {};
  if (stat(percorso.c_str(), &stato) == 0) {
    if (!S_ISREG(stato.st_mode)) return {};
    return std::to_string(stato.st_dev) + ":" + std::to_string(stato.st_ino);
  }
  std::error_code guasto;
  const auto assoluto = std::filesystem::absolute(DestinazioneFinale(percorso), guasto);
  return std::filesystem::weakly_canonical(assoluto, guasto).string();
}

bool StessoFile(const std::string& a, const std::string& b) {
  const std::string chi = IdentitaFile(a);
  return !chi.empty() && chi == IdentitaFile(b);
}

void PreparaSegnali() {
  for (const int segnale : kSegnali) {
    struct sigaction azione {};
    if (sigaction(segnale, nullptr, &azione) != 0 || azione.sa_handler == SIG_IGN) continue;
    azione = {};
    azione.sa_handler = RimuoviTemporanei;
    sigfillset(&azione.sa_mask);
    sigaction(segnale, &azione, nullptr);
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

FileSicuro::FileSicuro(std::string percorso)
    : Percorso(std::move(percorso)), Mostrato(Cita(Percorso)) {
  Descrittore = DescrittoreNominato(Percorso);
  if (Descrittore >= 0) {
    if (Descrittore == STDOUT_FILENO) Mostrato = kNomeUscita;
    return;
  }
  if (EsisteNonRegolare(Percorso))
    ApriDiretto();
  else
    ApriTemporaneo();
}

FileSicuro::FileSicuro(FileSicuro&& altro) noexcept
    : Percorso(std::move(altro.Percorso)),
      Mostrato(std::move(altro.Mostrato)),
      Bersaglio(std::move(altro.Bersaglio)),
      Temporaneo(std::exchange(altro.Temporaneo, {})),
      Posto(std::exchange(altro.Posto, -1)),
      Descrittore(std::exchange(altro.Descrittore, -1)),
      Proprio(std::exchange(altro.Proprio, false)) {}

FileSicuro::~FileSicuro() {
  if (Proprio) close(Descrittore);
  const SegnaliSospesi sospesi;
  if (!Temporaneo.empty()) unlink(Temporaneo.c_str());
  if (Posto >= 0) posti[static_cast<std::size_t>(Posto)].Occupato = false;
}

void FileSicuro::ApriDiretto() {
  Descrittore = open(Percorso.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
  if (Descrittore < 0) throw ErroreUscita("aprire", Mostrato, errno);
  Proprio = true;
}

void FileSicuro::ApriTemporaneo() {
  Bersaglio = DestinazioneFinale(Percorso);
  struct stat stato {};
  const bool esiste = stat(Bersaglio.c_str(), &stato) == 0;
  if (esiste && access(Bersaglio.c_str(), W_OK) != 0)
    throw ErroreUscita("scrivere", Mostrato, errno);
  const auto cartella = std::filesystem::path(Bersaglio).parent_path();
  const SegnaliSospesi sospesi;
  for (int i = 0; i < kTentativi && Descrittore < 0; ++i) {
    const std::string nome =
        ".compensa-" + std::to_string(getpid()) + "-" + std::to_string(i) + ".tmp";
    Temporaneo = (cartella / nome).string();
    Descrittore = open(Temporaneo.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kPermessiNuovo);
    if (Descrittore < 0 && errno != EEXIST) break;
  }
  if (Descrittore < 0) {
    Temporaneo.clear();
    throw ErroreUscita("scrivere", Mostrato, errno);
  }
  Proprio = true;
  Posto = Registra(Temporaneo);
  if (!esiste) return;
  // Ownership first: changing it takes special permissions away.
  if (fchown(Descrittore, stato.st_uid, stato.st_gid) != 0 && stato.st_gid != getegid())
    stato.st_mode &= ~static_cast<mode_t>(S_ISGID | S_IRWXG);
  fchmod(Descrittore, stato.st_mode & kPermessi);
}

void FileSicuro::Scrivi(std::string_view byte) {
  while (!byte.empty()) {
    const ssize_t scritti = write(Descrittore, byte.data(), byte.size());
    if (scritti < 0 && errno == EINTR) continue;
    if (scritti < 0) throw ErroreUscita("scrivere", Mostrato, errno);
    byte.remove_prefix(static_cast<std::size_t>(scritti));
  }
}

void FileSicuro::Conferma() {
  if (Temporaneo.empty()) return Chiudi();
  if (fsync(Descrittore) != 0 && errno != EINVAL) throw ErroreUscita("scrivere", Mostrato, errno);
  Chiudi();
  const SegnaliSospesi sospesi;
  if (rename(Temporaneo.c_str(), Bersaglio.c_str()) != 0)
    throw ErroreUscita("scrivere", Mostrato, errno);
  Temporaneo.clear();
}

void FileSicuro::Chiudi() {
  if (!std::exchange(Proprio, false)) return;
  if (close(Descrittore) != 0) throw ErroreUscita("scrivere", Mostrato, errno);
}
