// Chi-square quantile: the root of P(n / 2, x / 2) = p, with P the regularised lower incomplete
// gamma function,
//   P(a, x) = x^a e^-x / Gamma(a + 1) (1 + x / (a + 1) + x^2 / ((a + 1)(a + 2)) + ...)    x < a + 1
//   P(a, x) = 1 - x^a e^-x / Gamma(a) (1 / (x + 1 - a - 1 (1 - a) / (x + 3 - a - ...)))   otherwise
// (NIST Digital Library of Mathematical Functions, 8.7.1 and 8.9.2; the fraction by the method of
// Lentz), found by Newton's method from the approximation of Wilson and Hilferty (Abramowitz and
// Stegun, 26.4.17) and kept between bounds.
//
// F quantile with 2 and n degrees of freedom: the distribution is 1 - (1 + 2 F / n)^(-n / 2), so
//   F = n / 2 ((1 - p)^(-2 / n) - 1).
//
// Student distribution, with theta = atan(t / sqrt(n)) and A the probability of |x| < t (Abramowitz
// and Stegun, 26.7.3 and 26.7.4):
//   n odd    A = 2 / pi (theta + sin theta (cos theta + 2/3 cos^3 + ... + 2 4 ... / 3 5 ... cos^(n-2)))
//   n even   A = sin theta (1 + 1/2 cos^2 theta + ... + 1 3 ... / 2 4 ... cos^(n-2))
// whose quantile is found by bisection of theta.

#include "host/rete/statistica.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/base/assente.h"
#include "host/base/unita.h"

namespace compensa {

namespace {

constexpr double kPrecisione = std::numeric_limits<double>::epsilon();
constexpr int kTerminiMassimi = 100000;
constexpr int kPassiMassimi = 200;

// x^a e^-x / Gamma(a)
double Fronte(double a, double x) { return std::exp(a * std::log(x) - x - std::lgamma(a)); }

double GammaInferiore(double a, double x) {
  double termine = 1.0 / a, somma = termine;
  for (int k = 1; k < kTerminiMassimi && termine > somma * kPrecisione; ++k)
    somma += termine *= x / (a + k);
  return Fronte(a, x) * somma;
}

double GammaSuperiore(double a, double x) {
  constexpr double kMinuscolo = 1e-300;
  double b = x + 1.0 - a;
  double c = 1.0 / kMinuscolo;
  double d = 1.0 / b;
  double frazione = d;
  for (int k = 1; k < kTerminiMassimi; ++k) {
    const double numeratore = k * (a - k);
    b += 2.0;
    d = 1.0 / (std::abs(b + numeratore * d) < kMinuscolo ? kMinuscolo : b + numeratore * d);
    c = std::abs(b + numeratore / c) < kMinuscolo ? kMinuscolo : b + numeratore / c;
    frazione *= c * d;
    if (std::abs(c * d - 1.0) <= kPrecisione) break;
  }
  return Fronte(a, x) * frazione;
}

// P(a, x) - p. The smaller tail is computed directly: its digits are not lost against 1.
double ScartoProbabilita(double a, double x, double p) {
  return x < a + 1.0 ? GammaInferiore(a, x) - p : (1.0 - p) - GammaSuperiore(a, x);
}

// Standard normal quantile by bisection of the error function: only where the search begins.
double QuantileNormale(double p) {
  double basso = -40.0, alto = 40.0;
  constexpr int kBisezioni = 40;
  for (int i = 0; i < kBisezioni; ++i) {
    const double z = (basso + alto) / 2.0;
    (std::erfc(-z / std::sqrt(2.0)) / 2.0 < p ? basso : alto) = z;
  }
  return (basso + alto) / 2.0;
}

// Of |x| < t with n degrees of freedom.
double ProbabilitaStudent(double theta, int n) {
  const double seno = std::sin(theta), coseno = std::cos(theta);
  const bool dispari = n % 2 != 0;
  double termine = dispari ? coseno : 1.0;
  double somma = n > 1 ? termine : 0.0;
  for (int k = dispari ? 3 : 2; k <= n - 2; k += 2)
    somma += termine *= coseno * coseno * (k - 1) / k;
  return dispari ? 2.0 / kPi * (theta + seno * somma) : seno * somma;
}

}  // namespace

double Mediana(std::vector<double> valori) {
  if (valori.empty()) return kAssente;
  const std::size_t n = valori.size();
  const auto meta = valori.begin() + static_cast<std::ptrdiff_t>(n / 2);
  std::nth_element(valori.begin(), meta, valori.end());
  if (n % 2 == 1) return *meta;
  return (*meta + *std::max_element(valori.begin(), meta)) / 2.0;
}

double QuantileChiQuadro(double probabilita, double gradi) {
  if (!(probabilita > 0.0 && probabilita < 1.0 && gradi > 0.0)) return kAssente;
  const double a = gradi / 2.0, h = 2.0 / (9.0 * gradi);
  const double radice = 1.0 - h + QuantileNormale(probabilita) * std::sqrt(h);
  double basso = 0.0, alto = std::numeric_limits<double>::max();
  double x = std::max(a * radice * radice * radice, std::numeric_limits<double>::min());
  for (int i = 0; i < kPassiMassimi; ++i) {
    const double scarto = ScartoProbabilita(a, x, probabilita);
    (scarto < 0.0 ? basso : alto) = x;
    double nuovo = x - scarto * x / Fronte(a, x);
    if (!(nuovo > basso && nuovo < alto))
      nuovo = alto == std::numeric_limits<double>::max() ? 2.0 * x : (basso + alto) / 2.0;
    const bool fermo = std::abs(nuovo - x) <= 4.0 * kPrecisione * x;
    x = nuovo;
    if (fermo) break;
  }
  return 2.0 * x;
}

LimitiSigmaZero CalcolaLimitiSigmaZero(int ridondanza) {
  constexpr double kCoda = 0.025;
  const double gradi = ridondanza;
  return {std::sqrt(QuantileChiQuadro(kCoda, gradi) / gradi),
          std::sqrt(QuantileChiQuadro(1.0 - kCoda, gradi) / gradi)};
}

double FattoreEllisse(double probabilita, int ridondanza) {
  if (!(probabilita > 0.0 && probabilita < 1.0) || ridondanza <= 0) return kAssente;
  const double n = ridondanza;
  return std::sqrt(n * std::expm1(-2.0 / n * std::log1p(-probabilita)));
}

double QuantileStudent(double probabilita, int gradi) {
  if (!(probabilita > 0.5 && probabilita < 1.0) || gradi <= 0) return kAssente;
  constexpr int kBisezioni = 100;
  double basso = 0.0, alto = kPi / 2.0;
  for (int i = 0; i < kBisezioni; ++i) {
    const double theta = (basso + alto) / 2.0;
    (ProbabilitaStudent(theta, gradi) < 2.0 * probabilita - 1.0 ? basso : alto) = theta;
  }
  return std::sqrt(gradi) * std::tan((basso + alto) / 2.0);
}

double LimiteTau(double rischio, int residui, int ridondanza) {
  if (residui <= 0 || ridondanza < 2) return kAssente;
  const double t = QuantileStudent(1.0 - rischio / (2.0 * residui), ridondanza - 1);
  return t * std::sqrt(ridondanza / (ridondanza - 1 + t * t));
}

}  // namespace compensa
