// Observation equation of a zenith angle z from station S to target T:
//   H(T) - H(S) - h = D - s        h = instrument height, s = target height                    [m]
//   D = d cot z + d^2 (1 - k) / 2R   d = horizontal distance, k = refraction, R = earth radius
// for a slope distance d' with d = d' |sin z| and d cot z = d' cos z. Known heights go to the right
// side. (Bezoari, Monti, Selvini, Topografia generale: livellazione trigonometrica.)

#include <algorithm>
#include <cmath>

#include "kzt5cmrg.h"
#include "records/costanti.h"

using namespace kzt5cmrg;

namespace {
enum SlotZenit : int { kSlotStazione = 0, kSlotStrumento = 1, kSlotCollimato = 2 };
}  // namespace

// Height of an eccentric instrument brought to the station centre along the inclined sight [m]. The
// plane distance is in km, eccentricity and instrument height in metres, the rest in gon. Without a
// direction the height stays as it is; an eccentricity longer than the sight counts as as long.
int CalcCmpRigVelid1::ExZet(double distanza, double eccDistanza, double eccDirezione,
                            double altStrum, double direzione, double zenit, double& altRidotta) {
  altRidotta = altStrum;
  if (Mancante(direzione)) return 0;
  const double teta = std::abs(direzione - eccDirezione) / kGonPerRad;
  const double tanZ = std::tan(zenit / kGonPerRad);
  if (teta < kPi / 2.0) {
    altRidotta = altStrum + eccDistanza * std::cos(teta) / tanZ;
    return 0;
  }
  const double seno =
      distanza == 0.0 ? 0.0 : std::sin(teta) * eccDistanza / (kMetriPerKm * distanza);
  const double beta = std::abs(std::asin(std::clamp(seno, -1.0, 1.0)));
  const double psi = kPi - beta - teta;
  altRidotta = altStrum - eccDistanza * std::cos(psi) / tanZ;
  return 0;
}

// Writes one row but for its weight. `strumento` counts the stations with unknown instrument height
// up to this one, from 1.
int CalcCmpRigVelid1::Eoze(int riga, int stazione, int collimato, int strumento, double zenit,
                           int altStrumNota, double altStrum, double altSegnale, double distanza,
                           int tipoDist) {
  const TCoorCr& p = Punto(stazione);
  const TCoorCr& t = Punto(collimato);
  const auto scrivi = [&](int slot, double coeff, int incognita) {
    Coeff[riga][slot] = coeff;
    Indici[riga][slot] = incognita;
  };
  if (p.TipoAlt == kIncognito)
    scrivi(kSlotStazione, -1.0, IncAlt[static_cast<std::size_t>(stazione)]);
  if (altStrumNota == kAltezzaIncognita) scrivi(kSlotStrumento, -1.0, nIncAlt + strumento - 1);
  if (t.TipoAlt == kIncognito)
    scrivi(kSlotCollimato, 1.0, IncAlt[static_cast<std::size_t>(collimato)]);

  const double z = zenit * FattoreRad;
  double orizzontale = distanza;
  double dislivello = 0.0;
  if (tipoDist == kInclinata && Dato(distanza)) {
    orizzontale = std::abs(std::sin(z)) * distanza;
    dislivello = distanza * std::cos(z);
  } else {
    dislivello = distanza / std::tan(z);
  }
  dislivello -= altSegnale;
  if (DsOr->CorrCurvRifr != 0)
    dislivello += orizzontale * orizzontale * (1.0 - DsOr->CoeffRifr) / (2.0 * DsOr->RaggioTerra);

  if (altStrumNota == kAltezzaNota) dislivello += altStrum;
  if (p.TipoAlt == kFisso) dislivello += p.Quota;
  if (t.TipoAlt == kFisso) dislivello -= t.Quota;
  TermineNoto[static_cast<std::size_t>(riga)] = dislivello;
  return 0;
}
