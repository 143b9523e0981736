// The values that upset arithmetic, and where to put them.

#include "tests/comuni/corruzione.h"

#include <cfloat>
#include <climits>

using namespace kzt5cmrg;

namespace {

constexpr double kReali[] = {
    NAN,    HUGE_VAL, -HUGE_VAL, DBL_MAX, -DBL_MAX, kNonDato, kValoreMancante, 0, -0.0,
    5e-324, -1,       1e-9,      1e9,     200,      1e100};
constexpr int kInteri[] = {INT_MIN, INT_MAX, -1, 0, 1, 2, 3, 4, 6, 7, 10, 20, 30, 1000};

}  // namespace

void Corrompi(ReteProva& rete, Caso& caso) {
  const auto uno = [&caso](auto& v) -> auto& { return v[caso.Intero(static_cast<int>(v.size()))]; };
  if (rete.Stazioni.empty() || rete.Punti.empty() || rete.Nomi.empty()) return;
  TCoorCr& p = uno(rete.Punti);
  TStaCr& s = uno(rete.Stazioni);
  std::vector<TOssCr>& giro = uno(rete.Osservazioni);
  if (giro.empty()) giro.push_back({});
  TOssCr& o = uno(giro);
  TOpzCr& z = rete.Opzioni;
  double* const reali[] = {
      &p.Est,          &p.Nord,        &p.Quota,  &s.AltStrum,          &s.EccDistanza,
      &s.EccDirezione, &o.Direzione,   &o.Zenit,  &o.AltSegnale,        &o.Distanza,
      &z.SqmDistCost,  &z.SqmDistProp, &z.SqmDir, &rete.DsOr.CoeffRifr, &rete.DsOr.RaggioTerra};
  int* const interi[] = {&p.TipoPla, &p.TipoAlt, &s.Punto, &s.AltStrumNota, &o.Punto, &o.TipoDist};
  switch (caso.Intero(30)) {
    default: *caso.Scelta(reali) = caso.Scelta(kReali); break;
    case 1:
    case 2:
    case 3:
    case 4:
    case 5: *caso.Scelta(interi) = caso.Scelta(kInteri); break;
    case 6: z.MaxIter = caso.Scelta({INT_MIN, -1, 0, 1, 3, 50}); break;
    case 7: uno(rete.Nomi).assign(caso.Intero(40), static_cast<char>(caso.Intero(256))); break;
    case 8: giro.clear(); break;
    case 9: rete.Stazioni.push_back(TStaCr(s)), rete.Osservazioni.emplace_back(giro); break;
    case 10:
      for (TOssCr& x : giro) x.Direzione = x.Zenit = x.Distanza = kValoreMancante;
      break;
    case 11:
      if (caso.Intero(5) == 0) rete.Punti.resize(1 + rete.Punti.size() / 2);
      break;
    case 12:
      if (caso.Intero(9) == 0) rete.Stazioni.clear();
  }
}
