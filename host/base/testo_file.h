#pragma once

// Whole text files.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "host/base/diagnostica.h"

namespace compensa {

// The file as UTF-8, without byte order mark and without the Ctrl-Z that old programs leave at the
// end. Nothing and a message at dove, on the field campo, if it cannot be read, is neither a
// file nor an open descriptor (/dev/stdin), is in UTF-16 or has more than massimo bytes. impronta, if given, gets the SHA-256 of the whole file.
std::optional<std::string> LeggiTesto(const std::filesystem::path& percorso, std::uintmax_t massimo,
                                      const Posizione& dove, const std::string& campo,
                                      Diagnostica& diagnostica, std::string* impronta = nullptr);

}  // namespace compensa
