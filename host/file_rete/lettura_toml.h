#pragma once

// The network file itself, in TOML.

#include <filesystem>
#include <string_view>

#include "host/base/diagnostica.h"
#include "host/file_rete/costruttore.h"

namespace compensa {

// Reads a network file whose text, in UTF-8, is given; file is its name in the positions. CSV tables
// that it names are looked for in cartella.
void LeggiToml(std::string_view testo, std::string_view file, const std::filesystem::path& cartella,
               CostruttoreRete& rete, Diagnostica& diagnostica);

}  // namespace compensa
