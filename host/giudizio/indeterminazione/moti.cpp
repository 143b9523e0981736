// A basis of motions Z, one column each, reduced so that each column vanishes at the pivots of the
// others, has columns of least support: columns that share no node move by themselves and are
// treated apart. Of a group whose nodes can turn, shift or stretch as one body S these motions are
// told first (they are the null space of A S, four columns); then the body is held, which leaves
// the combinations Z v with v orthogonal to the rows of Z at the body, and these are taken apart
// again: what still moves hangs on the body by a hinge. The body is looked for among the nodes that
// share equations, as the one that holds the most nodes with it.

#include "host/giudizio/indeterminazione/moti.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace compensa {

namespace {

constexpr std::size_t U(int i) { return static_cast<std::size_t>(i); }

constexpr double kFermo = 1e-6;          // displacements below this are none, the largest being 1
constexpr double kFermoDebole = 0.02;    // likewise of a weak motion
constexpr double kAdattamento = 0.05;    // misfit up to which a weak motion is that of one body
constexpr double kIndipendente = 1e-3;   // sine at which two rows are not parallel
constexpr double kNelPiano = 1e-5;       // part of a row outside of the body's
constexpr std::size_t kCandidati = 64;   // nodes that a body is tried at
constexpr std::size_t kCampione = 1000;  // nodes that tell which body is the largest
constexpr std::size_t kGradiScomposti = 64;  // a tangle of more motions is told as it is
constexpr std::size_t kGradiMassimi = 4;     // of one body

// Motions of the body about the centroid of the nodes: four columns, rotation and scale by the
// radius of the group.
struct Corpo {
  Posto Centro;
  double Raggio = 0.0;
  std::vector<Vettore> Moti;

  Corpo(const SistemaLibero& s, const std::vector<int>& nodi) {
    for (const int n : nodi) Centro = Centro + s.Luoghi[U(n)];
    Centro = (1.0 / static_cast<double>(nodi.size())) * Centro;
    for (const int n : nodi) Raggio = std::max(Raggio, Lunghezza(s.Luoghi[U(n)] - Centro));
    Moti.assign(Raggio > 0.0 ? kGradiMassimi : 2, Vettore(2 * nodi.size(), 0.0));
    for (std::size_t k = 0; k < nodi.size(); ++k) {
      Moti[0][2 * k] = Moti[1][2 * k + 1] = 1.0;
      if (!(Raggio > 0.0)) continue;
      const Posto r = (1.0 / Raggio) * (s.Luoghi[U(nodi[k])] - Centro);
      Moti[2][2 * k] = r.Nord;
      Moti[2][2 * k + 1] = -r.Est;
      Moti[3][2 * k] = r.Est;
      Moti[3][2 * k + 1] = r.Nord;
    }
  }
  Similitudine Da(const Vettore& v) const {
    if (Moti.size() < kGradiMassimi) return {v[0], v[1], 0.0, 0.0};
    return {v[0], v[1], v[2] / Raggio, v[3] / Raggio};
  }
};

Vettore Combina(const std::vector<Vettore>& base, const Vettore& v) {
  Vettore x(base.front().size(), 0.0);
  for (std::size_t i = 0; i < base.size(); ++i) Somma(x, v[i], base[i]);
  return x;
}

double Massimo(const Vettore& x) {
  double massimo = 0.0;
  for (const double c : x) massimo = std::max(massimo, std::abs(c));
  return massimo;
}

// A^t A on the motions of the nodes as a body.
std::vector<Vettore> NormaleDi(const SistemaLibero& s, const std::vector<int>& nodi,
                               const Corpo& corpo) {
  const std::size_t m = corpo.Moti.size();
  std::vector<Vettore> g(m, Vettore(m, 0.0));
  for (const int nodo : nodi)
    for (const int r : s.RigheDi(nodo)) {
      const RigaLibera& riga = s.Righe[U(r)];
      Vettore a(m, 0.0);
      int primo = kNessuno;
      for (std::size_t k = 0; k < RigaLibera::kNodi && riga.Nodi[k] != kNessuno; ++k) {
        const auto dove = std::ranges::lower_bound(nodi, riga.Nodi[k]);
        if (dove == nodi.end() || *dove != riga.Nodi[k]) continue;
        if (primo == kNessuno) primo = riga.Nodi[k];
        const std::size_t i = 2 * static_cast<std::size_t>(dove - nodi.begin());
        for (std::size_t j = 0; j < m; ++j)
          a[j] += riga.Coeff[k][0] * corpo.Moti[j][i] + riga.Coeff[k][1] * corpo.Moti[j][i + 1];
      }
      if (primo != nodo) continue;
      for (std::size_t i = 0; i < m; ++i) Somma(g[i], a[i], a);
    }
  return g;
}

class Scomposizione {
 public:
  Scomposizione(const SistemaLibero& sistema, const std::vector<int>& nodi)
      : S(sistema), Nodi(nodi), Passo(U(sistema.Passo)) {}
  void Spiega(std::vector<Vettore> base);
  std::vector<MotoInsieme> Trovati;

 private:
  static std::vector<std::size_t> Riduci(std::vector<Vettore>& base);
  std::vector<std::vector<Vettore>> Separa(std::vector<Vettore> base) const;
  void SpiegaGruppo(std::vector<Vettore> base);
  std::vector<std::size_t> Supporto(const std::vector<Vettore>& base) const;
  std::vector<Vettore> Piano(const std::vector<Vettore>& base,
                             const std::vector<std::size_t>& supporto, std::size_t gradi,
                             const std::vector<Vettore>& corpo) const;
  std::vector<Vettore> PianoDa(const std::vector<Vettore>& base, const RigaLibera& riga,
                               std::size_t gradi, const std::vector<Vettore>& corpo) const;
  static Vettore Riga(const std::vector<Vettore>& base, std::size_t i);
  bool SiMuove(const Vettore& x, std::size_t k) const {
    for (std::size_t p = 0; p < Passo; ++p)
      if (std::abs(x[k * Passo + p]) > kFermo) return true;
    return false;
  }
  void Aggiungi(const Vettore& moto, const std::vector<std::size_t>& supporto,
                const Corpo* corpo = nullptr, std::vector<Similitudine> similitudini = {});

  const SistemaLibero& S;
  const std::vector<int>& Nodi;  // of the part
  std::size_t Passo;
};

// Reduced echelon form with complete pivoting; the pivots, one for each vector. Each vector has its
// largest displacement 1.
std::vector<std::size_t> Scomposizione::Riduci(std::vector<Vettore>& base) {
  std::vector<std::size_t> perni;
  for (std::size_t k = 0; k < base.size(); ++k) {
    std::size_t colonna = k, perno = 0;
    double massimo = 0.0;
    for (std::size_t j = k; j < base.size(); ++j)
      for (std::size_t i = 0; i < base[j].size(); ++i)
        if (std::abs(base[j][i]) > massimo) {
          massimo = std::abs(base[j][i]);
          colonna = j;
          perno = i;
        }
    if (massimo == 0.0) {
      base.resize(k);
      break;
    }
    std::swap(base[k], base[colonna]);
    const double valore = base[k][perno];
    for (double& c : base[k]) c /= valore;
    for (std::size_t j = 0; j < base.size(); ++j)
      if (j != k) Somma(base[j], -base[j][perno], base[k]);
    perni.push_back(perno);
  }
  for (Vettore& v : base) {
    const double massimo = Massimo(v);
    for (double& c : v) c = std::abs(c) > kFermo * massimo ? c / massimo : 0.0;
  }
  return perni;
}

// Vectors that share nodes, together.
std::vector<std::vector<Vettore>> Scomposizione::Separa(std::vector<Vettore> base) const {
  std::vector<std::size_t> gruppo(base.size());
  std::iota(gruppo.begin(), gruppo.end(), std::size_t{0});
  const auto trova = [&](std::size_t i) {
    while (gruppo[i] != i) i = gruppo[i];
    return i;
  };
  for (std::size_t k = 0; k < Nodi.size(); ++k) {
    std::size_t primo = base.size();
    for (std::size_t j = 0; j < base.size(); ++j) {
      if (!SiMuove(base[j], k)) continue;
      if (primo == base.size()) primo = trova(j);
      gruppo[trova(j)] = primo;
      primo = trova(primo);
    }
  }
  std::vector<std::vector<Vettore>> gruppi(base.size());
  for (std::size_t j = 0; j < base.size(); ++j) gruppi[trova(j)].push_back(std::move(base[j]));
  std::erase_if(gruppi, [](const auto& g) { return g.empty(); });
  return gruppi;
}

std::vector<std::size_t> Scomposizione::Supporto(const std::vector<Vettore>& base) const {
  std::vector<std::size_t> supporto;
  for (std::size_t k = 0; k < Nodi.size(); ++k)
    if (std::ranges::any_of(base, [&](const Vettore& v) { return SiMuove(v, k); }))
      supporto.push_back(k);
  return supporto;
}

Vettore Scomposizione::Riga(const std::vector<Vettore>& base, std::size_t i) {
  Vettore riga;
  riga.reserve(base.size());
  for (const Vettore& v : base) riga.push_back(v[i]);
  return riga;
}

void Scomposizione::Aggiungi(const Vettore& moto, const std::vector<std::size_t>& supporto,
                             const Corpo* corpo, std::vector<Similitudine> similitudini) {
  MotoInsieme insieme;
  const double massimo = std::max(Massimo(moto), 1e-300);
  for (const std::size_t k : supporto) {
    insieme.Nodi.push_back(Nodi[k]);
    for (std::size_t p = 0; p < Passo; ++p) insieme.Moto.push_back(moto[k * Passo + p] / massimo);
  }
  if (corpo != nullptr) insieme.Centro = corpo->Centro;
  insieme.Similitudini = std::move(similitudini);
  Trovati.push_back(std::move(insieme));
}

// The space of the rows of Z at the nodes of one equation, of dimension `gradi`: an orthonormal
// basis; empty if the nodes do not give one, or leave the body some motion.
std::vector<Vettore> Scomposizione::PianoDa(const std::vector<Vettore>& base,
                                            const RigaLibera& riga, std::size_t gradi,
                                            const std::vector<Vettore>& corpo) const {
  std::vector<Vettore> piano, tenuti;
  for (const int nodo : riga.Nodi) {
    if (nodo == kNessuno) break;
    const auto k = static_cast<std::size_t>(std::ranges::lower_bound(Nodi, nodo) - Nodi.begin());
    for (std::size_t p = 0; p < Passo && piano.size() < gradi; ++p) {
      Vettore v = Riga(base, k * Passo + p);
      const double lunga = std::sqrt(Prodotto(v, v));
      if (!(lunga > kFermo)) continue;
      for (const Vettore& q : piano) Somma(v, -Prodotto(v, q), q);
      const double resto = std::sqrt(Prodotto(v, v));
      if (!(resto > kIndipendente * lunga)) continue;
      for (double& c : v) c /= resto;
      piano.push_back(std::move(v));
      if (!corpo.empty()) tenuti.push_back(Riga(corpo, k * Passo + p));
    }
  }
  if (piano.size() < gradi) return {};
  for (std::size_t i = 0; i < tenuti.size(); ++i) {
    const double lunga = std::sqrt(Prodotto(tenuti[i], tenuti[i]));
    for (std::size_t j = 0; j < i; ++j)
      Somma(tenuti[i], -Prodotto(tenuti[i], tenuti[j]), tenuti[j]);
    const double resto = std::sqrt(Prodotto(tenuti[i], tenuti[i]));
    if (!(resto > kIndipendente * lunga)) return {};
    for (double& c : tenuti[i]) c /= resto;
  }
  return piano;
}

// The one, of some tried, that holds the most nodes.
std::vector<Vettore> Scomposizione::Piano(const std::vector<Vettore>& base,
                                          const std::vector<std::size_t>& supporto,
                                          std::size_t gradi,
                                          const std::vector<Vettore>& corpo) const {
  std::vector<Vettore> migliore;
  std::size_t tenutiMigliore = 0;
  const std::size_t salto = std::max(supporto.size() / kCandidati, std::size_t{1});
  const std::size_t saltoCampione = std::max(supporto.size() / kCampione, std::size_t{1});
  for (std::size_t c = 0; c < supporto.size(); c += salto)
    for (const int r : S.RigheDi(Nodi[supporto[c]])
                           .first(std::min(S.RigheDi(Nodi[supporto[c]]).size(), kGradiMassimi))) {
      std::vector<Vettore> piano = PianoDa(base, S.Righe[U(r)], gradi, corpo);
      if (piano.empty()) continue;
      std::size_t tenuti = 0;
      for (std::size_t i = 0; i < supporto.size(); i += saltoCampione) {
        const std::size_t k = supporto[i];
        bool tenuto = true;
        for (std::size_t p = 0; tenuto && p < Passo; ++p) {
          Vettore v = Riga(base, k * Passo + p);
          const double lunga = std::sqrt(Prodotto(v, v));
          for (const Vettore& q : piano) Somma(v, -Prodotto(v, q), q);
          tenuto = std::sqrt(Prodotto(v, v)) <= kNelPiano * std::max(lunga, kFermo);
        }
        tenuti += tenuto ? 1 : 0;
      }
      if (!migliore.empty() && tenuti <= tenutiMigliore) continue;
      migliore = std::move(piano);
      tenutiMigliore = tenuti;
    }
  return migliore;
}

// Combinations that leave the rows of the plane at rest.
std::vector<Vettore> Trattieni(const std::vector<Vettore>& base, std::vector<Vettore> piano) {
  std::vector<Vettore> liberi;
  for (std::size_t i = 0; i < base.size(); ++i) {
    Vettore v(base.size(), 0.0);
    v[i] = 1.0;
    for (int volta = 0; volta < 2; ++volta)
      for (const Vettore& q : piano) Somma(v, -Prodotto(v, q), q);
    const double resto = std::sqrt(Prodotto(v, v));
    if (!(resto > kNelPiano)) continue;
    for (double& c : v) c /= resto;
    piano.push_back(v);
    liberi.push_back(Combina(base, v));
  }
  return liberi;
}

void Scomposizione::SpiegaGruppo(std::vector<Vettore> base) {
  const std::vector<std::size_t> supporto = Supporto(base);
  std::vector<int> nodi;
  nodi.reserve(supporto.size());
  for (const std::size_t k : supporto) nodi.push_back(Nodi[k]);
  if (nodi.empty()) return;
  const Corpo corpo(S, nodi);
  std::vector<Similitudine> similitudini;
  std::vector<Vettore> moti;  // of the whole part
  for (const Vettore& v : Autovettori(NormaleDi(S, nodi, corpo))) {
    const Vettore moto = Combina(corpo.Moti, v);
    if (similitudini.size() == base.size() || EffettoDi(S, nodi, moto).Relativo >= kNullo) break;
    similitudini.push_back(corpo.Da(v));
    Vettore largo(Nodi.size() * Passo, 0.0);
    for (std::size_t i = 0; i < supporto.size(); ++i)
      for (std::size_t p = 0; p < Passo; ++p) largo[supporto[i] * Passo + p] = moto[i * Passo + p];
    moti.push_back(std::move(largo));
  }
  const std::size_t gradi = similitudini.size();
  if (gradi > 0) Aggiungi(moti.front(), supporto, &corpo, std::move(similitudini));
  if (gradi == base.size()) return;
  const std::vector<Vettore> piano =
      base.size() == 1 || base.size() > kGradiScomposti
          ? std::vector<Vettore>{}
          : Piano(base, supporto, std::max(gradi, std::size_t{1}), moti);
  if (piano.empty()) {
    for (std::size_t j = gradi; j < base.size(); ++j) Aggiungi(base[j], Supporto({base[j]}));
    return;
  }
  std::vector<Vettore> resto = Trattieni(base, piano);
  if (gradi == 0) {  // the motion that the others do not have
    Vettore moto = Combina(base, piano.front());
    const std::vector<std::size_t> perni = Riduci(resto);
    for (std::size_t j = 0; j < resto.size(); ++j)
      Somma(moto, -moto[perni[j]] / resto[j][perni[j]], resto[j]);
    Aggiungi(moto, Supporto({moto}));
  }
  Spiega(std::move(resto));
}

void Scomposizione::Spiega(std::vector<Vettore> base) {
  if (base.empty()) return;
  Riduci(base);
  if (Passo == 1) {
    for (const Vettore& v : base) Aggiungi(v, Supporto({v}));
    return;
  }
  for (std::vector<Vettore>& gruppo : Separa(std::move(base))) SpiegaGruppo(std::move(gruppo));
}

}  // namespace

std::vector<MotoInsieme> Scomponi(const SistemaLibero& sistema, ParteLibera parte) {
  Scomposizione scomposizione(sistema, parte.Nodi);
  scomposizione.Spiega(std::move(parte.Moti));
  return std::move(scomposizione.Trovati);
}

MotoInsieme ComeInsieme(const SistemaLibero& sistema, const MotoDebole& debole) {
  MotoInsieme insieme;
  const auto p = U(sistema.Passo);
  for (std::size_t k = 0; k < debole.Nodi.size(); ++k) {
    double lungo = 0.0;
    for (std::size_t c = 0; c < p; ++c) lungo = std::hypot(lungo, debole.Moto[k * p + c]);
    if (lungo < kFermoDebole) continue;
    insieme.Nodi.push_back(debole.Nodi[k]);
    for (std::size_t c = 0; c < p; ++c) insieme.Moto.push_back(debole.Moto[k * p + c]);
  }
  if (sistema.Passo == 1) return insieme;
  const Corpo corpo(sistema, insieme.Nodi);
  insieme.Centro = corpo.Centro;
  // The four columns are orthogonal: about the centroid.
  Vettore v;
  Vettore resto = insieme.Moto;
  for (const Vettore& moto : corpo.Moti) {
    v.push_back(Prodotto(insieme.Moto, moto) / Prodotto(moto, moto));
    Somma(resto, -v.back(), moto);
  }
  if (Prodotto(resto, resto) < kAdattamento * kAdattamento * Prodotto(insieme.Moto, insieme.Moto))
    insieme.Similitudini.push_back(corpo.Da(v));
  return insieme;
}

}  // namespace compensa
