// Standard error ellipse of a point from the covariance block of its two coordinates:
//   semi-axes^2 = (a + b) / 2 +- sqrt((b - a)^2 + 4 c^2) / 2      tan 2 theta = |2 c / (a - b)|
// with a, b the variances of East and North and c their covariance.

#include <cmath>

#include "kzt5cmrg.h"
#include "records/costanti.h"

using namespace kzt5cmrg;

// Variances in km^2, semi-axes in km. `teta` [gon] lies in 0 to 50 for a covariance not negative
// and in 150 to 200 for a negative one; it does not tell which of the two variances is the larger.
int CalcCmpRigVelid1::SubEllisse(double varEst, double varNord, double covarianza, double& asseMag,
                                 double& asseMin, double& teta) const {
  const double media = (varEst + varNord) * 0.5;
  const double differenza = varNord - varEst;
  const double raggio = std::sqrt(differenza * differenza + 4.0 * covarianza * covarianza) * 0.5;
  asseMag = std::sqrt(media + raggio);
  asseMin = media - raggio < 0.0 ? 0.0 : std::sqrt(media - raggio);

  const bool cerchio = varEst == varNord && covarianza == 0.0;
  double t = cerchio ? 0.0 : std::atan(std::abs(2.0 * covarianza / (varEst - varNord))) / 2.0;
  if (covarianza < 0.0) t = kPi - t;
  teta = t / FattoreRad;
  return 0;
}
