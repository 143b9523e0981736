// Mean linear deformation modulus of the zone: the mean of the point scale factors of the
// projection at the points of the network, whatever their roles.

#include "kzt5cmrg.h"
#include "records/costanti.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

int CalcCmpRigVelid1::Modulo() {
  double somma = 0.0;
  int quanti = 0;
  for (int i = 0; i < nPunti; ++i) {
    const TCoorCr& p = Punto(i);
    if (!Dato(p.Est) || Mancante(p.Nord) || p.Nord == 0.0) continue;
    double scala = 0.0;
    double correzione = 0.0;
    Gauss(i, i, scala, correzione);
    somma += scala;
    ++quanti;
  }
  Out->SaltaRiga(1);
  ScriviTesto(kModuloDeformazione);
  Out->ScriviNumeroLn(quanti == 0 ? 0.0 : somma / quanti, 11, 6);
  Out->SaltaRiga(1);
  return 0;
}
