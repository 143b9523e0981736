#pragma once

// compensa importa: from field books to a network file in TOML.

#include <optional>

#include "host/base/diagnostica.h"
#include "host/base/stato.h"
#include "host/importazione/libretto.h"
#include "host/importazione/opzioni.h"
#include "host/importazione/resoconto.h"
#include "host/rete/modello.h"

namespace compensa {

// Reads the books, completes them as the options ask, writes the network file and says on the
// standard error what was found, computed and left out. Throws ErroreUso, ErroreUscita,
// std::bad_alloc.
Stato Importa(const OpzioniImporta& opzioni);

// What lies between reading and writing: the book completed, its faces joined, turned into a
// network and given approximate coordinates. What there is to tell goes into the account. Nothing
// if there are errors.
std::optional<Rete> PreparaRete(const OpzioniImporta& opzioni, Libretto& libretto,
                                Resoconto& resoconto, Diagnostica& diagnostica);

}  // namespace compensa
