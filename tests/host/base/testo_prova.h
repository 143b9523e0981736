#pragma once

// What a routine passes on in pieces, as one text.

#include <string>
#include <string_view>

namespace compensa {

std::string Testo(auto scrivi, const auto& che) {
  std::string testo;
  scrivi(che, [&](std::string_view pezzo) { testo += pezzo; });
  return testo;
}

}  // namespace compensa
