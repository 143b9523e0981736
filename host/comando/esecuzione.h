#pragma once

// A call of the program from its arguments to its exit status.

#include <string>
#include <vector>

#include "host/base/stato.h"
#include "host/comando/uscite_richieste.h"
#include "host/importazione/opzioni.h"

namespace compensa {

// Adjusts the networks one after the other: reads each, runs the module, writes the outputs, and
// says on the standard error what happened. With several of them it goes on after a fault, closes
// with a table on the standard output and returns the highest status. Throws ErroreUso,
// ErroreUscita, ErroreMemoria, std::bad_alloc.
Stato Esegui(const OpzioniCompensa& opzioni);

// compensa importa; without an output it is the network beside the first file, which must not exist
// yet. Throws as the first one.
Stato Esegui(OpzioniImporta opzioni);

// compensa verifica, for one network after the other; returns the highest status.
Stato EseguiVerifica(const std::vector<std::string>& reti);

// The whole program; no exception leaves it.
int Programma(int argc, const char* const* argv);

}  // namespace compensa
