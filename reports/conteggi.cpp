// The counts at the head of each adjustment, and the refusal of one with more unknowns than
// equations. The labels speak of stations where the numbers count points.

#include "kzt5cmrg.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

void CalcCmpRigVelid1::ScriviConteggi(int nonUsati, int fissi, int incogniti) {
  ScriviConteggio(kNumeroTotale, nPunti);
  ScriviConteggio(kNumeroNonUsati, nonUsati);
  ScriviConteggio(kNumeroFissi, fissi);
  ScriviConteggio(kNumeroIncogniti, incogniti);
}

void CalcCmpRigVelid1::ScriviDimensioni(int incognite, int equazioni) {
  ScriviConteggio(kNumeroIncognite, incognite);
  ScriviConteggio(kNumeroOsservazioni, equazioni);
  ScriviConteggio(kRidondanza, equazioni - incognite);
}

bool CalcCmpRigVelid1::Indeterminato(int incognite, int equazioni) {
  if (incognite <= equazioni) return false;
  Out->SaltaRiga(1);
  ScriviTesto(kErrore);
  Out->SaltaRiga(2);
  ScriviTesto(kPiuIncognite);
  Out->ScriviNumero(incognite, 0, 0);
  ScriviTesto(kDiOsservazioni);
  Out->ScriviNumero(equazioni, 0, 0);
  ScriviTesto(kIndeterminazione);
  Out->SaltaRiga(2);
  return true;
}
