#pragma once

// compensa verifica: looks a network over without adjusting it.

#include <string>

#include "host/base/stato.h"

namespace compensa {

struct OpzioniVerifica {
  std::string File;
};

// Reads the network and writes on the standard output what it holds and what looks wrong; faults of
// the files go to the standard error. Throws ErroreUscita, std::bad_alloc. kStatoRiuscito if the
// network can be adjusted as it stands, kStatoNonCompensata if it cannot, kStatoRete if the file is
// wrong.
Stato Verifica(const OpzioniVerifica& opzioni);

}  // namespace compensa
