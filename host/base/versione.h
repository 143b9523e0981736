#pragma once

// Name and version of the program; the version is the project's, which the build passes in.

#include <string_view>

namespace compensa {

inline constexpr std::string_view kNomeProgramma = "compensa";
inline constexpr std::string_view kVersioneProgramma = COMPENSA_VERSIONE;

}  // namespace compensa
