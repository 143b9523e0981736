#pragma once

// Which of many distances of one kind were read as the other.

#include <functional>
#include <vector>

#include "host/rete/grandezze.h"
#include "host/rete/risultati.h"

namespace compensa {

inline constexpr double kSignificativo = 16.0;  // four sigmas
inline constexpr double kConcorda = 0.2;  // of k from 1, where its standard deviation is large

// A distance that would be another one if it were of the other kind.
struct DistanzaSospetta {
  const Equazione* Eq;
  const RisultatoOsservazione* Oss;
  double D;  // d above [m]
  double InSqm() const { return D / Eq->SqmPriori; }
  double Spiegato() const { return Eq->Residuo / Eq->SqmPriori * InSqm(); }  // its share of t
  double Effetto() const { return Eq->Ridondanza * InSqm() * InSqm(); }      // its own S
};
using GruppoDistanze = std::vector<DistanzaSospetta>;

// In standard deviations; 0 of what is not in plan.
inline double ResiduoInSqm(const Equazione& e) {
  return e.Tipo != TipoEquazione::Dislivello && Presente(e.SqmPriori) ? e.Residuo / e.SqmPriori
                                                                      : 0.0;
}

// What the errors d of a group of distances leave in the residuals of every equation, in standard
// deviations; empty where that is too much work.
using ResiduiDi = std::function<std::vector<double>(const GruppoDistanze& gruppo)>;

// Of the distances of one kind those that are wrong; none where the search is too much work.
GruppoDistanze ScegliSbagliate(const Risultati& risultati, const GruppoDistanze& tutte,
                               const ResiduiDi& residui);

}  // namespace compensa
