// The result model: its first filling from the network, and the ellipse of a point.
//   semi-axes^2 = (a + b) / 2 +- sqrt(((a - b) / 2)^2 + c^2)      a, b variances of East and North,
//   azimuth of the major axis = atan2(2 c, b - a) / 2             c their covariance

#include "host/rete/risultati.h"

#include <algorithm>
#include <cmath>

#include "host/rete/geometria.h"

namespace compensa {

namespace {

RisultatoOsservazione Iniziale(const TOssCr& o) {
  RisultatoOsservazione risultato;
  risultato.Punto = o.Punto;
  risultato.Direzione = ValoreDato(o.Direzione);
  risultato.Zenit = ValoreDato(o.Zenit);
  risultato.AltSegnale = ValoreDato(o.AltSegnale);
  risultato.Distanza = ValoreDato(o.Distanza);
  risultato.TipoDist = o.TipoDist;
  return risultato;
}

RisultatoStazione Iniziale(const TStaCr& s) {
  RisultatoStazione risultato;
  risultato.Punto = s.Punto;
  risultato.AltStrum = ValoreDato(s.AltStrum);
  risultato.AltStrumNota = s.AltStrumNota != kAltezzaIncognita;
  risultato.EccDistanza = ValoreDato(s.EccDistanza);
  risultato.EccDirezione = ValoreDato(s.EccDirezione);
  risultato.Osservazioni.reserve(s.Osservazioni.size());
  for (const TOssCr& o : s.Osservazioni) risultato.Osservazioni.push_back(Iniziale(o));
  return risultato;
}

RisultatoPunto Iniziale(const Rete& rete, std::size_t i) {
  const TCoorCr& p = rete.Punti[i];
  RisultatoPunto risultato;
  risultato.Nome = rete.Nomi[i];
  risultato.Est = risultato.EstIniziale = ValoreDato(p.Est);
  risultato.Nord = risultato.NordIniziale = ValoreDato(p.Nord);
  risultato.Quota = risultato.QuotaIniziale = ValoreDato(p.Quota);
  risultato.Ruoli = risultato.RuoliIniziali = rete.RuoliIniziali[i];
  return risultato;
}

}  // namespace

double ValoreDato(double valore) { return valore > kNonDato ? kAssente : valore; }

Risultati RisultatiIniziali(const Rete& rete) {
  Risultati risultati;
  if (!rete.NomiFile.empty()) risultati.File = rete.NomiFile.front();
  risultati.DatiProgetto = rete.DatiProgetto;
  risultati.Opzioni = rete.Opzioni;
  risultati.CurvaturaRifrazione = rete.CurvaturaRifrazione;
  risultati.Punti.reserve(rete.Punti.size());
  for (std::size_t i = 0; i < rete.Punti.size(); ++i) risultati.Punti.push_back(Iniziale(rete, i));
  risultati.Stazioni.reserve(rete.Stazioni.size());
  for (const TStaCr& s : rete.Stazioni) risultati.Stazioni.push_back(Iniziale(s));
  if ((rete.Opzioni.TipoCalcolo & kCalcoloPlanimetria) != 0)
    risultati.Planimetria.Fine = Esito::NonEseguita;
  if ((rete.Opzioni.TipoCalcolo & kCalcoloAltimetria) != 0)
    risultati.Altimetria.Fine = Esito::NonEseguita;
  return risultati;
}

Ellisse CalcolaEllisse(double varEst, double varNord, double covarianza) {
  const double media = (varEst + varNord) / 2.0;
  const double raggio = std::hypot((varEst - varNord) / 2.0, covarianza);
  const double azimut = std::atan2(2.0 * covarianza, varNord - varEst) / 2.0;
  return {std::sqrt(media + raggio), std::sqrt(std::max(media - raggio, 0.0)), AzimutRetta(azimut)};
}

bool TutteRiuscite(const Risultati& risultati) {
  const auto bene = [](const RisultatoCompensazione& c) {
    return c.Fine == Esito::NonRichiesta ||
           (c.Fine == Esito::Riuscita && c.GradiLiberi == 0 && c.PuntiNonCalcolati.empty());
  };
  return bene(risultati.Planimetria) && bene(risultati.Altimetria);
}

}  // namespace compensa
