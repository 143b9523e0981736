// Each output is a stream of bytes into a file that appears only when it is complete.

#include "host/comando/scrittura_uscite.h"

#include <cstddef>
#include <utility>

namespace compensa {

namespace {

constexpr std::size_t kTampone = std::size_t{1} << 16;  // [bytes]

// Small pieces are gathered: a call of the system for each would take longer than the computation.
void Versa(const FileUscita& cosa, const Materia& materia, FileSicuro& file) {
  std::string tampone;
  cosa.Scrivi(materia, [&](std::string_view byte) {
    tampone += byte;
    if (tampone.size() < kTampone) return;
    file.Scrivi(tampone);
    tampone.clear();
  });
  file.Scrivi(tampone);
}

}  // namespace

ScritturaUscite::ScritturaUscite(std::vector<Destinazione> destinazioni)
    : Dove(std::move(destinazioni)), Confermati(Dove.size(), false) {
  for (const Destinazione& dove : Dove) File.emplace_back(dove.Percorso);
}

void ScritturaUscite::Scrivi(const Materia& materia) {
  for (const bool standard : {false, true}) {
    for (std::size_t i = 0; i < Dove.size(); ++i)
      if (UscitaStandard(Dove[i].Percorso) == standard) Versa(*Dove[i].Cosa, materia, File[i]);
    std::vector<FileSicuro*> insieme;
    for (std::size_t i = 0; i < Dove.size(); ++i)
      if (UscitaStandard(Dove[i].Percorso) == standard) insieme.push_back(&File[i]);
    FileSicuro::Conferma(insieme);
    for (std::size_t i = 0; i < Dove.size(); ++i)
      if (UscitaStandard(Dove[i].Percorso) == standard) Confermati[i] = true;
  }
}

std::vector<std::string> ScritturaUscite::Scritti() const {
  std::vector<std::string> scritti;
  for (std::size_t i = 0; i < Dove.size(); ++i)
    if (Confermati[i] && !UscitaStandard(Dove[i].Percorso)) scritti.push_back(Dove[i].Percorso);
  return scritti;
}

}  // namespace compensa
