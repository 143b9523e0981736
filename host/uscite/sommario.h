#pragma once

// What the surveyor sees of a run besides the report: a line that follows the iterations, and five
// lines at the end.

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/base/soggetto.h"
#include "host/rete/risultati.h"

namespace compensa {

// Outcome, sigma zero, redundancy, iterations, and largest w with its place; without line ends,
// UTF-8.
std::array<std::string, 5> RigheSommario(const Risultati& risultati);

// What the observations of a network that could not be adjusted leave free, one line each; the first
// ones, likewise.
std::vector<std::string> RigheMotiLiberi(const Risultati& risultati);

// Lines about single points, of which a large network has thousands: all of a few, else the first
// ones and a last line that says where the others are.
std::vector<std::string> PrimeRighe(const std::vector<std::string>& righe);

// How an adjustment ended, in words.
std::string TestoEsito(const Risultati& risultati, const RisultatoCompensazione& compensazione);

// "12 punti incogniti non calcolati: "T0", "T1" …".
std::string TestoNonCalcolati(const Risultati& risultati,
                              const RisultatoCompensazione& compensazione);

// One line on a terminal that each iteration overwrites.
class RigaAvanzamento {
 public:
  explicit RigaAvanzamento(std::function<void(std::string_view)> scrivi)
      : Scrivi(std::move(scrivi)) {}
  void Mostra(const Iterazione& iterazione);
  void Cancella();

 private:
  std::function<void(std::string_view)> Scrivi;
  bool Scritta = false;
};

}  // namespace compensa
