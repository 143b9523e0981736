#pragma once

// Several books as one.

#include "host/base/diagnostica.h"
#include "host/importazione/libretto.h"

namespace compensa {

// Adds the records of a book to those of another, with their positions. What both state for the
// whole network and state differently stays as the first says, with a warning.
void Unisci(Libretto& unito, Libretto&& parte, Diagnostica& diagnostica);

// Leaves one record for each name among the points. Of records of the same point the first that
// gives a value or a role counts, with a warning where another differs. A point that one record
// calls fixed keeps the coordinates of that record; if one fixes its plan and another its height,
// it keeps the plan of the one and the height of the other.
void UnisciPunti(Libretto& libretto, Diagnostica& diagnostica);

}  // namespace compensa
