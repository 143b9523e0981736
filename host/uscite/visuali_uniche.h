#pragma once

// The sights of a network as undirected pairs of points.

#include <string_view>
#include <vector>

#include "host/rete/grandezze.h"
#include "host/rete/risultati.h"

namespace compensa {

// All shots between two points, in either direction. An angle belongs to the sight to its target,
// not to that of the reference it counts from.
struct VisualeUnica {
  int Da = kNessuno, A = kNessuno;  // points; Da is the station of the first shot
  int Andata = 0, Ritorno = 0;      // shots from Da to A and from A to Da
  bool Direzione = false;           // read in some shot, whether or not the adjustment used it
  bool Distanza = false;
  bool Zenit = false;
  bool Riferimento = false;    // angles of the station count from it
  int Equazioni = 0;           // that the shots gave, of both adjustments
  double WMassimo = kAssente;  // largest normalised residual of them; kAssente = no equations
  double RidondanzaMinima = kAssente;

  bool Reciproca() const { return Andata > 0 && Ritorno > 0; }
  bool Usata() const { return Equazioni > 0 || Riferimento; }
  bool Sospetta() const { return WMassimo > kWSospetta; }
};

// In the order of their first shots.
std::vector<VisualeUnica> RaccogliVisuali(const Risultati& risultati);

// "direzione e distanza", "sola direzione", "sola distanza", "solo zenit", "nessuna lettura".
std::string_view NomeTipo(const VisualeUnica& visuale);

}  // namespace compensa
