#pragma once

// How the titles of a field book in CSV become columns.

#include <string_view>
#include <vector>

#include "host/base/diagnostica.h"
#include "host/file_rete/csv.h"
#include "host/importazione/csv/mappa_csv.h"
#include "host/importazione/libretto.h"
#include "host/importazione/opzioni.h"

namespace compensa {

// The titles of one file: those of the map first, then our own and their synonyms. Without a map
// any other title is a fault; with one it is left out, and the book says so.
class TitoliCampagna {
 public:
  TitoliCampagna(const OpzioniLettura& opzioni, std::vector<VoceMappa> mappa, Libretto& libretto);

  TitoloCsv Cerca(std::string_view titolo);

  // Pairs of the map whose column the table lacks are errors.
  void ControllaMappa(std::string_view file, Diagnostica& diagnostica) const;

 private:
  const OpzioniLettura& Opzioni;
  std::vector<VoceMappa> Mappa;
  Libretto& L;
};

}  // namespace compensa
