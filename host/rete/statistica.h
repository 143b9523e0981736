#pragma once

// Quantiles of the distributions that an adjustment is judged by, and of samples.

#include <vector>

namespace compensa {

// Middle value; the mean of the two middle ones of an even number. Of no values kAssente.
double Mediana(std::vector<double> valori);

// The value that a chi-square variable with that many degrees of freedom (> 0) stays below with the
// given probability (0 to 1, both excluded); kAssente outside of these limits. To 1e-10 of its value
// up to 10 000 degrees of freedom.
double QuantileChiQuadro(double probabilita, double gradi);

// Between what values sigma zero over its a-priori value lies in 95 % of all adjustments with that
// redundancy (> 0) whose observations are as their standard deviations say: sqrt(chi2 / redundancy)
// at 2.5 and 97.5 % (K.-R. Koch, Parameter Estimation and Hypothesis Testing in Linear Models, 1999,
// 4.2). kAssente without redundancy.
struct LimitiSigmaZero {
  double Minimo, Massimo;
};
LimitiSigmaZero CalcolaLimitiSigmaZero(int ridondanza);

// The factor by which the semi-axes of a standard ellipse that contains sigma zero a posteriori are
// multiplied so that the ellipse covers the point with the given probability: sqrt(2 F), F the
// quantile of the F distribution with 2 and `ridondanza` degrees of freedom (K.-R. Koch, Parameter
// Estimation and Hypothesis Testing in Linear Models, 1999, 4.3). kAssente without redundancy.
double FattoreEllisse(double probabilita, int ridondanza);

// The value that a Student variable with that many degrees of freedom (> 0) stays below with the
// given probability (0.5 to 1, both excluded); kAssente outside of these limits. To 1e-10 of its
// value.
double QuantileStudent(double probabilita, int gradi);

// What the largest of so many normalised residuals |w| exceeds with the given risk, all observations
// being good. Sigma zero comes from the same residuals, so that with redundancy n no w can exceed
// sqrt(n): w follows the distribution tau, with t Student's of n - 1 degrees of freedom
//   tau = t sqrt(n / (n - 1 + t^2))
// (A. J. Pope, The Statistics of Residuals and the Detection of Outliers, NOAA Technical Report NOS
// 65 NGS 1, 1976), the risk divided among the residuals. kAssente for a redundancy below 2.
double LimiteTau(double rischio, int residui, int ridondanza);

}  // namespace compensa
