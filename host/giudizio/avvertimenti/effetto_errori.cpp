// Qvv P d by conjugate gradients on the normal equations (Bjorck, Numerical Methods for Least
// Squares Problems, 1996, 7.4): of all d - A x the shortest is sought, A the equations in units of
// their standard deviations. The points' own 2 x 2 blocks of A^T A precondition. The squared length
// falls at every step, so that one who stops early finds too much left, never too little.

#include "host/giudizio/avvertimenti/effetto_errori.h"

#include <cmath>
#include <numeric>
#include <utility>

namespace compensa {

namespace {

constexpr double kTrascurabile = 1e-8;  // part of the squared length that a step may still take
constexpr int kPassiFermi = 5;          // so many such steps in a row end the search
constexpr int kPassiMassimi = 600;
constexpr double kLavoroMassimo = 2e8;  // rows times steps, of all searches: some seconds
constexpr std::size_t kDue = 2;         // unknowns of a node
constexpr std::size_t kTre = 3;         // numbers of a symmetric block

std::size_t U(int i) { return static_cast<std::size_t>(i); }

double Quadrato(const std::vector<double>& v) {
  return std::inner_product(v.begin(), v.end(), v.begin(), 0.0);
}

}  // namespace

Proiezione::Proiezione(const Rete& rete, const Risultati& risultati)
    : S(EquazioniPlanimetria(rete, risultati, Coordinate::Finali)),
      Riga(risultati.Equazioni.size(), kNessuno) {
  for (std::size_t r = 0; r < S.Righe.size(); ++r) {
    const RigaLibera& riga = S.Righe[r];
    const RisultatoOsservazione& o =
        risultati.Stazioni[U(riga.Stazione)].Osservazioni[U(riga.Osservazione)];
    const int equazione = riga.Tipo == TipoEquazione::Angolo ? o.Angolo : o.EqDistanza;
    if (equazione != kNessuno) Riga[U(equazione)] = static_cast<int>(r);
  }
  Prepara();
}

// A node that nothing holds keeps a block of zeros and does not move.
void Proiezione::Prepara() {
  Blocchi.assign(kTre * U(S.Nodi()), 0.0);
  for (const RigaLibera& riga : S.Righe)
    for (std::size_t k = 0; k < RigaLibera::kNodi; ++k) {
      if (riga.Nodi[k] == kNessuno) continue;
      double* b = &Blocchi[kTre * U(riga.Nodi[k])];
      b[0] += riga.Coeff[k][0] * riga.Coeff[k][0];
      b[1] += riga.Coeff[k][0] * riga.Coeff[k][1];
      b[2] += riga.Coeff[k][1] * riga.Coeff[k][1];
    }
  for (std::size_t b = 0; b < Blocchi.size(); b += kTre) {
    const double a = Blocchi[b], c = Blocchi[b + 2], mista = Blocchi[b + 1];
    const double determinante = a * c - mista * mista;
    if (determinante > kTrascurabile * a * c) {
      Blocchi[b] = c / determinante;
      Blocchi[b + 1] = -mista / determinante;
      Blocchi[b + 2] = a / determinante;
    } else {
      const double traccia = a + c;
      Blocchi[b] = Blocchi[b + 2] = traccia > 0.0 ? 1.0 / traccia : 0.0;
      Blocchi[b + 1] = 0.0;
    }
  }
}

Proiezione::Vettore Proiezione::Applica(const Vettore& x) const {
  Vettore y(S.Righe.size(), 0.0);
  for (std::size_t r = 0; r < y.size(); ++r)
    for (std::size_t k = 0; k < RigaLibera::kNodi; ++k) {
      if (S.Righe[r].Nodi[k] == kNessuno) continue;
      const double* suo = &x[kDue * U(S.Righe[r].Nodi[k])];
      y[r] += S.Righe[r].Coeff[k][0] * suo[0] + S.Righe[r].Coeff[k][1] * suo[1];
    }
  return y;
}

Proiezione::Vettore Proiezione::Trasposta(const Vettore& r) const {
  Vettore x(kDue * U(S.Nodi()), 0.0);
  for (std::size_t i = 0; i < r.size(); ++i)
    for (std::size_t k = 0; k < RigaLibera::kNodi; ++k) {
      if (S.Righe[i].Nodi[k] == kNessuno) continue;
      double* suo = &x[kDue * U(S.Righe[i].Nodi[k])];
      suo[0] += S.Righe[i].Coeff[k][0] * r[i];
      suo[1] += S.Righe[i].Coeff[k][1] * r[i];
    }
  return x;
}

void Proiezione::Precondiziona(Vettore& s) const {
  for (std::size_t n = 0; kTre * n < Blocchi.size(); ++n) {
    const double* b = &Blocchi[kTre * n];
    const double primo = s[kDue * n], secondo = s[kDue * n + 1];
    s[kDue * n] = b[0] * primo + b[1] * secondo;
    s[kDue * n + 1] = b[1] * primo + b[2] * secondo;
  }
}

// Takes from r what the unknowns can take. False when the work is used up before.
bool Proiezione::Minimizza(Vettore& r) {
  Vettore p;
  double gamma = 0.0;
  int fermi = 0;
  for (int passo = 0; passo < kPassiMassimi && fermi < kPassiFermi; ++passo) {
    Lavoro += static_cast<double>(r.size());
    if (Lavoro > kLavoroMassimo) return false;
    const Vettore s = Trasposta(r);
    Vettore z = s;
    Precondiziona(z);
    const double nuova = std::inner_product(s.begin(), s.end(), z.begin(), 0.0);
    if (!(nuova > 0.0)) break;
    if (!p.empty())
      for (std::size_t i = 0; i < z.size(); ++i) z[i] += nuova / gamma * p[i];
    p = std::move(z);
    gamma = nuova;
    const Vettore q = Applica(p);
    const double qq = Quadrato(q);
    if (!(qq > 0.0)) break;
    for (std::size_t i = 0; i < r.size(); ++i) r[i] -= gamma / qq * q[i];
    fermi = gamma * gamma / qq < kTrascurabile * Quadrato(r) ? fermi + 1 : 0;
  }
  return true;
}

std::vector<double> Proiezione::Residui(const std::vector<double>& errori) {
  Vettore r(S.Righe.size(), 0.0);
  for (std::size_t e = 0; e < errori.size(); ++e)
    if (Riga[e] != kNessuno) r[U(Riga[e])] = errori[e];
  if (!Minimizza(r)) return {};
  Vettore residui(errori.size(), 0.0);
  for (std::size_t e = 0; e < errori.size(); ++e)
    if (Riga[e] != kNessuno) residui[e] = r[U(Riga[e])];
  return residui;
}

}  // namespace compensa
