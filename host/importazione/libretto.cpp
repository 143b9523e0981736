// Counting of what a reader leaves out.

#include "host/importazione/libretto.h"

#include <algorithm>

namespace compensa {

void Libretto::Tralascia(const std::string& genere, const std::string& motivo, int riga, int quanti,
                         std::string_view file) {
  const auto voce = std::find_if(Esclusi.begin(), Esclusi.end(), [&](const Tralasciati& t) {
    return t.Genere == genere && t.Motivo == motivo;
  });
  if (voce != Esclusi.end()) {
    voce->Quanti += quanti;
  } else {
    Esclusi.push_back({genere, motivo, quanti, riga, file});
  }
}

}  // namespace compensa
