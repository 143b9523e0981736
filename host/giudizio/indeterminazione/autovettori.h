#pragma once

// Eigenvectors of small symmetric matrices.

#include <vector>

namespace compensa {

using Vettore = std::vector<double>;

// The eigenvectors of a symmetric matrix of a few rows, given by its rows, as unit vectors in the
// order of growing eigenvalues. Small eigenvalues keep their relative accuracy where the matrix is
// graded.
std::vector<Vettore> Autovettori(std::vector<Vettore> matrice);

double Prodotto(const Vettore& a, const Vettore& b);
// Adds k b to a.
void Somma(Vettore& a, double k, const Vettore& b);

}  // namespace compensa
