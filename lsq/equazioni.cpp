// One least-squares solution from sparse equation rows. With A the coefficients, P the diagonal of
// the weights and t the known terms:
//   N x = A^t P t,  N = A^t P A        normal equations
//   r = t - A x                        residuals
//   s0 = sqrt(r^t P r / (n - u))       standard deviation of unit weight, 0 without redundancy
// Sums run in the order of the rows. (Mikhail and Ackermann, Observations and Least Squares, 1976.)

#include <algorithm>
#include <cmath>
#include <vector>

#include "kzt5cmrg.h"
#include "records/costanti.h"

using namespace kzt5cmrg;

// All rows empty, with weight 1 and known term 0.
void CalcCmpRigVelid1::AzzeraEquazioni() {
  for (int r = 0; r < MaxEquaz; ++r) {
    std::fill_n(Coeff[r], kSlot, 0.0);
    std::fill_n(Indici[r], kSlot, kSlotVuoto);
  }
  std::fill_n(Peso.get(), MaxEquaz, 1.0);
  std::fill_n(TermineNoto.get(), MaxEquaz, 0.0);
}

// Leaves the factor of N, and in Soluzione, Residui and SigmaZero the result. When N is not
// positive definite StatoCalcolo says so and the previous result stays.
void CalcCmpRigVelid1::MinQua2(int equazioni, int incognite) {
  std::vector<double> b(static_cast<std::size_t>(incognite));
  FormaNoti(equazioni, b.data());
  if (!FattorizzaNormale(equazioni, incognite)) {
    StatoCalcolo = kSolutoreFallito;
    return;
  }
  RisolviNormale(b.data(), incognite);
  std::ranges::transform(b, Soluzione.get(), [](double x) { return -x; });
  CalcolaResidui(equazioni, incognite, b.data());
}

// Adds A^t P t to `noti`.
void CalcCmpRigVelid1::FormaNoti(int equazioni, double* noti) const {
  for (int r = 0; r < equazioni; ++r)
    for (int k = 0; k < kSlot; ++k)
      if (const int c = Indici[r][k]; c >= 0)
        noti[c] += (Coeff[r][k] * Peso[static_cast<std::size_t>(r)]) *
                   TermineNoto[static_cast<std::size_t>(r)];
}

// `opposta` is -x, as the triangular solution leaves it.
void CalcCmpRigVelid1::CalcolaResidui(int equazioni, int incognite, const double* opposta) {
  double somma = 0.0;
  for (int r = 0; r < equazioni; ++r) {
    const double* a = Coeff[r];
    const int* inc = Indici[r];
    double residuo = TermineNoto[static_cast<std::size_t>(r)];
    for (int k = 0; k < kSlot; ++k)
      if (inc[k] >= 0) residuo += a[k] * opposta[inc[k]];
    Residui[static_cast<std::size_t>(r)] = residuo;
    somma += residuo * residuo * Peso[static_cast<std::size_t>(r)];
  }
  SigmaZero = equazioni == incognite ? 0.0 : std::sqrt(somma / (equazioni - incognite));
}
