// The chapter of the zenith observations: for every station in use its instrument height, given or
// adjusted, and a line for each observation that has an equation. Rows and unknown instrument
// heights are counted as the equations were built.

#include <cmath>

#include "kzt5cmrg.h"
#include "records/selezione.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

// `w` holds the normalised residual of every equation.
void CalcCmpRigVelid1::RisultatiAlt(const double* w) {
  ScriviTitolo(kRigaZenit, kZenitCorretti);
  int riga = 0;
  int strumento = 0;
  for (const TStaCr& s : *Stazioni) {
    if (!StazioneAlt(*Punti, s)) continue;
    ScriviStazioneAlt(s, strumento);
    ScriviTesto(kIntestazioneZenit);
    Out->SaltaRiga(1);
    PerOgniDislivello(*Punti, s, [&](std::size_t k, double) {
      ScriviZenit(s.Osservazioni[k], Residui[static_cast<std::size_t>(riga)], w[riga]);
      ++riga;
    });
    Out->SaltaRiga(1);
  }
  Out->SaltaRiga(2);
}

void CalcCmpRigVelid1::ScriviStazioneAlt(const TStaCr& stazione, int& strumento) {
  ScriviTesto(kStazione);
  Out->ScriviNumero(stazione.Punto + 1, 3, 0);
  Out->ScriviSpazi(3);
  Out->ScriviStringa(Punto(stazione.Punto).Nome, 20);
  if (stazione.AltStrumNota != kAltezzaIncognita) {
    ScriviTesto(kTestoAltezzaStrumento);
    Out->ScriviNumeroLn(stazione.AltStrum, 7, 3);
    return;
  }
  const int j = nIncAlt + strumento++;
  const double altezza = Soluzione[static_cast<std::size_t>(j)];
  ScriviTesto(kAltezzaData);
  Out->ScriviNumero(stazione.AltStrum, 5, 3);
  ScriviTesto(kCorrezioneAltezza);
  Out->ScriviNumero(altezza - stazione.AltStrum, 5, 3);
  ScriviTesto(kAltezzaCorretta);
  Out->ScriviNumero(altezza, 5, 3);
  Out->ScriviStringa(kPiuMenoAltezza, 0);
  Out->ScriviNumeroLn(std::sqrt(Cofattore(j, j)) * SigmaZero, 5, 3);
}

void CalcCmpRigVelid1::ScriviZenit(const TOssCr& osservazione, double residuo, double w) {
  Out->ScriviNumero(osservazione.Punto + 1, 4, 0);
  Out->ScriviSpazi(2);
  Out->ScriviStringa(Punto(osservazione.Punto).Nome, 10);
  Out->ScriviNumero(osservazione.Zenit, 10, 4);
  Out->ScriviNumero(osservazione.AltSegnale, 11, 3);
  Out->ScriviNumero(osservazione.Distanza, 14, 3);
  Out->ScriviNumero(residuo, 12, 3);
  Out->ScriviNumeroLn(w, 7, 2);
}
