// Inverse Q = N^-1 from the factor N = U^t U, in place of U, rows from the last to the first:
//   q_ij = -(1 / u_ii) sum_k>i u_ik q_kj      for j > i
//   q_ii =  (1 / u_ii) (1 / u_ii - sum_k>i u_ik q_ik)
// Only the upper triangle of Q is held: a stored q_kj serves both the sum of column j and, by
// symmetry, the sum of column k. (Mikhail and Ackermann, Observations and Least Squares, 1976,
// appendix.)

#include <algorithm>
#include <vector>

#include "kzt5cmrg.h"

// The strict lower triangle is not touched.
int CalcCmpRigVelid1::Inver(double** a, int ordine) {
  std::vector<double> somme(static_cast<std::size_t>(std::max(ordine, 0)));
  double* t = somme.data();
  for (int i = ordine - 1; i >= 0; --i) {
    double* ui = a[i];
    std::fill(t + i + 1, t + ordine, 0.0);
    for (int k = ordine - 1; k > i; --k) {
      const double* qk = a[k];
      const double uik = ui[k];
      double somma = uik * qk[k];
      for (int j = k + 1; j < ordine; ++j) {
        t[j] += uik * qk[j];
        somma += ui[j] * qk[j];
      }
      t[k] += somma;
    }
    double s = 0.0;
    for (int k = ordine - 1; k > i; --k) {
      t[k] = -t[k] / ui[i];
      s += ui[k] * t[k];
    }
    std::copy(t + i + 1, t + ordine, ui + i + 1);
    ui[i] = (1.0 / ui[i] - s) / ui[i];
  }
  return 0;
}

// Copies the upper triangle onto the lower one.
void CalcCmpRigVelid1::Simmetrizza(double** a, int ordine) {
  for (int j = 1; j < ordine; ++j)
    for (int i = 0; i < j; ++i) a[j][i] = a[i][j];
}
