#pragma once

// Approximate coordinates and heights of points that a network gives none for, computed from the
// points that have them.

#include <string>
#include <vector>

#include "host/rete/modello.h"

namespace compensa {

// Findings in words, UTF-8, one line each.
struct EsitoApprossimate {
  std::vector<int> PuntiPla;            // that got plane coordinates
  std::vector<int> PuntiAlt;            // that got a height
  std::vector<std::string> Note;        // how each of them was obtained
  std::vector<Messaggio> NonRaggiunti;  // what stays without and what is missing
};

// Fills in Est and Nord of the points that take part in plan (unknown, not excluded) and lack one
// of them, and Quota of those that take part in height, where the adjustments that the options ask
// for need them; Rete::PiantaCalcolata tells which points got theirs in plan. Given coordinates are
// never changed, nor used if their point is excluded. The network must not have been adjusted yet:
// coordinates in metres.
EsitoApprossimate CalcolaApprossimate(Rete& rete);

}  // namespace compensa
