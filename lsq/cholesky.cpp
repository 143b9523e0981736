// Cholesky factorisation N = U^t U and solution by its two triangles, in place in the upper
// triangle.
//   u_ii = sqrt(n_ii - sum_k<i u_ki^2)      u_ij = (n_ij - sum_k<i u_ki u_kj) / u_ii
// Rows are worked from left to right, so that every inner loop runs along a row in memory while
// each element still takes its terms in the order of k. (Golub and Van Loan, Matrix Computations,
// 4.2.)

#include <cmath>

#include "kzt5cmrg.h"

namespace {
constexpr double kPivotMinimo = 1e-15;  // absolute: the diagonal's own scale does not enter
}  // namespace

// Returns 1 at the first pivot that is not greater than kPivotMinimo (also catches NaN): the rows
// before it stay factored, its row holds the reduced pivot. Else 0. The strict lower triangle is
// neither read nor written.
int CalcCmpRigVelid1::Tchol(double** a, int ordine) {
  for (int i = 0; i < ordine; ++i) {
    double* ai = a[i];
    for (int k = 0; k < i; ++k) ai[i] -= a[k][i] * a[k][i];
    if (!(ai[i] > kPivotMinimo)) return 1;
    ai[i] = std::sqrt(ai[i]);
    for (int k = 0; k < i; ++k) {
      const double* ak = a[k];
      const double aki = ak[i];
      if (aki == 0.0) continue;  // most of a network's rows do not meet
      for (int j = i + 1; j < ordine; ++j) ai[j] -= aki * ak[j];
    }
    for (int j = i + 1; j < ordine; ++j) ai[j] /= ai[i];
  }
  return 0;
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
