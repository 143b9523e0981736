#pragma once

// Exit statuses of the program.

namespace compensa {

enum Stato : int {
  kStatoRiuscito = 0,
  kStatoNonCompensata = 1,  // an adjustment that was asked for is missing or did not converge
  kStatoUso = 2,
  kStatoRete = 3,
  kStatoUscita = 4,  // output that cannot be written, or memory
  kStatoInterno = 70,
};

}  // namespace compensa
