#pragma once

// What hangs together: whether the points that are to be adjusted can be, by counting.

#include <string>
#include <vector>

#include "host/giudizio/controlli/rilievi.h"

namespace compensa {

// One of the two adjustments.
struct Collegamento {
  bool Richiesto = false;
  std::vector<std::vector<int>> Gruppi;  // points tied to each other, the largest group first
  int Fissi = 0, Incogniti = 0;          // points that take part
  int Mancanti = 0;                      // unknown points that do not, without coordinates
  int Equazioni = 0, Incognite = 0;
  std::vector<std::string> Ostacoli;  // why it cannot run as the network stands
  int GradiLiberta() const { return Equazioni - Incognite; }
};

struct Connessione {
  Collegamento Pla, Alt;
  Rilievi Trovati;
};

// To be called with the approximate coordinates filled in: a point without them takes no part.
Connessione EsaminaConnessione(const Rete& rete);

}  // namespace compensa
