// The second computation: prediction of the observations, complex-step derivatives, QR by LAPACK.
//   v = t - A x,  sqrt(P) A = Q R,  N^-1 = R^-1 R^-T,  w = |v| / (s0 sqrt(1/p - a N^-1 a^T))

#include "tests/comuni/doppio.h"

#include <lapacke.h>

#include <complex>
#include <functional>

using namespace kzt5cmrg;

namespace {

using Z = std::complex<double>;
using Incognite = std::vector<Z>;
constexpr double kPasso = 1e-40;  // of the derivatives, along the imaginary axis
constexpr double kSingolare = 1e-9;

struct Osservata {
  std::function<Z(const Incognite&)> Predice;
  double Misura, Peso;
  bool Angolo;
};

// Azimuth by the two-argument arctangent; its derivative rides on the imaginary part.
Z Azimut(Z dE, Z dN) {
  const Z arco = std::abs(dN) > std::abs(dE) ? std::atan(dE / dN) : -std::atan(dN / dE);
  return {std::atan2(dE.real(), dN.real()), arco.imag()};
}

Doppio Risolvi(const std::vector<Osservata>& osservate, const Incognite& origine) {
  Doppio d;
  const int n = d.Righe = static_cast<int>(osservate.size());
  const int u = d.Incognite = static_cast<int>(origine.size());
  std::vector<double> b, y;
  Incognite spostata = origine;
  for (const Osservata& o : osservate) {
    const double l = o.Misura - o.Predice(origine).real();
    d.Noti.push_back(o.Angolo ? std::remainder(l, kGiro) : l);
    d.Peso.push_back(o.Peso);
    y.push_back(std::sqrt(o.Peso) * d.Noti.back());
    for (int c = 0; c < u; ++c) {
      spostata[c] += Z(0, kPasso);
      d.A.push_back(o.Predice(spostata).imag() / kPasso);
      spostata[c] = origine[c];
      b.push_back(std::sqrt(o.Peso) * d.A.back());
    }
  }
  if (n < u || u == 0) return {};
  if (LAPACKE_dgels(LAPACK_ROW_MAJOR, 'N', n, u, 1, b.data(), u, y.data(), 1) != 0) return {};
  for (int i = 0; i < u; ++i)
    if (std::abs(b[i * u + i]) < kSingolare * std::abs(b[0])) return {};
  LAPACKE_dtrtri(LAPACK_ROW_MAJOR, 'U', 'N', u, b.data(), u);
  d.Passo.assign(y.begin(), y.begin() + u);
  d.Q.resize(d.Passo.size() * d.Passo.size());
  for (int i = 0; i < u; ++i)
    for (int j = 0; j < u; ++j)
      for (int k = std::max(i, j); k < u; ++k) d.Q[i * u + j] += b[i * u + k] * b[j * u + k];
  d.Residui = d.Noti;
  for (int r = 0; r < n; ++r) {
    for (int c = 0; c < u; ++c) d.Residui[r] -= d.A[r * u + c] * d.Passo[c];
    d.SigmaZero += d.Peso[r] * d.Residui[r] * d.Residui[r];
  }
  d.SigmaZero = n == u ? 0 : std::sqrt(d.SigmaZero / (n - u));
  for (int r = 0; r < n; ++r) {
    double q = 0;
    for (int k = 0; k < u * u; ++k) q += d.A[r * u + k / u] * d.Q[k] * d.A[r * u + k % u];
    d.Ridondanza.push_back(std::abs(1 - q * d.Peso[r]));
    d.W.push_back(std::abs(d.Residui[r]) * std::sqrt(d.Peso[r] / d.Ridondanza[r]) / d.SigmaZero);
  }
  return d;
}

// The plane network at its own coordinates, and the reductions of what was observed.
struct Pianta {
  explicit Pianta(const ReteProva& rete) : R(rete) {
    for (const TCoorCr& p : R.Punti) {
      Numero.push_back(p.TipoPla == kIncognito ? static_cast<int>(Origine.size()) : -1);
      Posto.push_back({p.Nord * 0.001, p.Est * 0.001});
      if (p.TipoPla == kIncognito) Origine.insert(Origine.end(), {p.Est * 0.001, p.Nord * 0.001});
    }
    for (const double zona : {500.0, 1500.0, 2520.0})  // networks of one zone: any point tells
      if (R.Opzioni.Cartografiche && std::abs(Posto[0].imag() - zona) < 350) FalsoEst = zona;
  }
  bool Usato(int p) const { return R.Punti[p].TipoPla != kNonUsato; }
  std::pair<Z, Z> Delta(const Incognite& z, int p, int t) const {
    const auto est = [&](int i) { return Numero[i] < 0 ? Posto[i].imag() : z[Numero[i]]; };
    const auto nord = [&](int i) { return Numero[i] < 0 ? Posto[i].real() : z[Numero[i] + 1]; };
    return {est(t) - est(p), nord(t) - nord(p)};
  }
  // Line scale and arc-to-chord correction [rad], with the radius at the first point.
  std::pair<double, double> Proiezione(int p, int t) {
    const double y1 = Posto[p].imag() - FalsoEst, y2 = Posto[t].imag() - FalsoEst;
    Raggio = DoppiaGeografica(Posto[p].real(), y1).RaggioMedio;
    const double seiR2 = 6 * 0.9996 * Raggio * Raggio;
    return {0.9996 + (y1 * y1 + y1 * y2 + y2 * y2) / seiR2,
            (Posto[p] - Posto[t]).real() * (2 * y1 + y2) / seiR2 / 0.9996};
  }
  // A reading reduced to the plane and to the station centre [rad].
  double Lettura(const TStaCr& s, const TOssCr& o) {
    double lettura = o.Direzione * kRadPerGon;
    if (R.Opzioni.Cartografiche) lettura -= Proiezione(s.Punto, o.Punto).second;
    if (!(s.EccDistanza > 0.001 && s.EccDistanza < kNonDato)) return lettura;
    const double seno = std::sin(lettura - s.EccDirezione * kRadPerGon) * s.EccDistanza / 1000 /
                        std::abs(Posto[o.Punto] - Posto[s.Punto]);
    return lettura + std::atan2(seno, std::sqrt(1 - seno * seno));
  }
  // A distance on the horizon, at the centre and on the plane [km]; below 0 = not to be reduced.
  double Distanza(const TStaCr& s, const TOssCr& o) {
    const double z = o.Zenit * kRadPerGon, e = s.EccDistanza < kNonDato ? s.EccDistanza : 0;
    double d = o.Distanza;
    if (o.TipoDist == 6) d = d - 0.06 + 0.16 * std::cos(z);
    if (o.TipoDist == 7)
      d = std::sin(z + std::asin(0.16 * std::sin(z) / (d - 0.11))) * (d - 0.11) / std::sin(z);
    if (o.TipoDist == 1 || o.TipoDist == 6 || o.TipoDist == 7) d *= std::sin(z);
    if ((o.TipoDist == 10 || o.TipoDist == 20 || o.TipoDist == 30) && o.Direzione < kNonDato) {
      if (o.Direzione <= 0) return -1;
      d = std::abs(std::polar(d, (s.EccDirezione - o.Direzione) * kRadPerGon) - e);
    }
    d /= 1000;
    if (!R.Opzioni.Cartografiche || o.TipoDist == 3) return d;
    if (Raggio == 0) Proiezione(s.Punto, o.Punto);
    const auto [q1, q2] = std::minmax(R.Punti[s.Punto].Quota, R.Punti[o.Punto].Quota);
    d /= 1 + (q2 < kNonDato ? q1 + q2 : q1 < kNonDato ? 2 * q1 : 0) / 2000 / Raggio;
    return d * Proiezione(s.Punto, o.Punto).first;
  }

  const ReteProva& R;
  std::vector<int> Numero;  // first unknown of a point, -1 = none
  std::vector<Z> Posto;     // North + i East [km]
  Incognite Origine;
  double FalsoEst = 0, Raggio = 0;
};

}  // namespace

Doppio DoppioPla(const ReteProva& rete, double raggio) {
  Pianta pianta(rete);
  pianta.Raggio = raggio;
  std::vector<Osservata> righe;
  bool conDistanze = false;
  for (const TStaCr& s : rete.Stazioni)
    for (const TOssCr& o : s.Osservazioni)
      conDistanze |= std::max(o.Distanza, o.Zenit) < kNonDato && pianta.Usato(o.Punto);
  const double peso = conDistanze ? std::pow(1e-6 / rete.Opzioni.SqmDir / kRadPerGon, 2) : 1;
  for (const TStaCr& s : rete.Stazioni) {
    const TOssCr* rif = nullptr;
    double letturaRif = 0;
    for (const TOssCr& o : s.Osservazioni) {
      if (!pianta.Usato(s.Punto) || !pianta.Usato(o.Punto) || o.Direzione > kNonDato) continue;
      // A reference that nothing follows is not even projected.
      if (rif == nullptr && &o == &s.Osservazioni.back()) continue;
      const double lettura = pianta.Lettura(s, o);
      const auto predice = [&pianta, p = s.Punto, t = o.Punto, rif](const Incognite& z) {
        const auto [tE, tN] = pianta.Delta(z, p, t);
        const auto [rE, rN] = pianta.Delta(z, p, rif->Punto);
        return Azimut(tE, tN) - Azimut(rE, rN);
      };
      if (rif != nullptr) righe.push_back({predice, lettura - letturaRif, peso, true});
      if (rif == nullptr) rif = &o, letturaRif = lettura;
    }
  }
  for (const TStaCr& s : rete.Stazioni)
    for (const TOssCr& o : s.Osservazioni) {
      if (!pianta.Usato(s.Punto) || !pianta.Usato(o.Punto)) continue;
      if (std::max(o.Distanza, o.Zenit) > kNonDato) continue;
      const double d = pianta.Distanza(s, o);
      if (d < 0) break;
      const double sigma = (rete.Opzioni.SqmDistCost + rete.Opzioni.SqmDistProp * d) / 1000;
      const auto predice = [&pianta, p = s.Punto, t = o.Punto](const Incognite& z) {
        const auto [dE, dN] = pianta.Delta(z, p, t);
        return std::sqrt(dE * dE + dN * dN);
      };
      righe.push_back({predice, d, 1e-12 / (sigma * sigma), false});
    }
  Doppio d = Risolvi(righe, pianta.Origine);
  d.Raggio = pianta.Raggio;
  return d;
}

Doppio DoppioIterato(ReteProva& rete) {
  Doppio d;
  for (int passo = 1, fermo = 0; fermo == 0; ++passo) {
    d = DoppioPla(rete, d.Raggio);
    int k = 0;
    for (TCoorCr& p : rete.Punti) {
      if (p.TipoPla != kIncognito) continue;
      p.Est += d.Passo[k++] * 1000, p.Nord += d.Passo[k++] * 1000;
    }
    const auto piccola = [](double x) { return std::abs(x) <= 2e-5; };
    fermo = passo >= rete.Opzioni.MaxIter || std::ranges::all_of(d.Passo, piccola);
  }
  return d;
}

Doppio DoppioAlt(const ReteProva& rete) {
  std::vector<int> numero;
  int u = 0;
  for (const TCoorCr& p : rete.Punti) numero.push_back(p.TipoAlt == kIncognito ? u++ : -1);
  std::vector<Osservata> righe;
  for (const TStaCr& s : rete.Stazioni) {
    const TCoorCr& p = rete.Punti[s.Punto];
    if (p.TipoAlt == kNonUsato || s.AltStrum > kNonDato) continue;
    const int strumento = s.AltStrumNota == kAltezzaIncognita ? u++ : -1;
    for (const TOssCr& o : s.Osservazioni) {
      const TCoorCr& t = rete.Punti[o.Punto];
      const double manca = std::max({o.Distanza, o.Zenit, o.AltSegnale});
      if (t.TipoAlt == kNonUsato || manca > kNonDato) continue;
      const double piana = std::hypot(t.Est - p.Est, t.Nord - p.Nord);  // [m]
      const double z = o.Zenit * kRadPerGon, e = s.EccDistanza;
      double altezza = s.AltStrumNota == kAltezzaNota ? s.AltStrum : 0;
      if (s.AltStrumNota == kAltezzaNota && e > 0.01 && std::max(e, o.Direzione) < kNonDato) {
        const double teta = std::abs(o.Direzione - s.EccDirezione) * kRadPerGon;
        const double beta = teta < kPi / 2 ? 0 : std::abs(std::asin(std::sin(teta) * e / piana));
        altezza += std::cos(beta + teta) * e / std::tan(z);
      }
      const double orizzontale = o.TipoDist == 1 ? o.Distanza * std::sin(z) : o.Distanza;
      double dislivello = orizzontale / std::tan(z) + altezza - o.AltSegnale;
      const double curvatura = (1 - rete.DsOr.CoeffRifr) / rete.DsOr.RaggioTerra / 2;
      if (rete.DsOr.CorrCurvRifr != 0) dislivello += orizzontale * orizzontale * curvatura;
      const auto predice = [&, ps = s.Punto, pt = o.Punto, strumento](const Incognite& h) {
        const auto q = [&](int i) { return numero[i] < 0 ? rete.Punti[i].Quota : h[numero[i]]; };
        return q(pt) - q(ps) - (strumento < 0 ? 0 : h[strumento]);
      };
      righe.push_back({predice, dislivello, 1000 / (piana * piana), false});
    }
  }
  return Risolvi(righe, Incognite(u));
}

EllisseDoppia DoppiaEllisse(const Doppio& d, int k) {
  const double* q = &d.Q[2 * k * d.Incognite + 2 * k];
  double a[] = {q[0], q[1], q[1], q[d.Incognite + 1]}, autovalori[2];
  LAPACKE_dsyev(LAPACK_ROW_MAJOR, 'V', 'U', 2, a, 2, autovalori);
  const double e = std::abs(a[1]), n = std::abs(a[3]);  // major axis: second column
  const double teta = std::atan2(std::min(e, n), std::max(e, n)) / kRadPerGon;
  const double scala = d.SigmaZero * 1000;
  return {scala * std::sqrt(autovalori[1]), scala * std::sqrt(autovalori[0]),
          q[1] < 0 ? 200 - teta : teta, 1 - autovalori[0] / autovalori[1]};
}

Geografica DoppiaGeografica(double nord, double daMeridiano) {
  constexpr double a = 6378.388, f = 1.0 / 297, n = f / (2 - f), e2 = f * (2 - f);
  constexpr double n2 = n * n, n3 = n2 * n, n4 = n2 * n2;
  constexpr double raggio = 0.9996 * a / (1 + n) * (1 + n2 / 4 + n4 / 64);
  constexpr double beta[] = {n / 2 - n2 * 2 / 3 + n3 * 37 / 96 - n4 / 360,
                             n2 / 48 + n3 / 15 - n4 * 437 / 1440, n3 * 17 / 480 - n4 * 37 / 840,
                             n4 * 4397 / 161280};
  constexpr double delta[] = {n * 2 - n2 * 2 / 3 - n3 * 2 + n4 * 116 / 45,
                              n2 * 7 / 3 - n3 * 8 / 5 - n4 * 227 / 45, n3 * 56 / 15 - n4 * 136 / 35,
                              n4 * 4279 / 630};
  const Z zeta(nord / raggio, daMeridiano / raggio);
  Z sfera = zeta;
  for (int j = 0; j < 4; ++j) sfera -= beta[j] * std::sin(2.0 * (j + 1) * zeta);
  const double chi = std::asin(std::sin(sfera.real()) / std::cosh(sfera.imag()));
  double fi = chi;
  for (int j = 0; j < 4; ++j) fi += delta[j] * std::sin(2 * (j + 1) * chi);
  const double w2 = 1 - e2 * std::sin(fi) * std::sin(fi);
  const double lambda = std::atan2(std::sinh(sfera.imag()), std::cos(sfera.real()));
  return {fi, lambda, a * std::sqrt(1 - e2) / w2};
}
