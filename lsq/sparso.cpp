// Multifrontal Cholesky factorisation and selected inverse. Every front is a small dense matrix
// over its own unknowns J and the later ones R it touches; the equations that begin with J and the
// remainders of its children are added into it, then
//   [U_J U_JR]  with  U_J^t U_J = F_JJ,  U_J^t U_JR = F_JR       rows of the factor, kept
//   F_RR - U_JR^t U_JR                                           remainder, for the parent
// Back from the root, Q_RR is found in the parent's inverse over J_p and R_p, which hold all of R:
//   Q_JR = -T Q_RR,  Q_JJ = (U_J^t U_J)^-1 - Q_JR T^t,  T = U_J^-1 U_JR.
// Children come before parents, so that what waits for another front waits on a stack.
// (Duff and Reid, The multifrontal solution of indefinite sparse symmetric linear equations, ACM
// TOMS 9, 1983; Erisman and Tinney, On computing certain elements of the inverse of a sparse
// matrix, CACM 18, 1975.)

#include "lsq/sparso.h"

#include <algorithm>

namespace kzt5cmrg {

namespace {

constexpr std::size_t U(int i) { return static_cast<std::size_t>(i); }

constexpr std::size_t Triangolo(int ordine) { return U(ordine) * (U(ordine) + 1) / 2; }

}  // namespace

double* const* SistemaSparso::PreparaFronte(std::size_t s) {
  const int ordine = Ordine(s);
  for (int i = 0; i < ordine; ++i) RigheMatrice[U(i)] = Matrice.data() + U(i) * U(ordine);
  return RigheMatrice.data();
}

// Leaves in Locale where the nodes of a front stand within it.
void SistemaSparso::Colloca(std::size_t s) {
  const Fronte& f = Fronti[s];
  for (int t = 0; t < f.Larghezza; ++t) Locale[U(f.Inizio + t)] = t;
  for (std::size_t t = 0; t < f.Resto.size(); ++t)
    Locale[U(f.Resto[t])] = f.Larghezza + static_cast<int>(t);
}

// Where the unknowns of the rest of a front stand in the front that Locale describes.
const int* SistemaSparso::PostiDelResto(std::size_t s) {
  std::size_t k = 0;
  for (const int posto : Fronti[s].Resto)
    for (int p = 0; p < Passo; ++p) Dove[k++] = Locale[U(posto)] * Passo + p;
  return Dove.data();
}

void SistemaSparso::Assembla(std::size_t s, const double* const* coeff, const int* const* indici,
                             const double* peso) {
  double* const* righe = RigheMatrice.data();
  for (int v = InizioRighe[s]; v < InizioRighe[s + 1]; ++v) {
    const auto r = U(RigheDaFronte[U(v)]);
    int dove[kSlot];
    for (int k = 0; k < kSlot; ++k) {
      const int c = indici[r][k];
      dove[k] = c < 0 ? c : Locale[U(Posizione[U(c / Passo)])] * Passo + c % Passo;
    }
    for (int k = 0; k < kSlot; ++k) {
      if (dove[k] < 0) continue;
      const double ap = coeff[r][k] * peso[r];
      for (int l = 0; l < kSlot; ++l)
        if (dove[l] >= dove[k]) righe[dove[k]][dove[l]] += ap * coeff[r][l];
    }
  }
}

// Adds the remainders of the children, which lie on top of the stack, the last child's uppermost.
void SistemaSparso::AggiungiFigli(std::size_t s) {
  for (int figlio = UltimoFiglio[s]; figlio != kNessunFronte; figlio = FratelloPrima[U(figlio)]) {
    const int r = Ordine(U(figlio)) - Larghezza(U(figlio));
    const int* dove = PostiDelResto(U(figlio));
    const double* da = Pila.Sommo();
    for (int a = 0; a < r; ++a) {
      double* riga = RigheMatrice[U(dove[a])];
      for (int b = a; b < r; ++b) riga[dove[b]] += *da++;
    }
    Pila.Togli();
  }
}

bool SistemaSparso::Fattorizza(const double* const* coeff, const int* const* indici,
                               const double* peso) {
  Pila.Svuota();
  for (std::size_t s = 0; s < Fronti.size(); ++s) {
    const int ordine = Ordine(s);
    const int w = Larghezza(s);
    double* const* righe = PreparaFronte(s);
    for (int i = 0; i < ordine; ++i) std::fill(righe[i] + i, righe[i] + ordine, 0.0);
    Colloca(s);
    Assembla(s, coeff, indici, peso);
    AggiungiFigli(s);
    if (NucleiScelti().Elimina(righe, w, ordine, Lavoro.Per(w, ordine)) != kEliminato) return false;
    std::copy_n(Matrice.data(), U(w) * U(ordine), Valori.data() + Inizio[s]);
    if (w == ordine) continue;
    double* resto = Pila.Impila(Triangolo(ordine - w));
    for (int i = w; i < ordine; ++i) resto = std::copy(righe[i] + i, righe[i] + ordine, resto);
  }
  return true;
}

// Q_RR of a front, from its parent's inverse on top of the stack.
void SistemaSparso::RaccogliInversa(std::size_t s, std::size_t padre) {
  Colloca(padre);
  const int w = Larghezza(s);
  const int r = Ordine(s) - w;
  const int ordine = Ordine(padre);
  const int* dove = PostiDelResto(s);
  const double* q = Pila.Sommo();
  for (int a = 0; a < r; ++a) {
    // Row i of a packed upper triangle begins, with its diagonal, at i (2 n - i + 1) / 2.
    const std::size_t i = U(dove[a]);
    const double* riga = q + i * (2 * U(ordine) - i + 1) / 2 - i;
    for (int b = a; b < r; ++b) RigheMatrice[U(w + a)][w + b] = riga[dove[b]];
  }
}

void SistemaSparso::Inverti() {
  Pila.Svuota();
  std::vector<std::size_t> inPila;  // fronts whose inverse is on the stack
  for (std::size_t s = Fronti.size(); s-- > 0;) {
    const int ordine = Ordine(s);
    const int w = Larghezza(s);
    double* const* righe = PreparaFronte(s);
    std::copy_n(Valori.data() + Inizio[s], U(w) * U(ordine), Matrice.data());
    if (w == ordine) {  // a root: nothing of the parts of the network before it is needed
      Pila.Svuota();
      inPila.clear();
    } else {
      for (const auto padre = U(Fronti[s].Padre); inPila.back() != padre; inPila.pop_back())
        Pila.Togli();
      RaccogliInversa(s, inPila.back());
    }
    NucleiScelti().Inverti(righe, w, ordine, Lavoro.Per(w, ordine));
    std::copy_n(Matrice.data(), U(w) * U(ordine), Valori.data() + Inizio[s]);
    if (UltimoFiglio[s] == kNessunFronte) continue;
    inPila.push_back(s);
    double* q = Pila.Impila(Triangolo(ordine));
    for (int i = 0; i < ordine; ++i) q = std::copy(righe[i] + i, righe[i] + ordine, q);
  }
}

// --- solution

void SistemaSparso::Raccogli(std::size_t s, const double* b) {
  const Fronte& f = Fronti[s];
  double* y = Vettore.data();
  const auto prendi = [&](int posto) {
    for (int p = 0; p < Passo; ++p) *y++ = b[NodoDaPosto[U(posto)] * Passo + p];
  };
  for (int t = 0; t < f.Larghezza; ++t) prendi(f.Inizio + t);
  for (const int posto : f.Resto) prendi(posto);
}

void SistemaSparso::Riponi(std::size_t s, double* b, bool ancheResto) const {
  const Fronte& f = Fronti[s];
  const double* y = Vettore.data();
  const auto metti = [&](int posto) {
    for (int p = 0; p < Passo; ++p) b[NodoDaPosto[U(posto)] * Passo + p] = *y++;
  };
  for (int t = 0; t < f.Larghezza; ++t) metti(f.Inizio + t);
  if (ancheResto)
    for (const int posto : f.Resto) metti(posto);
}

void SistemaSparso::Risolvi(double* b) {
  double* y = Vettore.data();
  for (std::size_t s = 0; s < Fronti.size(); ++s) {
    const int ordine = Ordine(s);
    const double* u = Valori.data() + Inizio[s];
    Raccogli(s, b);
    for (int i = 0; i < Larghezza(s); ++i, u += ordine) {
      y[i] /= u[i];
      for (int j = i + 1; j < ordine; ++j) y[j] -= u[j] * y[i];
    }
    Riponi(s, b, true);
  }
  // Backwards the unknowns of the rest come solved, as -x.
  for (std::size_t s = Fronti.size(); s-- > 0;) {
    const int ordine = Ordine(s);
    Raccogli(s, b);
    for (int i = Larghezza(s) - 1; i >= 0; --i) {
      const double* u = Valori.data() + Inizio[s] + U(i) * U(ordine);
      double somma = y[i];
      for (int k = ordine - 1; k > i; --k) somma += u[k] * y[k];
      y[i] = -somma / u[i];
    }
    Riponi(s, b, false);
  }
}

// --- elements

// Where the elements of two nodes begin, the one eliminated first as rows; `passoRiga` gets the
// step from one of its rows to the next.
const double* SistemaSparso::Blocco(int primo, int secondo, std::size_t& passoRiga) const {
  const auto s = U(FronteDaPosto[U(primo)]);
  const Fronte& f = Fronti[s];
  int colonna = secondo - f.Inizio;
  if (colonna >= f.Larghezza)
    colonna = f.Larghezza +
              static_cast<int>(std::ranges::lower_bound(f.Resto, secondo) - f.Resto.begin());
  passoRiga = U(Ordine(s));
  return Valori.data() + Inizio[s] + U((primo - f.Inizio) * Passo) * passoRiga + U(colonna * Passo);
}

double SistemaSparso::Elemento(int i, int j) const {
  int pi = Posizione[U(i / Passo)];
  int pj = Posizione[U(j / Passo)];
  if (pi > pj || (pi == pj && i > j)) {
    std::swap(pi, pj);
    std::swap(i, j);
  }
  std::size_t passoRiga = 0;
  const double* blocco = Blocco(pi, pj, passoRiga);
  return blocco[U(i % Passo) * passoRiga + U(j % Passo)];
}

void SistemaSparso::Sottomatrice(const int* indici, double (*q)[kSlot]) const {
  for (int r = 0; r < kSlot; r += Passo) {
    if (indici[r] < 0) continue;
    const int pr = Posizione[U(indici[r] / Passo)];
    for (int s = r; s < kSlot; s += Passo) {
      if (indici[s] < 0) continue;
      const int ps = Posizione[U(indici[s] / Passo)];
      std::size_t passoRiga = 0;
      const double* blocco = Blocco(std::min(pr, ps), std::max(pr, ps), passoRiga);
      for (int a = 0; a < Passo; ++a)
        for (int b = 0; b < Passo; ++b) {
          const bool comeSta = pr < ps || (pr == ps && a <= b);
          q[r + a][s + b] = q[s + b][r + a] =
              comeSta ? blocco[U(a) * passoRiga + U(b)] : blocco[U(b) * passoRiga + U(a)];
        }
    }
  }
}

}  // namespace kzt5cmrg
