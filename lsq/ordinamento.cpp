// Minimum degree ordering on the quotient graph. Eliminating a node joins its neighbours to a
// clique; the clique is kept as one "element" with the list of its nodes, and a node keeps the
// elements it lies in beside the neighbours that no element covers yet, so that the graph never
// grows. The degree of a node is bounded from above by
//   d_i = |A_i| + |L_p \ i| + sum over its other elements e of |L_e \ L_p|
// with p the element just made. Nodes with the same neighbours are merged and eliminated together.
// (Amestoy, Davis, Duff, An approximate minimum degree ordering algorithm, SIAM J. Matrix Anal.
// Appl. 17, 1996.)

#include "lsq/ordinamento.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kzt5cmrg {

namespace {

constexpr int kNessuno = -1;

// A node seen from far more places than there are nodes on a line across the network is set aside
// and eliminated last: it would be met again at every step and could not be placed better.
constexpr int kGradoAmmesso = 16;
constexpr double kGradoPerRadice = 10.0;

class QuozienteMinimo {
 public:
  explicit QuozienteMinimo(const Grafo& grafo);
  std::vector<int> Ordina();

 private:
  struct Nodo {
    std::vector<int> Vicini;    // A_i: neighbours that no element covers
    std::vector<int> Elementi;  // E_i: elements that the node lies in
    int Peso = 1;               // nodes merged into this one; 0 = eliminated or merged away
    int Grado = 0;              // bound of the external degree
    int Prima = kNessuno, Dopo = kNessuno;  // list of the nodes of equal degree
    int Fusi = kNessuno;                    // chain of the nodes merged into this one
    int UltimoFuso = kNessuno;
  };
  struct Elemento {
    std::vector<int> Nodi;  // L_e, some of them gone
    int Peso = 0;           // weight of the live ones
    bool Vivo = false;
  };

  Nodo& N(int i) { return nodi[static_cast<std::size_t>(i)]; }
  Elemento& E(int e) { return elementi[static_cast<std::size_t>(e)]; }
  bool Marcato(int i) const { return marca[static_cast<std::size_t>(i)] == bollo; }
  void Marca(int i) { marca[static_cast<std::size_t>(i)] = bollo; }

  int Estrai();
  void Inserisci(int i);
  void Togli(int i);
  void FormaElemento(int p);
  void PesaDifferenze(int p);
  void Aggiorna(int i, int p);
  void FondiUguali();
  bool Indistinguibili(int i, int j);
  void Fondi(int i, int j);
  void Elimina(int i);

  std::vector<Nodo> nodi;
  std::vector<Elemento> elementi;
  std::vector<int> teste;                      // first node of each degree
  std::vector<int> marca;                      // stamp of the last set a node was put in
  std::vector<int> marcaElemento, differenza;  // |L_e \ L_p| of the elements met this time
  std::vector<std::pair<std::size_t, int>> impronte;
  std::vector<int> ordine, accantonati;
  int bollo = 0, bolloElemento = 0;
  int gradoMinimo = 0;
  int rimasti = 0;
};

QuozienteMinimo::QuozienteMinimo(const Grafo& grafo)
    : nodi(static_cast<std::size_t>(grafo.Nodi())),
      elementi(nodi.size()),
      teste(nodi.size() + 1, kNessuno),
      marca(nodi.size(), 0),
      marcaElemento(nodi.size(), 0),
      differenza(nodi.size(), 0),
      rimasti(grafo.Nodi()) {
  ordine.reserve(nodi.size());
  const int massimo =
      std::max(kGradoAmmesso, static_cast<int>(kGradoPerRadice * std::sqrt(grafo.Nodi())));
  for (int i = 0; i < grafo.Nodi(); ++i) {
    const auto k = static_cast<std::size_t>(i);
    N(i).Vicini.assign(grafo.Vicini.begin() + grafo.Inizio[k],
                       grafo.Vicini.begin() + grafo.Inizio[k + 1]);
    N(i).Grado = static_cast<int>(N(i).Vicini.size());
    if (N(i).Grado > massimo) {
      accantonati.push_back(i);
      N(i).Peso = 0;
      --rimasti;
    } else {
      Inserisci(i);
    }
  }
}

void QuozienteMinimo::Inserisci(int i) {
  int& testa = teste[static_cast<std::size_t>(N(i).Grado)];
  N(i).Prima = kNessuno;
  N(i).Dopo = testa;
  if (testa != kNessuno) N(testa).Prima = i;
  testa = i;
  gradoMinimo = std::min(gradoMinimo, N(i).Grado);
}

void QuozienteMinimo::Togli(int i) {
  const Nodo& n = N(i);
  if (n.Prima != kNessuno)
    N(n.Prima).Dopo = n.Dopo;
  else
    teste[static_cast<std::size_t>(n.Grado)] = n.Dopo;
  if (n.Dopo != kNessuno) N(n.Dopo).Prima = n.Prima;
}

int QuozienteMinimo::Estrai() {
  while (teste[static_cast<std::size_t>(gradoMinimo)] == kNessuno) ++gradoMinimo;
  const int p = teste[static_cast<std::size_t>(gradoMinimo)];
  Togli(p);
  return p;
}

void QuozienteMinimo::Elimina(int i) {
  rimasti -= N(i).Peso;
  for (int j = i; j != kNessuno; j = N(j).Fusi) ordine.push_back(j);
  N(i).Peso = 0;
}

// L_p = A_p and the nodes of the elements of p, which p absorbs.
void QuozienteMinimo::FormaElemento(int p) {
  Elemento& e = E(p);
  e.Vivo = true;
  ++bollo;
  Marca(p);
  const auto aggiungi = [&](int i) {
    if (N(i).Peso == 0 || Marcato(i)) return;
    Marca(i);
    e.Nodi.push_back(i);
    e.Peso += N(i).Peso;
  };
  for (const int i : N(p).Vicini) aggiungi(i);
  for (const int a : N(p).Elementi) {
    if (!E(a).Vivo) continue;
    for (const int i : E(a).Nodi) aggiungi(i);
    E(a).Vivo = false;
    std::vector<int>().swap(E(a).Nodi);
  }
  std::vector<int>().swap(N(p).Vicini);
  std::vector<int>().swap(N(p).Elementi);
}

// |L_e \ L_p| of every element that shares a node with p; one that p covers is absorbed.
void QuozienteMinimo::PesaDifferenze(int p) {
  ++bolloElemento;
  for (const int i : E(p).Nodi)
    for (const int e : N(i).Elementi) {
      if (!E(e).Vivo) continue;
      const auto k = static_cast<std::size_t>(e);
      if (marcaElemento[k] != bolloElemento) {
        marcaElemento[k] = bolloElemento;
        differenza[k] = E(e).Peso;
      }
      differenza[k] -= N(i).Peso;
    }
}

// Rewrites the lists of a node of L_p and its degree.
void QuozienteMinimo::Aggiorna(int i, int p) {
  Nodo& n = N(i);
  int grado = E(p).Peso - n.Peso;
  std::size_t impronta = 0;
  std::erase_if(n.Elementi, [&](int e) {
    if (!E(e).Vivo) return true;
    const int d = differenza[static_cast<std::size_t>(e)];
    if (d == 0) {
      E(e).Vivo = false;
      std::vector<int>().swap(E(e).Nodi);
      return true;
    }
    grado += d;
    impronta += static_cast<std::size_t>(e);
    return false;
  });
  std::erase_if(n.Vicini, [&](int j) {
    if (N(j).Peso == 0 || Marcato(j)) return true;
    grado += N(j).Peso;
    impronta += static_cast<std::size_t>(j);
    return false;
  });
  n.Elementi.push_back(p);
  n.Grado = std::min({grado, n.Grado + E(p).Peso - n.Peso, rimasti - n.Peso});
  impronte.emplace_back(impronta, i);
}

bool QuozienteMinimo::Indistinguibili(int i, int j) {
  const Nodo& a = N(i);
  const Nodo& b = N(j);
  if (a.Vicini.size() != b.Vicini.size() || a.Elementi.size() != b.Elementi.size()) return false;
  const auto stesse = [&](const std::vector<int>& x, const std::vector<int>& y) {
    ++bollo;
    for (const int k : x) Marca(k);
    return std::ranges::all_of(y, [&](int k) { return Marcato(k); });
  };
  return stesse(a.Vicini, b.Vicini) && stesse(a.Elementi, b.Elementi);
}

void QuozienteMinimo::Fondi(int i, int j) {
  N(i).Peso += N(j).Peso;
  N(i).Grado -= N(j).Peso;
  N(j).Peso = 0;
  int ultimo = i;
  if (N(i).UltimoFuso != kNessuno) ultimo = N(i).UltimoFuso;
  N(ultimo).Fusi = j;
  N(i).UltimoFuso = N(j).UltimoFuso != kNessuno ? N(j).UltimoFuso : j;
  std::vector<int>().swap(N(j).Vicini);
  std::vector<int>().swap(N(j).Elementi);
}

// Merges the nodes of the new element that have become indistinguishable, found by a sum over their
// lists.
void QuozienteMinimo::FondiUguali() {
  std::ranges::sort(impronte);
  for (std::size_t a = 0; a < impronte.size(); ++a) {
    const int i = impronte[a].second;
    if (N(i).Peso == 0) continue;
    for (std::size_t b = a + 1; b < impronte.size() && impronte[b].first == impronte[a].first;
         ++b) {
      const int j = impronte[b].second;
      if (N(j).Peso != 0 && Indistinguibili(i, j)) Fondi(i, j);
    }
  }
}

std::vector<int> QuozienteMinimo::Ordina() {
  while (rimasti > 0) {
    const int p = Estrai();
    FormaElemento(p);
    Elimina(p);
    for (const int i : E(p).Nodi) Togli(i);
    PesaDifferenze(p);
    impronte.clear();
    for (const int i : E(p).Nodi) Aggiorna(i, p);
    // A node that only p reaches goes with it.
    for (const int i : E(p).Nodi)
      if (N(i).Elementi.size() == 1 && N(i).Vicini.empty()) {
        E(p).Peso -= N(i).Peso;
        Elimina(i);
      }
    FondiUguali();
    std::erase_if(E(p).Nodi, [&](int i) { return N(i).Peso == 0; });
    for (const int i : E(p).Nodi) {
      N(i).Grado = std::clamp(N(i).Grado, 0, std::max(rimasti - N(i).Peso, 0));
      Inserisci(i);
    }
    if (E(p).Nodi.empty()) E(p).Vivo = false;
  }
  ordine.insert(ordine.end(), accantonati.begin(), accantonati.end());
  return ordine;
}

}  // namespace

std::vector<int> GradoMinimo(const Grafo& grafo) { return QuozienteMinimo(grafo).Ordina(); }

}  // namespace kzt5cmrg
