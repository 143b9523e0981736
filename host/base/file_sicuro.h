#pragma once

// Files that appear whole or not at all. The bytes go into a temporary file beside the target,
// which takes the target's name only when all of them are on the disk; whatever happens before, an
// error, an exception or a signal that ends the program, leaves the target as it was and nothing
// beside it.

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace compensa {

// How messages name the standard output.
inline constexpr std::string_view kNomeUscita = "l'uscita standard";

class FileSicuro {
 public:
  // Prepares the file. A link is followed to what it names; a target that exists keeps its
  // permissions. A device or a pipe, /dev/stdout and its like, and "-", the standard output, are
  // written directly. Throws ErroreUscita.
  explicit FileSicuro(std::string percorso);
  FileSicuro(FileSicuro&& altro) noexcept;
  FileSicuro& operator=(FileSicuro&&) = delete;
  FileSicuro(const FileSicuro&) = delete;
  FileSicuro& operator=(const FileSicuro&) = delete;
  ~FileSicuro();

  // Appends bytes. Throws ErroreUscita.
  void Scrivi(std::string_view byte);
  // Gives the file its name. Throws ErroreUscita. To be called once, at the end.
  void Conferma();
  // Gives all of them their names, or none: if one cannot have its name those that have it give it
  // back to the files that they replaced. Throws ErroreUscita.
  static void Conferma(const std::vector<FileSicuro*>& insieme);

 private:
  void ApriDiretto();
  void ApriTemporaneo();
  void Chiudi();
  void Completa();             // all bytes on the disk
  void Nomina();               // keeps what is replaced under another name
  void Ripristina() noexcept;  // undoes Nomina, also half of it
  void LasciaVecchio() noexcept;

  std::string Percorso;             // as the user gave it
  std::string Mostrato;             // as messages name it
  std::filesystem::path Bersaglio;  // the file to replace; empty = written directly
  std::filesystem::path Temporaneo;
  std::filesystem::path Vecchio;  // second name of the file that is replaced; empty = none
  bool Nuovo = false;             // named where nothing was
  int Posto = -1;                 // of the temporary file among those that a signal removes
  int Descrittore = -1;
  bool Proprio = false;  // the descriptor is to be closed
};

// Whether a name stands for the standard output.
bool UscitaStandard(const std::string& percorso);

// The file that a path leads to, links followed also where the last one leads nowhere yet.
std::string DestinazioneFinale(const std::string& percorso);

// What names a file whatever path leads to it, also one that does not exist yet: paths with equal
// identities are the same file. Empty for devices, pipes and standard outputs, which are nobody's
// file.
std::string IdentitaFile(const std::string& percorso);

// Removes the temporary files of all that are open. For whoever ends the program at once.
void RimuoviTemporanei();

// Makes signals that end the program remove the temporary files first, and writing to a closed pipe
// an error like any other. Once, at the start.
void PreparaSegnali();

}  // namespace compensa
