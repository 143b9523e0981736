#pragma once

// A call of the program from its arguments to its exit status.

#include "host/base/stato.h"
#include "host/comando/riga_comando.h"

namespace compensa {

// Adjusts the networks one after the other: reads each, runs the module, writes the outputs, and
// says on the standard error what happened. With several of them it goes on after a fault, closes
// with a table on the standard output and returns the highest status. Throws ErroreUso,
// ErroreUscita, ErroreMemoria, std::bad_alloc.
Stato Esegui(const Argomenti& argomenti);

// The whole program; no exception leaves it.
int Programma(int argc, const char* const* argv);

}  // namespace compensa
