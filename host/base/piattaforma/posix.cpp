// The operating system on POSIX. The signal handler calls what POSIX allows there, and then lets
// the signal end the program, so that the shell sees which one it was.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "host/base/piattaforma/piattaforma.h"

namespace compensa {

namespace {

constexpr mode_t kPermessiNuovo = 0666;  // less what the user's mask takes away
constexpr mode_t kPermessi = 0777;       // a report is run as nobody else
constexpr int kSegnali[] = {SIGINT,  SIGTERM, SIGHUP,  SIGQUIT,   SIGALRM,
                            SIGUSR1, SIGUSR2, SIGXCPU, SIGVTALRM, SIGPROF};

void (*puliziaAlSegnale)() = nullptr;

extern "C" void Gestore(int segnale) {
  puliziaAlSegnale();
  std::signal(segnale, SIG_DFL);
  raise(segnale);
}

}  // namespace

void PreparaProcesso() {
  for (const int descrittore : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (fcntl(descrittore, F_GETFD) < 0) open("/dev/null", O_RDONLY);
}

std::vector<std::string> ArgomentiUtf8(int argc, const char* const* argv) {
  return {argv, argv + argc};
}

int NumeroProcesso() { return static_cast<int>(getpid()); }

void AlSegnale(void (*pulizia)()) {
  puliziaAlSegnale = pulizia;
  for (const int segnale : kSegnali) {
    struct sigaction azione {};
    if (sigaction(segnale, nullptr, &azione) != 0 || azione.sa_handler == SIG_IGN) continue;
    azione = {};
    azione.sa_handler = Gestore;
    sigfillset(&azione.sa_mask);
    sigaction(segnale, &azione, nullptr);
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

SegnaliSospesi::SegnaliSospesi() {
  sigset_t insieme, prima;
  sigemptyset(&insieme);
  for (const int segnale : kSegnali) sigaddset(&insieme, segnale);
  sigprocmask(SIG_BLOCK, &insieme, &prima);
  for (unsigned bit = 1; const int segnale : kSegnali) {
    if (sigismember(&prima, segnale) == 0) Liberi |= bit;
    bit <<= 1U;
  }
}

SegnaliSospesi::~SegnaliSospesi() {
  sigset_t insieme;
  sigemptyset(&insieme);
  for (unsigned bit = 1; const int segnale : kSegnali) {
    if ((Liberi & bit) != 0) sigaddset(&insieme, segnale);
    bit <<= 1U;
  }
  sigprocmask(SIG_UNBLOCK, &insieme, nullptr);
}

bool TerminaleCapace(int descrittore) {
  const char* terminale = std::getenv("TERM");
  return isatty(descrittore) != 0 && terminale != nullptr && std::string_view(terminale) != "dumb";
}

std::ptrdiff_t ScriviParte(int descrittore, std::string_view byte) {
  ssize_t scritti = -1;
  do scritti = write(descrittore, byte.data(), byte.size());
  while (scritti < 0 && errno == EINTR);
  return scritti;
}

int Consolida(int descrittore) { return fsync(descrittore) != 0 && errno != EINVAL ? errno : 0; }

int ChiudiDescrittore(int descrittore) { return close(descrittore) != 0 ? errno : 0; }

int ApriDispositivo(const std::filesystem::path& percorso) {
  return open(percorso.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
}

int CreaFile(const std::filesystem::path& percorso) {
  return open(percorso.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kPermessiNuovo);
}

int PermessoDiScrivere(const std::filesystem::path& percorso) {
  return access(percorso.c_str(), W_OK) != 0 ? errno : 0;
}

// Ownership first: changing it takes special permissions away.
void CopiaPermessi(int descrittore, const std::filesystem::path& da) {
  struct stat stato {};
  if (stat(da.c_str(), &stato) != 0) return;
  if (fchown(descrittore, stato.st_uid, stato.st_gid) != 0 && stato.st_gid != getegid())
    stato.st_mode &= ~static_cast<mode_t>(S_IRWXG);
  fchmod(descrittore, stato.st_mode & kPermessi);
}

int Sostituisci(const std::filesystem::path& da, const std::filesystem::path& a) {
  if (rename(da.c_str(), a.c_str()) != 0) return errno;
  // The new name is on the disk too, where the system knows how to put a folder there.
  const std::filesystem::path cartella = a.has_parent_path() ? a.parent_path() : ".";
  const int descrittore = open(cartella.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descrittore < 0) return 0;
  fsync(descrittore);
  close(descrittore);
  return 0;
}

void Rimuovi(const char* percorso) noexcept { unlink(percorso); }

bool EsisteNonRegolare(const std::filesystem::path& percorso) {
  struct stat stato {};
  return stat(percorso.c_str(), &stato) == 0 && !S_ISREG(stato.st_mode);
}

std::string IdentitaEsistente(const std::filesystem::path& percorso) {
  struct stat stato {};
  if (stat(percorso.c_str(), &stato) != 0) return {};
  return std::to_string(stato.st_dev) + ":" + std::to_string(stato.st_ino);
}

std::string NomeUniforme(const std::filesystem::path& percorso) { return percorso.string(); }

bool OraLocale(std::time_t momento, std::tm& ora) { return localtime_r(&momento, &ora) != nullptr; }

bool OraUniversale(std::time_t momento, std::tm& ora) {
  return gmtime_r(&momento, &ora) != nullptr;
}

}  // namespace compensa
