#pragma once

// Symbolic analysis of a sparse symmetric matrix: which unknowns are eliminated together, and which
// later ones each such group touches.

#include <vector>

#include "lsq/ordinamento.h"

namespace kzt5cmrg {

inline constexpr int kNessunFronte = -1;

// A group of nodes eliminated together. Nodes are counted in the order of elimination; the group
// owns the nodes Inizio ... Inizio + Larghezza - 1 and touches those of Resto, all later, in order.
struct Fronte {
  int Inizio = 0;
  int Larghezza = 0;
  int Padre = kNessunFronte;  // the front that owns the first node of Resto
  std::vector<int> Resto;
};

struct AlberoFronti {
  std::vector<int> Posizione;      // node of the graph -> its place in the order of elimination
  std::vector<int> FronteDaPosto;  // place -> front that owns it
  std::vector<Fronte> Fronti;      // children before parents
};

AlberoFronti Analizza(const Grafo& grafo);

}  // namespace kzt5cmrg
