// The true points lie on a grid of kMaglia, shifted at random, on gentle hills; a point in
// kFissiOgni is fixed. Random numbers come from the bits of the generator alone, so that every
// library gives the same.

#include "bench/rete_sintetica.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <random>

using namespace kzt5cmrg;

namespace {

constexpr double kMaglia = 300.0;     // [m]
constexpr double kSpostamento = 0.3;  // of the mesh
constexpr int kFissiOgni = 25;
constexpr double kRumoreApprossimate = 0.3;  // [m]

constexpr double kSqmDir = 0.0010;      // [gon]
constexpr double kSqmDistCost = 0.003;  // [m]
constexpr double kSqmDistProp = 0.002;  // [m/km]
constexpr double kSqmZenit = 0.0020;    // [gon]
constexpr double kGonPerRad = 200.0 / std::numbers::pi;
constexpr int kIterazioni = 10;

class Caso {
 public:
  double Uniforme() { return static_cast<double>(Motore() >> 11) * 0x1p-53; }
  double Normale() {
    const double raggio = std::sqrt(-2.0 * std::log(1.0 - Uniforme()));
    return raggio * std::cos(2.0 * std::numbers::pi * Uniforme());
  }
  std::size_t Intero(std::size_t n) {
    return static_cast<std::size_t>(Uniforme() * static_cast<double>(n));
  }
  void Mescola(std::vector<int>& v) {
    for (std::size_t i = v.size(); i > 1; --i) std::swap(v[i - 1], v[Intero(i)]);
  }

 private:
  std::mt19937_64 Motore{20260101};
};

struct Vero {
  double E, N, H;
};

// The true points and the grid cells that they stand in, for the search of neighbours.
struct Terreno {
  int Lato;
  std::vector<int> PuntoDaCella;  // -1 = empty
  std::vector<int> CellaDaPunto;
  std::vector<Vero> Veri;

  std::size_t Cella(int riga, int colonna) const {
    return static_cast<std::size_t>(riga) * static_cast<std::size_t>(Lato) +
           static_cast<std::size_t>(colonna);
  }

  // The nearest points, nearest first; the jitter never moves one past two meshes.
  std::vector<int> Vicini(int punto) const {
    std::vector<std::pair<double, int>> candidati;
    const int cella = CellaDaPunto[static_cast<std::size_t>(punto)];
    const int riga = cella / Lato;
    const int colonna = cella % Lato;
    for (int r = std::max(riga - 2, 0); r <= std::min(riga + 2, Lato - 1); ++r)
      for (int c = std::max(colonna - 2, 0); c <= std::min(colonna + 2, Lato - 1); ++c) {
        const int altro = PuntoDaCella[Cella(r, c)];
        if (altro < 0 || altro == punto) continue;
        const Vero& p = Veri[static_cast<std::size_t>(punto)];
        const Vero& t = Veri[static_cast<std::size_t>(altro)];
        candidati.emplace_back(std::hypot(t.E - p.E, t.N - p.N), altro);
      }
    std::ranges::sort(candidati);
    std::vector<int> vicini;
    for (const auto& [distanza, altro] : candidati)
      if (vicini.size() < kVisualiPerStazione) vicini.push_back(altro);
    return vicini;
  }
};

Terreno Spargi(int punti, Caso& caso) {
  const auto n = static_cast<std::size_t>(punti);
  Terreno terreno{.Lato = static_cast<int>(std::ceil(std::sqrt(punti))),
                  .PuntoDaCella = {},
                  .CellaDaPunto = std::vector<int>(n),
                  .Veri = std::vector<Vero>(n)};
  terreno.PuntoDaCella.assign(terreno.Cella(terreno.Lato, 0), -1);
  std::vector<int> ordine(n);
  std::iota(ordine.begin(), ordine.end(), 0);
  caso.Mescola(ordine);
  for (int c = 0; c < punti; ++c) {
    const int i = ordine[static_cast<std::size_t>(c)];
    const int riga = c / terreno.Lato;
    const int colonna = c % terreno.Lato;
    const auto sposta = [&] { return kSpostamento * (2.0 * caso.Uniforme() - 1.0); };
    Vero& v = terreno.Veri[static_cast<std::size_t>(i)];
    v.E = 10000.0 + kMaglia * (colonna + sposta());
    v.N = 20000.0 + kMaglia * (riga + sposta());
    v.H = 300.0 + 40.0 * std::sin(v.E / 1700.0) * std::cos(v.N / 2300.0);
    terreno.CellaDaPunto[static_cast<std::size_t>(i)] = c;
    terreno.PuntoDaCella[static_cast<std::size_t>(c)] = i;
  }
  return terreno;
}

TOssCr Osserva(const Vero& p, const Vero& t, int collimato, double orientamento, Caso& caso) {
  const double dE = t.E - p.E;
  const double dN = t.N - p.N;
  const double piana = std::hypot(dE, dN);
  const double zenit = std::atan2(piana, t.H - p.H);
  TOssCr o{};
  o.Punto = collimato;
  o.Direzione = std::fmod(
      (std::atan2(dE, dN) - orientamento) * kGonPerRad + kSqmDir * caso.Normale() + 800.0, 400.0);
  o.Zenit = zenit * kGonPerRad + kSqmZenit * caso.Normale();
  o.Distanza =
      piana / std::sin(zenit) + (kSqmDistCost + kSqmDistProp * piana / 1000.0) * caso.Normale();
  o.AltSegnale = 1.5;
  o.TipoDist = kInclinata;
  return o;
}

}  // namespace

ReteSintetica GeneraRete(int punti) {
  Caso caso;
  ReteSintetica rete;
  rete.Opzioni = {.SqmDistCost = kSqmDistCost,
                  .SqmDistProp = kSqmDistProp,
                  .SqmDir = kSqmDir,
                  .MaxIter = kIterazioni,
                  .TipoCalcolo = kCalcoloPlanimetria | kCalcoloAltimetria,
                  .Cartografiche = 0};
  rete.CurvaturaRifrazione = {.CorrCurvRifr = 0, .CoeffRifr = 0.13, .RaggioTerra = 6378000.0};

  const auto n = static_cast<std::size_t>(punti);
  const Terreno terreno = Spargi(punti, caso);
  rete.Nomi.reserve(n);
  rete.Osservazioni.reserve(n);
  for (int i = 0; i < punti; ++i) {
    const auto k = static_cast<std::size_t>(i);
    const Vero& v = terreno.Veri[k];
    const bool fisso = i % kFissiOgni == 0;
    const double rumore = fisso ? 0.0 : kRumoreApprossimate;
    rete.Nomi.push_back("P" + std::to_string(i + 1));
    TCoorCr p{};
    p.Nome = rete.Nomi.back();
    p.Est = v.E + rumore * caso.Normale();
    p.Nord = v.N + rumore * caso.Normale();
    p.Quota = v.H + rumore * caso.Normale();
    p.TipoPla = p.TipoAlt = fisso ? kFisso : kIncognito;
    rete.Punti.push_back(p);

    std::vector<int> vicini = terreno.Vicini(i);
    caso.Mescola(vicini);
    const double orientamento = 2.0 * std::numbers::pi * caso.Uniforme();
    std::vector<TOssCr> osservazioni;
    osservazioni.reserve(vicini.size());
    for (const int j : vicini) {
      const Vero& t = terreno.Veri[static_cast<std::size_t>(j)];
      osservazioni.push_back(Osserva(v, t, j, orientamento, caso));
    }
    rete.Osservazioni.push_back(std::move(osservazioni));
    TStaCr s{};
    s.Punto = i;
    s.AltStrum = 1.5;
    s.AltStrumNota = kAltezzaNota;
    s.Osservazioni = rete.Osservazioni.back();
    rete.Stazioni.push_back(s);
  }
  return rete;
}
