// First stage of a run: constants, table of the approximate coordinates as the host gave them,
// plane coordinates to kilometres, and the projection zone, which the easting of one point tells.

#include <cmath>

#include "kzt5cmrg.h"
#include "records/costanti.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

namespace {

constexpr double kEstMinimo = 80.0;  // a smaller easting says nothing of the zone [km]

// Zones by their false easting, and how far from it a point may lie [km].
constexpr double kFalsiEst[] = {kFalsoEstOvest, kFalsoEstEst, kFalsoEstUtm};
constexpr double kSemiampiezzaZona = 350.0;

}  // namespace

bool CalcCmpRigVelid1::Input() {
  SigmaZeroPriori = kSigmaZeroPriori;
  FattoreKm = kKmPerMetro;
  FattoreRad = kRadPerGon;
  RaggioMedio = 0.0;
  DistanzePresenti = kSenzaDistanze;
  StatoCalcolo = kSolutoreRiuscito;
  ScriviPuntiApprossimati();
  ConvertiInChilometri();
  RiconosciZona();
  return true;
}

void CalcCmpRigVelid1::ScriviPuntiApprossimati() {
  ScriviTesto(kTitoloCoordinate);
  Out->SaltaRiga(2);
  ScriviTesto(kIntestazioneCoordinate);
  Out->SaltaRiga(2);
  for (int i = 0; i < nPunti; ++i) ScriviRigaPunto(i);
  Out->SaltaRiga(1);
}

void CalcCmpRigVelid1::ConvertiInChilometri() {
  for (TCoorCr& p : *Punti) {
    if (Dato(p.Est)) p.Est *= FattoreKm;
    if (Dato(p.Nord)) p.Nord *= FattoreKm;
  }
}

// The first point with an easting large enough decides, whatever its roles.
void CalcCmpRigVelid1::RiconosciZona() {
  FalsoEst = 0.0;
  if (Opzioni->Cartografiche == 0) return;
  for (const TCoorCr& p : *Punti) {
    if (!Dato(p.Est) || !(p.Est > kEstMinimo)) continue;
    for (const double falsoEst : kFalsiEst)
      if (std::abs(p.Est - falsoEst) < kSemiampiezzaZona) FalsoEst = falsoEst;
    return;
  }
}
