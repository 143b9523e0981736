// Elimination tree, column counts and supernodes. (Liu, The role of elimination trees in sparse
// factorization, SIAM J. Matrix Anal. Appl. 11, 1990; Ashcraft and Grimes, The influence of relaxed
// supernode partitions on the multifrontal method, ACM TOMS 15, 1989.)

#include "lsq/fronti.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace kzt5cmrg {

namespace {

constexpr int kRadice = -1;

// Below these widths a front may be joined to its parent although that stores zeros: up to this
// share of the joined front. Wider fronts keep the dense kernels busy.
struct Tolleranza {
  int Larghezza;
  double Zeri;
};
constexpr Tolleranza kTolleranze[] = {{4, 0.9}, {16, 0.4}, {48, 0.15}, {1 << 30, 0.05}};

std::size_t U(int i) { return static_cast<std::size_t>(i); }

// Neighbours of the places, each only with the earlier ones.
struct Precedenti {
  std::vector<int> Inizio, Posti;
};

Precedenti PrecedentiDi(const Grafo& g, const std::vector<int>& posizione) {
  Precedenti p;
  const int n = g.Nodi();
  std::vector<int> nodo(U(n));
  for (int i = 0; i < n; ++i) nodo[U(posizione[U(i)])] = i;
  p.Inizio.reserve(U(n) + 1);
  p.Posti.reserve(g.Vicini.size() / 2);
  p.Inizio.push_back(0);
  for (int k = 0; k < n; ++k) {
    const int i = nodo[U(k)];
    for (int v = g.Inizio[U(i)]; v < g.Inizio[U(i) + 1]; ++v)
      if (const int q = posizione[U(g.Vicini[U(v)])]; q < k) p.Posti.push_back(q);
    p.Inizio.push_back(static_cast<int>(p.Posti.size()));
  }
  return p;
}

// Parent of each place: the first later one that its column touches.
std::vector<int> AlberoEliminazione(const Precedenti& p) {
  const int n = static_cast<int>(p.Inizio.size()) - 1;
  std::vector<int> padre(U(n), kRadice), antenato(U(n), kRadice);
  for (int k = 0; k < n; ++k)
    for (int v = p.Inizio[U(k)]; v < p.Inizio[U(k) + 1]; ++v)
      for (int i = p.Posti[U(v)]; i != kRadice && i < k;) {
        const int sopra = antenato[U(i)];
        antenato[U(i)] = k;
        if (sopra == kRadice) padre[U(i)] = k;
        i = sopra;
      }
  return padre;
}

// Places in an order where every subtree stands together. The largest child stands last, next to
// its parent, which it may be joined to.
std::vector<int> Postordine(const std::vector<int>& padre) {
  const int n = static_cast<int>(padre.size());
  std::vector<int> peso(U(n), 1), figlio(U(n), kRadice), fratello(U(n), kRadice), ordine;
  for (int i = 0; i < n; ++i)
    if (padre[U(i)] != kRadice) peso[U(padre[U(i)])] += peso[U(i)];
  std::vector<int> perPeso(U(n));
  std::iota(perPeso.begin(), perPeso.end(), 0);
  std::ranges::stable_sort(perPeso, {}, [&](int i) { return -peso[U(i)]; });
  std::vector<int> pila;
  // Heaviest first, so that the list of children begins with the lightest.
  for (const int i : perPeso) {
    const int p = padre[U(i)];
    if (p == kRadice) continue;
    fratello[U(i)] = figlio[U(p)];
    figlio[U(p)] = i;
  }
  ordine.reserve(U(n));
  for (int r = 0; r < n; ++r) {
    if (padre[U(r)] != kRadice) continue;
    pila.push_back(r);
    while (!pila.empty()) {
      const int i = pila.back();
      if (figlio[U(i)] != kRadice) {
        pila.push_back(figlio[U(i)]);
        figlio[U(i)] = fratello[U(figlio[U(i)])];
      } else {
        ordine.push_back(i);
        pila.pop_back();
      }
    }
  }
  return ordine;
}

// Number of entries of each column of the factor, the diagonal included.
std::vector<int> Conteggi(const Precedenti& p, const std::vector<int>& padre) {
  const int n = static_cast<int>(padre.size());
  std::vector<int> conteggio(U(n), 1), visto(U(n), -1);
  for (int k = 0; k < n; ++k) {
    visto[U(k)] = k;
    for (int v = p.Inizio[U(k)]; v < p.Inizio[U(k) + 1]; ++v)
      for (int i = p.Posti[U(v)]; visto[U(i)] != k; i = padre[U(i)]) {
        visto[U(i)] = k;
        ++conteggio[U(i)];
      }
  }
  return conteggio;
}

double Elementi(double larghezza, double altezza) {
  return larghezza * altezza - larghezza * (larghezza - 1.0) / 2.0;
}

// A front: its first place, its own columns, and the length of the first of them.
struct Blocco {
  int Inizio, Larghezza, Altezza;
  double Zeri;
};

// Columns that share their pattern, then the relaxed joins of a front with the child just before
// it.
std::vector<Blocco> Blocchi(const std::vector<int>& padre, const std::vector<int>& conteggio) {
  const int n = static_cast<int>(padre.size());
  std::vector<Blocco> blocchi;
  for (int k = 0; k < n; ++k) {
    const bool segue = k > 0 && padre[U(k) - 1] == k && conteggio[U(k) - 1] == conteggio[U(k)] + 1;
    if (segue)
      ++blocchi.back().Larghezza;
    else
      blocchi.push_back({k, 1, conteggio[U(k)], 0.0});
    // Join with the child just below while it is cheap.
    const bool chiuso =
        k + 1 == n || padre[U(k)] != k + 1 || conteggio[U(k)] != conteggio[U(k) + 1] + 1;
    if (!chiuso) continue;
    while (blocchi.size() >= 2) {
      const Blocco& s = blocchi.back();
      const Blocco& f = blocchi[blocchi.size() - 2];
      const int ultimo = f.Inizio + f.Larghezza - 1;
      if (padre[U(ultimo)] < s.Inizio || padre[U(ultimo)] >= s.Inizio + s.Larghezza) break;
      const int larghezza = f.Larghezza + s.Larghezza;
      const int altezza = f.Larghezza + s.Altezza;
      const double zeri = f.Zeri + s.Zeri + Elementi(larghezza, altezza) -
                          Elementi(f.Larghezza, f.Altezza) - Elementi(s.Larghezza, s.Altezza);
      const auto* t = std::ranges::find_if(
          kTolleranze, [&](const Tolleranza& x) { return larghezza <= x.Larghezza; });
      if (zeri > t->Zeri * Elementi(larghezza, altezza)) break;
      const Blocco unito{f.Inizio, larghezza, altezza, zeri};
      blocchi.pop_back();
      blocchi.back() = unito;
    }
  }
  return blocchi;
}

}  // namespace

AlberoFronti Analizza(const Grafo& grafo) {
  const int n = grafo.Nodi();
  AlberoFronti a;
  a.Posizione.resize(U(n));
  const std::vector<int> ordine = GradoMinimo(grafo);
  for (int k = 0; k < n; ++k) a.Posizione[U(ordine[U(k)])] = k;
  std::vector<int> padre = AlberoEliminazione(PrecedentiDi(grafo, a.Posizione));
  const std::vector<int> post = Postordine(padre);
  for (int k = 0; k < n; ++k) a.Posizione[U(ordine[U(post[U(k)])])] = k;

  const Precedenti precedenti = PrecedentiDi(grafo, a.Posizione);
  padre = AlberoEliminazione(precedenti);
  const std::vector<Blocco> blocchi = Blocchi(padre, Conteggi(precedenti, padre));

  a.FronteDaPosto.resize(U(n));
  a.Fronti.resize(blocchi.size());
  for (std::size_t s = 0; s < blocchi.size(); ++s) {
    a.Fronti[s].Inizio = blocchi[s].Inizio;
    a.Fronti[s].Larghezza = blocchi[s].Larghezza;
    for (int t = 0; t < blocchi[s].Larghezza; ++t)
      a.FronteDaPosto[U(blocchi[s].Inizio + t)] = static_cast<int>(s);
  }
  // The rest of a front: the later neighbours of its nodes and the rests of its children.
  std::vector<int> visto(U(n), -1);
  for (int k = 0; k < n; ++k)
    for (int v = precedenti.Inizio[U(k)]; v < precedenti.Inizio[U(k) + 1]; ++v) {
      const int s = a.FronteDaPosto[U(precedenti.Posti[U(v)])];
      Fronte& f = a.Fronti[U(s)];
      if (k < f.Inizio + f.Larghezza || (!f.Resto.empty() && f.Resto.back() == k)) continue;
      f.Resto.push_back(k);
    }
  for (std::size_t s = 0; s < a.Fronti.size(); ++s) {
    Fronte& f = a.Fronti[s];
    std::ranges::sort(f.Resto);
    f.Resto.erase(std::unique(f.Resto.begin(), f.Resto.end()), f.Resto.end());
    if (f.Resto.empty()) continue;
    f.Padre = a.FronteDaPosto[U(f.Resto.front())];
    Fronte& p = a.Fronti[U(f.Padre)];
    for (const int k : f.Resto)
      if (k >= p.Inizio + p.Larghezza) p.Resto.push_back(k);
  }
  return a;
}

}  // namespace kzt5cmrg
