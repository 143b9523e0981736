// A zone of six degrees reaches 250 km from its meridian, and maps are used somewhat beyond; the
// single zones for the whole country reach 530 km. Italy lies between the parallels of 35 and 48
// degrees.

#include "host/rete/zone.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "host/base/unita.h"

namespace compensa {

namespace {

constexpr double kDiSeiGradi = kSemiampiezzaZona * kMetriPerKm, kDiTuttaItalia = 600000.0;
constexpr std::array<Zona, 5> kTabella{
    {{kFalsoEstOvest * kMetriPerKm, kDiSeiGradi, "nel fuso Gauss-Boaga Ovest",
      "per Gauss-Boaga Ovest epsg = 3003"},
     {kFalsoEstEst * kMetriPerKm, kDiSeiGradi, "nel fuso Gauss-Boaga Est",
      "per Gauss-Boaga Est epsg = 3004"},
     {kFalsoEstUtm * kMetriPerKm, kDiSeiGradi, "in un fuso UTM",
      "per UTM 32 o 33 epsg = 7791 o 7792 (RDN2008), 23032 o 23033 (ED50)"},
     {7000000.0, kDiTuttaItalia, "nel fuso Italia", "per il fuso Italia epsg = 7794"},
     {3000000.0, kDiTuttaItalia, "nel fuso 12", "per il fuso 12 epsg = 7795"}}};
constexpr double kNordMinimo = 3.9e6, kNordMassimo = 5.3e6;  // of Italy [m]

}  // namespace

constinit const std::span<const Zona> kZone = kTabella;

bool InItalia(double nord) { return nord > kNordMinimo && nord < kNordMassimo; }

bool Dentro(const Zona& zona, double est, double nord) {
  return std::abs(est - zona.FalsoEst) < zona.Semiampiezza && InItalia(nord);
}

const Zona* ZonaDi(double est) {
  const double falsoEst = FalsoEstDi(est / kMetriPerKm) * kMetriPerKm;
  const auto zona = std::ranges::find(kTabella, falsoEst, &Zona::FalsoEst);
  return zona == kTabella.end() ? nullptr : &*zona;
}

bool DiceLaZona(double est) { return Assegnato(est) && est / kMetriPerKm > kEstMinimo; }

const TCoorCr* PuntoDellaZona(std::span<const TCoorCr> punti) {
  const auto punto = std::ranges::find_if(punti, DiceLaZona, &TCoorCr::Est);
  return punto == punti.end() ? nullptr : &*punto;
}

}  // namespace compensa
