#pragma once

// The table that closes a run over several networks.

#include <optional>
#include <string>
#include <vector>

#include "host/base/stato.h"
#include "host/rete/risultati.h"

namespace compensa {

// What became of one network.
struct EsitoRete {
  std::string Rete;
  Stato Fine = kStatoRiuscito;
  std::optional<RisultatoCompensazione> Planimetria, Altimetria;  // nothing: not adjusted
  double WMassimo = kAssente;                                     // of both
  std::vector<std::string> Scritti;
};

// The numbers of the table, taken from the results.
void Riassumi(const Risultati& risultati, EsitoRete& esito);

// Aligned columns, a network on a line, UTF-8. Words of outcomes coloured if asked for.
std::string TabellaReti(const std::vector<EsitoRete>& esiti, bool colori);

}  // namespace compensa
