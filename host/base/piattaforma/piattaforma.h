#pragma once

// What the program asks of the operating system. Every system has its own implementation: posix.cpp
// and windows.cpp. What can fail returns 0, or the errno that tells why.

#include <cstddef>
#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace compensa {

inline constexpr int kIngressoStandard = 0;
inline constexpr int kUscitaStandard = 1;
inline constexpr int kErroriStandard = 2;
inline constexpr int kNessunDescrittore = -1;

// --- the process

// Once, before anything else: the standard streams carry bytes, and a descriptor that came closed
// refuses to be written rather than be given to the next file.
void PreparaProcesso();

// The arguments in UTF-8, the program's name first. Where the shell leaves patterns of file names
// as they are (*.toml) the names that they stand for, in order.
std::vector<std::string> ArgomentiUtf8(int argc, const char* const* argv);

int NumeroProcesso();

// --- signals that end the program

// A function to call before the program ends so. It may be called between any two instructions, or
// from another thread: it must allocate nothing and wait for nothing.
void AlSegnale(void (*pulizia)());

// Holds these signals back while it lives.
class SegnaliSospesi {
 public:
  SegnaliSospesi();
  ~SegnaliSospesi();
  SegnaliSospesi(const SegnaliSospesi&) = delete;
  SegnaliSospesi& operator=(const SegnaliSospesi&) = delete;

 private:
  unsigned Liberi = 0;  // signals that were not held back before, a bit each
};

// --- descriptors

// Whether it is a terminal that understands control sequences.
bool TerminaleCapace(int descrittore);

// Writes some of the bytes. Returns how many, or -1 with errno.
std::ptrdiff_t ScriviParte(int descrittore, std::string_view byte);

// What was written is on the disk. Devices that keep nothing succeed.
int Consolida(int descrittore);

int ChiudiDescrittore(int descrittore);

// --- files

// Opens a device or a pipe for writing. Returns the descriptor, or -1 with errno.
int ApriDispositivo(const std::filesystem::path& percorso);

// Makes a file that does not exist yet. Returns the descriptor, or -1 with errno.
int CreaFile(const std::filesystem::path& percorso);

// Whether the user may write a file that exists.
int PermessoDiScrivere(const std::filesystem::path& percorso);

// Gives an open file owner and permissions of another one, as far as that can be done.
void CopiaPermessi(int descrittore, const std::filesystem::path& da);

// Gives a file another name, in place of the file that has it already.
int Sostituisci(const std::filesystem::path& da, const std::filesystem::path& a);

// Removes a file, if it is there. May be called by the function given to AlSegnale.
void Rimuovi(const std::filesystem::path::value_type* percorso) noexcept;

// Whether something exists at the path that is neither a file nor nothing at all.
bool EsisteNonRegolare(const std::filesystem::path& percorso);

// What tells a file that exists from all others, whatever names it has; empty if there is none.
std::string IdentitaEsistente(const std::filesystem::path& percorso);

// A path so that names of the same file that does not exist yet are equal.
std::string NomeUniforme(const std::filesystem::path& percorso);

// --- time

// The moment in the time of the place, or in UTC. False if no calendar reaches there.
bool OraLocale(std::time_t momento, std::tm& ora);
bool OraUniversale(std::time_t momento, std::tm& ora);

}  // namespace compensa
