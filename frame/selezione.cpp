// Which records take part in an adjustment. The equation builders, the check and the reports ask
// here, so that the rows of the equations and the lines of the report always count alike. An index
// at or past the number of points is treated like a negative one: the record is passed over.

#include "kzt5cmrg.h"
#include "records/costanti.h"

using namespace kzt5cmrg;

bool CalcCmpRigVelid1::Esiste(int punto) const { return punto >= 0 && punto < nPunti; }

bool CalcCmpRigVelid1::StazionePla(const TStaCr& stazione) const {
  return Esiste(stazione.Punto) && Punto(stazione.Punto).TipoPla != kNonUsato;
}

bool CalcCmpRigVelid1::StazioneAlt(const TStaCr& stazione) const {
  return Esiste(stazione.Punto) && Dato(stazione.AltStrum) &&
         Punto(stazione.Punto).TipoAlt != kNonUsato;
}

bool CalcCmpRigVelid1::LetturaPla(const TOssCr& osservazione) const {
  return Esiste(osservazione.Punto) && Dato(osservazione.Direzione) &&
         Punto(osservazione.Punto).TipoPla != kNonUsato;
}

// A reading that the reports show and that orients the circle.
bool CalcCmpRigVelid1::LetturaElencata(const TOssCr& osservazione) const {
  return Esiste(osservazione.Punto) && !Mancante(osservazione.Direzione) &&
         Punto(osservazione.Punto).TipoPla != kNonUsato;
}

// Every distance needs its zenith angle, also one that is horizontal already.
bool CalcCmpRigVelid1::DistanzaPla(const TOssCr& osservazione) const {
  return Esiste(osservazione.Punto) && Dato(osservazione.Distanza) && Dato(osservazione.Zenit) &&
         Punto(osservazione.Punto).TipoPla != kNonUsato;
}

// A distance that an eccentric instrument measured, with the direction that brings it to the
// centre.
bool CalcCmpRigVelid1::FuoriCentro(const TOssCr& osservazione) {
  const int tipo = osservazione.TipoDist;
  return (tipo == kFuoriCentro10 || tipo == kFuoriCentro20 || tipo == kFuoriCentro30) &&
         !Mancante(osservazione.Direzione);
}

// Such a distance with a direction that tells nothing: it and the later ones of its station are
// lost.
bool CalcCmpRigVelid1::NonRiducibile(const TOssCr& osservazione) {
  return FuoriCentro(osservazione) && !(osservazione.Direzione > 0.0);
}

// A height needs zenith angle, target height and distance, and plane coordinates of both ends for
// its weight: `distanzaQuadra` is their squared distance [km^2].
bool CalcCmpRigVelid1::ZenitAlt(const TStaCr& stazione, const TOssCr& osservazione,
                                double& distanzaQuadra) const {
  if (!Esiste(osservazione.Punto) || !Dato(osservazione.Distanza) || !Dato(osservazione.Zenit) ||
      !Dato(osservazione.AltSegnale) || Punto(osservazione.Punto).TipoAlt == kNonUsato)
    return false;
  const TCoorCr& p = Punto(stazione.Punto);
  const TCoorCr& t = Punto(osservazione.Punto);
  if (Mancante(p.Est) || Mancante(p.Nord) || Mancante(t.Est) || Mancante(t.Nord)) return false;
  const double dE = p.Est - t.Est;
  const double dN = p.Nord - t.Nord;
  distanzaQuadra = dE * dE + dN * dN;
  return distanzaQuadra != 0.0;
}
