// The small pieces of writing that the chapters of the report share. Texts are written with width
// 0.

#include "kzt5cmrg.h"
#include "records/costanti.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

void CalcCmpRigVelid1::ScriviTesto(unsigned id) { Out->ScriviStringa(CaricaTesto(id), 0); }

void CalcCmpRigVelid1::ScriviTestoLn(unsigned id) { Out->ScriviStringaLn(CaricaTesto(id), 0); }

void CalcCmpRigVelid1::ScriviConteggio(unsigned id, int conteggio) {
  ScriviTesto(id);
  Out->ScriviNumeroLn(conteggio, 5, 0);
}

// A title below its rule, and an empty line.
void CalcCmpRigVelid1::ScriviTitolo(unsigned riga, unsigned titolo) {
  ScriviTesto(riga);
  Out->SaltaRiga(1);
  ScriviTesto(titolo);
  Out->SaltaRiga(2);
}

// The banner of a main section: its title between two rules of the page's width.
void CalcCmpRigVelid1::ScriviSezione(unsigned titolo) {
  ScriviTesto(kRigaDoppia);
  Out->SaltaRiga(1);
  ScriviTesto(titolo);
  Out->SaltaRiga(1);
  ScriviTesto(kRigaDoppia);
  Out->SaltaRiga(2);
}

// One line of the tables of all points: coordinates as the record holds them, and the two roles.
void CalcCmpRigVelid1::ScriviRigaPunto(int punto) {
  const TCoorCr& p = Punto(punto);
  Out->ScriviNumero(punto + 1, 5, 0);
  Out->ScriviSpazi(3);
  Out->ScriviStringa(p.Nome, 20);
  Out->ScriviNumero(p.Nord, 15, 4);
  Out->ScriviNumero(p.Est, 15, 4);
  Out->ScriviSpazi(3);
  Out->ScriviStringa(EtichettaRuolo(p.TipoPla), 0);
  Out->ScriviNumero(p.Quota, 12, 4);
  Out->ScriviSpazi(3);
  Out->ScriviStringa(EtichettaRuolo(p.TipoAlt), 0);
  Out->SaltaRiga(1);
}
