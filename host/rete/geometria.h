#pragma once

// Plane geometry: positions, azimuths, angles brought within a circle.

namespace compensa {

// A position on the plane, or the way from one to another [m].
struct Posto {
  double Est = 0.0, Nord = 0.0;
};

inline Posto operator+(Posto a, Posto b) { return {a.Est + b.Est, a.Nord + b.Nord}; }
inline Posto operator-(Posto a, Posto b) { return {a.Est - b.Est, a.Nord - b.Nord}; }
inline Posto operator*(double k, Posto a) { return {k * a.Est, k * a.Nord}; }
double Lunghezza(Posto a);
// From North clockwise, -pi to pi [rad].
double Azimut(Posto a);
// The unit vector of an azimuth.
Posto Versore(double azimut);

// An angle brought between -pi and pi [rad].
double MezzoGiro(double angolo);
// A direction brought within the circle, from 0 to less than 400 [gon].
double NelGiro(double gon);
// Of a line, which has no sense of travel: an azimuth from -pi to pi as 0 to less than 200 gon.
double AzimutRetta(double azimut);

}  // namespace compensa
