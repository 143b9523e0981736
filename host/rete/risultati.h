#pragma once

// The result model: all that a run has found, in plain structures that every output is built from.
// It stands by itself: nothing in it points into the network or into the job.
//
// Lengths, heights and coordinates are in metres, angles and azimuths in gon. Standard deviations
// are a posteriori (sigma zero included) and of one sigma unless their name says otherwise.
// Azimuths count from grid north clockwise. A residual is observed minus adjusted. A number that
// does not exist is kAssente; an index that does not exist is kNessuno.

#include <string>
#include <vector>

#include "host/base/assente.h"
#include "host/rete/modello.h"

namespace compensa {

// How an adjustment ended.
enum class Esito {
  NonRichiesta,
  Riuscita,
  NonConvergente,           // iteration limit reached; the results are those of the last iteration
  NonDeterminabile,         // some of its points lack observations: no adjustment was run
  NonEseguita,              // not run because the other adjustment has such points
  PuntiFissiInsufficienti,  // fewer than two in plan
  PiuIncognite,             // more unknowns than equations
  NormaleSingolare,         // the normal matrix is not positive definite
  NonFinita,                // it came to its end with results that are no finite numbers
};

// Kinds of observation equations, and what each observes.
enum class TipoEquazione {
  Angolo,      // from the reference sight of the station to the sight, clockwise [gon]
  Distanza,    // between the two points, on the plane of the coordinates [m]
  Dislivello,  // height of the target point above the station point [m]
};

// Means over the coordinates of the unknown points.
struct Iterazione {
  int Numero = 0;                       // from 1
  double CorrezioneMedia = kAssente;    // of the absolute values [m]; kAssente = not completed
  double CorrezioneMassima = kAssente;  // largest absolute correction of a coordinate [m]
  int PuntoMassimo = kNessuno;          // the point that it belongs to
};

// What still moves where the observations do not fix a network.
enum class TipoMoto {
  Punto,        // one point alone
  Traslazione,  // points together, as one body, from here on
  Rotazione,
  Dilatazione,           // its shape stays, its size does not
  RotazioneDilatazione,  // both, separately or together
  Rototraslazione,       // shifts in every direction, rotation and perhaps scale
  Composto,              // points together, each its own way
  Quote,                 // heights together
  Strumento,             // instrument heights, alone or with heights
};

struct CentroMoto {
  double Est = kAssente, Nord = kAssente;
  int Punto = kNessuno;  // that stands there
};

struct MotoLibero {
  TipoMoto Tipo = TipoMoto::Punto;
  int Gradi = 1;              // independent motions that this stands for
  std::vector<int> Punti;     // that move
  std::vector<int> Stazioni;  // whose instrument height moves
  double Azimut = kAssente;   // of a motion along one line, 0 to 200
  CentroMoto Centro;          // of rotation or scale
  CentroMoto CentroScala;     // of the scale where it is another than that of the rotation
  double Sqm = kAssente;      // a priori, of a motion that is not quite free [m]
  std::string Parole;         // what moves how and what is missing, UTF-8
};

// An equation of the last iteration. The values are in the unit of its kind.
struct Equazione {
  TipoEquazione Tipo = TipoEquazione::Angolo;
  int Stazione = kNessuno;
  int Osservazione = kNessuno;   // of the station
  int Riferimento = kNessuno;    // of an angle: the observation of the station that it counts from
  double Usato = kAssente;       // observed value with all reductions
  double Compensato = kAssente;  // Usato minus Residuo
  double Residuo = kAssente;
  double SqmPriori = kAssente;  // kAssente where the weights are only relative
  double Sqm = kAssente;        // a posteriori: sigma zero over the root of the weight
  double Peso = kAssente;       // in the adjustment's own units: km and rad in plan, m in height
  double W = 0.0;               // normalised residual, not negative
  double Ridondanza = 0.0;      // redundancy number, 0 to 1 but for rounding
};

// A record of the network with the equations that it gave, as indices into Risultati::Equazioni.
struct RisultatoOsservazione {
  int Punto = kNessuno;
  double Direzione = kAssente;
  double Zenit = kAssente;
  double AltSegnale = kAssente;
  double Distanza = kAssente;  // as measured
  int TipoDist = kOrizzontale;
  bool DirezioneRiferimento = false;  // the angles of the station count from it
  int Angolo = kNessuno;
  int EqDistanza = kNessuno;
  int Dislivello = kNessuno;
};

struct RisultatoStazione {
  int Punto = kNessuno;
  double AltStrum = kAssente;  // as given
  bool AltStrumNota = true;
  double AltStrumCompensata = kAssente;  // of an unknown one that was adjusted
  double SqmAltStrum = kAssente;
  double EccDistanza = kAssente;
  double EccDirezione = kAssente;
  double Orientamento = kAssente;  // azimuth of the zero of the circle, 0 to 400
  std::vector<RisultatoOsservazione> Osservazioni;
};

struct RisultatoPunto {
  std::string Nome;                                                                  // UTF-8
  double EstIniziale = kAssente, NordIniziale = kAssente, QuotaIniziale = kAssente;  // as given
  double Est = kAssente, Nord = kAssente, Quota = kAssente;  // adjusted if so says the role
  RuoliPunto RuoliIniziali;                                  // as given
  RuoliPunto Ruoli;                                          // at the end
  double SqmEst = kAssente, SqmNord = kAssente, SqmQuota = kAssente;
  double Covarianza = kAssente;  // of East and North [m^2]
  double EllAsseMag = kAssente;  // semi-axes of the standard ellipse
  double EllAsseMin = kAssente;
  double EllAzimut = kAssente;  // of the major axis, 0 to 200
  double EllTeta = kAssente;    // the orientation that the report prints: not that azimuth where
                                // the variance of East is the larger one
};

struct RisultatoCompensazione {
  Esito Fine = Esito::NonRichiesta;
  std::vector<int> PuntiNonDeterminabili;
  int Fissi = 0, Incogniti = 0, NonUsati = 0;  // points
  int Incognite = kNessuno;                    // numbers sought; kNessuno = not counted
  int Equazioni = kNessuno;                    // likewise
  double SigmaZero = kAssente;                 // km-rad in plan, m in height; needs redundancy
  double SigmaZeroRapporto = kAssente;         // as the report prints it: in plan in units of 10^-6
  std::vector<Iterazione> Iterazioni;          // none in height, whose equations are linear
  int EquazioneWMassimo = kNessuno;            // in Risultati::Equazioni
  std::vector<MotoLibero> MotiLiberi;          // what the observations do not fix; the first 100
  int GradiLiberi = 0;                 // independent free motions, with those that are not listed
  std::vector<int> PuntiNonCalcolati;  // unknown by the file, left out for lack of coordinates
  bool ApprossimateLontane = false;    // nothing is free, but the iterations were led astray: the
                                       // one motion listed only carries the words

  // Only where the equations were counted.
  int Ridondanza() const { return Equazioni - Incognite; }
  bool Contate() const { return Equazioni != kNessuno; }
  bool Compiuta() const { return Fine == Esito::Riuscita || Fine == Esito::NonConvergente; }
  // Whether points were asked for and none of them was adjusted.
  bool NienteCalcolato() const { return !PuntiNonCalcolati.empty() && Incogniti == 0; }
};

struct Risultati {
  std::string File;  // the network file as it was named
  Progetto DatiProgetto;
  TOpzCr Opzioni{};
  CCalcDsOr CurvaturaRifrazione{};
  double FalsoEst = 0.0;  // of the map zone that was recognised [m]; 0 = none
  std::vector<RisultatoPunto> Punti;
  std::vector<RisultatoStazione> Stazioni;
  std::vector<Equazione> Equazioni;  // of both adjustments, as their normal equations take them
  RisultatoCompensazione Planimetria;
  RisultatoCompensazione Altimetria;
};

// The model of a network that was not adjusted yet: what the file gives, nothing found. To be
// called before a job works on the records.
Risultati RisultatiIniziali(const Rete& rete);

// Ellipse of a point from its covariance block [m^2]: semi-axes [m], azimuth of the major one
// [gon].
struct Ellisse {
  double AsseMag, AsseMin, Azimut;
};
Ellisse CalcolaEllisse(double varEst, double varNord, double covarianza);

// Whether all adjustments that were asked for have succeeded, with observations that fix the
// network and with every point that the file wants.
bool TutteRiuscite(const Risultati& risultati);

// The value of a record, kAssente if it was not given.
double ValoreDato(double valore);

}  // namespace compensa
