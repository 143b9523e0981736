#pragma once

// A second computation of both adjustments, made another way: the observations are predicted from
// the unknowns, the design matrix is their complex-step derivative (exact to rounding), and the
// weighted equations are solved by a dense QR factorisation, without normal equations.

#include "tests/comuni/rete_prova.h"

// One solution at the coordinates that the network holds, matrices by rows; no rows at all when the
// equations have none.
struct Doppio {
  int Righe = 0, Incognite = 0;
  std::vector<double> A, Noti, Peso;     // [Righe x Incognite], observed minus predicted, weights
  std::vector<double> Passo, Residui;    // the unknowns, known term minus adjusted value
  std::vector<double> Q, Ridondanza, W;  // cofactors; of each equation: redundancy (0 to 1) and w
  double SigmaZero = 0;
  double Raggio = 0;  // that the last projected point has left [km]
};
// Unknowns are corrections [km]; `raggio` is what a step before has left.
Doppio DoppioPla(const ReteProva& rete, double raggio = 0);
Doppio DoppioAlt(const ReteProva& rete);  // unknowns are heights [m]
// Steps in plan until no correction exceeds 2 cm, or as many as the network allows; it is left at
// the coordinates of the last one.
Doppio DoppioIterato(ReteProva& rete);

// Ellipse of the k-th unknown point from the eigenvectors of its covariance [m, gon].
struct EllisseDoppia {
  double AsseMag, AsseMin, Teta, Schiacciamento;  // flattening 0 = circle, without orientation
};
EllisseDoppia DoppiaEllisse(const Doppio& d, int k);

// Latitude, longitude from the central meridian [rad] and mean radius [km] of a point given in km
// without false easting, by the Krueger series in the third flattening.
struct Geografica {
  double Latitudine, Longitudine, RaggioMedio;
};
Geografica DoppiaGeografica(double nord, double daMeridiano);
