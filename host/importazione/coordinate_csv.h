#pragma once

// A table of known coordinates, for field books that have none.

#include <optional>
#include <string>

#include "host/diagnostica.h"
#include "host/importazione/libretto.h"
#include "host/importazione/opzioni.h"

// Reads the table and gives its points to the book: coordinates, heights and roles of the table take
// the place of those that the book has. Returns false, with messages, if it cannot be read.
bool LeggiCoordinateCsv(const std::string& percorso, std::optional<Assi> assi, Libretto& libretto,
                        Diagnostica& diagnostica);
