// The frame around the points, the sights that join them, the exaggeration of the ellipses.

#include "host/uscite/disegno_elementi.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>

namespace {

// Around the points [pixel]; the scale bar stands in the lower margin.
constexpr double kMargineLati = 70.0, kMargineAlto = 50.0, kMargineBasso = 70.0;
constexpr double kAltezzaMinima = 230.0, kAltezzaMassima = 740.0;  // of the points [pixel]
constexpr double kLatoMinimo = 10.0;  // [m], of the drawing of points that all coincide

struct Estensione {
  double EstMinimo = HUGE_VAL, EstMassimo = -HUGE_VAL;
  double NordMinimo = HUGE_VAL, NordMassimo = -HUGE_VAL;

  void Comprendi(const RisultatoPunto& p) {
    EstMinimo = std::min(EstMinimo, p.Est);
    EstMassimo = std::max(EstMassimo, p.Est);
    NordMinimo = std::min(NordMinimo, p.Nord);
    NordMassimo = std::max(NordMassimo, p.Nord);
  }
  bool Vuota() const { return EstMinimo > EstMassimo; }
  double Lato() const { return std::max(EstMassimo - EstMinimo, NordMassimo - NordMinimo); }
  // Up to half its size away.
  bool Vicino(const RisultatoPunto& p) const {
    const double bordo = Lato() / 2.0;
    return p.Est >= EstMinimo - bordo && p.Est <= EstMassimo + bordo &&
           p.Nord >= NordMinimo - bordo && p.Nord <= NordMassimo + bordo;
  }
};

bool Disegnabile(const RisultatoPunto& p) { return std::isfinite(p.Est) && std::isfinite(p.Nord); }

SegnoPunto Segno(const Risultati& r, const RisultatoPunto& p) {
  const bool planimetria = r.Planimetria.Fine != Esito::NonRichiesta;
  const bool altimetria = r.Altimetria.Fine != Esito::NonRichiesta;
  int ruolo = planimetria || !altimetria ? p.Ruoli.Pla : p.Ruoli.Alt;
  if (ruolo == kNonUsato && planimetria && altimetria) ruolo = p.Ruoli.Alt;
  switch (ruolo) {
    case kFisso: return SegnoPunto::Fisso;
    case kCompensato: return SegnoPunto::Compensato;
    case kNonUsato: return SegnoPunto::NonUsato;
    default: return SegnoPunto::Incognito;
  }
}

Inquadratura Inquadra(const Estensione& e) {
  constexpr double kLatoNullo = 1e-6;  // [m]
  constexpr int kCifrePosizione = 4;   // of which the size of the drawing needs one
  Inquadratura q;
  const double larghezza = e.EstMassimo - e.EstMinimo, altezza = e.NordMassimo - e.NordMinimo;
  const double utile = kFoglio - 2.0 * kMargineLati;
  q.MetriPerPixel = std::max(larghezza / utile, altezza / kAltezzaMassima);
  if (e.Lato() < kLatoNullo) q.MetriPerPixel = kLatoMinimo / utile;
  const double altezzaPixel = std::max(altezza / q.MetriPerPixel, kAltezzaMinima);
  q.EstOrigine = e.EstMinimo;
  q.NordOrigine = e.NordMassimo;
  q.Larghezza = kFoglio * q.MetriPerPixel;
  q.Altezza = (altezzaPixel + kMargineAlto + kMargineBasso) * q.MetriPerPixel;
  q.Sinistra = (larghezza - q.Larghezza) / 2.0;
  q.Alto = (altezza - altezzaPixel * q.MetriPerPixel) / 2.0 - kMargineAlto * q.MetriPerPixel;
  q.Decimali =
      std::clamp(kCifrePosizione - static_cast<int>(std::floor(std::log10(q.Larghezza))), 0, 9);
  return q;
}

void RaccogliPunti(const Risultati& r, ElementiDisegno& elementi) {
  Estensione usati, tutti;
  for (const RisultatoPunto& p : r.Punti) {
    if (!Disegnabile(p)) continue;
    tutti.Comprendi(p);
    if (Segno(r, p) != SegnoPunto::NonUsato) usati.Comprendi(p);
  }
  if (tutti.Vuota()) return;
  Estensione quadro = usati.Vuota() ? tutti : usati;
  const Estensione limite = quadro;
  std::vector<bool> stazione(r.Punti.size());
  for (const RisultatoStazione& s : r.Stazioni)
    if (s.Punto >= 0 && !s.Osservazioni.empty()) stazione[static_cast<std::size_t>(s.Punto)] = true;
  for (std::size_t i = 0; i < r.Punti.size(); ++i) {
    const RisultatoPunto& p = r.Punti[i];
    if (!Disegnabile(p)) continue;
    const SegnoPunto segno = Segno(r, p);
    if (segno == SegnoPunto::NonUsato && !limite.Vicino(p)) {
      ++elementi.Lontani;
      continue;
    }
    quadro.Comprendi(p);
    elementi.Punti.push_back({static_cast<int>(i), 0.0, 0.0, segno, stazione[i]});
  }
  elementi.Quadro = Inquadra(quadro);
  for (PuntoDisegnato& d : elementi.Punti) {
    const RisultatoPunto& p = r.Punti[static_cast<std::size_t>(d.Punto)];
    d.X = elementi.Quadro.X(p.Est);
    d.Y = elementi.Quadro.Y(p.Nord);
  }
}

VisualeDisegnata Visuale(const Risultati& r, int da, const RisultatoOsservazione& o) {
  VisualeDisegnata v;
  v.Da = std::min(da, o.Punto);
  v.A = std::max(da, o.Punto);
  (da < o.Punto ? v.Andata : v.Ritorno) = true;
  v.Direzione = Presente(o.Direzione);
  v.Distanza = Presente(o.Distanza);
  v.Quota = o.Dislivello != kNessuno;
  v.Usata = o.DirezioneRiferimento || !(r.Planimetria.Compiuta() || r.Altimetria.Compiuta());
  for (const int indice : {o.Angolo, o.EqDistanza, o.Dislivello}) {
    if (indice == kNessuno) continue;
    v.Usata = true;
    v.WMassimo = std::fmax(v.WMassimo, r.Equazioni[static_cast<std::size_t>(indice)].W);
  }
  return v;
}

void RaccogliVisuali(const Risultati& r, ElementiDisegno& elementi) {
  std::vector<bool> disegnato(r.Punti.size());
  for (const PuntoDisegnato& p : elementi.Punti)
    disegnato[static_cast<std::size_t>(p.Punto)] = true;
  const auto presente = [&](int punto) {
    return punto >= 0 && disegnato[static_cast<std::size_t>(punto)];
  };
  std::vector<VisualeDisegnata> singole;
  for (const RisultatoStazione& s : r.Stazioni)
    for (const RisultatoOsservazione& o : s.Osservazioni)
      if (presente(s.Punto) && presente(o.Punto) && s.Punto != o.Punto)
        singole.push_back(Visuale(r, s.Punto, o));
  std::ranges::stable_sort(singole, [](const VisualeDisegnata& a, const VisualeDisegnata& b) {
    return std::tie(a.Da, a.A) < std::tie(b.Da, b.A);
  });
  for (const VisualeDisegnata& v : singole) {
    if (elementi.Visuali.empty() || elementi.Visuali.back().Da != v.Da ||
        elementi.Visuali.back().A != v.A) {
      elementi.Visuali.push_back(v);
      continue;
    }
    VisualeDisegnata& u = elementi.Visuali.back();
    u.Direzione |= v.Direzione;
    u.Distanza |= v.Distanza;
    u.Quota |= v.Quota;
    u.Andata |= v.Andata;
    u.Ritorno |= v.Ritorno;
    u.Usata |= v.Usata;
    u.WMassimo = std::fmax(u.WMassimo, v.WMassimo);
  }
}

// Mean distance between points that fill the drawing evenly [m].
double Intervallo(const ElementiDisegno& elementi) {
  const Inquadratura& q = elementi.Quadro;
  return std::sqrt(q.Larghezza * q.Altezza / static_cast<double>(elementi.Punti.size()));
}

// So that the median semi-axis is a visible part of the drawing but does not reach the next points.
double Esagerazione(const Risultati& r, const ElementiDisegno& elementi) {
  constexpr double kParteDisegno = 0.04, kParteIntervallo = 0.3;
  std::vector<double> assi;
  for (const PuntoDisegnato& p : elementi.Punti) {
    const double asse = r.Punti[static_cast<std::size_t>(p.Punto)].EllAsseMag;
    if (std::isfinite(asse) && asse > 0.0) assi.push_back(asse);
  }
  if (assi.empty()) return kAssente;
  const auto mezzo = assi.begin() + static_cast<std::ptrdiff_t>(assi.size() / 2);
  std::ranges::nth_element(assi, mezzo);
  const double lato = std::min(elementi.Quadro.Larghezza, elementi.Quadro.Altezza);
  return TondoVicino(std::min(lato * kParteDisegno, Intervallo(elementi) * kParteIntervallo) /
                     *mezzo);
}

constexpr std::array kTondi = {1.0, 2.0, 5.0, 10.0};

}  // namespace

double TondoVicino(double valore) {
  const double decade = std::pow(10.0, std::floor(std::log10(valore)));
  double vicino = decade;
  const auto rapporto = [&](double tondo) { return std::abs(std::log(tondo / valore)); };
  for (const double tondo : kTondi)
    if (rapporto(tondo * decade) < rapporto(vicino)) vicino = tondo * decade;
  return vicino;
}

double TondoInferiore(double valore) {
  const double decade = std::pow(10.0, std::floor(std::log10(valore)));
  double inferiore = decade;
  for (const double tondo : kTondi)
    if (tondo * decade <= valore) inferiore = tondo * decade;
  return inferiore;
}

ElementiDisegno PreparaDisegno(const Risultati& r) {
  ElementiDisegno elementi;
  RaccogliPunti(r, elementi);
  if (elementi.Punti.empty()) return elementi;
  RaccogliVisuali(r, elementi);
  constexpr double kIntervalloComodo = 50.0, kRiduzioneMassima = 0.4;  // the first in pixels
  elementi.Riduzione =
      std::clamp(Intervallo(elementi) / elementi.Quadro.MetriPerPixel / kIntervalloComodo,
                 kRiduzioneMassima, 1.0);
  elementi.Esagerazione = Esagerazione(r, elementi);
  return elementi;
}
