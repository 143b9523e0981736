// The plane constructions against closed forms, on both sides of the limits that they draw.

#include <gtest/gtest.h>

#include <cmath>

#include "host/approssimate/metodi.h"

using namespace compensa;

namespace {

Raggio R(double est, double nord, double gon) { return {{est, nord}, gon * kRadPerGon, 0}; }
Cerchio C(double est, double nord, double raggio) { return {{est, nord}, raggio, 0}; }
std::vector<Posto> Taglio(const Raggio& a, const Raggio& b) {
  const std::optional<Posto> p = Interseca(a, b);
  return p ? std::vector<Posto>{*p} : std::vector<Posto>{};
}

TEST(Costruzioni, Luoghi) {
  const Raggio est = R(0, 0, 100);
  const double lontano = 1 / std::tan(5.11 * kRadPerGon);  // the limit is at 5.098 gon
  const struct {
    std::vector<Posto> Comuni, Attesi;
  } casi[] = {{Taglio(R(0, 0, 50), R(100, 0, 350)), {{50, 50}}},
              {Taglio(est, R(40, -1, 305.09)), {}},
              {Taglio(R(0, 0, 150), R(100, 0, 250)), {{50, -50}}},
              {Taglio(est, R(0, -1, 94.91)), {}},
              {Taglio(R(0, 0, 250), R(100, 0, 350)), {}},
              {Taglio(R(0, 0, 50), R(100, 0, 150)), {}},
              {Taglio(est, R(0, -1, 94.89)), {{lontano, 0}}},
              {Interseca(C(0, 0, 3), C(0, 0, 3)), {}},
              {Interseca(C(0, 0, 5), C(7, 1, 5)), {{3, 4}, {4, -3}}},
              {Interseca(C(0, 0, 3), C(10.01, 0, 7)), {{3.005, 0}}},  // nearly touch, or miss
              {Interseca(C(0, 0, 3), C(10.03, 0, 7)), {}},
              {Interseca(C(0, 0, 3), C(6.9, 0, 10)), {}},
              {Interseca(C(0, 0, 10), C(6.99, 0, 3)), {{10, 0}}},
              {Interseca(est, C(10, 3.01, 3)), {}},
              {Interseca(est, C(10, 0, 3)), {{13, 0}, {7, 0}}},
              {Interseca(est, C(-10, 0, 3)), {}},
              {Interseca(est, C(1, 0, 3)), {{4, 0}}}};
  for (const auto& caso : casi) {
    ASSERT_EQ(caso.Comuni.size(), caso.Attesi.size()) << &caso - casi;
    for (const Posto& p : caso.Attesi) {
      const auto vicino = [&](Posto q) { return Lunghezza(p - q) < 6e-3; };
      EXPECT_TRUE(std::any_of(caso.Comuni.begin(), caso.Comuni.end(), vicino)) << &caso - casi;
    }
  }
}

// The sought point stands at the origin and sees three points by azimuth [gon] and distance.
std::optional<Inversa> Vede(const double (&azimut)[3], const double (&distanza)[3], double zero) {
  Collimato c[3];
  for (int i = 0; i < 3; ++i)
    c[i] = {distanza[i] * Versore(azimut[i] * kRadPerGon), (azimut[i] - zero) * kRadPerGon};
  return IntersezioneInversa(c[0], c[1], c[2]);
}

TEST(Costruzioni, IntersezioneInversa) {
  for (const double segno : {1.0, -1.0})          // and mirrored
    for (const double c : {200.0, 210.0, 120.0})  // in line between the first and the last, and not
      for (int b = 20; b < c - 15; ++b) {
        const auto x = Vede({0, segno * b, segno * c}, {400, 250, 300}, 37.5);
        ASSERT_TRUE(x) << b << " " << c * segno;
        EXPECT_LT(Lunghezza(x->Luogo), 1e-6) << b << " " << c;
        EXPECT_NEAR(x->Orientamento, 37.5 * kRadPerGon, 1e-9);
      }
  // At the centre of an equilateral triangle sqrt 6 / (3 sqrt 3 / 2).
  EXPECT_NEAR(Vede({0, 400 / 3.0, 800 / 3.0}, {5000, 5000, 5000}, 0)->Amplificazione,
              2 * std::sqrt(2) / 3, 1e-9);
}

TEST(Costruzioni, Orienta) {  // zeros of a circle, their mean, the largest misfit [gon]
  for (auto [zeri, zero, scarto, escluse] : {std::tuple(std::vector{199.9, -199.7}, -199.9, 0.2, 0),
                                             {{0, 0, 0.48}, 0.16, 0.32, 0},
                                             {{0, 0, 0.51}, 0, 0, 1},
                                             {{-199.9, 199.9, 0, 200.3}, -199.9, 0.2, 1}}) {
    for (double& z : zeri) z *= kRadPerGon;
    const Orientazione o = Orienta(zeri);
    EXPECT_NEAR(MezzoGiro(o.Zero - zero * kRadPerGon), 0, 1e-12) << zero;
    EXPECT_NEAR(o.ScartoMassimo, scarto * kRadPerGon, 1e-12) << zero;
    EXPECT_EQ(o.Escluse, escluse) << zero;
  }
}

// A square is turned by a quarter clockwise, stretched and shifted; one corner may be wrong.
TEST(Costruzioni, Sovrapponi) {
  const std::vector<Posto> locali{{0, 0}, {100, 0}, {100, 100}, {0, 100}};
  for (const auto& [scala, errore] : {std::pair(1.0, 0.0), {1.02, 0.0}, {1.0, 9.0}}) {
    std::vector<Posto> noti;
    noti.reserve(locali.size());
    for (const Posto& p : locali) noti.push_back({500 + scala * p.Nord, 800 - scala * p.Est});
    noti[2].Est += errore;
    const auto moto = Sovrapponi(locali, noti, 2.0);
    EXPECT_EQ(moto->Escluse, errore > 0);
    EXPECT_NEAR(moto->ScartoMassimo, (scala - 1) * 50 * std::sqrt(2), 1e-9);
    EXPECT_LT(Lunghezza((*moto)({50, 80}) - Posto{500 + scala * 50 + 30, 800 - scala * 50}), 1e-9);
  }
}

}  // namespace
