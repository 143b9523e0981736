#pragma once

// Orderings of the unknowns that keep a Cholesky factor sparse.

#include <vector>

namespace kzt5cmrg {

// Adjacency of an undirected graph without loops: the neighbours of node i are
// Vicini[Inizio[i]] ... Vicini[Inizio[i + 1] - 1], each once, in any order.
struct Grafo {
  std::vector<int> Inizio;
  std::vector<int> Vicini;
  int Nodi() const { return static_cast<int>(Inizio.size()) - 1; }
};

// Order of elimination by approximate minimum degree: element k is the node eliminated k-th.
std::vector<int> GradoMinimo(const Grafo& grafo);

}  // namespace kzt5cmrg
