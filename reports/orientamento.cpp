// Orientation of the circle of every station: the azimuth of its zero, the mean of azimuth minus
// reading over the sights, weighted with the reciprocal of their length.

#include "kzt5cmrg.h"
#include "records/selezione.h"

using namespace kzt5cmrg;

// The orientation of station s goes into the point record with the index of the station; a station
// past the last record has its own worked out again where it is needed.
int CalcCmpRigVelid1::Orienta() {
  for (std::size_t s = 0; s < Stazioni->size() && s < Punti->size(); ++s)
    if (StazionePla(*Punti, (*Stazioni)[s]))
      (*Punti)[s].Orientamento = OrientamentoMedio((*Stazioni)[s]);
  return 0;
}

// Radians in [0, 2 pi) but for the turn that keeps all sights together; 0 without usable sights.
double CalcCmpRigVelid1::OrientamentoMedio(const TStaCr& stazione) const {
  const TCoorCr& p = Punto(stazione.Punto);
  double pesi = 0.0;
  double somma = 0.0;
  for (const TOssCr& o : stazione.Osservazioni) {
    if (!LetturaElencata(*Punti, o)) continue;
    const TCoorCr& t = Punto(o.Punto);
    double direzione = o.Direzione;
    if (Eccentricita(stazione) > kSogliaEcc && StatoCalcolo == kSolutoreRiuscito)
      ExCentro(stazione.Punto, o.Punto, stazione.EccDistanza, stazione.EccDirezione, direzione);
    double azimut = 0.0;
    double distanza = 0.0;
    Anomalia(p.Est, p.Nord, t.Est, t.Nord, azimut, distanza);
    if (distanza == 0.0) continue;
    double orientamento = azimut - direzione * FattoreRad;
    if (orientamento < 0.0) orientamento += kGiro;
    if (pesi > 0.0) {
      const double media = somma / pesi;
      if (media - orientamento > kPi) orientamento += kGiro;
      if (media - orientamento < -kPi) orientamento -= kGiro;
    }
    pesi += 1.0 / distanza;
    somma += orientamento / distanza;
  }
  return pesi > 0.0 ? somma / pesi : 0.0;
}
