#pragma once

// One run of the module over a network.

#include <cstdint>
#include <functional>

#include "host/calcolo/osservatore.h"
#include "host/rete/modello.h"
#include "host/rete/risultati.h"

namespace compensa {

// What a caller may want to know while the run goes on.
struct Ascolto {
  std::function<void()> Classificati;  // the roles of the points are final, nothing is computed yet
  Avanzamento Iterazione;
};

// Adjusts the network as its options ask, writes the report and returns all that was found. The
// records of the network take the results too; plane coordinates stay in kilometres when some point
// cannot be determined. Throws std::bad_alloc.
Risultati Compensa(Rete& rete, CFileOutTmp& rapporto, const Ascolto& ascolto = {});

// What a job over the network allocates, about [bytes].
struct Fabbisogno {
  int Incognite;
  int Equazioni;  // at most
  std::uint64_t Normale;
  std::uint64_t Totale;
};
Fabbisogno StimaFabbisogno(const Rete& rete);

}  // namespace compensa
