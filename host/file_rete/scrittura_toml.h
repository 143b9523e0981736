#pragma once

// A network as a file in TOML that a surveyor can go on working with: comments, aligned columns,
// nothing that goes without saying.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/rete/modello.h"

namespace compensa {

// Comments of the file, UTF-8. Lines are broken where they are too long; control characters are
// taken out.
struct IntestazioneToml {
  std::vector<std::string> Righe;  // at the top, a paragraph each; empty = blank comment line
  std::string NotaSqmDirezione;    // beside the value, after its unit: where it comes from
  std::string NotaSqmDistanza;
  std::string NotaSqmProporzionale;
};

// Writes the network in pieces. Read back it gives the same points, set-ups, observations and
// options bit by bit, provided that it has points and set-ups and could be read at all. Roles are
// those that the file gave, not those to which a job lowered them. Coordinates in metres.
void ScriviRete(const Rete& rete, const IntestazioneToml& intestazione,
                const std::function<void(std::string_view)>& scrivi);

// A text as a basic string of TOML, with its quotes. The text is UTF-8.
std::string TestoToml(std::string_view testo);

// The shortest decimal text that gives the value back, with at least that many decimals; beyond the
// sizes of a survey with an exponent.
std::string NumeroToml(double valore, int decimali);

}  // namespace compensa
