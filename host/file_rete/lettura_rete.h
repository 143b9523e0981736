#pragma once

// A network from its file.

#include <filesystem>
#include <optional>

#include "host/base/diagnostica.h"
#include "host/rete/modello.h"

namespace compensa {

// Reads a network file in TOML and the CSV tables that it names. Every fault of the files becomes an
// error of diagnostica; the network is returned only if there is none. With impronte it carries the
// fingerprints of the bytes that it was made from. Throws std::bad_alloc.
std::optional<Rete> LeggiRete(const std::filesystem::path& percorso, Diagnostica& diagnostica,
                              bool impronte = false);

}  // namespace compensa
