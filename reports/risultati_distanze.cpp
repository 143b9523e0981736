// The chapter of the distances: every usable distance against the one between the adjusted points.
// With map coordinates the columns follow it from the horizontal to the ellipsoid and to the plane.

#include <cmath>

#include "kzt5cmrg.h"
#include "records/selezione.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

namespace {
// Offset of the prism by which the report shows the instruments of types 6 and 7 [m]; the equations
// reduce these two with an offset and formulas of their own.
constexpr double kSbraccioMostrato = 0.11;
}  // namespace

void CalcCmpRigVelid1::ScriviDistanze() {
  ScriviTitolo(kRigaDistanze, kDistanzeCorrette);
  if (Opzioni->Cartografiche != 0) {
    ScriviTesto(kColonnaDistanze);
    ScriviTesto(kColonnaOrizzontale);
    ScriviTesto(kColonnaEllissoide);
    ScriviTesto(kColonnaPiane);
    ScriviTesto(kColonnaCorrezione);
    ScriviTestoLn(kColonnaPianeCorrette);
  } else {
    ScriviTesto(kIntestazioneDistanze);
    Out->SaltaRiga(1);
  }
  Out->SaltaRiga(1);
  for (const TStaCr& s : *Stazioni) {
    if (!StazionePla(*Punti, s)) continue;
    for (const TOssCr& o : s.Osservazioni)
      if (DistanzaPla(*Punti, o)) ScriviDistanza(s, o);
  }
  Out->SaltaRiga(2);
}

void CalcCmpRigVelid1::ScriviDistanza(const TStaCr& stazione, const TOssCr& osservazione) {
  const TCoorCr& p = Punto(stazione.Punto);
  const TCoorCr& t = Punto(osservazione.Punto);
  const double misurata = DistanzaMostrata(stazione, osservazione);
  double azimut = 0.0;
  double distanza = 0.0;
  Anomalia(p.Est, p.Nord, t.Est, t.Nord, azimut, distanza);
  const double compensata = distanza / FattoreKm;

  Out->ScriviNumero(stazione.Punto + 1, 3, 0);
  Out->ScriviSpazi(2);
  Out->ScriviStringa(p.Nome, 10);
  Out->ScriviNumero(osservazione.Punto + 1, 3, 0);
  Out->ScriviSpazi(2);
  Out->ScriviStringa(t.Nome, 10);
  if (Opzioni->Cartografiche != 0) {
    const double ellissoide = DistanzaEllissoide(stazione.Punto, osservazione.Punto, misurata);
    double scala = 0.0;
    double correzione = 0.0;
    Gauss(stazione.Punto, osservazione.Punto, scala, correzione);
    const double piana = ellissoide * scala;
    Out->ScriviNumero(misurata, 11, 3);
    Out->ScriviNumero(ellissoide, 11, 3);
    Out->ScriviNumero(piana, 11, 3);
    Out->ScriviNumero(compensata - piana, 7, 3);
    Out->ScriviNumeroLn(compensata, 11, 3);
  } else {
    Out->ScriviNumero(misurata, 15, 3);
    Out->ScriviNumero(compensata - misurata, 15, 3);
    Out->ScriviNumeroLn(compensata, 15, 3);
  }
}

// The measured distance on the horizontal and at the station centre, as the report shows it [m].
double CalcCmpRigVelid1::DistanzaMostrata(const TStaCr& stazione,
                                          const TOssCr& osservazione) const {
  const double z = osservazione.Zenit * FattoreRad;
  double s = osservazione.Distanza;
  switch (osservazione.TipoDist) {
    case kInclinataTipo6:
      s = (s - kAdditiva6) + kSbraccioMostrato * std::cos(std::abs(z));
      return s * std::sin(std::abs(z));
    case kInclinataTipo7: {
      const double lato = s - kAdditiva7;
      const double altezza = kSbraccioMostrato * std::sin(z);
      s = std::sqrt(lato * lato + altezza * altezza) + kSbraccioMostrato * std::cos(std::abs(z));
      return s * std::sin(std::abs(z));
    }
    case kInclinata: return s * std::sin(std::abs(z));
    default:
      return FuoriCentro(osservazione) ? DistanzaAlCentro(stazione, osservazione.Direzione, s) : s;
  }
}
