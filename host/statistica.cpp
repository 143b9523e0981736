// Factor of the confidence ellipse. With two degrees of freedom in the numerator Fisher's
// distribution inverts in closed form,
//   2 F = r ((1 - p)^(-2 / r) - 1)      p probability, r redundancy,
// which tends to -2 ln(1 - p), the quantile of chi-square, as r grows.

#include "host/statistica.h"

#include <cmath>
#include <limits>

double FattoreEllisse(double probabilita, int ridondanza) {
  if (ridondanza <= 0) return std::numeric_limits<double>::quiet_NaN();
  const double r = ridondanza;
  return std::sqrt(r * std::expm1(-2.0 / r * std::log1p(-probabilita)));
}
