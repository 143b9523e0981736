// One Gauss-Newton step in plan: all observation equations on the current coordinates, their
// solution, and the corrections added to the unknown points. A step has converged when no single
// correction is larger than kSoglia.

#include <cmath>

#include "kzt5cmrg.h"
#include "records/costanti.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

namespace {
constexpr double kSoglia = 2.0e-5;  // largest correction of a converged step [km]: 2 cm
constexpr int kFissiMinimi = 2;     // fixed points that give origin, orientation and scale
}  // namespace

// False when the step could not be made: too few fixed points, more unknowns than equations, or a
// normal matrix that is not positive definite. The coordinates are then unchanged, `convergente` is
// not written, and `equazioni` only once the equations were built.
bool CalcCmpRigVelid1::IterazPla(int iterazione, int& equazioni, bool& convergente) {
  const int incognite = 2 * nIncPla;
  const bool prima = iterazione <= 1;
  if (prima) {
    ScriviConteggi(nNonUsatiPla, nFissiPla, nIncPla);
    Out->SaltaRiga(2);
    if (PuntiFissiMancanti()) return false;
  }
  ScriviTesto(kIterazione);
  Out->ScriviNumeroLn(iterazione, 4, 0);
  Out->SaltaRiga(1);

  AzzeraEquazioni();
  equazioni = 0;
  CreaEquazAng(equazioni);
  CreaEquazDis(equazioni);
  CreaEquazDir(equazioni);

  if (prima) {
    ScriviDimensioni(incognite, equazioni);
    Out->SaltaRiga(1);
  }
  if (Indeterminato(incognite, equazioni)) return false;

  const int statoPrecedente = StatoCalcolo;
  MinQua2(equazioni, incognite);
  if (StatoCalcolo == kSolutoreFallito) {
    StatoCalcolo = statoPrecedente;
    return false;
  }

  const double media = CorreggiCoordinate(convergente);
  ScriviTesto(kAggiornamentoMedio);
  Out->ScriviNumero(media / FattoreKm, 9, 4);
  Out->ScriviStringaLn(kMetriParentesi, 0);
  Out->SaltaRiga(1);
  return true;
}

bool CalcCmpRigVelid1::PuntiFissiMancanti() {
  if (nFissiPla >= kFissiMinimi) return false;
  Out->SaltaRiga(1);
  ScriviTesto(kErrore);
  Out->SaltaRiga(2);
  ScriviTesto(kStazioniFisse);
  Out->ScriviNumero(nFissiPla, 0, 0);
  ScriviTesto(kInferioreADue);
  Out->SaltaRiga(2);
  return true;
}

// Returns the mean absolute correction [km], 0 without unknowns.
double CalcCmpRigVelid1::CorreggiCoordinate(bool& convergente) {
  convergente = true;
  double somma = 0.0;
  for (int k = 0; k < nIncPla; ++k) {
    const auto c = 2 * static_cast<std::size_t>(k);
    const double dE = Soluzione[c];
    const double dN = Soluzione[c + 1];
    TCoorCr& p = Punto(PuntoDaIncPla[static_cast<std::size_t>(k)]);
    p.Est += dE;
    p.Nord += dN;
    if (std::abs(dE) > kSoglia || std::abs(dN) > kSoglia) convergente = false;
    somma += std::abs(dE);
    somma += std::abs(dN);
  }
  return nIncPla == 0 ? 0.0 : somma / (2 * nIncPla);
}
