#pragma once

// The outputs of one network: opened before the run, written and named after it.

#include <deque>
#include <string>
#include <vector>

#include "host/base/file_sicuro.h"
#include "host/comando/uscite_richieste.h"

namespace compensa {

class ScritturaUscite {
 public:
  // Opens all files. Throws ErroreUscita; nothing is left then.
  explicit ScritturaUscite(std::vector<Destinazione> destinazioni);

  // Writes all outputs, then gives the files their names, and only then turns to the standard
  // output: who stops reading it keeps the files. Throws ErroreUscita; files without their names
  // yet are as they were before.
  void Scrivi(const Materia& materia);

  // The files that have their names, as messages show them.
  std::vector<std::string> Scritti() const;

 private:
  std::vector<Destinazione> Dove;
  std::deque<FileSicuro> File;  // one for each of them
  std::vector<bool> Confermati;
};

}  // namespace compensa
