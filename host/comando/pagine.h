#pragma once

// What the table of the commands is turned into besides a parser.

#include <span>
#include <string>
#include <string_view>

#include "host/comando/riga_comando.h"

namespace compensa {

std::string TestoAiuto(const Comando& comando, std::span<const Comando> tutti);  // UTF-8
std::string ManualeProgramma(std::span<const Comando> comandi);                  // compensa(1)
std::string ManualeFile();  // compensa(5), from the table of the fields
// A script for bash that defines the completion of compensa.
std::string CompletamentoBash(std::span<const Comando> comandi);

// A text for roff: what it would take for a command becomes a character, what is not ASCII an
// escape, newlines are kept.
std::string TestoRoff(std::string_view utf8);

// The first line of a page and its section NOME.
std::string TestataRoff(int sezione, std::string_view sommario);

}  // namespace compensa
