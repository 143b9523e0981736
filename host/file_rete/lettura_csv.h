#pragma once

// Points and observations from CSV tables.

#include <string_view>

#include "host/base/diagnostica.h"
#include "host/file_rete/costruttore.h"

namespace compensa {

// Columns nome, est, nord, quota, planimetria, altimetria. The text must be UTF-8; file is its name
// in the positions and lives as long as the network.
void LeggiPuntiCsv(std::string_view testo, std::string_view file, CostruttoreRete& rete,
                   Diagnostica& diagnostica);

// Columns stazione, giro, altezza, altezza_nota, ecc_distanza, ecc_direzione, punto, direzione,
// zenit, segnale, distanza, tipo. Rows with the same stazione and giro belong to one set-up, set-ups
// follow in the order of their first rows; what describes the set-up may stand in any of its rows,
// and must not differ between them. The points must already be known.
void LeggiOsservazioniCsv(std::string_view testo, std::string_view file, CostruttoreRete& rete,
                          Diagnostica& diagnostica);

}  // namespace compensa
