// The normal matrix of the adjustment at work, held dense, or sparse for a large network. Drivers,
// statistics and reports come here and need not know which.

#include <algorithm>

#include "kzt5cmrg.h"
#include "lsq/sparso.h"
#include "records/costanti.h"

using namespace kzt5cmrg;

// Forms N = A^t P A and factors it; false when it is not positive definite. A sparse system is
// analysed at the first solution of an adjustment: the pattern of the equations stays.
bool CalcCmpRigVelid1::FattorizzaNormale(int equazioni, int incognite) {
  if (Denso) {
    FormaNormale(equazioni, incognite);
    return Tchol(Normale.Puntatori(), incognite) == 0;
  }
  if (!Sparso) Sparso = std::make_unique<SistemaSparso>(equazioni, incognite, Indici.Puntatori());
  return Sparso->Fattorizza(Coeff.Puntatori(), Indici.Puntatori(), Peso.get());
}

// Overwrites b with -x, where N x = b.
void CalcCmpRigVelid1::RisolviNormale(double* b, int incognite) {
  if (Denso)
    Sols(Normale.Puntatori(), b, incognite);
  else
    Sparso->Risolvi(b);
}

// Replaces the factor by the inverse, where there is redundancy to make use of it.
void CalcCmpRigVelid1::InvertiNormale(int equazioni, int incognite) {
  if (Denso) {
    if (incognite < equazioni) Inver(Normale.Puntatori(), incognite);
    Simmetrizza(Normale.Puntatori(), incognite);
  } else if (incognite < equazioni) {
    Sparso->Inverti();
  }
}

// Element of the inverse. In a sparse system the two unknowns must meet in some equation.
double CalcCmpRigVelid1::Cofattore(int i, int j) const {
  return Denso ? Normale[i][j] : Sparso->Elemento(i, j);
}

// The full symmetric matrix, its terms in the order of the rows.
void CalcCmpRigVelid1::FormaNormale(int equazioni, int incognite) {
  for (int i = 0; i < incognite; ++i) std::fill_n(Normale[i], incognite, 0.0);
  for (int r = 0; r < equazioni; ++r) {
    const double* a = Coeff[r];
    const int* inc = Indici[r];
    for (int k = 0; k < kSlot; ++k) {
      if (inc[k] < 0) continue;
      const double ap = a[k] * Peso[static_cast<std::size_t>(r)];
      double* riga = Normale[inc[k]];
      for (int l = 0; l < kSlot; ++l)
        if (inc[l] >= 0) riga[inc[l]] += ap * a[l];
    }
  }
}
