// Plane constructions: rays, circles, resection, rotation and translation.

#include "host/approssimate/metodi.h"

#include <algorithm>
#include <cmath>

#include "host/base/unita.h"
#include "host/rete/statistica.h"

namespace compensa {

namespace {

constexpr double kSenoTaglioMinimo = 0.08;        // rays nearer to parallel than 5 gon do not cut
constexpr double kCotangenteMassima = 1e9;        // of directions on one line
constexpr double kSommaCotangentiMinima = 1e-17;  // far below the last digit of any but 0
constexpr double kToccoRelativo = 2e-3;     // circles that miss by this part of their radii touch
constexpr double kAngoloVerificato = 1e-5;  // how well a resection must give its angles back [rad]
constexpr double kScartoZeri = 0.5 * kRadPerGon;  // a sight further from the median is left out
constexpr double kVicini = 0.01;                  // places nearer than this give no direction [m]

double Vettoriale(Posto a, Posto b) { return a.Est * b.Nord - a.Nord * b.Est; }
double Scalare(Posto a, Posto b) { return a.Est * b.Est + a.Nord * b.Nord; }

double Cotangente(double angolo) {
  const double t = std::tan(angolo);
  if (std::abs(t) * kCotangenteMassima < 1.0) return std::copysign(kCotangenteMassima, t);
  return 1.0 / t;
}

// Displacement for one radian of the two differences of direction: norm of the inverse Jacobian.
double Amplificazione(Posto x, const Collimato& a, const Collimato& b, const Collimato& c) {
  const auto gradiente = [&](const Collimato& t) {
    const Posto d = t.Luogo - x;
    const double q = Scalare(d, d);
    return Posto{-d.Nord / q, d.Est / q};
  };
  const Posto g1 = gradiente(b) - gradiente(a);
  const Posto g2 = gradiente(c) - gradiente(b);
  const double determinante = std::abs(Vettoriale(g1, g2));
  const double norma = std::sqrt(Scalare(g1, g1) + Scalare(g2, g2));
  const double media =
      (Lunghezza(a.Luogo - x) + Lunghezza(b.Luogo - x) + Lunghezza(c.Luogo - x)) / 3.0;
  return norma / (determinante * media);
}

}  // namespace

double SenoTaglio(const Raggio& a, const Raggio& b) {
  return std::abs(std::sin(a.Azimut - b.Azimut));
}

std::optional<Posto> Interseca(const Raggio& a, const Raggio& b) {
  if (SenoTaglio(a, b) < kSenoTaglioMinimo) return std::nullopt;
  const Posto u = Versore(a.Azimut);
  const Posto v = Versore(b.Azimut);
  const Posto w = b.Origine - a.Origine;
  const double denominatore = Vettoriale(u, v);
  const double t = Vettoriale(w, v) / denominatore;
  const double s = Vettoriale(w, u) / denominatore;
  if (!(t > 0.0) || !(s > 0.0)) return std::nullopt;
  return a.Origine + t * u;
}

std::vector<Posto> Interseca(const Cerchio& a, const Cerchio& b) {
  const Posto w = b.Centro - a.Centro;
  const double d = Lunghezza(w);
  if (d < kVicini) return {};
  const double x = (d * d + a.Raggio * a.Raggio - b.Raggio * b.Raggio) / (2.0 * d);
  const double y2 = a.Raggio * a.Raggio - x * x;
  const double tocco = kToccoRelativo * (a.Raggio + b.Raggio);
  const Posto u = (1.0 / d) * w;
  const Posto piede = a.Centro + x * u;
  if (y2 < 0.0) {
    const double manca = std::max(d - a.Raggio - b.Raggio, std::abs(a.Raggio - b.Raggio) - d);
    if (manca > tocco) return {};
    return {piede};
  }
  const double y = std::sqrt(y2);
  const Posto n{-u.Nord, u.Est};
  return {piede + y * n, piede + -y * n};
}

std::vector<Posto> Interseca(const Raggio& a, const Cerchio& b) {
  const Posto u = Versore(a.Azimut);
  const Posto w = a.Origine - b.Centro;
  const double meta = -Scalare(w, u);
  const double quadrato = meta * meta - Scalare(w, w) + b.Raggio * b.Raggio;
  if (quadrato < 0.0) return {};
  std::vector<Posto> comuni;
  for (const double t : {meta + std::sqrt(quadrato), meta - std::sqrt(quadrato)})
    if (t > kVicini) comuni.push_back(a.Origine + t * u);
  return comuni;
}

std::optional<Inversa> IntersezioneInversa(const Collimato& a, const Collimato& b,
                                           const Collimato& c) {
  // Axes along North and East make clockwise directions turn the positive way.
  const double x1 = a.Luogo.Nord - b.Luogo.Nord;
  const double y1 = a.Luogo.Est - b.Luogo.Est;
  const double x3 = c.Luogo.Nord - b.Luogo.Nord;
  const double y3 = c.Luogo.Est - b.Luogo.Est;
  const double t12 = Cotangente(b.Direzione - a.Direzione);
  const double t23 = Cotangente(c.Direzione - b.Direzione);
  // A point in line with the first and the last target makes the sum of the cotangents vanish: the
  // terms without t31 then no longer count.
  const double somma = t12 + t23;
  const double t31 = (1.0 - t12 * t23) / (somma == 0.0 ? kSommaCotangentiMinima : somma);
  const double x12 = x1 + t12 * y1;
  const double y12 = y1 - t12 * x1;
  const double x23 = x3 - t23 * y3;
  const double y23 = y3 + t23 * x3;
  const double x31 = (x3 + x1) + t31 * (y3 - y1);
  const double y31 = (y3 + y1) - t31 * (x3 - x1);
  const double k31 = x1 * x3 + y1 * y3 + t31 * (x1 * y3 - x3 * y1);
  const double determinante = (x12 - x23) * (y23 - y31) - (y12 - y23) * (x23 - x31);
  if (determinante == 0.0) return std::nullopt;
  Inversa esito;
  esito.Luogo = {b.Luogo.Est + k31 * (x23 - x12) / determinante,
                 b.Luogo.Nord + k31 * (y12 - y23) / determinante};
  if (!std::isfinite(esito.Luogo.Est) || !std::isfinite(esito.Luogo.Nord)) return std::nullopt;
  esito.Orientamento = MezzoGiro(Azimut(a.Luogo - esito.Luogo) - a.Direzione);
  for (const Collimato* t : {&b, &c}) {
    const double scarto =
        MezzoGiro(Azimut(t->Luogo - esito.Luogo) - t->Direzione - esito.Orientamento);
    if (!(std::abs(scarto) < kAngoloVerificato)) return std::nullopt;
  }
  esito.Amplificazione = Amplificazione(esito.Luogo, a, b, c);
  if (!std::isfinite(esito.Amplificazione)) return std::nullopt;
  return esito;
}

Orientazione Orienta(const std::vector<double>& zeri) {
  // The median on the circle: counted from the zero that lies nearest to all the others.
  double centro = zeri.front();
  double minima = HUGE_VAL;
  constexpr std::size_t kProvati = 9;
  for (std::size_t i = 0; i < std::min(zeri.size(), kProvati); ++i) {
    double somma = 0.0;
    for (const double z : zeri) somma += std::abs(MezzoGiro(z - zeri[i]));
    if (somma < minima) minima = somma, centro = zeri[i];
  }
  std::vector<double> scarti;
  scarti.reserve(zeri.size());
  for (const double z : zeri) scarti.push_back(MezzoGiro(z - centro));
  const double mediana = Mediana(scarti);
  const bool scegli = zeri.size() > 2;
  double somma = 0.0;
  int n = 0;
  Orientazione esito;
  for (const double s : scarti) {
    if (scegli && std::abs(s - mediana) > kScartoZeri) {
      ++esito.Escluse;
      continue;
    }
    somma += s;
    ++n;
  }
  const double media = n > 0 ? somma / n : mediana;
  for (const double s : scarti)
    if (!scegli || std::abs(s - mediana) <= kScartoZeri)
      esito.ScartoMassimo = std::max(esito.ScartoMassimo, std::abs(s - media));
  esito.Zero = MezzoGiro(centro + media);
  return esito;
}

Posto Rototraslazione::operator()(Posto p) const {
  const Posto d = p - Da;
  const double c = std::cos(Angolo);
  const double s = std::sin(Angolo);
  return A + Posto{c * d.Est + s * d.Nord, -s * d.Est + c * d.Nord};
}

std::optional<Rototraslazione> Sovrapponi(std::vector<Posto> locali, std::vector<Posto> noti,
                                          double tolleranza) {
  Rototraslazione esito;
  while (locali.size() >= 2) {
    const auto n = static_cast<double>(locali.size());
    Posto da;
    Posto a;
    for (std::size_t i = 0; i < locali.size(); ++i) da = da + locali[i], a = a + noti[i];
    esito.Da = (1.0 / n) * da;
    esito.A = (1.0 / n) * a;
    double seno = 0.0;
    double coseno = 0.0;
    for (std::size_t i = 0; i < locali.size(); ++i) {
      seno -= Vettoriale(locali[i] - esito.Da, noti[i] - esito.A);
      coseno += Scalare(locali[i] - esito.Da, noti[i] - esito.A);
    }
    if (std::hypot(seno, coseno) < kVicini) return std::nullopt;
    esito.Angolo = std::atan2(seno, coseno);
    std::size_t peggiore = 0;
    esito.ScartoMassimo = 0.0;
    for (std::size_t i = 0; i < locali.size(); ++i) {
      const double scarto = Lunghezza(esito(locali[i]) - noti[i]);
      if (scarto > esito.ScartoMassimo) esito.ScartoMassimo = scarto, peggiore = i;
    }
    if (esito.ScartoMassimo <= tolleranza || locali.size() <= 3) return esito;
    locali.erase(locali.begin() + static_cast<std::ptrdiff_t>(peggiore));
    noti.erase(noti.begin() + static_cast<std::ptrdiff_t>(peggiore));
    ++esito.Escluse;
  }
  return std::nullopt;
}

}  // namespace compensa
