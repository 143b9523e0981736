#pragma once

// What a field book lacks to be a network: points that are only seen, roles, and what the options
// say of the whole.

#include <string>
#include <vector>

#include "host/base/diagnostica.h"
#include "host/importazione/libretto.h"
#include "host/importazione/opzioni.h"

namespace compensa {

// Findings for the head of the network file, Italian, one sentence each.
struct EsitoCompletamento {
  std::vector<std::string> Assunti;
};

// Adds the table of coordinates, points that are only seen (unknown), and the roles that the
// options give; settles the adjustments to ask for. Horizontal distances without a zenith angle get
// 100 gon, without which they could not be used, and leave the heights. Values are checked;
// distances of zero are none. Names that differ only in case, and fixed points without coordinates,
// are reported.
EsitoCompletamento CompletaLibretto(const OpzioniImporta& opzioni, Libretto& libretto,
                                    Diagnostica& diagnostica);

}  // namespace compensa
