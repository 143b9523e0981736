// Cyclic Jacobi rotations. (Golub and Van Loan, Matrix Computations, 8.5.)

#include "host/giudizio/indeterminazione/autovettori.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace compensa {

namespace {

constexpr int kGiriMassimi = 60;
constexpr double kTrascurabile = 1e-17;  // off-diagonal, against the mean of the two diagonals

void Ruota(Vettore& a, Vettore& b, double c, double s) {
  for (std::size_t i = 0; i < a.size(); ++i) {
    const double ai = a[i];
    a[i] = c * ai - s * b[i];
    b[i] = s * ai + c * b[i];
  }
}

}  // namespace

double Prodotto(const Vettore& a, const Vettore& b) {
  return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

void Somma(Vettore& a, double k, const Vettore& b) {
  for (std::size_t i = 0; i < a.size(); ++i) a[i] += k * b[i];
}

std::vector<Vettore> Autovettori(std::vector<Vettore> m) {
  const std::size_t n = m.size();
  std::vector<Vettore> v(n, Vettore(n, 0.0));
  for (std::size_t i = 0; i < n; ++i) v[i][i] = 1.0;
  bool ancora = true;
  for (int giro = 0; ancora && giro < kGiriMassimi; ++giro) {
    ancora = false;
    for (std::size_t p = 0; p + 1 < n; ++p)
      for (std::size_t q = p + 1; q < n; ++q) {
        if (!(std::abs(m[p][q]) > kTrascurabile * std::sqrt(std::abs(m[p][p] * m[q][q])))) continue;
        ancora = true;
        const double teta = (m[q][q] - m[p][p]) / (2.0 * m[p][q]);
        const double t = std::copysign(1.0, teta) / (std::abs(teta) + std::hypot(1.0, teta));
        const double c = 1.0 / std::hypot(1.0, t);
        const double s = t * c;
        Ruota(m[p], m[q], c, s);
        for (Vettore& riga : m) {
          const double rp = riga[p];
          riga[p] = c * rp - s * riga[q];
          riga[q] = s * rp + c * riga[q];
        }
        m[p][q] = m[q][p] = 0.0;
        Ruota(v[p], v[q], c, s);
      }
  }
  std::vector<std::size_t> ordine(n);
  std::iota(ordine.begin(), ordine.end(), std::size_t{0});
  std::sort(ordine.begin(), ordine.end(),
            [&](std::size_t a, std::size_t b) { return m[a][a] < m[b][b]; });
  std::vector<Vettore> ordinati;
  ordinati.reserve(n);
  for (const std::size_t i : ordine) ordinati.push_back(v[i]);
  return ordinati;
}

}  // namespace compensa
