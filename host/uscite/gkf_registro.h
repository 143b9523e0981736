#pragma once

// The register that a .gkf file carries for this program.

#include <functional>
#include <string>
#include <string_view>

#include "host/base/gkf_formato.h"
#include "host/rete/risultati.h"

namespace compensa::gkf {

// Passes on the contents of the instructions, one a record, but for the last one.
void Registra(const Risultati& risultati,
              const std::function<void(const std::string&)>& istruzione);

// The content of the last one.
std::string Chiusura(const Impronta& impronta);

// A text as it stands in an attribute, control characters as references; which elements may not
// have.
std::string Protetto(std::string_view testo);

}  // namespace compensa::gkf
