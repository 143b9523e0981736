// Precision of the adjusted plane coordinates over the network: quadratic mean, mean, and spread
// about the mean of their standard deviations, North (x) and East (y), in millimetres.

#include <cmath>
#include <vector>

#include "kzt5cmrg.h"
#include "records/costanti.h"
#include "resources/catalogo.h"

using namespace kzt5cmrg;

namespace {

struct Precisione {
  double Rms = 0.0;
  double Media = 0.0;
  double Sqm = 0.0;  // about the mean, divisor n
};

// All 0 for an empty sample.
Precisione Riassumi(const std::vector<double>& sigma) {
  Precisione p;
  if (sigma.empty()) return p;
  const auto n = static_cast<double>(sigma.size());
  double quadrati = 0.0;
  double somma = 0.0;
  for (const double s : sigma) {
    quadrati += s * s;
    somma += s;
  }
  p.Rms = std::sqrt(quadrati / n);
  p.Media = somma / n;
  double scarti = 0.0;
  for (const double s : sigma) scarti += (p.Media - s) * (p.Media - s);
  p.Sqm = std::sqrt(scarti / n);
  return p;
}

}  // namespace

int CalcCmpRigVelid1::Statistica() {
  const double kmPerMillimetro = FattoreKm * FattoreKm;
  std::vector<double> sigmaNord;
  std::vector<double> sigmaEst;
  sigmaNord.reserve(static_cast<std::size_t>(nIncPla));
  sigmaEst.reserve(static_cast<std::size_t>(nIncPla));
  for (int i = 0; i < nPunti; ++i) {
    const int k = IncPla[static_cast<std::size_t>(i)];
    if (Punto(i).TipoPla != kCompensato || k < 0) continue;
    const int c = 2 * k;
    const double s0Quadro = SigmaZero * SigmaZero;
    sigmaEst.push_back(std::sqrt(s0Quadro * Cofattore(c, c)) / kmPerMillimetro);
    sigmaNord.push_back(std::sqrt(s0Quadro * Cofattore(c + 1, c + 1)) / kmPerMillimetro);
  }
  const Precisione nord = Riassumi(sigmaNord);
  const Precisione est = Riassumi(sigmaEst);

  ScriviTitolo(kRigaStatistica, kStatistica);
  const auto riga = [this](unsigned testo, double x, double y) {
    ScriviTesto(testo);
    ScriviTesto(kSx);
    Out->ScriviNumero(x, 5, 0);
    ScriviTesto(kSy);
    Out->ScriviNumeroLn(y, 5, 0);
  };
  riga(kValoriRms, nord.Rms, est.Rms);
  riga(kValoriMedi, nord.Media, est.Media);
  riga(kValoriSqm, nord.Sqm, est.Sqm);
  Out->SaltaRiga(2);
  return 0;
}
