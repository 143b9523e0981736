#pragma once

// The observation equations of a network as far as its freedom to move needs them: coefficients on
// the unknowns, without known terms.

#include <array>
#include <span>
#include <vector>

#include "host/rete/risultati.h"
#include "host/rete/visuali.h"

namespace compensa {

// One equation. Its coefficients say by how many a-priori standard deviations the observed quantity
// changes when an unknown moves by a metre.
struct RigaLibera {
  static constexpr int kNodi = 3;
  std::array<int, kNodi> Nodi{kNessuno, kNessuno, kNessuno};  // each once
  std::array<std::array<double, 2>, kNodi> Coeff{};
  TipoEquazione Tipo = TipoEquazione::Angolo;
  int Stazione = kNessuno;
  int Osservazione = kNessuno;
  int Riferimento = kNessuno;  // of an angle, an observation of the station
};

// The equations of one adjustment. A node is what moves by itself: in plan an unknown point with
// the two unknowns East and North, in height an unknown height or instrument height, with one.
struct SistemaLibero {
  int Passo = 2;               // unknowns of a node
  std::vector<int> Punti;      // of each node: its point, that of the set-up for an instrument
  std::vector<int> Strumenti;  // of each node: the set-up whose instrument height it is, kNessuno
  std::vector<Posto> Luoghi;   // of each node, from Origine [m]; empty in height
  Posto Origine;               // centroid: map coordinates are large
  std::vector<RigaLibera> Righe;
  std::vector<int> NodoDiPunto;  // kNessuno = the point does not move

  int Nodi() const { return static_cast<int>(Punti.size()); }
  // Numbers of the rows that a node stands in.
  std::span<const int> RigheDi(int nodo) const;
  // To be called when the rows are complete.
  void Indicizza();

 private:
  std::vector<std::size_t> Inizio;
  std::vector<int> Indice;
};

// Which coordinates the equations of a plan are built on.
enum class Coordinate { DelFile, Finali };

// Angles from the reference reading of each set-up and distances, of the records as a run has left
// them. Eccentricities and reductions are left out: they hardly turn or stretch a sight.
SistemaLibero EquazioniPlanimetria(const Rete& rete, const Risultati& risultati, Coordinate quali);

// Height differences from zenith angles.
SistemaLibero EquazioniAltimetria(const Rete& rete, const Risultati& risultati);

}  // namespace compensa
