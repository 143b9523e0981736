// Corrections of the iterations against the sights that they turn.

#include "host/giudizio/indeterminazione/correzioni.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace compensa {

namespace {

// Of each point, at the approximate coordinates [m].
std::vector<double> VisualiPiuCorte(const Risultati& r) {
  std::vector<double> corta(r.Punti.size(), std::numeric_limits<double>::infinity());
  for (const RisultatoStazione& s : r.Stazioni) {
    const auto da = static_cast<std::size_t>(s.Punto);
    for (const RisultatoOsservazione& o : s.Osservazioni) {
      const auto a = static_cast<std::size_t>(o.Punto);
      const RisultatoPunto &p = r.Punti[da], &q = r.Punti[a];
      const double D = std::hypot(q.EstIniziale - p.EstIniziale, q.NordIniziale - p.NordIniziale);
      if (!(D > 0.0) || (!Presente(o.Direzione) && !Presente(o.Distanza))) continue;
      corta[da] = std::min(corta[da], D);
      corta[a] = std::min(corta[a], D);
    }
  }
  return corta;
}

}  // namespace

std::optional<CorrezioneEccessiva> CercaCorrezioneEccessiva(const Risultati& risultati) {
  const std::vector<double> corta = VisualiPiuCorte(risultati);
  for (const Iterazione& passo : risultati.Planimetria.Iterazioni) {
    if (passo.PuntoMassimo == kNessuno) continue;
    const double visuale = corta[static_cast<std::size_t>(passo.PuntoMassimo)];
    if (passo.CorrezioneMassima > kParteLecita * visuale)
      return CorrezioneEccessiva{passo.Numero, passo.PuntoMassimo, passo.CorrezioneMassima,
                                 visuale};
  }
  return {};
}

}  // namespace compensa
