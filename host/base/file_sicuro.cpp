// Atomic files: a temporary file in the target's folder, and the signals that must not leave it
// there.

#include "host/base/file_sicuro.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <utility>

#include "host/base/diagnostica.h"
#include "host/base/errori.h"
#include "host/base/numeri.h"
#include "host/base/percorsi.h"
#include "host/base/piattaforma/piattaforma.h"

namespace compensa {

namespace {

constexpr int kCollegamentiMassimi = 40;
constexpr int kTentativi = 1000;  // names for a temporary file
constexpr std::size_t kPercorsoMassimo = 4096;

// What the signal handler may touch: paths of the temporary files, in storage that never moves.
struct PostoTemporaneo {
  std::atomic<bool> Occupato = false;
  std::array<std::filesystem::path::value_type, kPercorsoMassimo> Percorso{};
};
static_assert(std::atomic<bool>::is_always_lock_free);
std::array<PostoTemporaneo, 16> posti;

// Registers a temporary file. Returns its place, or -1 if there is none: then only the destructor
// removes the file.
int Registra(const std::filesystem::path& file) {
  const auto& percorso = file.native();
  if (percorso.size() >= kPercorsoMassimo) return -1;
  const auto posto = std::ranges::find_if(posti, [](auto& p) { return !p.Occupato.load(); });
  if (posto == posti.end()) return -1;
  std::ranges::copy(percorso, posto->Percorso.begin());
  posto->Percorso[percorso.size()] = 0;
  posto->Occupato = true;
  return static_cast<int>(posto - posti.begin());
}

// The descriptor that a path stands for: "-", /dev/stdout and so on; none for any other path.
int DescrittoreNominato(const std::string& percorso) {
  if (UscitaStandard(percorso)) return kUscitaStandard;
  if (percorso == "/dev/stderr") return kErroriStandard;
  for (const std::string_view cartella : {"/dev/fd/", "/proc/self/fd/"}) {
    if (!percorso.starts_with(cartella)) continue;
    return LeggiIntero(std::string_view(percorso).substr(cartella.size()))
        .value_or(kNessunDescrittore);
  }
  return kNessunDescrittore;
}

}  // namespace

bool UscitaStandard(const std::string& percorso) {
  return percorso == "-" || percorso == "/dev/stdout";
}

std::string DestinazioneFinale(const std::string& percorso) {
  std::filesystem::path finale = PercorsoDa(percorso);
  std::error_code guasto;
  for (int i = 0; i < kCollegamentiMassimi && std::filesystem::is_symlink(finale, guasto); ++i) {
    const std::filesystem::path prossimo = std::filesystem::read_symlink(finale, guasto);
    if (guasto) break;
    finale = finale.parent_path() / prossimo;  // an absolute one stands for itself
  }
  return finale.string();
}

std::string IdentitaFile(const std::string& percorso) {
  if (DescrittoreNominato(percorso) >= 0) return {};
  const std::filesystem::path luogo = PercorsoDa(percorso);
  if (EsisteNonRegolare(luogo)) return {};
  if (std::string chi = IdentitaEsistente(luogo); !chi.empty()) return chi;
  std::error_code guasto;
  const auto assoluto = std::filesystem::absolute(PercorsoDa(DestinazioneFinale(percorso)), guasto);
  return NomeUniforme(std::filesystem::weakly_canonical(assoluto, guasto));
}

void RimuoviTemporanei() {
  for (PostoTemporaneo& posto : posti)
    if (posto.Occupato.load()) Rimuovi(posto.Percorso.data());
}

void PreparaSegnali() { AlSegnale(RimuoviTemporanei); }

FileSicuro::FileSicuro(std::string percorso)
    : Percorso(std::move(percorso)), Mostrato(Cita(Percorso)) {
  Descrittore = DescrittoreNominato(Percorso);
  if (Descrittore >= 0) {
    if (Descrittore == kUscitaStandard) Mostrato = kNomeUscita;
    return;
  }
  if (EsisteNonRegolare(PercorsoDa(Percorso)))
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
      Descrittore(std::exchange(altro.Descrittore, kNessunDescrittore)),
      Proprio(std::exchange(altro.Proprio, false)) {}

FileSicuro::~FileSicuro() {
  if (Proprio) ChiudiDescrittore(Descrittore);
  const SegnaliSospesi sospesi;
  if (!Temporaneo.empty()) Rimuovi(Temporaneo.c_str());
  if (Posto >= 0) posti[static_cast<std::size_t>(Posto)].Occupato = false;
}

void FileSicuro::ApriDiretto() {
  Descrittore = ApriDispositivo(PercorsoDa(Percorso));
  if (Descrittore < 0) throw ErroreUscita("aprire", Mostrato, errno);
  Proprio = true;
}

void FileSicuro::ApriTemporaneo() {
  Bersaglio = PercorsoDa(DestinazioneFinale(Percorso));
  std::error_code guasto;
  if (std::filesystem::is_symlink(Bersaglio, guasto))  // links in a ring name no file
    throw ErroreUscita("scrivere", Mostrato, ELOOP);
  const bool esiste = std::filesystem::exists(Bersaglio, guasto);
  if (const int codice = esiste ? PermessoDiScrivere(Bersaglio) : 0; codice != 0)
    throw ErroreUscita("scrivere", Mostrato, codice);
  const auto cartella = Bersaglio.parent_path();
  const SegnaliSospesi sospesi;
  for (int i = 0; i < kTentativi && Descrittore < 0; ++i) {
    Temporaneo = cartella / (".compensa-" + std::to_string(NumeroProcesso()) + "-" +
                             std::to_string(i) + ".tmp");
    Descrittore = CreaFile(Temporaneo);
    if (Descrittore < 0 && errno != EEXIST) break;
  }
  if (Descrittore < 0) {
    const int codice = errno;
    Temporaneo.clear();
    throw ErroreUscita("scrivere", Mostrato, codice);
  }
  Proprio = true;
  Posto = Registra(Temporaneo);
  if (esiste) CopiaPermessi(Descrittore, Bersaglio);
}

void FileSicuro::Scrivi(std::string_view byte) {
  while (!byte.empty()) {
    const std::ptrdiff_t scritti = ScriviParte(Descrittore, byte);
    if (scritti < 0) throw ErroreUscita("scrivere", Mostrato, errno);
    byte.remove_prefix(static_cast<std::size_t>(scritti));
  }
}

void FileSicuro::Conferma() { Conferma({this}); }

void FileSicuro::Conferma(const std::vector<FileSicuro*>& insieme) {
  for (FileSicuro* file : insieme) file->Completa();
  const SegnaliSospesi sospesi;
  try {
    for (FileSicuro* file : insieme) file->Nomina();
  } catch (...) {
    for (FileSicuro* file : insieme) file->Ripristina();
    throw;
  }
  for (FileSicuro* file : insieme) file->LasciaVecchio();
}

void FileSicuro::Completa() {
  const int codice = Temporaneo.empty() ? 0 : Consolida(Descrittore);
  if (codice != 0) throw ErroreUscita("scrivere", Mostrato, codice);
  Chiudi();
}

// Disks without second names for a file (FAT) keep nothing to go back to.
void FileSicuro::Nomina() {
  if (Temporaneo.empty()) return;
  std::filesystem::path secondo = Temporaneo;
  secondo += ".vecchio";
  std::error_code guasto;
  std::filesystem::create_hard_link(Bersaglio, secondo, guasto);
  const bool mancava = guasto == std::errc::no_such_file_or_directory;
  if (!guasto) Vecchio = std::move(secondo);
  if (const int codice = Sostituisci(Temporaneo, Bersaglio); codice != 0)
    throw ErroreUscita("scrivere", Mostrato, codice);
  Temporaneo.clear();
  Nuovo = mancava;
}

void FileSicuro::Ripristina() noexcept {
  if (!Temporaneo.empty()) return LasciaVecchio();  // its name was not taken
  if (!Vecchio.empty() && Sostituisci(Vecchio, Bersaglio) == 0) Vecchio.clear();
  if (Nuovo) Rimuovi(Bersaglio.c_str());
}

void FileSicuro::LasciaVecchio() noexcept {
  if (!Vecchio.empty()) Rimuovi(Vecchio.c_str());
  Vecchio.clear();
}

void FileSicuro::Chiudi() {
  if (!std::exchange(Proprio, false)) return;
  if (const int codice = ChiudiDescrittore(Descrittore); codice != 0)
    throw ErroreUscita("scrivere", Mostrato, codice);
}

}  // namespace compensa
