#pragma once

// The manual pages, in roff.

#include <string>
#include <string_view>

namespace compensa {

std::string ManualeProgramma();  // compensa(1), from the table of the options
std::string ManualeFile();       // compensa(5), from the table of the fields

// A text for roff: what it would take for a command becomes a character, what is not ASCII an
// escape, newlines are kept.
std::string TestoRoff(std::string_view utf8);

// The first line of a page and its section NOME.
std::string TestataRoff(int sezione, std::string_view sommario);

}  // namespace compensa
