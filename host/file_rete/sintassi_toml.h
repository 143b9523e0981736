#pragma once

// What can be said of a TOML file that does not obey the grammar, in the surveyor's language.

#include <optional>
#include <string_view>

#include "host/base/diagnostica.h"

namespace compensa {

// The fault behind an error of the TOML parser: its description, in English, and the line of the file
// where it stopped.
Guasto GuastoSintassi(std::string_view descrizione, std::string_view riga);

// Line of a text, without its end; numero counts from 1.
std::string_view RigaDelTesto(std::string_view testo, int numero);

// What stops a reading before the parser sees the text.
struct Ostacolo {
  Posizione Dove;
  Guasto Cosa;
};

// The first of what the parser does not bear: characters outside ASCII anywhere but in quoted texts
// and comments (there it relies on tables that do not cover all of them), and keys of more dotted
// parts than any network file has (it nests a table for each, and frees them one inside the other),
// and brackets that close nothing. Quoted texts over several lines, which no field needs, are refused
// as well.
std::optional<Ostacolo> PrimaDelParser(std::string_view testo, std::string_view file);

}  // namespace compensa
