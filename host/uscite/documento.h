#pragma once

// What every output is built from: the result model of a run with the report, the messages and the
// provenance that go with it. An output adds nothing of its own: it only shows.

#include <string>
#include <string_view>
#include <vector>

#include "host/base/diagnostica.h"
#include "host/rete/risultati.h"

namespace compensa {

struct FileLetto {
  std::string Nome;      // as a message names it
  std::string Impronta;  // SHA-256 of what was read, hexadecimal
};

struct Documento {
  const Risultati& Esiti;
  std::string_view Rapporto;        // text report, UTF-8, lines ended by '\n'
  std::vector<Messaggio> Messaggi;  // warnings of this run
  std::vector<std::string>
      Note;             // how coordinates that the file lacks were obtained, UTF-8, a line each
  std::string DataOra;  // of the run, gg/mm/aaaa hh:mm
  std::vector<FileLetto> File;  // the network file first, then its tables
};

}  // namespace compensa
