// Extent of a network and ellipses to scale. A point of the ellipse with semi-axes a, b and azimuth
// t of the major one, clockwise from North, by the parameter u:
//   E = E0 + a cos u sin t + b sin u cos t      N = N0 + a cos u cos t - b sin u sin t

#include "host/uscite/scala_ellissi.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "host/campi.h"
#include "host/numeri.h"

namespace {

constexpr double kQuotaLato = 0.04;  // wanted median semi-major axis over the side of the drawing
constexpr double kRadPerGon = std::numbers::pi / 200.0;

// 1, 2 or 5 * 10^n nearest to a positive value by ratio.
double Tondo(double valore) {
  const double decade = std::pow(10.0, std::floor(std::log10(valore)));
  double migliore = decade;
  for (const double passo : {2.0, 5.0, 10.0}) {
    const double candidato = passo * decade;
    if (std::abs(std::log(candidato / valore)) < std::abs(std::log(migliore / valore)))
      migliore = candidato;
  }
  return migliore;
}

}  // namespace

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
  bool primo = true;
  for (const RisultatoPunto& p : r.Punti) {
    if (!Disegnabile(p)) continue;
    if (primo) q = {p.Est, p.Nord, p.Est, p.Nord};
    primo = false;
    q = {std::min(q.EstMin, p.Est), std::min(q.NordMin, p.Nord), std::max(q.EstMax, p.Est),
         std::max(q.NordMax, p.Nord)};
  }
  return q;
}

double EsagerazioneEllissi(const Risultati& r) {
  std::vector<double> assi;
  for (const RisultatoPunto& p : r.Punti)
    if (ConEllisse(p)) assi.push_back(p.EllAsseMag);
  if (assi.empty()) return 1.0;
  const auto mezzo = assi.begin() + static_cast<std::ptrdiff_t>(assi.size() / 2);
  std::nth_element(assi.begin(), mezzo, assi.end());
  const double voluta = kQuotaLato * RiquadroPunti(r).Lato() / *mezzo;
  return std::isnormal(voluta) ? Tondo(voluta) : 1.0;
}

// A round factor below one has its only digit as many places behind the point as its decade says.
std::string TestoEsagerazione(double esagerazione) {
  constexpr int kMaxDecimali = 17;
  const double decade = std::floor(std::log10(esagerazione * 1.5));  // clear of rounding
  return NumeroFisso(esagerazione, std::clamp(static_cast<int>(-decade), 0, kMaxDecimali));
}

std::array<PuntoPiano, kVerticiEllisse> AnelloEllisse(const RisultatoPunto& p, double fattore) {
  const double a = p.EllAsseMag * fattore;
  const double b = p.EllAsseMin * fattore;
  const double seno = std::sin(p.EllAzimut * kRadPerGon);
  const double coseno = std::cos(p.EllAzimut * kRadPerGon);
  std::array<PuntoPiano, kVerticiEllisse> anello;
  for (std::size_t i = 0; i < kVerticiEllisse; ++i) {
    const double u = 2.0 * std::numbers::pi * static_cast<double>(i) / kVerticiEllisse;
    const double lungo = a * std::cos(u);
    const double traverso = b * std::sin(u);
    anello[i] = {p.Est + lungo * seno + traverso * coseno,
                 p.Nord + lungo * coseno - traverso * seno};
  }
  return anello;
}

int RuoloDisegno(const Risultati& r, const RisultatoPunto& p) {
  return r.Planimetria.Fine == Esito::NonRichiesta && r.Altimetria.Fine != Esito::NonRichiesta
             ? p.Ruoli.Alt
             : p.Ruoli.Pla;
}

std::string_view NomeRuolo(int ruolo) {
  if (ruolo == kCompensato) return "compensato";
  for (const ParolaNota& parola : kParoleRuolo)
    if (parola.Valore == ruolo) return parola.Testo;
  return {};
}
