// Cholesky factor, solution and inverse against LAPACK; what the kernels leave where at the edges.

#include <gtest/gtest.h>
#include <lapacke.h>

#include "tests/comuni/rete_prova.h"

using namespace kzt5cmrg;

namespace {

constexpr double kSotto = 777;  // stands in the strict lower triangle: never read, never written

struct Matrice {
  explicit Matrice(int n) : Dati(n * n) {
    for (int i = 0; i < n; ++i) Righe.push_back(&Dati[i * n]);
  }
  std::vector<double> Dati;
  std::vector<double*> Righe;
};

void Confronta(const Matrice& modulo, const Matrice& lapack, int m) {
  for (int k = 0; k < m * m; ++k)
    EXPECT_NEAR(modulo.Dati[k], k % m < k / m ? kSotto : lapack.Dati[k], 1e-12 * m) << k;
}

TEST(Algebra, ControLapack) {
  for (const int m : {1, 2, 3, 8, 25, 60}) {
    Caso caso(m);
    Matrice b(m), lapack(m), modulo(m);
    std::vector<double> noti(m);
    for (double& x : b.Dati) x = caso.Reale(-1, 1);
    for (double& x : noti) x = caso.Reale(-1, 1);
    for (int i = 0; i < m; ++i)
      for (int j = 0; j < m; ++j) {
        for (int k = 0; k < m; ++k) lapack.Righe[i][j] += b.Righe[k][i] * b.Righe[k][j] + (i == j);
        modulo.Righe[i][j] = j < i ? kSotto : lapack.Righe[i][j];
      }
    std::vector<double> soluzione = noti;
    EXPECT_EQ(ProvaCalcolo::Tchol(modulo.Righe.data(), m), 0);
    LAPACKE_dpotrf(LAPACK_ROW_MAJOR, 'U', m, lapack.Dati.data(), m);
    Confronta(modulo, lapack, m);
    ProvaCalcolo::Sols(modulo.Righe.data(), soluzione.data(), m);
    LAPACKE_dpotrs(LAPACK_ROW_MAJOR, 'U', m, 1, lapack.Dati.data(), m, noti.data(), 1);
    for (int i = 0; i < m; ++i) EXPECT_NEAR(soluzione[i], -noti[i], 1e-12 * m);
    ProvaCalcolo::Inver(modulo.Righe.data(), m);
    LAPACKE_dpotri(LAPACK_ROW_MAJOR, 'U', m, lapack.Dati.data(), m);
    Confronta(modulo, lapack, m);
  }
}

bool Uguali(double x, double y) { return std::abs(x - y) < 1e-22 || (x != x && y != y); }

// The row that fails keeps its reduced pivot, those before it are factored, those after untouched.
TEST(Algebra, PivotNonPositivo) {
  const double casi[][7] = {// a b c of the matrix (a b; . c), result, a b c afterwards
                            {4, 2, 5, 0, 2, 1, 2},         {4, 2, 1, 1, 2, 1, 0},
                            {4, 2, -1, 1, 2, 1, -2},       {0, 3, 4, 1, 0, 3, 4},
                            {1, 0, 1e-15, 1, 1, 0, 1e-15}, {1, 0, 4e-15, 0, 1, 0, std::sqrt(4e-15)},
                            {1e-15, 3, 4, 1, 1e-15, 3, 4}, {-1, 3, 4, 1, -1, 3, 4},
                            {NAN, 3, 4, 1, NAN, 3, 4},     {4, 2, NAN, 1, 2, 1, NAN}};
  for (const auto& [a, b, c, esito, a0, b0, c0] : casi) {
    double riga0[] = {a, b}, riga1[] = {kSotto, c}, *righe[] = {riga0, riga1};
    EXPECT_EQ(ProvaCalcolo::Tchol(righe, 2), esito) << a << ' ' << c;
    EXPECT_TRUE(Uguali(riga0[0], a0) && Uguali(riga0[1], b0) && Uguali(riga1[1], c0)) << a << c;
    EXPECT_EQ(riga1[0], kSotto);
  }
  EXPECT_EQ(ProvaCalcolo::Tchol(nullptr, 0) + ProvaCalcolo::Inver(nullptr, 0), 0);
}

}  // namespace
