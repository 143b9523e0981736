#pragma once

// Which plane coordinate system the coordinates of a result belong to, as far as it is known. The
// coordinates are only labelled with it, never transformed.

#include <string>
#include <string_view>

#include "host/rete/risultati.h"

namespace compensa {

struct SistemaRiferimento {
  int Codice = 0;           // EPSG; 0 = unknown, or local coordinates
  std::string Nome;         // as the register names it; for an unknown system a word of ours
  std::string Definizione;  // OGC WKT 1; empty for codes outside the table of Italian systems
  std::string Nota;         // Italian: where the code comes from, what to look out for
};

// What a code is, as far as the program knows.
enum class GenereCodice {
  Piano,     // of a plane system in use in Italy
  NonPiano,  // of geographic or geocentric coordinates, or of heights
  Ignoto,
};
GenereCodice GenereDi(int epsg);

struct PianoNoto {
  std::string_view Nome;  // as the register has it
  double FalsoEst;        // [m]
};
// Of a code that is GenereCodice::Piano.
PianoNoto PianoDi(int epsg);

// The code of the network file if it can be that of plane coordinates, else that of the Gauss-Boaga
// zone recognised by its false easting. A false easting of 500 km does not tell the zone.
SistemaRiferimento RiconosciSistema(const Risultati& risultati);

// "EPSG:3003 Monte Mario / Italy zone 1; codice dato dal file della rete", or the note alone.
std::string TestoSistema(const SistemaRiferimento& sistema);

}  // namespace compensa
