#pragma once

// compensa importa: from field books to a network file in TOML.

#include "host/importazione/opzioni.h"
#include "host/stato.h"

// Reads the books, completes them as the options ask, writes the network file and says on the
// standard error what was found, computed and left out. Throws ErroreUso, ErroreUscita,
// std::bad_alloc.
Stato Importa(const OpzioniImporta& opzioni);
