#pragma once

// A call of the program from its arguments to its exit status.

#include "host/riga_comando.h"

enum Stato : int {
  kStatoRiuscito = 0,
  kStatoNonCompensata = 1,  // an adjustment that was asked for is missing or did not converge
  kStatoUso = 2,
  kStatoRete = 3,
  kStatoUscita = 4,  // output that cannot be written, or memory
  kStatoInterno = 70,
};

// Adjusts one network: reads it, runs the module, writes the outputs, and says on the standard
// error what happened. Throws ErroreUso, ErroreUscita, ErroreMemoria, std::bad_alloc.
Stato Esegui(const Argomenti& argomenti);

// The whole program; no exception leaves it.
int Programma(int argc, const char* const* argv);
