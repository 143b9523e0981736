// Counting of what a reader leaves out.

#include "host/importazione/libretto.h"

#include <algorithm>

void Libretto::Tralascia(const std::string& genere, const std::string& motivo, int riga) {
  const auto voce = std::find_if(Esclusi.begin(), Esclusi.end(), [&](const Tralasciati& t) {
    return t.Genere == genere && t.Motivo == motivo;
  });
  if (voce != Esclusi.end()) {
    ++voce->Quanti;
  } else {
    Esclusi.push_back({genere, motivo, 1, riga});
  }
}
