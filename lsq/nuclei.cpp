// The dense kernels, blocked and vectorised. The matrix is split in two and worked by recursion
// until the plain loops serve; what is left is one operation, C -= A^t B, in panels that fit the
// caches.
//   factor    N = U^t U:  U_11 from N_11, U_12 = U_11^-t N_12, N_22 -= U_12^t U_12, U_22 from N_22
//   inverse   T = U_11^-1 U_12,  Q_12 = -T Q_22,  Q_11 = (U_11^t U_11)^-1 - Q_12 T^t
// Vectors run across columns, never along a sum: every element takes its terms in the same order
// whatever the width of a register, and paths that round alike give the same bits.
//
// This file is compiled once for every instruction set; KZT5CMRG_NUCLEI names the result. Nothing
// here has external linkage but that. (Gustavson, Recursion leads to automatic variable blocking
// for dense linear-algebra algorithms, IBM J. Res. Dev. 41, 1997; Goto and van de Geijn, Anatomy of
// high-performance matrix multiplication, ACM TOMS 34, 2008.)

#include "lsq/nuclei.h"

#include "lsq/pacco.h"

namespace kzt5cmrg {

namespace {

static_assert(kColonneMattonella <= kMattonellaMassima);
static_assert(kAltezzaPannello % kRigheMattonella == 0);
static_assert(kLarghezzaPannello % kColonneMattonella == 0);

constexpr int kStriscia = 256;  // columns that a triangular solution holds in the nearest cache

inline int Min(int a, int b) { return a < b ? a : b; }
inline int Max(int a, int b) { return a > b ? a : b; }

// --- product

// How the element (k, x) of a factor is found in the rows `r`, from row and column on.
enum class Lettura {
  Diritta,     // r[k][x]
  Trasposta,   // r[x][k]
  Simmetrica,  // r[k][x] of a symmetric matrix whose upper triangle is held
};
struct Fattore {
  double* const* Righe;
  int K, X;  // where element (0, 0) stands: its k and its x
  Lettura Modo;

  bool DirittaIn(int k, int x) const {
    return Modo == Lettura::Diritta || (Modo == Lettura::Simmetrica && K + k <= X + x);
  }
  const double* Posto(int k, int x) const {
    return DirittaIn(k, x) ? Righe[K + k] + X + x : Righe[X + x] + K + k;
  }
};

// Copies a panel, nk deep and nx wide, into strips of W columns, each with its k-th elements
// together; the last strip is filled with zeros.
template <int W>
void Impacca(const Fattore& f, int k0, int nk, int x0, int nx, double* panno) {
  for (int x = x0; x < x0 + nx; x += W) {
    const int w = Min(W, x0 + nx - x);
    for (int k = k0; k < k0 + nk; ++k, panno += W) {
      const double* riga = f.Posto(k, x);
      if (w == W && f.DirittaIn(k, x)) {
        for (int i = 0; i < W; ++i) panno[i] = riga[i];
        continue;
      }
      for (int i = 0; i < w; ++i) panno[i] = *f.Posto(k, x + i);
      for (int i = w; i < W; ++i) panno[i] = 0.0;
    }
  }
}

// c -= sum over k of a_k b_k^t, for one tile that stays in registers.
inline void Mattonella(int nk, const double* a, const double* b, double* const* c, int colonna) {
  Pacco s[kRigheMattonella][kPacchiMattonella];
#pragma GCC unroll 8
  for (auto& riga : s)
#pragma GCC unroll 3
    for (auto& somma : riga) somma = Ripeti(0.0);
  for (int k = 0; k < nk; ++k, a += kRigheMattonella, b += kColonneMattonella) {
    Pacco x[kPacchiMattonella];
#pragma GCC unroll 3
    for (int v = 0; v < kPacchiMattonella; ++v) x[v] = Carica(b + v * kLarghezzaPacco);
#pragma GCC unroll 8
    for (int i = 0; i < kRigheMattonella; ++i) {
      const Pacco y = Ripeti(a[i]);
#pragma GCC unroll 3
      for (int v = 0; v < kPacchiMattonella; ++v) s[i][v] = SommaProdotto(s[i][v], y, x[v]);
    }
  }
#pragma GCC unroll 8
  for (int i = 0; i < kRigheMattonella; ++i)
#pragma GCC unroll 3
    for (int v = 0; v < kPacchiMattonella; ++v) {
      double* p = c[i] + colonna + v * kLarghezzaPacco;
      Salva(p, Carica(p) - s[i][v]);
    }
}

// A tile at the edge: only the elements that exist, and from `primo` on in its first row, one later
// in each further row.
void MattonellaParziale(int nk, const double* a, const double* b, double* const* c, int colonna,
                        int righe, int colonne, int primo) {
  double t[kRigheMattonella][kColonneMattonella] = {};
  double* rt[kRigheMattonella];
  for (int i = 0; i < kRigheMattonella; ++i) rt[i] = t[i];
  Mattonella(nk, a, b, rt, 0);
  for (int i = 0; i < righe; ++i)
    for (int j = Max(primo + i, 0); j < colonne; ++j) c[i][colonna + j] += t[i][j];
}

enum class Parte { Tutta, Superiore };

// C -= A^t B, C of m rows `c` and n columns from `colonna` on, the sums nk long; of the upper part
// only the elements on and above the diagonal of C.
void SottraiProdotto(double* const* c, int colonna, int m, int n, int nk, const Fattore& A,
                     const Fattore& B, Parte parte, const SpazioNuclei& spazio) {
  const int sotto = parte == Parte::Superiore ? 1 : 0;
  double* const sinistro = spazio.Sinistro;
  double* const destro = spazio.Destro;
  for (int k0 = 0; k0 < nk; k0 += kProfondita) {
    const int kc = Min(kProfondita, nk - k0);
    for (int j0 = 0; j0 < n; j0 += kLarghezzaPannello) {
      const int nc = Min(kLarghezzaPannello, n - j0);
      Impacca<kColonneMattonella>(B, k0, kc, j0, nc, destro);
      const int ultima = sotto ? Min(m, j0 + nc) : m;
      for (int i0 = 0; i0 < ultima; i0 += kAltezzaPannello) {
        const int mc = Min(kAltezzaPannello, ultima - i0);
        Impacca<kRigheMattonella>(A, k0, kc, i0, mc, sinistro);
        for (int j = 0; j < nc; j += kColonneMattonella) {
          const int colonne = Min(kColonneMattonella, nc - j);
          for (int i = 0; i < mc; i += kRigheMattonella) {
            const int righe = Min(kRigheMattonella, mc - i);
            const int primo = sotto * ((i0 + i) - (j0 + j));  // first column of the tile to write
            if (primo >= colonne) break;
            const double* a = sinistro + static_cast<std::ptrdiff_t>(i) * kc;
            const double* b = destro + static_cast<std::ptrdiff_t>(j) * kc;
            const bool intera = righe == kRigheMattonella && colonne == kColonneMattonella &&
                                (!sotto || primo + righe <= 1);
            if (intera)
              Mattonella(kc, a, b, c + i0 + i, colonna + j0 + j);
            else
              MattonellaParziale(kc, a, b, c + i0 + i, colonna + j0 + j, righe, colonne,
                                 sotto ? primo : -kRigheMattonella);
          }
        }
      }
    }
  }
}

// --- plain loops on a small block

// y -= a x
inline void SottraiRiga(int n, double a, const double* x, double* y) {
  const Pacco p = Ripeti(a);
  int j = 0;
  for (; j + kLarghezzaPacco <= n; j += kLarghezzaPacco)
    Salva(y + j, SottraiProdotto(Carica(y + j), p, Carica(x + j)));
  for (; j < n; ++j) y[j] = SottraiProdotto(y[j], a, x[j]);
}

inline void DividiRiga(int n, double d, double* y) {
  for (int j = 0; j < n; ++j) y[j] /= d;
}

// Factors the square block of n rows at o; returns how many rows it could factor.
int FattorizzaBlocco(double* const* a, int o, int n) {
  for (int i = o; i < o + n; ++i) {
    for (int k = o; k < i; ++k) a[i][i] = SottraiProdotto(a[i][i], a[k][i], a[k][i]);
    if (!(a[i][i] > kPivotMinimo)) return i - o;
    a[i][i] = __builtin_sqrt(a[i][i]);
    const int resto = o + n - i - 1;
    for (int k = o; k < i; ++k) SottraiRiga(resto, a[k][i], a[k] + i + 1, a[i] + i + 1);
    DividiRiga(resto, a[i][i], a[i] + i + 1);
  }
  return n;
}

// B = U^-t B, by forward substitution; B in the same rows, columns from j0 to fine.
void SostituisciAvanti(double* const* a, int o, int n, int j0, int fine) {
  for (; j0 < fine; j0 += kStriscia) {
    const int w = Min(kStriscia, fine - j0);
    for (int i = o; i < o + n; ++i) {
      for (int k = o; k < i; ++k) SottraiRiga(w, a[k][i], a[k] + j0, a[i] + j0);
      DividiRiga(w, a[i][i], a[i] + j0);
    }
  }
}

// T = U^-1 T, by back substitution; U is the square block of n rows at o, T has m columns.
void SostituisciIndietro(double* const* a, int o, int n, double* const* t, int m) {
  for (int j0 = 0; j0 < m; j0 += kStriscia) {
    const int w = Min(kStriscia, m - j0);
    for (int i = n - 1; i >= 0; --i) {
      for (int k = n - 1; k > i; --k) SottraiRiga(w, a[o + i][o + k], t[k] + j0, t[i] + j0);
      DividiRiga(w, a[o + i][o + i], t[i] + j0);
    }
  }
}

// Inverse of U^t U for the square block of n rows at o, of which those from `larghezza` on are
// inverted already; rows from the last to the first:
//   q_ij = -(1 / u_ii) sum_k>i u_ik q_kj,   q_ii = (1 / u_ii) (1 / u_ii - sum_k>i u_ik q_ik)
void InvertiBlocco(double* const* a, int o, int larghezza, int n) {
  double t[kOrdineSemplice];
  for (int i = larghezza - 1; i >= 0; --i) {
    double* u = a[o + i] + o;
    for (int j = i + 1; j < n; ++j) t[j] = 0.0;
    for (int k = n - 1; k > i; --k) {
      const double* q = a[o + k] + o;
      double somma = u[k] * q[k];
      for (int j = k + 1; j < n; ++j) {
        t[j] = SommaProdotto(t[j], u[k], q[j]);
        somma = SommaProdotto(somma, u[j], q[j]);
      }
      t[k] += somma;
    }
    double s = 0.0;
    for (int k = n - 1; k > i; --k) {
      t[k] = -t[k] / u[i];
      s = SommaProdotto(s, u[k], t[k]);
    }
    for (int j = i + 1; j < n; ++j) u[j] = t[j];
    u[i] = (1.0 / u[i] - s) / u[i];
  }
}

// --- recursion

// Rows o to o + n of a front whose columns end at `fine`.
int EliminaRighe(double* const* a, int o, int n, int fine, const SpazioNuclei& spazio) {
  if (n <= kOrdineSemplice) {
    const int fatte = FattorizzaBlocco(a, o, n);
    SostituisciAvanti(a, o, fatte, o + n, fine);
    return fatte < n ? o + fatte : kEliminato;
  }
  const int h = Meta(n);
  const int riga = EliminaRighe(a, o, h, fine, spazio);
  if (riga != kEliminato) return riga;
  const Fattore U12{a, o, o + h, Lettura::Diritta};
  SottraiProdotto(a + o + h, o + h, n - h, fine - o - h, h, U12, U12, Parte::Superiore, spazio);
  return EliminaRighe(a, o + h, n - h, fine, spazio);
}

int Elimina(double* const* a, int larghezza, int ordine, const SpazioNuclei& spazio) {
  const int riga = EliminaRighe(a, 0, larghezza, ordine, spazio);
  if (riga != kEliminato || larghezza == ordine) return riga;
  if (ordine <= kOrdineSemplice) {
    for (int i = larghezza; i < ordine; ++i)
      for (int k = 0; k < larghezza; ++k) SottraiRiga(ordine - i, a[k][i], a[k] + i, a[i] + i);
    return kEliminato;
  }
  const int resto = ordine - larghezza;
  const Fattore UR{a, 0, larghezza, Lettura::Diritta};
  SottraiProdotto(a + larghezza, larghezza, resto, resto, larghezza, UR, UR, Parte::Superiore,
                  spazio);
  return kEliminato;
}

void RisolviIndietro(double* const* a, int o, int n, double* const* t, int m,
                     const SpazioNuclei& spazio) {
  if (n <= kOrdineSemplice) {
    SostituisciIndietro(a, o, n, t, m);
    return;
  }
  const int h = Meta(n);
  RisolviIndietro(a, o + h, n - h, t + h, m, spazio);
  SottraiProdotto(t, 0, h, m, n - h, {a, o + h, o, Lettura::Trasposta},
                  {t + h, 0, 0, Lettura::Diritta}, Parte::Tutta, spazio);
  RisolviIndietro(a, o, h, t, m, spazio);
}

void InvertiRighe(double* const* a, int o, int n, double* colonne, double** righe,
                  const SpazioNuclei& spazio);

// Q of the n rows at o, given Q of the m rows after them. `colonne` and `righe` hold T meanwhile.
void InvertiConResto(double* const* a, int o, int n, int m, double* colonne, double** righe,
                     const SpazioNuclei& spazio) {
  const int r = o + n;
  for (int i = 0; i < n; ++i) {
    righe[i] = colonne + static_cast<std::ptrdiff_t>(i) * m;
    for (int j = 0; j < m; ++j) {
      righe[i][j] = a[o + i][r + j];
      a[o + i][r + j] = 0.0;
    }
  }
  RisolviIndietro(a, o, n, righe, m, spazio);
  const Fattore T{righe, 0, 0, Lettura::Trasposta};
  SottraiProdotto(a + o, r, n, m, m, T, {a, r, r, Lettura::Simmetrica}, Parte::Tutta, spazio);
  InvertiRighe(a, o, n, colonne + static_cast<std::ptrdiff_t>(n) * m, righe + n, spazio);
  SottraiProdotto(a + o, o, n, n, m, {a, r, o, Lettura::Trasposta}, T, Parte::Superiore, spazio);
}

void InvertiRighe(double* const* a, int o, int n, double* colonne, double** righe,
                  const SpazioNuclei& spazio) {
  if (n <= kOrdineSemplice) {
    InvertiBlocco(a, o, n, n);
    return;
  }
  const int h = Meta(n);
  InvertiRighe(a, o + h, n - h, colonne, righe, spazio);
  InvertiConResto(a, o, h, n - h, colonne, righe, spazio);
}

void Inverti(double* const* a, int larghezza, int ordine, const SpazioNuclei& spazio) {
  if (ordine <= kOrdineSemplice)
    InvertiBlocco(a, 0, larghezza, ordine);
  else if (larghezza == ordine)
    InvertiRighe(a, 0, ordine, spazio.Colonne, spazio.Righe, spazio);
  else
    InvertiConResto(a, 0, larghezza, ordine - larghezza, spazio.Colonne, spazio.Righe, spazio);
}

}  // namespace

extern const Nuclei KZT5CMRG_NUCLEI;
const Nuclei KZT5CMRG_NUCLEI{KZT5CMRG_NOME_NUCLEI, Elimina, Inverti};

}  // namespace kzt5cmrg
