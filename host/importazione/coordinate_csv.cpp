// To be written.

#include "host/importazione/coordinate_csv.h"

bool LeggiCoordinateCsv(const std::string& percorso, std::optional<Assi> /*assi*/,
                        Libretto& /*libretto*/, Diagnostica& diagnostica) {
  diagnostica.Errore({percorso, 0, 0}, {.Problema = "tabella di coordinate non letta"});
  return false;
}
