#pragma once

// The readers of foreign formats: one file a reader, one interface.

#include <span>
#include <string>
#include <string_view>

#include "host/base/diagnostica.h"
#include "host/importazione/libretto.h"
#include "host/importazione/opzioni.h"

namespace compensa {

// Options of a call that concern the reading of some formats only.
enum OpzioneLettura : unsigned {
  kOpzioneAngoli = 1,
  kOpzioneAssi = 2,
  kOpzioneMappa = 4,
  kOpzioneStazione = 8,
  kOpzioneCodiceGsi = 16,
  kOpzioneSegnale = 32,
  kOpzioneIgnora = 64,
};

// A reader gets the whole text of a file: UTF-8, without byte order mark and without the Ctrl-Z that
// old programs leave at the end, line ends as they are (LF, CRLF or CR). It never throws on account
// of what stands in the file: each fault becomes an error of the diagnostics with line and column,
// what it can still read goes into the book, and what it understands but cannot carry is counted
// with Libretto::Tralascia.
struct Lettore {
  std::string_view Nome;         // word for --formato
  std::string_view Descrizione;  // for the help, Italian
  unsigned Opzioni;              // those of OpzioneLettura that it heeds, as bits
  bool (*Riconosce)(std::string_view testo);
  // file = name for positions; it lies in libretto.NomiFile.
  void (*Leggi)(std::string_view testo, std::string_view file, const OpzioniLettura& opzioni,
                Libretto& libretto, Diagnostica& diagnostica);
};

extern const Lettore kLettoreGkf;       // gkf.cpp
extern const Lettore kLettoreGsi;       // gsi.cpp
extern const Lettore kLettoreSdr;       // sdr.cpp
extern const Lettore kLettoreCatasto;   // libretto_catastale.cpp
extern const Lettore kLettoreCampagna;  // campagna_csv.cpp

// All readers, in the order in which they are asked whether a text is theirs.
std::span<const Lettore* const> Lettori();

// The reader that recognises the text, null if none does.
const Lettore* RiconosciFormato(std::string_view testo);

// What kind of field book a text is, empty if it is none: for who expected a network.
std::string_view DescrizioneLibretto(std::string_view testo);

// The reader of a name given with --formato, null if there is none.
const Lettore* LettoreDiNome(std::string_view nome);

}  // namespace compensa
