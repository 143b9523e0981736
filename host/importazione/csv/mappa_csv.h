#pragma once

// The file of --mappa: which column of a foreign table is which of ours.
//
//   # dal programma dello strumento
//   stazione = "Stn"
//   a        = Target id
//   dir      = "Hz"     # quotes are needed only around a "#" or blanks that count
//
// One pair a line, as TOML writes it or without quotes; a line "[colonne]" is passed over.

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/diagnostica.h"
#include "host/file_rete/csv.h"
#include "host/importazione/csv/titoli_csv.h"

namespace compensa {

struct VoceMappa {
  std::size_t Colonna = 0;  // ours
  std::string Titolo;       // theirs
  int Riga = 0;             // of the map
  bool Trovata = false;     // the table has it
};

// The pairs of the file; nothing if any is wrong, with a message for each. Our columns go by any of
// their synonyms.
std::optional<std::vector<VoceMappa>> LeggiMappaCsv(const std::string& percorso,
                                                    std::span<const ColonnaCsv> colonne,
                                                    std::span<const SinonimoCsv> sinonimi,
                                                    Diagnostica& diagnostica);

// The pair of a title of the table, without regard to case, accents and blanks; null if none.
VoceMappa* CercaNellaMappa(std::vector<VoceMappa>& mappa, std::string_view titolo);

}  // namespace compensa
