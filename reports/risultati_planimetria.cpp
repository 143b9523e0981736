// The chapter of the directions: every usable reading against the adjusted network, station by
// station,
//   shown difference = reading + orientation - adjusted azimuth, brought to half a turn
// and the linear discrepancy that it makes at the target. The first reading of a station is the
// reference of its angles: it shows no difference and no w.

#include <cmath>
#include <utility>

#include "kzt5cmrg.h"
#include "records/selezione.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

namespace {

// The reference direction shows only a whole turn too many, if any.
double ScartoRiferimento(double r) {
  if (r > kGiro) return r - kGiro;
  if (r < -kGiro) return r + kGiro;
  return 0.0;
}

double InMezzoGiro(double r) {
  if (r > kPi) r -= kGiro;
  if (r < -kPi) r += kGiro;
  return r;
}

}  // namespace

// `w` holds the normalised residual of every equation, the angles first.
void CalcCmpRigVelid1::RisultatiPla(const double* w) {
  ScriviTitolo(kRigaDirezioni, kDirezioniCorrette);
  int equazione = 0;
  for (std::size_t s = 0; s < Stazioni->size(); ++s) {
    const TStaCr& stazione = (*Stazioni)[s];
    if (!StazionePla(*Punti, stazione)) continue;
    const double orientamento =
        s < Punti->size() ? (*Punti)[s].Orientamento : OrientamentoMedio(stazione);
    ScriviStazionePla(stazione, orientamento);
    ScriviDirezioni(stazione, orientamento, w, equazione);
    Out->SaltaRiga(1);
  }
  Out->SaltaRiga(1);
  if (DistanzePresenti == kConDistanze) ScriviDistanze();
}

void CalcCmpRigVelid1::ScriviStazionePla(const TStaCr& stazione, double orientamento) {
  ScriviTesto(kStazione);
  Out->ScriviNumero(stazione.Punto + 1, 3, 0);
  Out->ScriviSpazi(3);
  Out->ScriviStringa(Punto(stazione.Punto).Nome, 20);
  ScriviTesto(kCorrezioneAzimutale);
  Out->ScriviNumeroLn(orientamento / FattoreRad, 10, 4);
  ScriviTesto(kIntestazioneDirezioni);
  Out->SaltaRiga(1);
}

// Every usable reading after the first one of the station has the next angle equation, in the order
// they were built. A reading that is listed but not usable, one just at the limit of what counts as
// given, has none.
void CalcCmpRigVelid1::ScriviDirezioni(const TStaCr& stazione, double orientamento, const double* w,
                                       int& equazione) {
  bool riferimento = true;
  bool primaUsabile = true;
  for (const TOssCr& o : stazione.Osservazioni) {
    if (!LetturaElencata(*Punti, o)) continue;
    const bool equazionePropria = LetturaPla(*Punti, o) && !std::exchange(primaUsabile, false);
    ScriviDirezione(stazione, o, orientamento, std::exchange(riferimento, false),
                    equazionePropria ? w[equazione++] : 0.0);
  }
}

// One line; the reference direction has no w.
void CalcCmpRigVelid1::ScriviDirezione(const TStaCr& stazione, const TOssCr& osservazione,
                                       double orientamento, bool riferimento, double w) {
  const TCoorCr& p = Punto(stazione.Punto);
  const TCoorCr& t = Punto(osservazione.Punto);
  double direzione = osservazione.Direzione;
  RiduciDirezione(stazione, osservazione.Punto, kSogliaEcc, direzione);
  double orientata = direzione * FattoreRad + orientamento;
  if (orientata > kGiro) orientata -= kGiro;
  double azimut = 0.0;
  double distanza = 0.0;
  Anomalia(p.Est, p.Nord, t.Est, t.Nord, azimut, distanza);
  const double differenza = orientata - azimut;
  const double scarto = riferimento ? ScartoRiferimento(differenza) : InMezzoGiro(differenza);

  Out->ScriviNumero(osservazione.Punto + 1, 3, 0);
  Out->ScriviSpazi(2);
  Out->ScriviStringa(t.Nome, 10);
  Out->ScriviNumero(direzione, 12, 4);
  Out->ScriviNumero(scarto / FattoreRad, 11, 4);
  Out->ScriviNumero(azimut / FattoreRad, 14, 4);
  Out->ScriviNumero(distanza / FattoreKm, 14, 4);
  const double scartoLineare = scarto * distanza / FattoreKm;
  if (riferimento) {
    Out->ScriviNumeroLn(scartoLineare, 13, 4);
  } else {
    Out->ScriviNumero(scartoLineare, 13, 4);
    Out->ScriviNumeroLn(w, 5, 1);
  }
}
