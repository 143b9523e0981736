// The frame around the points, and the sights that join them.

#include "host/uscite/html/disegno_elementi.h"

#include <algorithm>
#include <cmath>

#include "host/uscite/scala_ellissi.h"

namespace compensa {

namespace {

// Around the points [pixel]; the scale bar stands in the lower margin.
constexpr double kMargineLati = 70.0, kMargineAlto = 50.0, kMargineBasso = 70.0;
constexpr double kAltezzaMinima = 230.0, kAltezzaMassima = 740.0;  // of the points [pixel]
constexpr double kLatoMinimo = 10.0;  // [m], of the drawing of points that all coincide

// Up to half the size of the extent away.
bool Vicino(const Riquadro& q, const RisultatoPunto& p) {
  const double bordo = q.Lato() / 2.0;
  return p.Est >= q.EstMin - bordo && p.Est <= q.EstMax + bordo && p.Nord >= q.NordMin - bordo &&
         p.Nord <= q.NordMax + bordo;
}

Inquadratura Inquadra(const Riquadro& e) {
  constexpr double kLatoNullo = 1e-6;  // [m]
  constexpr int kCifrePosizione = 4;   // of which the size of the drawing needs one
  Inquadratura q;
  const double larghezza = e.EstMax - e.EstMin, altezza = e.NordMax - e.NordMin;
  const double utile = kFoglio - 2.0 * kMargineLati;
  q.MetriPerPixel = std::max(larghezza / utile, altezza / kAltezzaMassima);
  if (e.Lato() < kLatoNullo) q.MetriPerPixel = kLatoMinimo / utile;
  const double altezzaPixel = std::max(altezza / q.MetriPerPixel, kAltezzaMinima);
  q.EstOrigine = e.EstMin;
  q.NordOrigine = e.NordMax;
  q.Larghezza = kFoglio * q.MetriPerPixel;
  q.Altezza = (altezzaPixel + kMargineAlto + kMargineBasso) * q.MetriPerPixel;
  q.Sinistra = (larghezza - q.Larghezza) / 2.0;
  q.Alto = (altezza - altezzaPixel * q.MetriPerPixel) / 2.0 - kMargineAlto * q.MetriPerPixel;
  q.Decimali =
      std::clamp(kCifrePosizione - static_cast<int>(std::floor(std::log10(q.Larghezza))), 0, 9);
  return q;
}

void RaccogliPunti(const Risultati& r, ElementiDisegno& elementi) {
  Riquadro usati, tutti;
  for (const RisultatoPunto& p : r.Punti) {
    if (!Disegnabile(p)) continue;
    tutti.Comprendi(p);
    if (RuoloDisegno(r, p) != kNonUsato) usati.Comprendi(p);
  }
  if (tutti.Vuoto()) return;
  Riquadro quadro = usati.Vuoto() ? tutti : usati;
  const Riquadro limite = quadro;
  std::vector<bool> stazione(r.Punti.size());
  for (const RisultatoStazione& s : r.Stazioni)
    if (s.Punto >= 0 && !s.Osservazioni.empty()) stazione[static_cast<std::size_t>(s.Punto)] = true;
  for (std::size_t i = 0; i < r.Punti.size(); ++i) {
    const RisultatoPunto& p = r.Punti[i];
    if (!Disegnabile(p)) continue;
    const int ruolo = RuoloDisegno(r, p);
    if (ruolo == kNonUsato && !Vicino(limite, p)) {
      ++elementi.Lontani;
      continue;
    }
    quadro.Comprendi(p);
    elementi.Punti.push_back({static_cast<int>(i), 0.0, 0.0, ruolo, stazione[i]});
  }
  elementi.Quadro = Inquadra(quadro);
  for (PuntoDisegnato& d : elementi.Punti) {
    const RisultatoPunto& p = r.Punti[static_cast<std::size_t>(d.Punto)];
    d.X = elementi.Quadro.X(p.Est);
    d.Y = elementi.Quadro.Y(p.Nord);
  }
}

void ScegliVisuali(const Risultati& r, ElementiDisegno& elementi) {
  std::vector<bool> disegnato(r.Punti.size());
  for (const PuntoDisegnato& p : elementi.Punti)
    disegnato[static_cast<std::size_t>(p.Punto)] = true;
  elementi.Visuali = RaccogliVisuali(r);
  std::erase_if(elementi.Visuali, [&](const VisualeUnica& v) {
    return !disegnato[static_cast<std::size_t>(v.Da)] || !disegnato[static_cast<std::size_t>(v.A)];
  });
}

// Mean distance between points that fill the drawing evenly [m].
double Intervallo(const ElementiDisegno& elementi) {
  const Inquadratura& q = elementi.Quadro;
  return std::sqrt(q.Larghezza * q.Altezza / static_cast<double>(elementi.Punti.size()));
}

}  // namespace

ElementiDisegno PreparaDisegno(const Risultati& r) {
  ElementiDisegno elementi;
  RaccogliPunti(r, elementi);
  if (elementi.Punti.empty()) return elementi;
  ScegliVisuali(r, elementi);
  constexpr double kIntervalloComodo = 50.0, kRiduzioneMassima = 0.4;  // the first in pixels
  elementi.Riduzione =
      std::clamp(Intervallo(elementi) / elementi.Quadro.MetriPerPixel / kIntervalloComodo,
                 kRiduzioneMassima, 1.0);
  elementi.Ellissi = std::any_of(elementi.Punti.begin(), elementi.Punti.end(), [&](const auto& p) {
    return ConEllisse(r.Punti[static_cast<std::size_t>(p.Punto)]);
  });
  return elementi;
}

}  // namespace compensa
