#pragma once

// Which files a run writes: names of the outputs of each network, and refusals of those that would
// destroy something.

#include <deque>
#include <string>
#include <vector>

#include "host/base/file_sicuro.h"
#include "host/comando/riga_comando.h"

namespace compensa {

// A file of one network.
struct Destinazione {
  GenereUscita Genere = GenereUscita::Rapporto;
  bool Osservazioni = false;  // of the two tables in CSV, the one of the observations
  std::string Percorso;       // "-" = standard output
};

// The files of one network, in the order in which they are to be reported. An output without a
// value is called like the network, in its folder or in the one given.
std::vector<Destinazione> Destinazioni(const Argomenti& argomenti, const std::string& rete);

// Whether some of them shows more than the report and the results themselves.
bool VuoleDocumento(const std::vector<Destinazione>& destinazioni);

// Throws ErroreUso if two outputs of the whole call would be the same file, if more than one would
// go to the standard output, if a network was named twice or an output is one of the networks.
void ControllaDestinazioni(const Argomenti& argomenti);

// Throws ErroreUso if an output of the network would replace one of these files, which it was read
// from.
void RifiutaIngressi(const std::vector<Destinazione>& destinazioni,
                     const std::deque<std::string>& ingressi);

}  // namespace compensa
