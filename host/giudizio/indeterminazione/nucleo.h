#pragma once

// The motions that leave every observation of a network as it is: the null space of its equations.

#include <vector>

#include "host/giudizio/indeterminazione/autovettori.h"
#include "host/giudizio/indeterminazione/equazioni_libere.h"

namespace compensa {

// Against the largest change that the parts of a motion could make by themselves, an observation
// that changes by less is not changed at all: the module gives up at a pivot of about the square.
inline constexpr double kNullo = 1e-7;

// A node that can move while all the others stand still.
struct NodoLibero {
  int Nodo = kNessuno;
  int Gradi = 0;                 // independent directions, at most Passo
  double Est = 0.0, Nord = 0.0;  // in plan, of a single direction: unit vector
};

// Nodes tied to each other by equations and their motions, besides those of single nodes.
struct ParteLibera {
  std::vector<int> Nodi;      // ascending
  std::vector<Vettore> Moti;  // a basis [m]; Passo unknowns for each of Nodi
};

struct Nucleo {
  std::vector<NodoLibero> Nodi;
  std::vector<ParteLibera> Parti;
};

// Of a very large part with very many motions that are not of single nodes only some are found.
Nucleo CalcolaNucleo(const SistemaLibero& sistema);

// The motion that the observations resist least; of a network without free motions.
struct MotoDebole {
  std::vector<int> Nodi;
  Vettore Moto;           // Passo unknowns for each node; the largest displacement is 1 m
  double Sqm = kAssente;  // a priori, of that displacement [m]
};
MotoDebole CercaMotoDebole(const SistemaLibero& sistema);

// How much a motion of the nodes changes the observations: root of the sum of squares, in standard
// deviations, and against what its parts could change.
struct Effetto {
  double Assoluto = 0.0;
  double Relativo = 0.0;  // 0 if no observation is concerned
};
Effetto EffettoDi(const SistemaLibero& sistema, const std::vector<int>& nodi, const Vettore& moto);

}  // namespace compensa
