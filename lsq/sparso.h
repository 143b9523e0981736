#pragma once

// The normal equations of a large network, held on the pattern of their Cholesky factor.

#include <cstddef>
#include <vector>

#include "lsq/fronti.h"
#include "lsq/nuclei.h"
#include "records/costanti.h"

namespace kzt5cmrg {

// Upper triangles that wait for another front, the last one put first. It grows to what one pass
// needs.
class PilaTriangoli {
 public:
  // Room for n doubles on top; valid until the next call.
  double* Impila(std::size_t n) {
    Livelli.push_back(Cima);
    Cima += n;
    if (Cima > Dati.size()) Dati.resize(Cima + Cima / 2);
    return Dati.data() + Livelli.back();
  }
  const double* Sommo() const { return Dati.data() + Livelli.back(); }
  void Togli() {
    Cima = Livelli.back();
    Livelli.pop_back();
  }
  void Svuota() {
    Livelli.clear();
    Cima = 0;
  }

 private:
  std::vector<double> Dati;
  std::vector<std::size_t> Livelli;  // where each one begins
  std::size_t Cima = 0;
};

// One system of normal equations from equation rows whose pattern does not change: analysed once,
// factored at every iteration, inverted on the pattern of its factor at the end. The rows are those
// of the solver: six coefficients, the numbers of their unknowns (negative = empty slot), a weight.
class SistemaSparso {
 public:
  // Orders the unknowns and finds the fronts. Throws std::bad_alloc when memory cannot be had.
  SistemaSparso(int equazioni, int incognite, const int* const* indici);

  // Forms N = A^t P A and factors it. False at a pivot that is not greater than kPivotMinimo.
  bool Fattorizza(const double* const* coeff, const int* const* indici, const double* peso);
  // Overwrites b with -x, where N x = b.
  void Risolvi(double* b);
  // Replaces the factor by the inverse on its pattern.
  void Inverti();
  // Element of what the last of Fattorizza and Inverti has left; the two unknowns must meet in some
  // equation.
  double Elemento(int i, int j) const;
  // Those of all pairs of unknowns of one equation row, by its slots; empty slots are left alone.
  void Sottomatrice(const int* indici, double (*q)[kSlot]) const;

 private:
  // Numbers of unknowns: of the front's own, and with those it touches.
  int Larghezza(std::size_t s) const { return Fronti[s].Larghezza * Passo; }
  int Ordine(std::size_t s) const {
    return (Fronti[s].Larghezza + static_cast<int>(Fronti[s].Resto.size())) * Passo;
  }
  void AssegnaRighe(int equazioni, const int* const* indici);
  double* const* PreparaFronte(std::size_t s);
  void Colloca(std::size_t s);
  const int* PostiDelResto(std::size_t s);
  void Assembla(std::size_t s, const double* const* coeff, const int* const* indici,
                const double* peso);
  void AggiungiFigli(std::size_t s);
  void RaccogliInversa(std::size_t s, std::size_t padre);
  const double* Blocco(int primo, int secondo, std::size_t& passoRiga) const;
  void Raccogli(std::size_t s, const double* b);
  void Riponi(std::size_t s, double* b, bool ancheResto) const;

  int Passo = 1;  // unknowns of a node: 2 when they come in pairs everywhere
  std::vector<Fronte> Fronti;
  std::vector<int> Posizione;    // node -> place in the order of elimination
  std::vector<int> NodoDaPosto;  // and back
  std::vector<int> FronteDaPosto;
  std::vector<std::size_t> Inizio;  // of the rows of each front in Valori
  std::vector<double> Valori;       // rows of the fronts' own unknowns, side by side

  std::vector<int> InizioRighe, RigheDaFronte;   // equation rows assembled into each front
  std::vector<int> UltimoFiglio, FratelloPrima;  // children of each front, from the last one

  // Work memory, sized once for the largest need.
  std::vector<double> Matrice;  // the front at work, square
  std::vector<double*> RigheMatrice;
  PilaTriangoli Pila;
  std::vector<int> Locale;      // place -> place within the front at work
  std::vector<int> Dove;        // unknowns of a rest -> unknowns of the front at work
  std::vector<double> Vettore;  // right-hand side of the front at work
  LavoroNuclei Lavoro;
};

}  // namespace kzt5cmrg
