// Extent of a network and ellipses to scale. A point of the ellipse with semi-axes a, b and azimuth
// t of the major one, clockwise from North, by the parameter u:
//   E = E0 + a cos u sin t + b sin u cos t      N = N0 + a cos u cos t - b sin u sin t

#include "host/uscite/scala_ellissi.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "host/base/numeri.h"
#include "host/base/unita.h"
#include "host/rete/grandezze.h"

namespace compensa {

namespace {

constexpr std::array kTondi = {1.0, 2.0, 5.0, 10.0};

// Mean distance of neighbours among so many points that fill the extent evenly [m].
double Intervallo(const Riquadro& q, double punti) {
  const double base = q.EstMax - q.EstMin, altezza = q.NordMax - q.NordMin;
  const double minimo = q.Lato() / punti;  // of points in a row
  return std::max(std::sqrt(base * altezza / punti), minimo);
}

}  // namespace

void Riquadro::Comprendi(const RisultatoPunto& p) {
  EstMin = std::min(EstMin, p.Est);
  NordMin = std::min(NordMin, p.Nord);
  EstMax = std::max(EstMax, p.Est);
  NordMax = std::max(NordMax, p.Nord);
}

double Riquadro::Lato() const { return std::max(EstMax - EstMin, NordMax - NordMin); }

bool Disegnabile(const RisultatoPunto& punto) {
  return std::isfinite(punto.Est) && std::isfinite(punto.Nord);
}

bool ConEllisse(const RisultatoPunto& punto) {
  return Disegnabile(punto) && std::isfinite(punto.EllAsseMag) && punto.EllAsseMag > 0.0 &&
         std::isfinite(punto.EllAsseMin) && std::isfinite(punto.EllAzimut);
}

Riquadro RiquadroPunti(const Risultati& r) {
  Riquadro q;
  for (const RisultatoPunto& p : r.Punti)
    if (Disegnabile(p)) q.Comprendi(p);
  return q.Vuoto() ? Riquadro{0.0, 0.0, 0.0, 0.0} : q;
}

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

// A round number below one has its only digit as many places behind the point as its decade says.
std::string TestoTondo(double tondo) {
  constexpr int kMaxDecimali = 17;
  const double decade = std::floor(std::log10(tondo * 1.5));  // clear of rounding
  return NumeroFisso(tondo, std::clamp(static_cast<int>(-decade), 0, kMaxDecimali));
}

double EsagerazioneEllissi(const Risultati& r) {
  constexpr double kParteLato = 0.04, kParteIntervallo = 0.3;
  std::vector<double> assi;
  Riquadro usati;
  double punti = 0.0;
  for (const RisultatoPunto& p : r.Punti) {
    if (ConEllisse(p)) assi.push_back(p.EllAsseMag);
    if (!Disegnabile(p) || RuoloDisegno(r, p) == kNonUsato) continue;
    usati.Comprendi(p);
    ++punti;
  }
  if (assi.empty() || usati.Vuoto()) return 1.0;
  const auto mezzo = assi.begin() + static_cast<std::ptrdiff_t>(assi.size() / 2);
  std::nth_element(assi.begin(), mezzo, assi.end());
  const double voluta =
      std::min(kParteLato * usati.Lato(), kParteIntervallo * Intervallo(usati, punti)) / *mezzo;
  return std::isnormal(voluta) ? TondoVicino(voluta) : 1.0;
}

int VerticiEllisse(const Risultati& r) {
  constexpr int kMassimo = 72, kMinimo = 16, kInTutto = 200'000;
  const auto ellissi = std::count_if(r.Punti.begin(), r.Punti.end(), ConEllisse);
  if (ellissi == 0) return kMassimo;
  return std::clamp(static_cast<int>(kInTutto / ellissi) / 4 * 4, kMinimo, kMassimo);
}

std::vector<PuntoPiano> AnelloEllisse(const RisultatoPunto& p, double fattore, int vertici) {
  const double a = p.EllAsseMag * fattore;
  const double b = p.EllAsseMin * fattore;
  const double seno = std::sin(p.EllAzimut * kRadPerGon);
  const double coseno = std::cos(p.EllAzimut * kRadPerGon);
  std::vector<PuntoPiano> anello;
  anello.reserve(static_cast<std::size_t>(vertici));
  for (int i = 0; i < vertici; ++i) {
    const double u = 2.0 * kPi * i / vertici;
    const double lungo = a * std::cos(u);
    const double traverso = b * std::sin(u);
    anello.push_back(
        {p.Est + lungo * seno + traverso * coseno, p.Nord + lungo * coseno - traverso * seno});
  }
  return anello;
}

}  // namespace compensa
