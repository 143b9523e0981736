// First stage of a run: constants, table of the approximate coordinates as the host gave them,
// plane coordinates to kilometres, and the projection zone, which the easting of one point tells.

#include "kzt5cmrg.h"
#include "records/costanti.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

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
    FalsoEst = FalsoEstDi(p.Est);
    return;
  }
}
