// The last chapter: every point with its final coordinates, height and roles, or, with map
// coordinates, with latitude and longitude. The host's coordinates are given back in metres.

#include <cmath>

#include "kzt5cmrg.h"
#include "records/costanti.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

namespace {

// What brings a longitude counted from the central meridian of a Gauss-Boaga zone to the meridian
// of Monte Mario [gon]. The third zone keeps its own meridian.
constexpr double kCentesimiPerSecondo = 100.0;
constexpr double kOvestDaMonteMario = -3.8359259;
constexpr double kEstDaMonteMario = 2.830741;

double DaMonteMario(double falsoEst) {
  if (falsoEst == kFalsoEstOvest) return kOvestDaMonteMario;
  if (falsoEst == kFalsoEstEst) return kEstDaMonteMario;
  return 0.0;
}

}  // namespace

void CalcCmpRigVelid1::RisultatiFin() {
  const bool geografiche = Opzioni->Cartografiche != 0;
  ScriviSezione(kTitoloRisultati);
  if (geografiche) {
    Modulo();
    ScriviTestoLn(kTitoloGeografiche);
    ScriviTestoLn(kIntestazioneGeografiche);
  } else {
    ScriviTesto(kIntestazioneRisultati);
    Out->SaltaRiga(2);
  }
  for (int i = 0; i < nPunti; ++i) {
    TCoorCr& p = Punto(i);
    if (geografiche && !Mancante(p.Est)) ScriviRigaGeografica(i);
    if (!Mancante(p.Est)) p.Est /= FattoreKm;
    if (!Mancante(p.Nord)) p.Nord /= FattoreKm;
    if (!geografiche) ScriviRigaPunto(i);
  }
}

// Without a zone or a northing the line ends after the height.
void CalcCmpRigVelid1::ScriviRigaGeografica(int punto) {
  const TCoorCr& p = Punto(punto);
  Out->ScriviNumero(punto + 1, 3, 0);
  Out->ScriviSpazi(2);
  Out->ScriviStringa(p.Nome, 10);
  Out->ScriviNumero(p.Est / FattoreKm, 14, 4);
  Out->ScriviNumero(Mancante(p.Nord) ? p.Nord : p.Nord / FattoreKm, 14, 4);
  if (FalsoEst == 0.0 || Mancante(p.Nord)) {
    Out->ScriviNumeroLn(p.Quota, 9, 4);
    return;
  }
  Out->ScriviNumero(p.Quota, 9, 4);
  double fi = 0.0;
  double lambda = 0.0;
  Geogra(p.Nord, p.Est - FalsoEst, fi, lambda);
  ScriviSessagesimali(fi / FattoreRad, false);
  ScriviSessagesimali(lambda / FattoreRad + DaMonteMario(FalsoEst), true);
}

// Degrees, minutes, whole seconds and truncated hundredths. The degrees carry the sign, also those
// of a negative angle of less than one degree; the last angle ends the line.
void CalcCmpRigVelid1::ScriviSessagesimali(double gon, bool ultimo) {
  double gradi = 0.0;
  double primi = 0.0;
  double secondi = 0.0;
  Angl2(gon, gradi, primi, secondi);
  const double interi = std::trunc(secondi);
  Out->ScriviNumero(gradi, 4, 0);
  Out->ScriviStringa(kSegnoGradi, 0);
  Out->ScriviNumero(std::abs(primi), 3, 0);
  Out->ScriviStringa(kSegnoPrimi, 0);
  Out->ScriviNumero(std::abs(interi), 3, 0);
  Out->ScriviStringa(kSegnoSecondi, 0);
  const double centesimi = std::abs(std::trunc((secondi - interi) * kCentesimiPerSecondo));
  if (ultimo)
    Out->ScriviNumeroLn(centesimi, 2, 0);
  else
    Out->ScriviNumero(centesimi, 2, 0);
}
