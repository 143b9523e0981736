#pragma once

// The dense kernels: one front of a Cholesky factorisation, and its inverse. A front is a symmetric
// matrix of order `ordine`, held in the upper triangle of its rows, of which the first `larghezza`
// unknowns are eliminated; with larghezza = ordine it is a whole matrix. The strict lower triangle
// is neither read nor written.

#include <cstddef>
#include <memory>
#include <span>

namespace kzt5cmrg {

inline constexpr double kPivotMinimo = 1e-15;  // absolute: the diagonal's own scale does not enter
inline constexpr int kEliminato = -1;          // every pivot was positive

// Panels in which the products are taken: depth of a sum, rows of the left factor, columns of the
// right one. The same for every instruction set, so that sums are always cut at the same places.
inline constexpr int kProfondita = 256;
inline constexpr int kAltezzaPannello = 96;
inline constexpr int kLarghezzaPannello = 1536;
inline constexpr int kMattonellaMassima = 24;  // columns that a tile of any set may be padded to
inline constexpr int kOrdineSemplice = 24;     // up to here the plain loops serve

// Rows of the first of the two parts in which a matrix is split, in whole cache lines. Internal
// linkage: no instruction set may lend its copy to another.
static constexpr int Meta(int ordine) { return (ordine / 2 + 7) / 8 * 8; }

// Work memory as the kernels take it.
struct SpazioNuclei {
  double* Sinistro;  // packed panels of the two factors of a product
  double* Destro;
  double* Colonne;  // columns solved by the factor, of the inverse
  double** Righe;   // their rows
};

// Work memory that grows to what the largest front needs and serves any number of fronts.
class LavoroNuclei {
 public:
  // Room for a front. Throws std::bad_alloc when the memory cannot be had.
  SpazioNuclei Per(int larghezza, int ordine);

 private:
  std::unique_ptr<double[]> Sinistro, Destro, Colonne;
  std::unique_ptr<double*[]> Righe;
  std::size_t CapienzaSinistro = 0, CapienzaDestro = 0, CapienzaColonne = 0, CapienzaRighe = 0;
};

// One implementation of the kernels.
struct Nuclei {
  const char* Nome;
  // Eliminates the front: U in the first `larghezza` rows, F_RR - U_JR^t U_JR in the rest. Returns
  // kEliminato, or the first row whose pivot is not greater than kPivotMinimo (also catches NaN):
  // the rows before it stay factored, its diagonal holds the reduced pivot, the rest is undefined.
  int (*Elimina)(double* const* righe, int larghezza, int ordine, const SpazioNuclei& spazio);
  // From U in the first `larghezza` rows and Q_RR in the rest, leaves Q in the first rows.
  void (*Inverti)(double* const* righe, int larghezza, int ordine, const SpazioNuclei& spazio);
};

// The plain loops, which state the algebra and are the measure of all others.
extern const Nuclei kNucleiSemplici;

// The fastest that this machine runs, chosen when the module is loaded.
const Nuclei& NucleiScelti();

// All that this machine runs, the plain loops first.
std::span<const Nuclei* const> NucleiDisponibili();

}  // namespace kzt5cmrg
