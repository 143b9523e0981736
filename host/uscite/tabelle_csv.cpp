// To be written.

#include "host/uscite/tabelle_csv.h"

void ScriviPuntiCsv(const Documento& /*documento*/, Decimali /*decimali*/,
                    const std::function<void(std::string_view)>& /*scrivi*/) {}
void ScriviOsservazioniCsv(const Documento& /*documento*/, Decimali /*decimali*/,
                           const std::function<void(std::string_view)>& /*scrivi*/) {}
