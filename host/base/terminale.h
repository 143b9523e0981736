#pragma once

// The terminal: messages for the surveyor, and whether they may be coloured.

#include <string>
#include <string_view>

#include "host/base/diagnostica.h"

namespace compensa {

enum class Colori { Auto, Mai, Sempre };

// The choice of the command line, for the whole program. Auto until it is made.
void ImpostaColori(Colori colori);

// Whether what goes to a descriptor is coloured. On Auto: a terminal that is not dumb, with
// NO_COLOR unset or empty.
bool ColoriSu(int descrittore);

// Whether the standard error can show a line that overwrites itself.
bool TerminaleConErrori();

// The text with the words of outcomes (success, failure) coloured; the same text if !attivi.
std::string ColoraEsiti(std::string_view testo, bool attivi);

// Appends to the standard error. Whatever cannot be told is lost: there is nowhere else to tell it.
void ScriviErrori(std::string_view testo);

// "compensa: errore: <testo>"
void ScriviErrore(std::string_view testo);

// "<file>: errore: <testo>", "<file>: avviso: <testo>" and "<file>: nota: <testo>"
void ScriviErrore(std::string_view file, std::string_view testo);
void ScriviAvviso(std::string_view file, std::string_view testo);
void ScriviNota(std::string_view file, std::string_view testo);

// All messages, one line each, in colours where the standard error shows them; and on it.
std::string TestoMessaggi(const Diagnostica& diagnostica);
void MostraMessaggi(const Diagnostica& diagnostica);

}  // namespace compensa
