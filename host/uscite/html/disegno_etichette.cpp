// Placement of names on a drawing, greedily by priority: eight positions close to the point, then
// the same eight further out with a line that leads to the point. What finds no room is tried again
// with the points drawn twice as far apart, and so on: a reader who enlarges the drawing sees more
// names. Rectangles are looked up in a grid, so that the work grows with the number of points.

#include "host/uscite/html/disegno_etichette.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <optional>
#include <unordered_map>

#include "host/base/codifica.h"

namespace compensa {

namespace {

constexpr double kMaglia = 48.0;  // of the grid [pixel]
constexpr double kStacco = 3.0;   // of a name from the symbol [pixel]
constexpr double kAria = 1.0;     // between two rectangles [pixel]
constexpr std::array kDistanzeGuida = {22.0, 38.0};
// Above this many tests of a name against a segment the segments are left out.
constexpr std::size_t kProveSegmenti = 20'000'000;

struct Direzione {
  double X, Y;
};
constexpr double kDiagonale = 0.7071;
constexpr std::array<Direzione, 8> kDirezioni{{{kDiagonale, -kDiagonale},
                                               {1, 0},
                                               {kDiagonale, kDiagonale},
                                               {0, -1},
                                               {0, 1},
                                               {-kDiagonale, -kDiagonale},
                                               {-1, 0},
                                               {-kDiagonale, kDiagonale}}};

Rettangolo Sposta(const Rettangolo& r, double x, double y) {
  return {r.Sinistra + x, r.Alto + y, r.Destra + x, r.Basso + y};
}

bool Sovrapposti(const Rettangolo& a, const Rettangolo& b) {
  return a.Sinistra < b.Destra + kAria && b.Sinistra < a.Destra + kAria &&
         a.Alto < b.Basso + kAria && b.Alto < a.Basso + kAria;
}

// The rectangles that are taken, by the cells that they touch.
class Griglia {
 public:
  void Aggiungi(const Rettangolo& r) {
    PerOgniCella(r, [&](std::int64_t cella) {
      Celle[cella].push_back(r);
      return false;
    });
  }
  bool Libero(const Rettangolo& r) const {
    return !PerOgniCella(r, [&](std::int64_t cella) {
      const auto trovata = Celle.find(cella);
      return trovata != Celle.end() &&
             std::ranges::any_of(trovata->second,
                                 [&](const Rettangolo& altro) { return Sovrapposti(r, altro); });
    });
  }

 private:
  // Stops at the first cell for which fa returns true.
  template <class Fa>
  static bool PerOgniCella(const Rettangolo& r, Fa fa) {
    const auto indice = [](double v) { return static_cast<std::int64_t>(std::floor(v / kMaglia)); };
    constexpr std::int64_t kRighe = std::int64_t{1} << 32;
    for (std::int64_t i = indice(r.Alto - kAria); i <= indice(r.Basso + kAria); ++i)
      for (std::int64_t j = indice(r.Sinistra - kAria); j <= indice(r.Destra + kAria); ++j)
        if (fa(i * kRighe + j)) return true;
    return false;
  }

  std::unordered_map<std::int64_t, std::vector<Rettangolo>> Celle;
};

// By the slabs that the rectangle is the intersection of (Kay and Kajiya, 1986).
bool Attraversa(const Segmento& s, const Rettangolo& r) {
  double entra = 0.0, esce = 1.0;
  const auto fascia = [&](double da, double a, double minimo, double massimo) {
    const double passo = a - da;
    if (passo == 0.0) return da >= minimo && da <= massimo;
    const double t1 = (minimo - da) / passo, t2 = (massimo - da) / passo;
    entra = std::max(entra, std::min(t1, t2));
    esce = std::min(esce, std::max(t1, t2));
    return entra <= esce;
  };
  return fascia(s.X1, s.X2, r.Sinistra, r.Destra) && fascia(s.Y1, s.Y2, r.Alto, r.Basso);
}

Collocazione Candidata(const PuntoEtichettato& p, const Direzione& verso, double distanza,
                       bool guida) {
  constexpr double kQuasiDritto = 0.3;
  const double x = verso.X * distanza, y = verso.Y * distanza;
  Collocazione c;
  c.Guida = guida;
  c.GuidaX = x;
  c.GuidaY = y;
  c.Posto.Sinistra = x - p.Larghezza / 2.0;
  c.Verso = Ancora::Mezzo;
  if (verso.X > kQuasiDritto) c.Verso = Ancora::Inizio, c.Posto.Sinistra = x;
  if (verso.X < -kQuasiDritto) c.Verso = Ancora::Fine, c.Posto.Sinistra = x - p.Larghezza;
  c.Posto.Destra = c.Posto.Sinistra + p.Larghezza;
  c.Posto.Alto = y - kAltezzaEtichetta / 2.0;
  if (verso.Y > kQuasiDritto) c.Posto.Alto = y;
  if (verso.Y < -kQuasiDritto) c.Posto.Alto = y - kAltezzaEtichetta;
  c.Posto.Basso = c.Posto.Alto + kAltezzaEtichetta;
  return c;
}

// The line that leads to a name, as small rectangles.
std::vector<Rettangolo> Guida(const PuntoEtichettato& p, const Collocazione& c) {
  constexpr double kPasso = 6.0, kSpessore = 0.5;
  std::vector<Rettangolo> tratti;
  if (!c.Guida) return tratti;
  const double x = c.GuidaX, y = c.GuidaY;
  const double lunghezza = std::hypot(x, y);
  const double inizio = p.Raggio + kStacco;
  const int passi = static_cast<int>((lunghezza - kStacco - inizio) / kPasso);
  for (int i = 0; i <= passi; ++i) {
    const double s = (inizio + i * kPasso) / lunghezza;
    tratti.push_back({x * s - kSpessore, y * s - kSpessore, x * s + kSpessore, y * s + kSpessore});
  }
  return tratti;
}

struct Foglio {
  std::span<const Segmento> Segmenti;
  double Larghezza, Altezza;

  bool Contiene(const Rettangolo& r) const {
    return r.Sinistra >= 0.0 && r.Alto >= 0.0 && r.Destra <= Larghezza && r.Basso <= Altezza;
  }
};

std::optional<Collocazione> Cerca(const PuntoEtichettato& p, double scala, const Griglia& presi,
                                  const Foglio& foglio) {
  const bool intero = scala == 1.0;
  std::optional<Collocazione> migliore;
  std::ptrdiff_t minimo = 0;
  const auto prova = [&](double distanza, bool guida) {
    for (const Direzione& verso : kDirezioni) {
      const Collocazione c = Candidata(p, verso, distanza, guida);
      const Rettangolo posto = Sposta(c.Posto, p.X * scala, p.Y * scala);
      if ((intero && !foglio.Contiene(posto)) || !presi.Libero(posto)) continue;
      const auto libero = [&](const Rettangolo& tratto) {
        return presi.Libero(Sposta(tratto, p.X * scala, p.Y * scala));
      };
      if (guida && !std::ranges::all_of(Guida(p, c), libero)) continue;
      const auto attraversati =
          intero ? std::ranges::count_if(foglio.Segmenti,
                                         [&](const Segmento& s) { return Attraversa(s, posto); })
                 : 0;
      if (migliore && attraversati >= minimo) continue;
      migliore = c;
      minimo = attraversati;
    }
  };
  prova(p.Raggio + kStacco, false);
  if (intero)
    for (const double distanza : kDistanzeGuida)
      if (!migliore) prova(p.Raggio + distanza, true);
  return migliore;
}

}  // namespace

double LarghezzaEtichetta(std::string_view nome) {
  constexpr double kMargine = 3.0, kLarga = 10.5, kMedia = 9.0, kStretta = 7.3;
  double larghezza = kMargine;
  while (!nome.empty()) {
    const std::size_t lunghezza = std::max<std::size_t>(PrimoCarattere(nome).Lunghezza, 1);
    const char c = nome.front();
    const bool maiuscola = c >= 'A' && c <= 'Z';
    if (lunghezza > 1 || c == 'W' || c == 'M' || c == 'm' || c == '@')
      larghezza += kLarga;
    else
      larghezza += maiuscola || c == 'w' ? kMedia : kStretta;
    nome.remove_prefix(lunghezza);
  }
  return larghezza;
}

std::vector<Collocazione> CollocaEtichette(std::span<const PuntoEtichettato> punti,
                                           std::span<const Segmento> segmenti, double larghezza,
                                           double altezza) {
  Foglio foglio{segmenti, larghezza, altezza};
  if (segmenti.size() * punti.size() * kDirezioni.size() > kProveSegmenti) foglio.Segmenti = {};
  std::vector<Collocazione> esito(punti.size());
  std::vector<std::size_t> attesa(punti.size()), resto;
  std::iota(attesa.begin(), attesa.end(), std::size_t{0});
  std::erase_if(attesa, [&](std::size_t i) { return punti[i].Larghezza <= 0.0; });
  std::ranges::stable_sort(
      attesa, [&](std::size_t a, std::size_t b) { return punti[a].Priorita > punti[b].Priorita; });
  std::vector<std::size_t> collocati;
  double scala = 1.0;
  for (int livello = 0; livello < kLivelliEtichette - 1 && !attesa.empty(); ++livello) {
    Griglia presi;
    for (const PuntoEtichettato& p : punti)
      presi.Aggiungi(Sposta({-p.Raggio, -p.Raggio, p.Raggio, p.Raggio}, p.X * scala, p.Y * scala));
    const auto prendi = [&](std::size_t i) {
      const double x = punti[i].X * scala, y = punti[i].Y * scala;
      presi.Aggiungi(Sposta(esito[i].Posto, x, y));
      for (const Rettangolo& tratto : Guida(punti[i], esito[i]))
        presi.Aggiungi(Sposta(tratto, x, y));
    };
    for (const std::size_t i : collocati) prendi(i);
    for (const std::size_t i : attesa) {
      const auto trovata = Cerca(punti[i], scala, presi, foglio);
      if (!trovata) {
        resto.push_back(i);
        continue;
      }
      esito[i] = *trovata;
      esito[i].Livello = livello;
      prendi(i);
      collocati.push_back(i);
    }
    attesa.swap(resto);
    resto.clear();
    scala *= 2.0;
  }
  for (const std::size_t i : attesa) {
    esito[i] = Candidata(punti[i], kDirezioni.front(), punti[i].Raggio + kStacco, false);
    esito[i].Livello = kLivelliEtichette - 1;
  }
  return esito;
}

}  // namespace compensa
