#pragma once

// Synthetic networks of any size for the benchmarks: a jittered grid of points in random order,
// every point a station with sights to its nearest neighbours, observations with realistic noise.

#include <string>
#include <vector>

#include "kzt5cmrg/record.h"

struct ReteSintetica {
  TOpzCr Opzioni{};
  CCalcDsOr CurvaturaRifrazione{};
  std::vector<std::string> Nomi;
  std::vector<TCoorCr> Punti;
  std::vector<TStaCr> Stazioni;
  std::vector<std::vector<TOssCr>> Osservazioni;  // the stations' vectors point here
};

inline constexpr int kVisualiPerStazione = 8;

// The same size always gives the same network. `punti` from 9 on.
ReteSintetica GeneraRete(int punti);
