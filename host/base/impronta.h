#pragma once

// Fingerprints of files: which network a result belongs to.

#include <string>
#include <string_view>

namespace compensa {

// SHA-256 of a text, 64 hexadecimal digits (NIST FIPS 180-4).
std::string Impronta(std::string_view byte);

}  // namespace compensa
