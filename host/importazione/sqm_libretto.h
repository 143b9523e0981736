#pragma once

// The standard deviations that a network file needs, from whatever a field book tells of them.

#include <string>

#include "host/base/diagnostica.h"
#include "host/importazione/facce.h"
#include "host/importazione/libretto.h"
#include "host/importazione/opzioni.h"

namespace compensa {

struct SqmScelti {
  double Direzione = 0.0;          // of an angle read as the difference of two directions [gon]
  double DistCostante = 0.0;       // [m]
  double DistProporzionale = 0.0;  // [m/km]
  // In words, Italian, where the values come from; empty if option or file state them.
  std::string NotaDirezione, NotaDistanza, NotaProporzionale;

  // What they promise of single readings.
  SqmLetture DiUnaLettura() const;
};

// In this order: the options, what the files state for the whole network, the value that most
// observations have, the usual value of a total station. The last two with a warning. The standard
// deviation of single directions is turned into that of an angle by the square root of 2.
SqmScelti ScegliSqm(const OpzioniImporta& opzioni, const Libretto& libretto,
                    Diagnostica& diagnostica);

}  // namespace compensa
