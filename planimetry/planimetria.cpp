// The planimetric adjustment from its iterations to its reports. With Q the inverse of the last
// normal matrix and s0 = SigmaZero, s0^2 Q is the covariance matrix of the corrections [km^2]; the
// unknowns of unknown point k are 2k (East) and 2k + 1 (North).

#include <cmath>
#include <vector>

#include "kzt5cmrg.h"
#include "lsq/sparso.h"
#include "records/costanti.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

namespace {
constexpr double kSigmaZeroNullo = 1e-10;  // up to here the ellipses are left out
}  // namespace

// True when the adjustment ran to its end, converged or not; false when an iteration failed: the
// section then ends with what the iteration wrote.
bool CalcCmpRigVelid1::CalcCompPla() {
  ScriviSezione(kTitoloPlanimetria);
  Sparso.reset();

  int iterazione = 0;
  int equazioni = 0;
  bool convergente = false;
  do {
    ++iterazione;
    if (!IterazPla(iterazione, equazioni, convergente)) return false;
  } while (!convergente && iterazione < Opzioni->MaxIter);

  Out->SaltaRiga(1);
  ScriviTitolo(kRigaIterazioni, kFineIterazioni);
  ScriviTesto(convergente ? kConvergente : kNonConvergente);
  Out->SaltaRiga(2);

  const int incognite = 2 * nIncPla;
  std::vector<double> w(static_cast<std::size_t>(MaxEquaz), 0.0);
  InvertiNormale(equazioni, incognite);
  if (incognite == equazioni)
    SigmaZero = 0.0;
  else
    Baarda(Peso.get(), Coeff.Puntatori(), Indici.Puntatori(), Normale.Puntatori(), equazioni,
           Residui.get(), w.data(), SigmaZero);

  ScriviTesto(kSigmaZeroPla);
  Out->ScriviNumero(SigmaZero / SigmaZeroPriori, 0, 3);
  ScriviTesto(kUnitaSigmaZero);
  Out->SaltaRiga(3);

  ScriviCoordinateCompensate();
  if (SigmaZero > kSigmaZeroNullo) ScriviEllissi();
  Orienta();
  RisultatiPla(w.data());
  Statistica();
  return true;
}

void CalcCmpRigVelid1::ScriviCoordinateCompensate() {
  ScriviTitolo(kRigaCoordinate, kCoordinateCompensate);
  ScriviTesto(kIntestazioneCompensate);
  Out->SaltaRiga(2);
  for (int k = 0; k < nIncPla; ++k) {
    const int punto = PuntoDaIncPla[static_cast<std::size_t>(k)];
    const int c = 2 * k;
    const double sqmEst = std::sqrt(Cofattore(c, c)) * SigmaZero / FattoreKm;
    const double sqmNord = std::sqrt(Cofattore(c + 1, c + 1)) * SigmaZero / FattoreKm;
    TCoorCr& p = Punto(punto);
    p.TipoPla = kCompensato;
    Out->ScriviNumero(punto + 1, 3, 0);
    Out->ScriviSpazi(3);
    Out->ScriviStringa(p.Nome, 15);
    Out->ScriviNumero(p.Nord / FattoreKm, 15, 4);
    Out->ScriviStringa(kPiuMenoCoordinate, 0);
    Out->ScriviNumero(sqmNord, 10, 4);
    Out->ScriviNumero(p.Est / FattoreKm, 15, 4);
    Out->ScriviStringa(kPiuMenoCoordinate, 0);
    Out->ScriviNumeroLn(sqmEst, 10, 4);
  }
  Out->SaltaRiga(2);
}

void CalcCmpRigVelid1::ScriviEllissi() {
  ScriviTitolo(kRigaEllissi, kEllissi);
  ScriviTesto(kIntestazioneEllissi);
  Out->SaltaRiga(2);
  const double s0Quadro = SigmaZero * SigmaZero;
  for (int k = 0; k < nIncPla; ++k) {
    const int punto = PuntoDaIncPla[static_cast<std::size_t>(k)];
    const int c = 2 * k;
    TCoorCr& p = Punto(punto);
    double asseMag = 0.0;
    double asseMin = 0.0;
    SubEllisse(s0Quadro * Cofattore(c, c), s0Quadro * Cofattore(c + 1, c + 1),
               s0Quadro * Cofattore(c, c + 1), asseMag, asseMin, p.EllTeta);
    p.EllAsseMag = asseMag / FattoreKm;
    p.EllAsseMin = asseMin / FattoreKm;
    Out->ScriviNumero(punto + 1, 3, 0);
    Out->ScriviSpazi(3);
    Out->ScriviStringa(p.Nome, 15);
    Out->ScriviNumero(p.Nord / FattoreKm, 15, 4);
    Out->ScriviNumero(p.Est / FattoreKm, 15, 4);
    Out->ScriviNumero(p.EllAsseMag, 12, 4);
    Out->ScriviNumero(p.EllAsseMin, 12, 4);
    Out->ScriviNumeroLn(p.EllTeta, 12, 4);
  }
  Out->SaltaRiga(2);
}
