#pragma once

// The table of --coordinate: points with their coordinates and roles.

#include <optional>
#include <string>

#include "host/base/diagnostica.h"
#include "host/importazione/libretto.h"
#include "host/importazione/opzioni.h"

namespace compensa {

// Columns nome, est, nord, quota, ruolo, and planimetria and altimetria (or ruolo_quota) where the
// two roles differ; "ruolo" alone holds for the height too, where the row has one. What the table
// says of a point of the book prevails, with a warning where the two are more than a metre apart;
// other points are added. X and Y are read only with axes. False if the table had errors.
bool LeggiCoordinateCsv(const std::string& percorso, std::optional<Assi> assi, Libretto& libretto,
                        Diagnostica& diagnostica);

}  // namespace compensa
