// Heights against the precision of the options. Sigma zero in height only says how much the height
// differences miss for weights that are relative; what one of them, over the horizontal length D,
// should be worth is
//   s^2 = (D s_z)^2 + s_h^2 + (tan slope s_D)^2 + (c D^2 / 2R)^2
// with s_z of a zenith angle, s_h of the two heights over the marks, s_D of the distance and c the
// uncertainty of the refraction coefficient, or 1 where curvature is left out. Refraction makes real
// heights a few times worse than this, never tens of times.

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "host/base/numeri.h"
#include "host/giudizio/avvertimenti/dopo.h"
#include "host/giudizio/controlli/tolleranze.h"
#include "host/rete/grandezze.h"
#include "host/rete/statistica.h"
#include "host/rete/visuali.h"

namespace compensa {

namespace {

constexpr double kSqmAltezze = 0.005;           // instrument and target heights together [m]
constexpr double kIncertezzaRifrazione = 0.15;  // of the refraction coefficient
constexpr double kVolteAssurde = 20.0;
constexpr int kDecimali = 3;

}  // namespace

double SqmDislivelloAtteso(const Rete& rete, const Risultati& risultati,
                           const Equazione& equazione) {
  const RisultatoStazione& s = risultati.Stazioni[static_cast<std::size_t>(equazione.Stazione)];
  const RisultatoOsservazione& o = s.Osservazioni[static_cast<std::size_t>(equazione.Osservazione)];
  const RisultatoPunto& p = risultati.Punti[static_cast<std::size_t>(s.Punto)];
  const RisultatoPunto& q = risultati.Punti[static_cast<std::size_t>(o.Punto)];
  const double D = std::hypot(q.Est - p.Est, q.Nord - p.Nord);
  if (!(D > 0.0)) return kAssente;
  const double pendenza = std::min(std::abs(q.Quota - p.Quota) / D, 1.0);
  const double curvatura = D * D / (2.0 * kRaggioMedio) *
                           (rete.CurvaturaRifrazione.CorrCurvRifr != 0 ? kIncertezzaRifrazione : 1);
  return std::hypot(std::hypot(D * SqmZenit(rete), kSqmAltezze),
                    std::hypot(pendenza * SqmDistanza(rete, D), curvatura));
}

Rilievi ControllaQuote(const Rete& rete, const Risultati& risultati) {
  const RisultatoCompensazione& c = risultati.Altimetria;
  if (!c.Compiuta() || c.Ridondanza() <= 0) return {};
  std::vector<double> rapporti;
  const Equazione* peggiore = nullptr;
  double massimo = 0.0;
  for (const Equazione& e : risultati.Equazioni) {
    if (e.Tipo != TipoEquazione::Dislivello) continue;
    const double rapporto = e.Sqm / SqmDislivelloAtteso(rete, risultati, e);
    if (!Presente(rapporto)) continue;
    rapporti.push_back(rapporto);
    if (rapporto > massimo) massimo = rapporto, peggiore = &e;
  }
  const double volte = Mediana(std::move(rapporti));
  if (peggiore == nullptr || !(volte > kVolteAssurde)) return {};
  const std::string atteso =
      NumeroFisso(SqmDislivelloAtteso(rete, risultati, *peggiore), kDecimali);
  return {
      {rete.DoveOpzioni.SqmDirezione,
       {.Quale = Codice::DislivelliImprecisi,
        .Record = TipoSoggetto::Altimetria,
        .Problema = "sigma zero " + NumeroFisso(c.SigmaZero, kDecimali + 1) +
                    " m: i dislivelli sono in mediana " + NumeroFisso(volte, 0) +
                    " volte peggiori di quanto promettono gli s.q.m. delle opzioni; " +
                    TestoEquazione(risultati, *peggiore) + " ha s.q.m. " +
                    NumeroFisso(peggiore->Sqm, kDecimali) + " m, atteso " + atteso + " m",
        .Suggerimento = "errore grossolano in uno zenit, in una quota fissa, nell'altezza di uno "
                        "strumento o di un segnale? cominciare dal w più grande"}}};
}

}  // namespace compensa
