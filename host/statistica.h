#pragma once

// Quantiles that the outputs need beside what the module computes.

// Factor from the semi-axes of the standard ellipse of a point to those of the confidence ellipse
// that holds the point with this probability (between 0 and 1), when sigma zero is estimated with
// this redundancy: sqrt(2 F), F the quantile of Fisher's distribution with 2 and `ridondanza`
// degrees of freedom (Koch, Parameter Estimation and Hypothesis Testing in Linear Models). NaN
// without redundancy.
double FattoreEllisse(double probabilita, int ridondanza);
