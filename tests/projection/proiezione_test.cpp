// The projection against PROJ, whose transverse Mercator is exact to a nanometre, over the land of
// both zones: three degrees and a half either side of the meridian, latitudes 35 to 47.5. The bounds
// are those of the closed formulas themselves; docs/accuracy.md says what they mean on the ground.

#include <gtest/gtest.h>
#include <proj.h>

#include <memory>
#include <numbers>

#include "tests/comuni/rete_prova.h"

using namespace kzt5cmrg;

namespace {

constexpr double kGrado = std::numbers::pi / 180;
constexpr double kGeografiche = 5e-9;           // [rad]: 3 cm on the ground
constexpr double kScala = 3e-7, kCorda = 5e-6;  // [gon]; both of lines of 20 km
constexpr double kScalaPunto = 2.6e-7;

// The projection of a zone: degrees to metres from the central meridian.
class Proiezione {
 public:
  PJ_FACTORS Fattori(PJ_COORD gradi) const {
    return proj_factors(Pj.get(), proj_coord(gradi.lp.lam * kGrado, gradi.lp.phi * kGrado, 0, 0));
  }
  PJ_COORD Piano(PJ_COORD gradi) const {
    return proj_trans(Pj.get(), PJ_FWD,
                      proj_coord(gradi.lp.lam * kGrado, gradi.lp.phi * kGrado, 0, 0));
  }
  PJ_COORD Gradi(double est, double nord) const {
    const PJ_COORD rad = proj_trans(Pj.get(), PJ_INV, proj_coord(est, nord, 0, 0));
    return proj_coord(rad.lp.lam / kGrado, rad.lp.phi / kGrado, 0, 0);
  }
  // Azimuth of the geodesic at its start [rad].
  double Azimut(PJ_COORD a, PJ_COORD b) const {
    const auto rad = [](PJ_COORD p) {
      return proj_coord(p.lp.lam * kGrado, p.lp.phi * kGrado, 0, 0);
    };
    return proj_geod(Pj.get(), rad(a), rad(b)).v[1] * kGrado;
  }

 private:
  std::unique_ptr<PJ, decltype(&proj_destroy)> Pj{
      proj_create(PJ_DEFAULT_CTX, "+proj=tmerc +k=0.9996 +ellps=intl"), proj_destroy};
};

// Calls prova(degrees, plane place [m]) over the zone.
template <class Prova>
void PerOgniLuogo(const Proiezione& esatta, Prova prova) {
  for (double latitudine = 35; latitudine <= 47.5; latitudine += 0.5)
    for (double longitudine = -3.5; longitudine <= 3.5; longitudine += 0.25) {
      const PJ_COORD gradi = proj_coord(longitudine, latitudine, 0, 0);
      prova(gradi, esatta.Piano(gradi));
    }
}

void Segna(double& massimo, double differenza) {
  massimo = std::max(massimo, std::abs(differenza));
}

TEST(ProiezioneEsatta, Geografiche) {
  const Proiezione esatta;
  double latitudine = 0, longitudine = 0;
  PerOgniLuogo(esatta, [&](PJ_COORD gradi, PJ_COORD qui) {
    double fi = 9, lambda = 9;
    ProvaCalcolo::Geogra(qui.xy.y / 1e3, qui.xy.x / 1e3, fi, lambda);
    Segna(latitudine, fi - gradi.lp.phi * kGrado);
    Segna(longitudine, lambda - gradi.lp.lam * kGrado);
  });
  RecordProperty("latitudine_rad", std::to_string(latitudine * 1e12) + "e-12");
  RecordProperty("longitudine_rad", std::to_string(longitudine * 1e12) + "e-12");
  EXPECT_LT(std::max(latitudine, longitudine), kGeografiche);
}

// The scale of a point, and that of a line by Simpson's rule from the scales at its ends and in the
// middle. The arc-to-chord correction is bearing of the chord minus bearing of the geodesic, which
// is azimuth minus convergence.
TEST(ProiezioneEsatta, ScalaECorda) {
  const Proiezione esatta;
  double peggioPunto = 0, peggioScala = 0, peggioCorda = 0;
  for (const double falsoEst : {1500e3, 2520e3})
    PerOgniLuogo(esatta, [&](PJ_COORD inizio, PJ_COORD qui) {
      for (const auto& [dE, dN] :
           {std::pair(14e3, 14e3), {-14e3, 14e3}, {20e3, 0.0}, {0.0, -20e3}}) {
        const double est = qui.xy.x, nord = qui.xy.y;
        TCoorCr a{{}, falsoEst + est, nord, 0, 0, 0, 0, 0, 0, 0}, b = a;
        b.Est += dE, b.Nord += dN;
        ReteProva rete{{0.005, 0, 0.001, 5, 3, 1}, {}, {"A", "B"}, {a, b}, {}, {}};
        ProvaCalcolo job(rete);
        job.Input();
        double punto = 0, scala = 0, corda = 7;
        job.Gauss(0, 0, punto, corda);
        EXPECT_EQ(corda, 0);
        job.Gauss(0, 1, scala, corda);

        const PJ_COORD mezzo = esatta.Gradi(est + dE / 2, nord + dN / 2);
        const PJ_COORD fine = esatta.Gradi(est + dE, nord + dN);
        const PJ_FACTORS fattori = esatta.Fattori(inizio);
        Segna(peggioPunto, punto - fattori.meridional_scale);
        Segna(peggioScala,
              scala - (fattori.meridional_scale + 4 * esatta.Fattori(mezzo).meridional_scale +
                       esatta.Fattori(fine).meridional_scale) /
                          6);
        const double geodetica = esatta.Azimut(inizio, fine) - fattori.meridian_convergence;
        const double attesa = std::remainder(std::atan2(dE, dN) - geodetica, 2 * std::numbers::pi);
        Segna(peggioCorda, corda - attesa / kRadPerGon);
      }
    });
  RecordProperty("scala_punto", std::to_string(peggioPunto * 1e9) + "e-9");
  RecordProperty("scala", std::to_string(peggioScala * 1e9) + "e-9");
  RecordProperty("corda_gon", std::to_string(peggioCorda * 1e6) + "e-6");
  EXPECT_LT(peggioPunto, kScalaPunto);
  EXPECT_LT(peggioScala, kScala);
  EXPECT_LT(peggioCorda, kCorda);
}

}  // namespace
