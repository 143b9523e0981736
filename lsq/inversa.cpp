// Inverse Q = N^-1 from the factor N = U^t U, in place of U in the upper triangle.

#include <algorithm>

#include "kzt5cmrg.h"
#include "lsq/nuclei.h"

using namespace kzt5cmrg;

namespace {
constexpr int kRiquadro = 32;  // side of a block that is transposed within the nearest cache
}  // namespace

// The strict lower triangle is not touched.
int CalcCmpRigVelid1::Inver(double** a, int ordine) {
  LavoroNuclei lavoro;
  NucleiScelti().Inverti(a, ordine, ordine, lavoro.Per(ordine, ordine));
  return 0;
}

// Copies the upper triangle onto the lower one.
void CalcCmpRigVelid1::Simmetrizza(double** a, int ordine) {
  for (int j0 = 0; j0 < ordine; j0 += kRiquadro)
    for (int i0 = 0; i0 <= j0; i0 += kRiquadro)
      for (int j = j0; j < std::min(j0 + kRiquadro, ordine); ++j)
        for (int i = i0; i < std::min(i0 + kRiquadro, j); ++i) a[j][i] = a[i][j];
}
