#pragma once

// A network from its file.

#include <filesystem>
#include <optional>
#include <string_view>

#include "host/base/diagnostica.h"
#include "host/rete/modello.h"

namespace compensa {

// Reads a network file in TOML and the CSV tables that it names. Every fault of the files becomes an
// error of diagnostica; the network is returned only if there is none. With impronte it carries the
// fingerprints of the bytes that it was made from. A text that altro gives a name to is something
// else and refused under that name; files called .toml are not asked about. Throws std::bad_alloc.
std::optional<Rete> LeggiRete(const std::filesystem::path& percorso, Diagnostica& diagnostica,
                              bool impronte = false,
                              std::string_view (*altro)(std::string_view testo) = nullptr);

}  // namespace compensa
