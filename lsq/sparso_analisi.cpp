// Analysis of a sparse system: the graph of its unknowns, which front each equation row goes to,
// and the memory that the largest front needs.

#include <algorithm>
#include <array>

#include "lsq/sparso.h"

namespace kzt5cmrg {

namespace {

constexpr std::size_t U(int i) { return static_cast<std::size_t>(i); }

// Whether the unknowns stand in every row as pairs (2k, 2k + 1) in slots (2s, 2s + 1).
bool APaia(int equazioni, const int* const* indici) {
  for (int r = 0; r < equazioni; ++r)
    for (int s = 0; s < kSlot; s += 2) {
      const int a = indici[r][s];
      const int b = indici[r][s + 1];
      if (a < 0 ? b >= 0 : a % 2 != 0 || b != a + 1) return false;
    }
  return true;
}

// The different nodes of a row.
struct NodiRiga {
  std::array<int, kSlot> Nodi{};
  int Quanti = 0;

  NodiRiga(const int* indici, int passo) {
    for (int s = 0; s < kSlot; s += passo) {
      if (indici[s] < 0) continue;
      const int nodo = indici[s] / passo;
      if (std::find(begin(), end(), nodo) == end()) Nodi[U(Quanti++)] = nodo;
    }
  }
  const int* begin() const { return Nodi.data(); }
  const int* end() const { return Nodi.data() + Quanti; }
};

// Two nodes are neighbours when some row holds both.
Grafo GrafoDelleRighe(int equazioni, int nNodi, int passo, const int* const* indici) {
  std::vector<std::size_t> inizio(U(nNodi) + 1, 0);
  for (int r = 0; r < equazioni; ++r) {
    const NodiRiga nodi(indici[r], passo);
    for (const int a : nodi) inizio[U(a) + 1] += U(nodi.Quanti - 1);
  }
  for (std::size_t i = 1; i < inizio.size(); ++i) inizio[i] += inizio[i - 1];
  std::vector<int> vicini(inizio.back());
  std::vector<std::size_t> libero(inizio.begin(), inizio.end() - 1);
  for (int r = 0; r < equazioni; ++r) {
    const NodiRiga nodi(indici[r], passo);
    for (const int a : nodi)
      for (const int b : nodi)
        if (a != b) vicini[libero[U(a)]++] = b;
  }
  Grafo g;
  g.Inizio.reserve(inizio.size());
  g.Inizio.push_back(0);
  for (std::size_t i = 0; i + 1 < inizio.size(); ++i) {
    const auto da = vicini.begin() + static_cast<std::ptrdiff_t>(inizio[i]);
    const auto a = vicini.begin() + static_cast<std::ptrdiff_t>(inizio[i + 1]);
    std::sort(da, a);
    g.Vicini.insert(g.Vicini.end(), da, std::unique(da, a));
    g.Inizio.push_back(static_cast<int>(g.Vicini.size()));
  }
  return g;
}

}  // namespace

SistemaSparso::SistemaSparso(int equazioni, int incognite, const int* const* indici)
    : Passo(incognite % 2 == 0 && APaia(equazioni, indici) ? 2 : 1) {
  const int nNodi = incognite / Passo;
  AlberoFronti albero = Analizza(GrafoDelleRighe(equazioni, nNodi, Passo, indici));
  Fronti = std::move(albero.Fronti);
  Posizione = std::move(albero.Posizione);
  FronteDaPosto = std::move(albero.FronteDaPosto);
  NodoDaPosto.resize(U(nNodi));
  for (int i = 0; i < nNodi; ++i) NodoDaPosto[U(Posizione[U(i)])] = i;
  AssegnaRighe(equazioni, indici);

  UltimoFiglio.assign(Fronti.size(), kNessunFronte);
  FratelloPrima.assign(Fronti.size(), kNessunFronte);
  std::size_t valori = 0;
  int ordine = 0;
  for (std::size_t s = 0; s < Fronti.size(); ++s) {
    if (const int padre = Fronti[s].Padre; padre != kNessunFronte) {
      FratelloPrima[s] = UltimoFiglio[U(padre)];
      UltimoFiglio[U(padre)] = static_cast<int>(s);
    }
    Inizio.push_back(valori);
    valori += U(Larghezza(s)) * U(Ordine(s));
    ordine = std::max(ordine, Ordine(s));
  }
  Valori.resize(valori);
  Matrice.resize(U(ordine) * U(ordine));
  RigheMatrice.resize(U(ordine));
  Dove.resize(U(ordine));
  Vettore.resize(U(ordine));
  Locale.assign(U(nNodi), 0);
}

// A row goes to the front that eliminates the first of its nodes; one without unknowns to none.
void SistemaSparso::AssegnaRighe(int equazioni, const int* const* indici) {
  std::vector<int> fronteDaRiga(U(equazioni), kNessunFronte);
  InizioRighe.assign(Fronti.size() + 1, 0);
  for (int r = 0; r < equazioni; ++r) {
    const NodiRiga nodi(indici[r], Passo);
    if (nodi.Quanti == 0) continue;
    int primo = Posizione[U(nodi.Nodi[0])];
    for (const int nodo : nodi) primo = std::min(primo, Posizione[U(nodo)]);
    fronteDaRiga[U(r)] = FronteDaPosto[U(primo)];
    ++InizioRighe[U(fronteDaRiga[U(r)]) + 1];
  }
  for (std::size_t s = 1; s < InizioRighe.size(); ++s) InizioRighe[s] += InizioRighe[s - 1];
  RigheDaFronte.resize(U(InizioRighe.back()));
  std::vector<int> libero(InizioRighe.begin(), InizioRighe.end() - 1);
  for (int r = 0; r < equazioni; ++r)
    if (const int s = fronteDaRiga[U(r)]; s != kNessunFronte) RigheDaFronte[U(libero[U(s)]++)] = r;
}

}  // namespace kzt5cmrg
