// Observation equations of the distances. A measured distance is brought to the horizontal, to the
// station centre, to the ellipsoid and to the projection plane; its row on the end points P and T
// is
//   v = l - [dE/d (dE_T - dE_P) + dN/d (dN_T - dN_P)]    l = reduced - computed distance   [km]
// with dE, dN, d of the current coordinates. Its standard deviation is a constant part plus one
// proportional to the distance. (Ghilani, Adjustment Computations, ch. 14.)

#include <cmath>

#include "kzt5cmrg.h"
#include "records/selezione.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

namespace {

constexpr double kCoincidenti =
    1e-7;  // shorter computed distances are replaced by the measured [km]
constexpr double kSenoNullo = 1e-12;  // a sight along the vertical, to the rounding of sin

// Offset of the prism of the instruments of types 6 and 7 [m].
constexpr double kSbraccio = 0.16;

// Slope distance of a type-7 instrument from what it read; the reading itself where the triangle of
// instrument, prism and target does not close. D and result in metres, z in radians.
double Tipo7(double D, double z) {
  const double lato = D - kAdditiva7;
  const double seno = kSbraccio * std::sin(z) / lato;
  if (lato == 0.0 || !(std::abs(seno) <= 1.0) || std::abs(std::sin(z)) < kSenoNullo) return D;
  const double a = z + std::asin(seno);
  return std::sin(kPi - a) * lato / std::sin(z);
}

}  // namespace

void CalcCmpRigVelid1::CreaEquazDis(int& equazione) {
  for (const TStaCr& s : *Stazioni) {
    const auto fermata = PerOgniDistanza(*Punti, s, [&](std::size_t k) {
      const TOssCr& o = s.Osservazioni[k];
      double D = DistanzaOrizzontale(o);
      if (FuoriCentro(o)) D = DistanzaAlCentro(s, o.Direzione, D);
      D *= FattoreKm;
      if (Opzioni->Cartografiche != 0 && o.TipoDist != kPiana) {
        D = DistanzaEllissoide(s.Punto, o.Punto, D);
        double scala = 0.0;
        double correzione = 0.0;
        Gauss(s.Punto, o.Punto, scala, correzione);
        D *= scala;
      }
      const double sigma = (Opzioni->SqmDistCost + Opzioni->SqmDistProp * D) * FattoreKm;
      Peso[static_cast<std::size_t>(equazione)] =
          SigmaZeroPriori * SigmaZeroPriori / (sigma * sigma);
      Eodis(equazione, s.Punto, o.Punto, D);
      ++equazione;
    });
    if (!fermata) continue;
    const TOssCr& o = s.Osservazioni[*fermata];
    AvvisaNonRiducibile(s.Punto, o.Punto, DistanzaOrizzontale(o));
  }
}

// Writes one row; the reduced distance in km.
int CalcCmpRigVelid1::Eodis(int riga, int stazione, int collimato, double distanza) {
  const TCoorCr& p = Punto(stazione);
  const TCoorCr& t = Punto(collimato);
  const double dE = t.Est - p.Est;
  const double dN = t.Nord - p.Nord;
  double d = std::sqrt(dE * dE + dN * dN);
  if (d < kCoincidenti) d = distanza;
  const double suEst = d == 0.0 ? 0.0 : dE / d;
  const double suNord = d == 0.0 ? 0.0 : dN / d;

  const auto scrivi = [&](int slot, int punto, double segno) {
    const int incognita = 2 * IncPla[static_cast<std::size_t>(punto)];
    Coeff[riga][slot] = segno * suEst;
    Coeff[riga][slot + 1] = segno * suNord;
    Indici[riga][slot] = incognita;
    Indici[riga][slot + 1] = incognita + 1;
  };
  if (p.TipoPla == kIncognito) scrivi(0, stazione, -1.0);
  if (t.TipoPla == kIncognito) scrivi(2, collimato, 1.0);
  TermineNoto[static_cast<std::size_t>(riga)] = distanza - d;
  return 0;
}

// The distance on the horizontal of the instrument [m].
double CalcCmpRigVelid1::DistanzaOrizzontale(const TOssCr& osservazione) const {
  const double z = osservazione.Zenit * FattoreRad;
  double D = osservazione.Distanza;
  switch (osservazione.TipoDist) {
    case kInclinataTipo6: D = (D - kAdditiva6) + kSbraccio * std::cos(std::abs(z)); break;
    case kInclinataTipo7: D = Tipo7(D, z); break;
    case kInclinata: break;
    default: return D;
  }
  return D * std::sin(std::abs(z));
}

void CalcCmpRigVelid1::AvvisaNonRiducibile(int stazione, int collimato, double distanza) {
  ScriviTesto(kLaDistanza);
  Out->ScriviNumero(collimato + 1, 4, 0);
  Out->ScriviStringa(kMeno, 0);
  Out->ScriviNumero(stazione + 1, 4, 0);
  Out->ScriviStringa(kUguale, 0);
  Out->ScriviNumero(distanza, 8, 3);
  ScriviTestoLn(kNonRiducibile);
}
