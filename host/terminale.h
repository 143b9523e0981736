#pragma once

// What the program says on the standard error.

#include <string_view>

#include "host/diagnostica.h"

// Writes the text as it is, UTF-8. What cannot be written is lost: there is nowhere else to tell
// it.
void ScriviErrori(std::string_view testo);

// Writes the messages, one a line, in file order.
void MostraMessaggi(const Diagnostica& diagnostica);
