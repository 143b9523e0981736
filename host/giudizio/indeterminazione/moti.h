#pragma once

// Motions of a network taken apart into those that can be told in words.

#include <array>
#include <vector>

#include "host/giudizio/indeterminazione/nucleo.h"

namespace compensa {

// Small motion of a point at r = (E, N) from Centro:
//   dE = TraslEst + Scala E + Rotazione N     dN = TraslNord + Scala N - Rotazione E
struct Similitudine {
  double TraslEst = 0.0, TraslNord = 0.0;
  double Rotazione = 0.0, Scala = 0.0;
};

// Nodes that move together.
struct MotoInsieme {
  std::vector<int> Nodi;                   // ascending, those that move
  Vettore Moto;                            // one motion of them; the largest displacement is 1 m
  Posto Centro;                            // that the similarities count from
  std::vector<Similitudine> Similitudini;  // independent motions as one body; none = another kind
};

// The motions of a part, as many as its basis has: in plan first those of whole bodies, then those
// of what hangs on them.
std::vector<MotoInsieme> Scomponi(const SistemaLibero& sistema, ParteLibera parte);

// A motion of a part in plan as far as it is that of one body; nodes that hardly move are left out.
MotoInsieme ComeInsieme(const SistemaLibero& sistema, const MotoDebole& debole);

}  // namespace compensa
