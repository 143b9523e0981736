// Observation equations of the angles. The first usable reading of a station is its reference;
// every later one gives the angle from the reference target R to its target T at the station point
// P:
//   v = l - (dA_T - dA_R)     l = observed - computed angle, brought to half a turn          [rad]
//   dA_X = (N_X - N_P) / q_X (dE_X - dE_P) - (E_X - E_P) / q_X (dN_X - dN_P)  q_X = s_X^2  [rad/km]
// with azimuths counted from North towards East. The orientation of the circle cancels out, so the
// only unknowns are coordinates. (Ghilani, Adjustment Computations, ch. 15; Bomford, Geodesy.)

#include <cmath>

#include "kzt5cmrg.h"
#include "records/selezione.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

namespace {

constexpr double kQuadratoSospetto = 1e-7;  // sights below about 0.32 m are named [km^2]
constexpr double kAnomalia = 1.0;           // misclosures above this are named [gon]

// One sight, computed once, shared by the coefficients and the known term.
struct Visuale {
  double dE, dN;    // [km]
  double azimut;    // [rad]
  double distanza;  // [km]
  double q;         // squared length [km^2]

  // Partial derivatives of the azimuth on the target's East and North; on the station's they have
  // the opposite sign. A sight of no length has none [rad/km].
  double SuEst() const { return q == 0.0 ? 0.0 : dN / q; }
  double SuNord() const { return q == 0.0 ? 0.0 : -dE / q; }
};

// Adds the pair of coefficients of one point to a row, in the slots that begin at `slot`.
void Scrivi(double* coeff, int* indici, int slot, int incognita, double suEst, double suNord) {
  coeff[slot] = suEst;
  coeff[slot + 1] = suNord;
  indici[slot] = incognita;
  indici[slot + 1] = incognita + 1;
}

enum SlotAngolo : int { kSlotStazione = 0, kSlotCollimato = 2, kSlotRiferimento = 4 };

}  // namespace

void CalcCmpRigVelid1::CreaEquazAng(int& equazione) {
  const double sigma = Opzioni->SqmDir * FattoreRad;
  const double peso = SigmaZeroPriori * SigmaZeroPriori / (sigma * sigma);
  for (const TStaCr& s : *Stazioni) {
    const std::optional<std::size_t> r = Riferimento(*Punti, s);
    if (!r) continue;
    const int riferimento = s.Osservazioni[*r].Punto;
    double direzioneRif = s.Osservazioni[*r].Direzione;
    RiduciDirezione(s, riferimento, kSogliaEccAngoli, direzioneRif);
    PerOgniAngolo(*Punti, s, [&](std::size_t, std::size_t k) {
      const TOssCr& o = s.Osservazioni[k];
      double direzione = o.Direzione;
      RiduciDirezione(s, o.Punto, kSogliaEccAngoli, direzione);
      if (DistanzePresenti == kConDistanze) Peso[static_cast<std::size_t>(equazione)] = peso;
      Eoss(equazione, s.Punto, riferimento, direzioneRif, o.Punto, direzione);
      ++equazione;
    });
  }
}

// Adds nothing: a direction enters only through its angles.
void CalcCmpRigVelid1::CreaEquazDir(int& /*equazione*/) {}

// Writes one row. The two readings come reduced, in gon; `direzione` leaves in radians.
int CalcCmpRigVelid1::Eoss(int riga, int stazione, int riferimento, double direzioneRif,
                           int collimato, double& direzione) {
  const TCoorCr& p = Punto(stazione);
  const auto visuale = [&](const TCoorCr& x) {
    Visuale v{x.Est - p.Est, x.Nord - p.Nord, 0.0, 0.0, 0.0};
    Anomalia(p.Est, p.Nord, x.Est, x.Nord, v.azimut, v.distanza);
    v.q = v.distanza * v.distanza;
    return v;
  };
  const TCoorCr& r = Punto(riferimento);
  const TCoorCr& t = Punto(collimato);
  const Visuale vR = visuale(r);
  const Visuale vT = visuale(t);
  double calcolato = vT.azimut - vR.azimut;
  if (calcolato < 0.0) calcolato += kGiro;
  if (vR.q < kQuadratoSospetto) AvvisaDistanza(stazione, riferimento, vR.distanza);
  if (vT.q < kQuadratoSospetto) AvvisaDistanza(stazione, collimato, vT.distanza);

  const auto incognita = [this](int x) { return 2 * IncPla[static_cast<std::size_t>(x)]; };
  if (p.TipoPla == kIncognito)
    Scrivi(Coeff[riga], Indici[riga], kSlotStazione, incognita(stazione), -vT.SuEst() + vR.SuEst(),
           -vT.SuNord() + vR.SuNord());
  if (t.TipoPla == kIncognito)
    Scrivi(Coeff[riga], Indici[riga], kSlotCollimato, incognita(collimato), vT.SuEst(),
           vT.SuNord());
  if (r.TipoPla == kIncognito)
    Scrivi(Coeff[riga], Indici[riga], kSlotRiferimento, incognita(riferimento), -vR.SuEst(),
           -vR.SuNord());

  direzione *= FattoreRad;
  double osservato = direzione - direzioneRif * FattoreRad;
  if (osservato < 0.0) osservato += kGiro;
  double l = osservato - calcolato;
  if (l > kPi) l -= kGiro;
  if (l < -kPi) l += kGiro;
  TermineNoto[static_cast<std::size_t>(riga)] = l;
  if (std::abs(l) / FattoreRad > kAnomalia) AvvisaAnomalia(stazione, collimato, l, direzione);
  return 0;
}

void CalcCmpRigVelid1::AvvisaDistanza(int stazione, int collimato, double distanza) {
  ScriviTesto(kControllareDistanza);
  Out->ScriviNumero(stazione + 1, 0, 0);
  ScriviTesto(kCongiunzioneE);
  Out->ScriviNumero(collimato + 1, 0, 0);
  Out->ScriviNumeroLn(distanza * kMetriPerKm, 12, 3);
}

void CalcCmpRigVelid1::AvvisaAnomalia(int stazione, int collimato, double termineNoto,
                                      double direzione) {
  ScriviTesto(kControllareStazione);
  Out->ScriviNumero(stazione + 1, 0, 0);
  ScriviTesto(kPreposizioneA);
  Out->ScriviNumero(collimato + 1, 0, 0);
  ScriviTesto(kTestoAnomalia);
  Out->ScriviNumero(termineNoto / FattoreRad, 9, 3);
  ScriviTesto(kTestoDirezione);
  Out->ScriviNumeroLn(direzione / FattoreRad, 9, 4);
}
