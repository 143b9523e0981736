// Cholesky factorisation N = U^t U and solution by its two triangles, in place in the upper
// triangle; the strict lower triangle is neither read nor written. (Golub and Van Loan, Matrix
// Computations, 4.2.)

#include "kzt5cmrg.h"
#include "lsq/nuclei.h"

using namespace kzt5cmrg;

// Returns 1 at the first pivot that is not greater than kPivotMinimo: the rows before it stay
// factored, its diagonal holds the reduced pivot. Else 0.
int CalcCmpRigVelid1::Tchol(double** a, int ordine) {
  LavoroNuclei lavoro;
  return NucleiScelti().Elimina(a, ordine, ordine, lavoro.Per(ordine, ordine)) == kEliminato ? 0
                                                                                             : 1;
}

// Overwrites b with -x, where (U^t U) x = b.
int CalcCmpRigVelid1::Sols(double** a, double* b, int ordine) {
  for (int i = 0; i < ordine; ++i) {
    const double* ai = a[i];
    b[i] /= ai[i];
    for (int j = i + 1; j < ordine; ++j) b[j] -= ai[j] * b[i];
  }
  for (int i = ordine - 1; i >= 0; --i) {
    const double* ai = a[i];
    double somma = b[i];
    for (int k = ordine - 1; k > i; --k) somma += ai[k] * b[k];
    b[i] = -somma / ai[i];
  }
  return 0;
}
