// What is taken from the job when an adjustment is complete. The rows of the equations are found
// again by walking stations and observations as the builders do, with the job's own rules of
// selection.
//   w = |v| / (s0 sqrt(|1/p - q|))      r = 1 - p q      q = a Q a^t of the row
// Known terms belong to the coordinates before the last correction: known term + what is computed
// from those coordinates gives back the observed value. Without redundancy Q and sigma zero do not
// exist.

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "host/base/unita.h"
#include "host/calcolo/osservatore.h"
#include "host/rete/geometria.h"
#include "records/selezione.h"

namespace compensa {

namespace {

// Below this the residual of an equation and its cofactor are differences of rounded numbers, and w
// says nothing.
constexpr double kRidondanzaMinima = 1e-6;

// Coordinates nearer than this give an equation without a known term [km].
constexpr double kCoincidenti = 1e-7;

}  // namespace

// The two places that read the inverse of the normal matrix.
double OsservatoreCalcolo::Cofattore(int i, int j) const { return Calcolo->Cofattore(i, j); }

double OsservatoreCalcolo::CofattoreRiga(int riga) const {
  return Calcolo->CofattoreOsservazione(Calcolo->Coeff[riga], Calcolo->Indici[riga],
                                        Calcolo->Normale.Puntatori());
}

// In the unit of the unknown.
double OsservatoreCalcolo::Sqm(int incognita) const {
  return std::sqrt(Cofattore(incognita, incognita)) * Calcolo->SigmaZero;
}

// Adds the equation of a row, whose values come in the unit of its kind; `scala` brings the job's
// unit to that one. Returns its index.
int OsservatoreCalcolo::Aggiungi(Equazione equazione, int riga, double scala) {
  const auto r = static_cast<std::size_t>(riga);
  const double residuo = Calcolo->Residui[r];
  equazione.Residuo = residuo * scala;
  equazione.Compensato = equazione.Usato - equazione.Residuo;
  equazione.Peso = Calcolo->Peso[r];
  if (ConCofattori()) {
    const double q = CofattoreRiga(riga);
    const double sigma = Calcolo->SigmaZero * std::sqrt(std::abs(1.0 / equazione.Peso - q));
    equazione.W = sigma == 0.0 ? 0.0 : std::abs(residuo / sigma);
    equazione.Ridondanza = 1.0 - equazione.Peso * q;
    equazione.Sqm = Calcolo->SigmaZero / std::sqrt(equazione.Peso) * scala;
  }
  const auto indice = static_cast<int>(R.Equazioni.size());
  const int massimo = Corrente->EquazioneWMassimo;
  if (equazione.Ridondanza > kRidondanzaMinima &&
      (massimo == kNessuno || equazione.W > R.Equazioni[static_cast<std::size_t>(massimo)].W))
    Corrente->EquazioneWMassimo = indice;
  R.Equazioni.push_back(equazione);
  return indice;
}

// Every row must have found its observation.
void OsservatoreCalcolo::Controlla(int righe) const {
  if (righe != Corrente->Equazioni)
    throw std::logic_error("equazioni non riconosciute: " + std::to_string(righe) + " su " +
                           std::to_string(Corrente->Equazioni));
}

// `unita` is what the report counts sigma zero in; without redundancy it prints 0.
void OsservatoreCalcolo::PrendiSigmaZero(double unita) {
  Corrente->SigmaZeroRapporto = Calcolo->SigmaZero / unita;
  if (ConCofattori()) Corrente->SigmaZero = Calcolo->SigmaZero;
}

void OsservatoreCalcolo::IstantaneaPla() {
  PrendiSigmaZero(Calcolo->SigmaZeroPriori);
  if (ConCofattori()) PrendiPuntiPla();
  PrendiOrientamenti();
  int riga = 0;
  PrendiAngoli(riga);
  PrendiDistanze(riga);
  Controlla(riga);
}

void OsservatoreCalcolo::PrendiPuntiPla() {
  const double scala = Calcolo->SigmaZero * kMetriPerKm;
  for (int k = 0; k < Calcolo->nIncPla; ++k) {
    const int punto = Calcolo->PuntoDaIncPla[static_cast<std::size_t>(k)];
    RisultatoPunto& p = R.Punti[static_cast<std::size_t>(punto)];
    const int c = 2 * k;
    p.SqmEst = Sqm(c) * kMetriPerKm;
    p.SqmNord = Sqm(c + 1) * kMetriPerKm;
    p.Covarianza = scala * scala * Cofattore(c, c + 1);
    const Ellisse ellisse =
        CalcolaEllisse(p.SqmEst * p.SqmEst, p.SqmNord * p.SqmNord, p.Covarianza);
    p.EllAsseMag = ellisse.AsseMag;
    p.EllAsseMin = ellisse.AsseMin;
    p.EllAzimut = ellisse.Azimut;
  }
}

void OsservatoreCalcolo::PrendiOrientamenti() {
  for (std::size_t i = 0; i < R.Stazioni.size(); ++i) {
    const TStaCr& s = (*Calcolo->Stazioni)[i];
    const auto elencata = [&](const TOssCr& o) { return LetturaElencata(*Calcolo->Punti, o); };
    if (!StazionePla(*Calcolo->Punti, s) || std::ranges::none_of(s.Osservazioni, elencata))
      continue;
    R.Stazioni[i].Orientamento = NelGiro(Calcolo->OrientamentoMedio(s) * kGonPerRad);
  }
}

OsservatoreCalcolo::Visuale OsservatoreCalcolo::Misura(int stazione, int collimato) const {
  const Posto& p = Posti[static_cast<std::size_t>(stazione)];
  const Posto& t = Posti[static_cast<std::size_t>(collimato)];
  Visuale visuale{};
  CalcCmpRigVelid1::Anomalia(p.Est, p.Nord, t.Est, t.Nord, visuale.Azimut, visuale.Distanza);
  return visuale;
}

void OsservatoreCalcolo::PrendiAngoli(int& riga) {
  const bool pesati = Calcolo->DistanzePresenti == kConDistanze;
  for (std::size_t i = 0; i < R.Stazioni.size(); ++i) {
    const TStaCr& s = (*Calcolo->Stazioni)[i];
    auto& osservazioni = R.Stazioni[i].Osservazioni;
    PerOgniAngolo(*Calcolo->Punti, s, [&](std::size_t r, std::size_t k) {
      const double calcolato = Misura(s.Punto, s.Osservazioni[k].Punto).Azimut -
                               Misura(s.Punto, s.Osservazioni[r].Punto).Azimut;
      Equazione equazione{.Tipo = TipoEquazione::Angolo,
                          .Stazione = static_cast<int>(i),
                          .Osservazione = static_cast<int>(k),
                          .Riferimento = static_cast<int>(r)};
      const double noto = Calcolo->TermineNoto[static_cast<std::size_t>(riga)];
      equazione.Usato = NelGiro((noto + calcolato) * kGonPerRad);
      if (pesati) equazione.SqmPriori = Calcolo->Opzioni->SqmDir;
      osservazioni[r].DirezioneRiferimento = true;
      osservazioni[k].Angolo = Aggiungi(equazione, riga++, kGonPerRad);
    });
  }
}

void OsservatoreCalcolo::PrendiDistanze(int& riga) {
  for (std::size_t i = 0; i < R.Stazioni.size(); ++i) {
    const TStaCr& s = (*Calcolo->Stazioni)[i];
    PerOgniDistanza(*Calcolo->Punti, s, [&](std::size_t k) {
      const auto r = static_cast<std::size_t>(riga);
      const double calcolata = Misura(s.Punto, s.Osservazioni[k].Punto).Distanza;
      Equazione equazione{.Tipo = TipoEquazione::Distanza,
                          .Stazione = static_cast<int>(i),
                          .Osservazione = static_cast<int>(k)};
      if (!(calcolata < kCoincidenti))
        equazione.Usato = (Calcolo->TermineNoto[r] + calcolata) * kMetriPerKm;
      equazione.SqmPriori = Calcolo->SigmaZeroPriori / std::sqrt(Calcolo->Peso[r]) * kMetriPerKm;
      R.Stazioni[i].Osservazioni[k].EqDistanza = Aggiungi(equazione, riga++, kMetriPerKm);
    });
  }
}

void OsservatoreCalcolo::IstantaneaAlt() {
  PrendiSigmaZero(1.0);
  PrendiPuntiAlt();
  int riga = 0;
  PrendiDislivelli(riga);
  Controlla(riga);
}

void OsservatoreCalcolo::PrendiPuntiAlt() {
  if (ConCofattori())
    for (int j = 0; j < Calcolo->nIncAlt; ++j) {
      const int punto = Calcolo->PuntoDaIncAlt[static_cast<std::size_t>(j)];
      R.Punti[static_cast<std::size_t>(punto)].SqmQuota = Sqm(j);
    }
  int incognita = Calcolo->nIncAlt;
  for (std::size_t i = 0; i < R.Stazioni.size(); ++i) {
    const TStaCr& s = (*Calcolo->Stazioni)[i];
    if (!StrumentoIncognito(*Calcolo->Punti, s)) continue;
    R.Stazioni[i].AltStrumCompensata = Calcolo->Soluzione[static_cast<std::size_t>(incognita)];
    if (ConCofattori()) R.Stazioni[i].SqmAltStrum = Sqm(incognita);
    ++incognita;
  }
}

// The known term has the known heights on its side; what was observed is the difference of the two
// points' heights, with the adjusted instrument height where that is an unknown.
void OsservatoreCalcolo::PrendiDislivelli(int& riga) {
  for (std::size_t i = 0; i < R.Stazioni.size(); ++i) {
    const TStaCr& s = (*Calcolo->Stazioni)[i];
    PerOgniDislivello(*Calcolo->Punti, s, [&](std::size_t k, double) {
      const TCoorCr& p = Calcolo->Punto(s.Punto);
      const TCoorCr& t = Calcolo->Punto(s.Osservazioni[k].Punto);
      double usato = Calcolo->TermineNoto[static_cast<std::size_t>(riga)];
      if (p.TipoAlt == kFisso) usato -= p.Quota;
      if (t.TipoAlt == kFisso) usato += t.Quota;
      if (s.AltStrumNota == kAltezzaIncognita) usato += R.Stazioni[i].AltStrumCompensata;
      const Equazione equazione{.Tipo = TipoEquazione::Dislivello,
                                .Stazione = static_cast<int>(i),
                                .Osservazione = static_cast<int>(k),
                                .Usato = usato};
      R.Stazioni[i].Osservazioni[k].Dislivello = Aggiungi(equazione, riga++, 1.0);
    });
  }
}

}  // namespace compensa
