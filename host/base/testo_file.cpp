// Whole text files: reading them and bringing them to UTF-8.

#include "host/base/testo_file.h"

#include <cerrno>
#include <fstream>
#include <system_error>
#include <utility>

#include "host/base/codifica.h"
#include "host/base/errori.h"
#include "host/base/impronta.h"

namespace compensa {

namespace {

constexpr std::size_t kBlocco = std::size_t{1} << 20;
constexpr char kCtrlZ = '\x1A';

// At most massimo + 1 bytes; false if reading fails.
bool LeggiByte(std::ifstream& flusso, std::uintmax_t massimo, std::string& byte) {
  while (flusso && byte.size() <= massimo) {
    const std::size_t prima = byte.size();
    byte.resize(prima + kBlocco);
    flusso.read(byte.data() + prima, static_cast<std::streamsize>(kBlocco));
    byte.resize(prima + static_cast<std::size_t>(flusso.gcount()));
  }
  return !flusso.bad();
}

// Names of descriptors that the program was started with: <(command) of a shell is one.
bool GiaAperto(std::string_view percorso) {
  return percorso == "/dev/stdin" || percorso.starts_with("/dev/fd/") ||
         percorso.starts_with("/proc/self/fd/");
}

}  // namespace

std::optional<std::string> LeggiTesto(const std::filesystem::path& percorso, std::uintmax_t massimo,
                                      const Posizione& dove, const std::string& campo,
                                      Diagnostica& diagnostica, std::string* impronta) {
  const std::string nome = Cita(percorso.string());
  const auto errore = [&](std::string problema) {
    diagnostica.Errore(
        dove, {.Quale = Codice::FileNonLetto, .Campo = campo, .Problema = std::move(problema)});
    return std::nullopt;
  };
  std::error_code guasto;
  const auto stato = std::filesystem::status(percorso, guasto);
  if (stato.type() == std::filesystem::file_type::not_found) {
    return errore("il file " + nome + " non esiste");
  }
  if (std::filesystem::is_directory(stato)) return errore(nome + " è una cartella, non un file");
  if (is_other(stato) && !GiaAperto(percorso.string()))
    return errore(nome + " non è un file: è un dispositivo, una pipe o un socket");
  errno = 0;
  std::ifstream flusso(percorso, std::ios::binary);
  if (!flusso) return errore("il file " + nome + " non si può aprire: " + Motivo(errno));
  std::string byte;
  if (!LeggiByte(flusso, massimo, byte)) {
    return errore("il file " + nome + " non si può leggere: " + Motivo(errno));
  }
  if (byte.size() > massimo) {
    return errore("il file " + nome + " supera " + std::to_string(massimo / kBlocco) + " MiB");
  }
  if (impronta != nullptr) *impronta = Impronta(byte);
  while (!byte.empty() && byte.back() == kCtrlZ) byte.pop_back();
  std::optional<std::string> testo = InUtf8(std::move(byte));
  if (!testo) return errore("il file " + nome + " è in UTF-16: salvarlo come UTF-8");
  return testo;
}

}  // namespace compensa
