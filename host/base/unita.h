#pragma once

// Factors between the units of the files and those of the computation.

#include <numbers>

namespace compensa {

inline constexpr double kRadDaGon = std::numbers::pi / 200.0;
inline constexpr double kMetriPerChilometro = 1000.0;

}  // namespace compensa
