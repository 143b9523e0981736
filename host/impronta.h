#pragma once

// Fingerprints of files: which network a result belongs to.

#include <string>
#include <string_view>

// SHA-256 of a text, 64 hexadecimal digits (NIST FIPS 180-4).
std::string Impronta(std::string_view byte);

// The same of a file; empty if it is not a regular file or cannot be read.
std::string ImprontaFile(const std::string& percorso);
