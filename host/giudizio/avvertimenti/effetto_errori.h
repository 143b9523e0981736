#pragma once

// What gross errors of known size would leave in the residuals of an adjustment in plan.

#include <vector>

#include "host/giudizio/indeterminazione/equazioni_libere.h"
#include "host/rete/risultati.h"

namespace compensa {

class Proiezione {
 public:
  Proiezione(const Rete& rete, const Risultati& risultati);

  // Qvv P d: the residuals that errors d of the observations cause, both in a-priori standard
  // deviations and in the order of Risultati::Equazioni. Empty when the work that one network may
  // cost is used up.
  std::vector<double> Residui(const std::vector<double>& errori);

 private:
  using Vettore = std::vector<double>;
  void Prepara();
  Vettore Applica(const Vettore& x) const;    // A x
  Vettore Trasposta(const Vettore& r) const;  // A^T r
  void Precondiziona(Vettore& s) const;
  bool Minimizza(Vettore& r);

  SistemaLibero S;
  std::vector<int> Riga;  // of each equation, kNessuno = not in plan
  Vettore Blocchi;        // inverses of the 2 x 2 diagonal blocks: three numbers a node
  double Lavoro = 0.0;
};

}  // namespace compensa
