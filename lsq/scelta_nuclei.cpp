// The implementations of the dense kernels, which of them this machine runs, and their work memory.
// The plain loops state the algebra: they are what small matrices use and what the others are held
// to.

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "lsq/nuclei.h"

namespace kzt5cmrg {

extern const Nuclei kNucleiPortabili;
#ifdef KZT5CMRG_NUCLEI_X86
extern const Nuclei kNucleiAvx2;
extern const Nuclei kNucleiAvx512;
#endif

namespace {

// u_ii = sqrt(n_ii - sum_k<i u_ki^2),  u_ij = (n_ij - sum_k<i u_ki u_kj) / u_ii, row by row; then
// the same sums, not divided, for the rest of the front. Every inner loop runs along a row in
// memory.
int EliminaSemplice(double* const* a, int larghezza, int ordine, const SpazioNuclei& /*spazio*/) {
  for (int i = 0; i < ordine; ++i) {
    double* ai = a[i];
    const int fine = std::min(i, larghezza);
    for (int k = 0; k < fine; ++k) ai[i] -= a[k][i] * a[k][i];
    if (i < larghezza) {
      if (!(ai[i] > kPivotMinimo)) return i;
      ai[i] = std::sqrt(ai[i]);
    }
    for (int k = 0; k < fine; ++k) {
      const double* ak = a[k];
      const double aki = ak[i];
      for (int j = i + 1; j < ordine; ++j) ai[j] -= aki * ak[j];
    }
    if (i < larghezza)
      for (int j = i + 1; j < ordine; ++j) ai[j] /= ai[i];
  }
  return kEliminato;
}

// q_ij = -(1 / u_ii) sum_k>i u_ik q_kj for j > i,  q_ii = (1 / u_ii) (1 / u_ii - sum_k>i u_ik
// q_ik), rows from the last to the first. Only the upper triangle of Q is held: a stored q_kj
// serves both the sum of column j and, by symmetry, the sum of column k. (Mikhail and Ackermann,
// Observations and Least Squares, 1976.)
void InvertiSemplice(double* const* a, int larghezza, int ordine, const SpazioNuclei& /*spazio*/) {
  std::vector<double> somme(static_cast<std::size_t>(std::max(ordine, 0)));
  double* t = somme.data();
  for (int i = larghezza - 1; i >= 0; --i) {
    double* ui = a[i];
    std::fill(t + i + 1, t + ordine, 0.0);
    for (int k = ordine - 1; k > i; --k) {
      const double* qk = a[k];
      const double uik = ui[k];
      double somma = uik * qk[k];
      for (int j = k + 1; j < ordine; ++j) {
        t[j] += uik * qk[j];
        somma += ui[j] * qk[j];
      }
      t[k] += somma;
    }
    double s = 0.0;
    for (int k = ordine - 1; k > i; --k) {
      t[k] = -t[k] / ui[i];
      s += ui[k] * t[k];
    }
    std::copy(t + i + 1, t + ordine, ui + i + 1);
    ui[i] = (1.0 / ui[i] - s) / ui[i];
  }
}

std::span<const Nuclei* const> Disponibili() {
  static constexpr std::array kTutti{&kNucleiSemplici, &kNucleiPortabili,
#ifdef KZT5CMRG_NUCLEI_X86
                                     &kNucleiAvx2, &kNucleiAvx512
#endif
  };
  std::size_t quanti = 2;
#ifdef KZT5CMRG_NUCLEI_X86
  __builtin_cpu_init();
  const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
  if (avx2) ++quanti;
  if (avx2 && __builtin_cpu_supports("avx512f")) ++quanti;
#endif
  return std::span(kTutti).first(quanti);
}

// Doubles that the inverse of a front holds at once: its own columns and those of its recursion.
std::size_t DoppiInversa(int larghezza, int resto) {
  const std::size_t proprie = static_cast<std::size_t>(larghezza) * static_cast<std::size_t>(resto);
  if (larghezza <= kOrdineSemplice) return proprie;
  const int h = Meta(larghezza);
  return proprie + std::max(DoppiInversa(larghezza - h, 0), DoppiInversa(h, larghezza - h));
}

// Rows of those columns.
std::size_t RigheInversa(int larghezza) {
  const auto proprie = static_cast<std::size_t>(larghezza);
  return larghezza <= kOrdineSemplice ? proprie : proprie + RigheInversa(Meta(larghezza));
}

template <class T>
void Assicura(std::unique_ptr<T[]>& memoria, std::size_t& capienza, std::size_t serve) {
  if (serve <= capienza) return;
  memoria = std::make_unique_for_overwrite<T[]>(serve);
  capienza = serve;
}

// Found when the module is loaded.
const std::span<const Nuclei* const> kDisponibili = Disponibili();

}  // namespace

const Nuclei kNucleiSemplici{"semplici", EliminaSemplice, InvertiSemplice};

std::span<const Nuclei* const> NucleiDisponibili() { return kDisponibili; }

const Nuclei& NucleiScelti() { return *kDisponibili.back(); }

SpazioNuclei LavoroNuclei::Per(int larghezza, int ordine) {
  if (ordine > kOrdineSemplice) {
    const auto profondita = static_cast<std::size_t>(std::min(ordine, kProfondita));
    const auto larghezzaPannello =
        static_cast<std::size_t>(std::min(ordine + kMattonellaMassima, kLarghezzaPannello));
    Assicura(Sinistro, CapienzaSinistro, profondita * kAltezzaPannello);
    Assicura(Destro, CapienzaDestro, profondita * larghezzaPannello);
  }
  Assicura(Colonne, CapienzaColonne, DoppiInversa(larghezza, ordine - larghezza));
  Assicura(Righe, CapienzaRighe, RigheInversa(larghezza));
  return {Sinistro.get(), Destro.get(), Colonne.get(), Righe.get()};
}

}  // namespace kzt5cmrg
