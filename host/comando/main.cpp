// Entry point of compensa.

#include <new>
#include <string>
#include <vector>

#include "host/base/errori.h"
#include "host/base/file_sicuro.h"
#include "host/base/piattaforma/piattaforma.h"
#include "host/base/stato.h"
#include "host/base/terminale.h"
#include "host/comando/esecuzione.h"

using namespace compensa;

int main(int argc, char** argv) try {
  PreparaProcesso();
  PreparaSegnali();
  const std::vector<std::string> argomenti = ArgomentiUtf8(argc, argv);
  std::vector<const char*> parole;
  parole.reserve(argomenti.size());
  for (const std::string& argomento : argomenti) parole.push_back(argomento.c_str());
  return Programma(static_cast<int>(parole.size()), parole.data());
} catch (const std::bad_alloc&) {  // the program itself catches its own
  ScriviErrori(kMemoriaInsufficiente);
  return kStatoUscita;
}
