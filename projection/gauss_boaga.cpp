// Gauss-Boaga projection (transverse Mercator) of the International 1924 ellipsoid with scale k0 on
// the central meridian. Coordinates in km: x = northing, y = easting from the central meridian.
//   scale of the line A-B      k0 + (yA^2 + yA yB + yB^2) / (6 k0 M N)
//   arc-to-chord correction    (xA - xB) (2 yA + yB) / (6 k0^2 M N)                          [rad]
// with the radii of curvature M (meridian) and N (prime vertical) at the latitude of A. The inverse
// projection follows the closed formulas of Coticchia and Surace (Bollettino
// di geodesia e scienze affini, 1978): no iteration, one correction of a first latitude.

#include <cmath>

#include "kzt5cmrg.h"
#include "records/costanti.h"

using namespace kzt5cmrg;

namespace {

constexpr double kK0 = kScalaCentrale;
constexpr double kSemiasse = 6378.388;                    // International 1924 [km]
constexpr double kEccentricita2 = 0.006722670022;         // first eccentricity squared
constexpr double kSemiasseRidotto = 6375.8366448;         // k0 x semi-major axis [km]
constexpr double kSchiacciamento = 0.003367003367003367;  // 1 / 297
constexpr double kKmPerRad = 6363.6512449104;             // northing of a radian of latitude, about

}  // namespace

// Both points must have plane coordinates. `correzione` [gon] is subtracted from a direction read
// at the first point. Leaves in RaggioMedio the mean radius sqrt(M N) at the first point [km].
int CalcCmpRigVelid1::Gauss(int primo, int secondo, double& scala, double& correzione) {
  const double yA = Punto(primo).Est - FalsoEst;
  const double xA = Punto(primo).Nord;
  const double yB = Punto(secondo).Est - FalsoEst;
  const double xB = Punto(secondo).Nord;
  double fi = 0.0;
  double lambda = 0.0;
  Geogra(xA, yA, fi, lambda);

  const double sinFi = std::sin(fi);
  const double W = std::sqrt(1.0 - kEccentricita2 * sinFi * sinFi);
  const double N = kSemiasse / W;
  const double M = (1.0 - kEccentricita2) * kSemiasse / (W * W * W);
  RaggioMedio = std::sqrt(N * M);
  scala = kK0 + (yA * yA + yA * yB + yB * yB) / (6.0 * kK0 * M * N);
  correzione = (xA - xB) * (2.0 * yA + yB) / (6.0 * M * N * kK0 * kK0) / FattoreRad;
  return 0;
}

// Latitude, and longitude east of the central meridian [rad].
int CalcCmpRigVelid1::Geogra(double nord, double daMeridiano, double& latitudine,
                             double& longitudine) {
  const double q = 1.0 / (1.0 - kSchiacciamento);
  const double c = kSemiasseRidotto * q;  // polar radius of curvature, reduced by k0
  const double e2 = q * q - 1.0;          // second eccentricity squared
  const double t = e2 / 4.0;
  const double alfa = 3.0 * t;
  const double beta = 5.0 * alfa * t;
  const double gamma = 35.0 * t * t * t;

  const double fi = nord / kKmPerRad;
  const double cosFi = std::cos(fi);
  const double sinFi = std::sin(fi);
  const double eta2 = e2 * cosFi * cosFi;
  const double V2 = 1.0 + eta2;
  const double ni = c / std::sqrt(V2);
  const double p = daMeridiano / ni;
  const double zeta = p * p * eta2 / 2.0;
  const double csi = p * (1.0 - zeta / 3.0);
  const double arco = Arcm(fi, cosFi, sinFi, c, alfa, beta, gamma);
  const double epsilon = (nord - arco) / ni * (1.0 - zeta) + fi;
  const double cosEpsilon = std::cos(epsilon);

  longitudine = std::atan((std::exp(csi) - std::exp(-csi)) / (2.0 * cosEpsilon));
  const double tau = std::atan(std::sin(epsilon) * std::cos(longitudine) / cosEpsilon);
  latitudine = fi + (V2 - 3.0 * e2 * sinFi * cosFi * (tau - fi) / 2.0) * (tau - fi);
  return 0;
}

// Northing of the latitude `fi` on the central meridian [km].
double CalcCmpRigVelid1::Arcm(double fi, double cosFi, double sinFi, double c, double alfa,
                              double beta, double gamma) {
  const double A2 = 2.0 * sinFi * cosFi * cosFi * cosFi;
  const double J2 = fi + sinFi * cosFi;
  const double J4 = (3.0 * J2 + A2) / 4.0;
  const double J6 = (5.0 * J4 + cosFi * cosFi * A2) / 3.0;
  return (fi - alfa * J2 + beta * J4 - gamma * J6) * c;
}
