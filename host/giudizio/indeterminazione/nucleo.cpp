// Null space of A, rows of equations, without a decision about any single pivot. With the columns
// scaled to unit length, N = A^t A and a small shift e, the step
//   x <- x - (N + e I)^-1 A^t (A x)
// multiplies the part of x along an eigenvector of N by e / (lambda + e): a few steps leave of
// random vectors their parts in the null space, and A x, taken from the rows, keeps them exact. As
// many vectors as directions are sought, and more until some are superfluous; a Rayleigh-Ritz step
// tells free motions from weak ones. N + e I is factored sparse, a part of the network at a time.
// (Saad, Numerical Methods for Large Eigenvalue Problems, ch. 4.)
//
// Nodes that move alone are found first, by the rank of their own columns, and held: there may be
// many of them.

#include "host/giudizio/indeterminazione/nucleo.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>
#include <random>

#include "lsq/sparso.h"

namespace compensa {

namespace {

constexpr std::size_t U(int i) { return static_cast<std::size_t>(i); }

constexpr double kScostamento = 1e-12;        // the shift, against a unit diagonal
constexpr double kScostamentoMassimo = 1e-6;  // if the factorisation fails before
constexpr double kPassoScostamento = 100.0;
constexpr int kPassate = 4;        // steps with the smallest shift
constexpr double kTraccia = 1e-7;  // what is left of a unit vector without a null part
constexpr std::size_t kVettoriIniziali = 8, kVettoriMassimi = 512, kCrescita = 4;
constexpr std::size_t kNumeriMassimi = 2'000'000;  // of the vectors of a part
constexpr std::size_t kVettoriDeboli = 4;
constexpr int kPassateDeboli = 8;

double Norma(const Vettore& x) { return std::sqrt(Prodotto(x, x)); }

// Union of nodes.
class Insiemi {
 public:
  explicit Insiemi(int n) : Padre(U(n)) { std::iota(Padre.begin(), Padre.end(), 0); }
  int Trova(int i) {
    while (Padre[U(i)] != i) i = Padre[U(i)] = Padre[U(Padre[U(i)])];
    return i;
  }
  void Unisci(int a, int b) { Padre[U(Trova(a))] = Trova(b); }

 private:
  std::vector<int> Padre;
};

// A part of the network by itself: nodes numbered from 0, columns of unit length.
class Parte {
 public:
  // `fermi` are rows that hold nodes.
  Parte(const SistemaLibero& sistema, std::vector<int> nodi, const std::vector<int>& posto,
        const std::vector<RigaLibera>& fermi);

  std::size_t Ordine() const { return Scala.size(); }
  const std::vector<int>& Nodi() const { return Numeri; }
  void Prepara();  // factors; before Passata
  int Passate() const { return PassateUtili; }
  void Passata(Vettore& x);
  Vettore Applica(const Vettore& x) const;  // A x
  Vettore InMetri(Vettore x) const;
  Vettore DaMetri(Vettore x) const;

 private:
  void AggiungiRiga(const RigaLibera& riga, const std::vector<int>& posto);

  int Passo;
  std::vector<int> Numeri;
  std::vector<std::array<int, kSlot>> Indici;
  std::vector<std::array<double, kSlot>> Coeff;
  Vettore Scala;          // a scaled unknown is this many times the one in metres
  std::size_t Righe = 0;  // without those of the shift, which follow
  std::optional<SistemaSparso> Fattore;
  int PassateUtili = kPassate;
};

void Parte::AggiungiRiga(const RigaLibera& riga, const std::vector<int>& posto) {
  std::array<int, kSlot> indici;
  std::array<double, kSlot> coeff{};
  indici.fill(kSlotVuoto);
  for (std::size_t k = 0; k < RigaLibera::kNodi && riga.Nodi[k] != kNessuno; ++k)
    for (int p = 0; p < Passo; ++p) {
      const std::size_t slot = k * U(Passo) + U(p);
      indici[slot] = posto[U(riga.Nodi[k])] * Passo + p;
      coeff[slot] = riga.Coeff[k][U(p)];
    }
  Indici.push_back(indici);
  Coeff.push_back(coeff);
}

Parte::Parte(const SistemaLibero& sistema, std::vector<int> nodi, const std::vector<int>& posto,
             const std::vector<RigaLibera>& fermi)
    : Passo(sistema.Passo), Numeri(std::move(nodi)), Scala(Numeri.size() * U(Passo), 0.0) {
  for (const int nodo : Numeri)
    for (const int r : sistema.RigheDi(nodo))  // each row at the first of its nodes
      if (sistema.Righe[U(r)].Nodi[0] == nodo) AggiungiRiga(sistema.Righe[U(r)], posto);
  for (const RigaLibera& riga : fermi) AggiungiRiga(riga, posto);
  Righe = Indici.size();
  for (std::size_t r = 0; r < Righe; ++r)
    for (std::size_t k = 0; k < kSlot; ++k)
      if (Indici[r][k] >= 0) Scala[U(Indici[r][k])] += Coeff[r][k] * Coeff[r][k];
  for (double& s : Scala) s = s > 0.0 ? std::sqrt(s) : 1.0;
  for (std::size_t r = 0; r < Righe; ++r)
    for (std::size_t k = 0; k < kSlot; ++k)
      if (Indici[r][k] >= 0) Coeff[r][k] /= Scala[U(Indici[r][k])];
}

void Parte::Prepara() {
  const auto n = static_cast<int>(Ordine());
  for (int i = 0; i < n; ++i) {  // unknowns of a node always stand in a row together
    std::array<int, kSlot> indici;
    std::array<double, kSlot> coeff{};
    indici.fill(kSlotVuoto);
    for (int p = 0; p < Passo; ++p) indici[U(p)] = i / Passo * Passo + p;
    coeff[U(i % Passo)] = 1.0;
    Indici.push_back(indici);
    Coeff.push_back(coeff);
  }
  std::vector<const int*> indici;
  std::vector<const double*> coeff;
  for (const auto& riga : Indici) indici.push_back(riga.data());
  for (const auto& riga : Coeff) coeff.push_back(riga.data());
  Vettore peso(Indici.size(), 1.0);
  Fattore.emplace(static_cast<int>(Indici.size()), n, indici.data());
  double e = kScostamento;
  while (e <= kScostamentoMassimo) {
    std::fill(peso.begin() + static_cast<std::ptrdiff_t>(Righe), peso.end(), e);
    if (Fattore->Fattorizza(coeff.data(), indici.data(), peso.data())) return;
    e *= kPassoScostamento;
    PassateUtili += kPassate;
  }
  Fattore.reset();
}

Vettore Parte::Applica(const Vettore& x) const {
  Vettore y(Righe);
  for (std::size_t r = 0; r < Righe; ++r)
    for (std::size_t k = 0; k < kSlot; ++k)
      if (Indici[r][k] >= 0) y[r] += Coeff[r][k] * x[U(Indici[r][k])];
  return y;
}

void Parte::Passata(Vettore& x) {
  const Vettore y = Applica(x);
  Vettore b(x.size(), 0.0);
  for (std::size_t r = 0; r < Righe; ++r)
    for (std::size_t k = 0; k < kSlot; ++k)
      if (Indici[r][k] >= 0) b[U(Indici[r][k])] += Coeff[r][k] * y[r];
  if (!Fattore) return;
  Fattore->Risolvi(b.data());  // leaves -(N + e I)^-1 b
  Somma(x, 1.0, b);
}

Vettore Parte::InMetri(Vettore x) const {
  for (std::size_t i = 0; i < x.size(); ++i) x[i] /= Scala[i];
  return x;
}

Vettore Parte::DaMetri(Vettore x) const {
  for (std::size_t i = 0; i < x.size(); ++i) x[i] *= Scala[i];
  return x;
}

// The same numbers with every standard library.
std::vector<Vettore> Casuali(std::size_t quanti, std::size_t ordine) {
  std::mt19937 motore;
  std::vector<Vettore> x(quanti, Vettore(ordine));
  for (Vettore& v : x) {
    for (double& c : v) c = static_cast<double>(motore()) / std::mt19937::max() - 0.5;
    const double norma = Norma(v);
    for (double& c : v) c /= norma;
  }
  return x;
}

// Gram and Schmidt with the longest vector next, twice; what is shorter than `minimo` goes.
void Ortonormalizza(std::vector<Vettore>& x, double minimo) {
  std::size_t k = 0;
  for (; k < x.size(); ++k) {
    const auto massimo = std::max_element(
        x.begin() + static_cast<std::ptrdiff_t>(k), x.end(),
        [](const Vettore& a, const Vettore& b) { return Prodotto(a, a) < Prodotto(b, b); });
    std::swap(x[k], *massimo);
    const double prima = Norma(x[k]);
    if (!(prima > minimo)) break;
    for (double& c : x[k]) c /= prima;
    for (std::size_t j = 0; j < k; ++j) Somma(x[k], -Prodotto(x[k], x[j]), x[j]);
    const double norma = Norma(x[k]);
    for (double& c : x[k]) c /= norma;
    for (std::size_t j = k + 1; j < x.size(); ++j) Somma(x[j], -Prodotto(x[j], x[k]), x[k]);
  }
  x.resize(k);
}

// Turns an orthonormal basis so that |A x|^2 grows from one vector to the next and they are
// orthogonal in it.
template <class Applica>
void RayleighRitz(std::vector<Vettore>& x, Applica applica) {
  std::vector<Vettore> ax;
  ax.reserve(x.size());
  for (const Vettore& v : x) ax.push_back(applica(v));
  std::vector<Vettore> g(x.size(), Vettore(x.size()));
  for (std::size_t i = 0; i < x.size(); ++i)
    for (std::size_t j = 0; j <= i; ++j) g[i][j] = g[j][i] = Prodotto(ax[i], ax[j]);
  std::vector<Vettore> girati;
  for (const Vettore& a : Autovettori(g)) {
    Vettore v(x.front().size(), 0.0);
    for (std::size_t i = 0; i < x.size(); ++i) Somma(v, a[i], x[i]);
    girati.push_back(std::move(v));
  }
  x = std::move(girati);
}

// A basis of the null space of a part [m].
std::vector<Vettore> MotiDi(const SistemaLibero& sistema, Parte& parte) {
  const std::size_t n = parte.Ordine();
  const std::size_t massimo =
      std::min(kVettoriMassimi, std::max(kNumeriMassimi / n, kVettoriIniziali));
  std::vector<Vettore> x;
  for (std::size_t k = kVettoriIniziali;; k = std::min(k * kCrescita, massimo)) {
    x = Casuali(std::min(k, n), n);
    for (Vettore& v : x)
      for (int i = 0; i < parte.Passate(); ++i) parte.Passata(v);
    Ortonormalizza(x, kTraccia);
    if (x.size() < k || k >= std::min(n, massimo)) break;
  }
  if (x.empty()) return x;
  RayleighRitz(x, [&](const Vettore& v) { return parte.Applica(v); });
  std::vector<Vettore> moti;
  for (Vettore& v : x) {
    Vettore moto = parte.InMetri(std::move(v));
    if (EffettoDi(sistema, parte.Nodi(), moto).Relativo < kNullo) moti.push_back(std::move(moto));
  }
  return moti;
}

// Rank of the columns of a node; those of a node in plan have a direction that moves it least.
NodoLibero EsaminaNodo(const SistemaLibero& sistema, int nodo) {
  std::vector<Vettore> g(U(sistema.Passo), Vettore(U(sistema.Passo), 0.0));
  for (const int r : sistema.RigheDi(nodo)) {
    const RigaLibera& riga = sistema.Righe[U(r)];
    const auto k = U(static_cast<int>(std::ranges::find(riga.Nodi, nodo) - riga.Nodi.begin()));
    for (std::size_t i = 0; i < g.size(); ++i)
      for (std::size_t j = 0; j < g.size(); ++j) g[i][j] += riga.Coeff[k][i] * riga.Coeff[k][j];
  }
  NodoLibero libero{nodo, 0, 0.0, 0.0};
  for (const Vettore& v : Autovettori(g)) {
    if (EffettoDi(sistema, {nodo}, v).Relativo >= kNullo) break;
    if (libero.Gradi++ > 0 || sistema.Passo == 1) continue;
    libero.Est = v[0];
    libero.Nord = v[1];
  }
  return libero;
}

// Rows as heavy as the node's own that hold it where it is free.
void Ferma(const SistemaLibero& sistema, const NodoLibero& libero, std::vector<RigaLibera>& fermi) {
  double peso = 0.0;
  for (const int r : sistema.RigheDi(libero.Nodo))
    for (std::size_t k = 0; k < RigaLibera::kNodi; ++k)
      if (sistema.Righe[U(r)].Nodi[k] == libero.Nodo)
        for (const double c : sistema.Righe[U(r)].Coeff[k]) peso += c * c;
  const double coeff = peso > 0.0 ? std::sqrt(peso) : 1.0;
  const auto ferma = [&](double est, double nord) {
    RigaLibera riga;
    riga.Nodi[0] = libero.Nodo;
    riga.Coeff[0] = {coeff * est, coeff * nord};
    fermi.push_back(riga);
  };
  if (libero.Gradi < sistema.Passo) return ferma(libero.Est, libero.Nord);
  ferma(1.0, 0.0);
  if (sistema.Passo > 1) ferma(0.0, 1.0);
}

// The nodes of each part that hangs together, in ascending order.
std::vector<std::vector<int>> Separa(const SistemaLibero& sistema) {
  Insiemi insiemi(sistema.Nodi());
  for (const RigaLibera& riga : sistema.Righe)
    for (std::size_t k = 1; k < RigaLibera::kNodi && riga.Nodi[k] != kNessuno; ++k)
      insiemi.Unisci(riga.Nodi[0], riga.Nodi[k]);
  std::vector<int> parteDi(U(sistema.Nodi()), kNessuno);
  std::vector<std::vector<int>> parti;
  for (int i = 0; i < sistema.Nodi(); ++i) {
    int& parte = parteDi[U(insiemi.Trova(i))];
    if (parte == kNessuno) {
      parte = static_cast<int>(parti.size());
      parti.emplace_back();
    }
    parti[U(parte)].push_back(i);
  }
  return parti;
}

// Place of each node within its part.
std::vector<int> Posti(const SistemaLibero& sistema, const std::vector<std::vector<int>>& parti) {
  std::vector<int> posto(U(sistema.Nodi()), kNessuno);
  for (const std::vector<int>& nodi : parti)
    for (std::size_t k = 0; k < nodi.size(); ++k) posto[U(nodi[k])] = static_cast<int>(k);
  return posto;
}

}  // namespace

Effetto EffettoDi(const SistemaLibero& sistema, const std::vector<int>& nodi, const Vettore& moto) {
  const auto p = U(sistema.Passo);
  const auto luogo = [&](int nodo) {
    const auto dove = std::ranges::lower_bound(nodi, nodo);
    return dove == nodi.end() || *dove != nodo ? kNessuno : static_cast<int>(dove - nodi.begin());
  };
  double cambia = 0.0, potrebbe = 0.0;
  for (const int nodo : nodi)
    for (const int r : sistema.RigheDi(nodo)) {
      const RigaLibera& riga = sistema.Righe[U(r)];
      double totale = 0.0, parti = 0.0;
      int primo = kNessuno;  // a row counts at the first of its nodes that moves
      for (std::size_t k = 0; k < RigaLibera::kNodi && riga.Nodi[k] != kNessuno; ++k) {
        const int i = luogo(riga.Nodi[k]);
        if (i == kNessuno) continue;
        if (primo == kNessuno) primo = riga.Nodi[k];
        double coeff = 0.0, lungo = 0.0;
        for (std::size_t c = 0; c < p; ++c) {
          const double z = moto[U(i) * p + c];
          totale += riga.Coeff[k][c] * z;
          coeff += riga.Coeff[k][c] * riga.Coeff[k][c];
          lungo += z * z;
        }
        parti += std::sqrt(coeff * lungo);
      }
      if (primo != nodo) continue;
      cambia += totale * totale;
      potrebbe += parti * parti;
    }
  return {std::sqrt(cambia), potrebbe > 0.0 ? std::sqrt(cambia / potrebbe) : 0.0};
}

Nucleo CalcolaNucleo(const SistemaLibero& sistema) {
  Nucleo nucleo;
  const std::vector<std::vector<int>> parti = Separa(sistema);
  const std::vector<int> posto = Posti(sistema, parti);
  for (const std::vector<int>& nodi : parti) {
    std::vector<RigaLibera> fermi;
    for (const int nodo : nodi) {
      const NodoLibero libero = EsaminaNodo(sistema, nodo);
      if (libero.Gradi == 0) continue;
      nucleo.Nodi.push_back(libero);
      Ferma(sistema, libero, fermi);
    }
    if (nodi.size() == 1) continue;
    Parte parte(sistema, nodi, posto, fermi);
    parte.Prepara();
    std::vector<Vettore> moti = MotiDi(sistema, parte);
    if (!moti.empty()) nucleo.Parti.push_back({nodi, std::move(moti)});
  }
  return nucleo;
}

MotoDebole CercaMotoDebole(const SistemaLibero& sistema) {
  MotoDebole debole;
  const std::vector<std::vector<int>> parti = Separa(sistema);
  const std::vector<int> posto = Posti(sistema, parti);
  for (const std::vector<int>& nodi : parti) {
    Parte parte(sistema, nodi, posto, {});
    parte.Prepara();
    std::vector<Vettore> x = Casuali(std::min(kVettoriDeboli, parte.Ordine()), parte.Ordine());
    for (int i = 0; i < kPassateDeboli; ++i) {
      for (Vettore& v : x) parte.Passata(v);
      Ortonormalizza(x, 0.0);
    }
    for (Vettore& v : x) v = parte.InMetri(std::move(v));
    Ortonormalizza(x, 0.0);
    if (x.empty()) continue;
    RayleighRitz(x, [&](const Vettore& v) { return parte.Applica(parte.DaMetri(v)); });
    Vettore moto = std::move(x.front());
    double massimo = 0.0;
    const auto p = U(sistema.Passo);
    for (std::size_t k = 0; k < nodi.size(); ++k)
      massimo = std::max(massimo, std::hypot(moto[k * p], p > 1 ? moto[k * p + 1] : 0.0));
    for (double& c : moto) c /= massimo;
    const double effetto = EffettoDi(sistema, nodi, moto).Assoluto;
    if (Presente(debole.Sqm) && !(1.0 / effetto > debole.Sqm)) continue;
    debole = {nodi, std::move(moto), 1.0 / effetto};
  }
  return debole;
}

}  // namespace compensa
