#pragma once

// The sights of a network as undirected pairs of points.

#include <vector>

#include "host/risultati.h"

// Above this normalised residual an observation is suspect: two-sided risk of one in a thousand.
inline constexpr double kWSospetto = 3.29;

// All shots between two points, in either direction. An angle belongs to the sight to its target,
// not to that of the reference it counts from.
struct VisualeUnica {
  int Da = kNessuno, A = kNessuno;  // points; Da is the station of the first shot
  int Andata = 0, Ritorno = 0;      // shots from Da to A and from A to Da
  bool Direzione = false;           // read in some shot, whether or not the adjustment used it
  bool Distanza = false;
  bool Zenit = false;
  int Equazioni = 0;           // that the shots gave, of both adjustments
  double WMassimo = kAssente;  // largest normalised residual of them; kAssente = no equations
  double RidondanzaMinima = kAssente;

  int Tiri() const { return Andata + Ritorno; }
  bool Reciproca() const { return Andata > 0 && Ritorno > 0; }
  bool Sospetta() const { return WMassimo > kWSospetto; }
};

// In the order of their first shots.
std::vector<VisualeUnica> RaccogliVisuali(const Risultati& risultati);
