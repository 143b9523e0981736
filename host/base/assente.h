#pragma once

// What is not there, for all of the program: a number, an index. Only the records of the module say
// it their own way (kValoreMancante, asked by Assegnato); what a text may lack before it is a number
// is a std::optional.

#include <cmath>
#include <limits>

namespace compensa {

// A sum or product with it is kAssente too.
inline constexpr double kAssente = std::numeric_limits<double>::quiet_NaN();
inline bool Presente(double valore) { return !std::isnan(valore); }

inline constexpr int kNessuno = -1;  // index

}  // namespace compensa
