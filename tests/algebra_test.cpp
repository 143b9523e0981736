// Cholesky factor, solution and inverse against LAPACK; what the kernels leave where at the edges;
// least squares on rows written by hand.

#include <gtest/gtest.h>
#include <lapacke.h>


#include "rete_prova.h"

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
    EXPECT_NEAR(modulo.Dati[k], k % m < k / m ? kSotto : lapack.Dati[k], 1e-12 * m) << m << ": " << k;
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

// The row that fails keeps its reduced pivot, those before it are factored, those after untouched.
TEST(Algebra, PivotNonPositivo) {
  const double casi[][7] = {  // a b c of the matrix (a b; . c), result, a b c afterwards
      {4, 2, 5, 0, 2, 1, 2}, {4, 2, 1, 1, 2, 1, 0}, {4, 2, -1, 1, 2, 1, -2}, {0, 3, 4, 1, 0, 3, 4},
      {1, 0, 1e-15, 1, 1, 0, 1e-15}, {1, 0, 4e-14, 0, 1, 0, 2e-7}, {1e-15, 3, 4, 1, 1e-15, 3, 4},
      {-1, 3, 4, 1, -1, 3, 4}, {NAN, 3, 4, 1, NAN, 3, 4}, {4, 2, NAN, 1, 2, 1, NAN}};
  for (const auto& [a, b, c, esito, a0, b0, c0] : casi) {
    double riga0[] = {a, b}, riga1[] = {kSotto, c}, *righe[] = {riga0, riga1};
    EXPECT_EQ(ProvaCalcolo::Tchol(righe, 2), esito) << a << ' ' << c;
    const auto uguali = [](double x, double y) { return std::abs(x - y) < 1e-22 || (x != x && y != y); };
    EXPECT_TRUE(uguali(riga0[0], a0) && uguali(riga0[1], b0) && uguali(riga1[1], c0)) << a << ' ' << c;
    EXPECT_EQ(riga1[0], kSotto);
  }
  EXPECT_EQ(ProvaCalcolo::Tchol(nullptr, 0) + ProvaCalcolo::Inver(nullptr, 0), 0);
}

// Two unknowns; row 0 names the first one twice, row 2 holds none. By hand: N = (3 2; 2 3).
TEST(Algebra, MinimiQuadrati) {
  ReteProva rete = ReteCasuale(3);
  ProvaCalcolo job(rete);
  job.Input();
  job.AzzeraEquazioni();
  const double peso[] = {1, 1, 4, 2}, noti[] = {1, 2, 3, 3.3}, residui[] = {-0.12, -0.12, 3, 0.06};
  const int indici[4][2] = {{0, 0}, {1, -1}, {-1, -1}, {0, 1}};
  for (int r = 0; r < 4; ++r) {
    job.Peso[r] = peso[r], job.TermineNoto[r] = noti[r];
    std::copy_n(indici[r], 2, job.Indici[r] + 2);
    std::fill_n(job.Coeff[r] + 2, 2, r == 0 ? 0.5 : 1);
  }
  job.MinQua2(4, 2);
  EXPECT_NEAR(job.Soluzione[0], 1.12, 1e-14);
  EXPECT_NEAR(job.Soluzione[1], 2.12, 1e-14);
  for (int r = 0; r < 4; ++r) EXPECT_NEAR(job.Residui[r], residui[r], 1e-14);
  EXPECT_NEAR(job.SigmaZero, std::sqrt(36.036 / 2), 1e-14);
  EXPECT_EQ(job.Normale[1][0], 2);  // N below the factor
  ProvaCalcolo::Inver(job.Normale.Puntatori(), 2);
  EXPECT_NEAR(job.Normale[0][0], 0.6, 1e-14);
  EXPECT_NEAR(job.Normale[0][1], -0.4, 1e-14);
  job.MinQua2(2, 2);
  EXPECT_TRUE(job.SigmaZero == 0 && job.Soluzione[0] == 1 && job.Soluzione[1] == 2);
  job.SigmaZero = 7;
  job.MinQua2(1, 2);  // singular: all but the matrix stays
  EXPECT_TRUE(job.StatoCalcolo == 100 && job.SigmaZero == 7 && job.Soluzione[1] == 2);
}

}  // namespace
