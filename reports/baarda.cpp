// Data snooping: the normalised residual of every equation,
//   w = |v| / (s0 sqrt(|1/p - q|))      q = a Q a^t, cofactor of the adjusted observation
// where 1/p - q is the cofactor of the residual v. (Baarda, A testing procedure for use in geodetic
// networks, 1968.)

#include <cmath>

#include "kzt5cmrg.h"
#include "lsq/sparso.h"
#include "records/costanti.h"

using namespace kzt5cmrg;

// Writes w for the rows 0 to equazioni - 1; 0 where the residual has no standard deviation.
// `inversa` is Q by rows, or null for the sparse inverse that the job holds.
int CalcCmpRigVelid1::Baarda(const double* peso, double** coeff, int** indici, double** inversa,
                             int equazioni, const double* residui, double* w,
                             double sigmaZero) const {
  for (int i = 0; i < equazioni; ++i) {
    const double q = CofattoreOsservazione(coeff[i], indici[i], inversa);
    const double sigma = sigmaZero * std::sqrt(std::abs(1.0 / peso[i] - q));
    w[i] = sigma == 0.0 ? 0.0 : std::abs(residui[i] / sigma);
  }
  return 0;
}

// a Q a^t of one row of six coefficients, over its slots in use; `inversa` as for Baarda.
double CalcCmpRigVelid1::CofattoreOsservazione(const double* coeff, const int* indici,
                                               double** inversa) const {
  double Q[kSlot][kSlot];
  if (inversa == nullptr)
    Sparso->Sottomatrice(indici, Q);
  else
    for (int r = 0; r < kSlot; ++r)
      for (int s = 0; s < kSlot; ++s)
        if (indici[r] >= 0 && indici[s] >= 0) Q[r][s] = inversa[indici[r]][indici[s]];
  double q = 0.0;
  for (int s = 0; s < kSlot; ++s) {
    if (indici[s] < 0) continue;
    double t = 0.0;
    for (int r = 0; r < kSlot; ++r)
      if (indici[r] >= 0) t += coeff[r] * Q[r][s];
    q += t * coeff[s];
  }
  return q;
}
