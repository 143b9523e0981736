#pragma once

// Paths as texts. The program keeps them in UTF-8 on every system.

#include <filesystem>
#include <string>
#include <string_view>

namespace compensa {

// The path that a text names. On systems without an encoding of their own the bytes stay as they
// are; elsewhere throws std::system_error if they are not UTF-8.
inline std::filesystem::path PercorsoDa(std::string_view testo) {
  return std::u8string(testo.begin(), testo.end());
}

}  // namespace compensa
