#pragma once

// The two faces of the instrument: readings of face II turned into face I, and the two joined.

#include <optional>
#include <string>
#include <vector>

#include "host/base/diagnostica.h"
#include "host/importazione/libretto.h"
#include "host/importazione/opzioni.h"

namespace compensa {

// A target read on both faces.
struct CoppiaFacce {
  std::string Stazione, Punto;
  std::optional<double> Collimazione;  // c = (dirII - 200 - dirI) / 2, wrapped [gon]
  std::optional<double> Indice;        // i = (zenI + zenII - 400) / 2 [gon]
  Posizione Dove;                      // of the shot on face I
};

// Mean, median and standard deviation of one value of several pairs [gon].
struct Riassunto {
  int Quanti = 0;
  double Media = 0.0;
  double Mediana = 0.0;
  double Scarto = 0.0;  // of a single value, 0 for one value alone
};

struct EsitoFacce {
  std::vector<CoppiaFacce> Coppie;
  Riassunto Collimazione, Indice;
  int Girate = 0;        // shots of face II that had no partner, turned into face I
  int LettureUnite = 0;  // repeated shots that went into a mean
  int Medie = 0;         // means that they became
};

// Precision of single readings, by which a reading counts as suspect.
struct SqmLetture {
  double Direzione = 0.0;          // of one direction [gon]
  double DistCostante = 0.0;       // [m]
  double DistProporzionale = 0.0;  // [m/km]
};

// An error of the instrument as it is listed, with its sign [gon].
std::string ConSegno(double gon);

// Turns the shots of face II into face I: dir' = dir - 200 within the circle, zen' = 400 - zen. A
// shot is on face II if the book says so, or if its zenith angle is above 200 gon. With
// ModoFacce::Media the first shot of a target on face I is joined with the first on face II, the
// second with the second, and so on. With medie the shots of a set-up to the same target are then
// joined into one. A standard deviation that stands by the single shots becomes that of their mean.
// Warns of readings that disagree by more than three times their standard deviation, and of shots
// that cannot be joined.
EsitoFacce RiduciFacce(Libretto& libretto, ModoFacce modo, bool medie, const SqmLetture& sqm,
                       Diagnostica& diagnostica);

}  // namespace compensa
