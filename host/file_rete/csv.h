#pragma once

// Tables in CSV: the rows of a file under the columns that its first row names.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/base/diagnostica.h"

namespace compensa {

inline constexpr std::string_view kVoglionoIlPunto =
    "con la virgola come separatore dei campi i decimali vogliono il punto";

struct ColonnaCsv {
  std::string_view Nome;
  bool Necessaria = false;
};

// What a title of the header is: one of the columns, or no column for the reason given, or neither,
// and then the fields under it are passed over.
struct TitoloCsv {
  std::optional<std::size_t> Colonna = std::nullopt;  // index among the columns given
  std::optional<Guasto> Cosa = std::nullopt;
};
using RiconosciTitolo = std::function<TitoloCsv(std::string_view titolo)>;

inline constexpr std::uintmax_t kMassimoCsv = std::uintmax_t{1} << 30;  // of a file [bytes]

// A name as a field that no spreadsheet runs as a formula: with an apostrophe in front where it begins
// like one, or with an apostrophe; between quotes where it needs them. LettoreCsv::Nome gives it back.
std::string NomeInCsv(std::string_view nome);

// Reads a table row by row, in one pass over the text and without copying its fields. Fields may be
// quoted, with doubled quotes inside; they never span lines. Line ends are LF, CRLF or CR.
class LettoreCsv {
 public:
  // All arguments but the last must outlive the reader; file is the name for positions. Without a
  // function of its own for the titles, a table has the names of its columns, in either case.
  LettoreCsv(std::string_view testo, std::string_view file, std::span<const ColonnaCsv> colonne,
             Diagnostica& diagnostica, RiconosciTitolo titoli = {});

  // Skips a line "sep=;", finds the delimiter and the columns. False if the rows make no sense
  // without them: a column that is unknown, given twice or missing.
  bool LeggiIntestazione();
  // Whether the header has the column.
  bool Presente(std::size_t colonna) const { return Posti[colonna].has_value(); }

  // Goes on to the next row that holds anything; false at the end.
  bool ProssimaRiga();
  // Whether the current row has as many fields as the header has columns. If not, the message is
  // out and the fields may stand under wrong columns.
  bool RigaIntera() const { return Campi.size() == NCampi; }

  // Field of a column of the current row, by its index among the columns given; without the blanks
  // around it, empty if the file lacks the column.
  std::string_view Campo(std::size_t colonna) const;
  // The same as the name of a point, without the apostrophe of NomeInCsv.
  std::string_view Nome(std::size_t colonna) const;
  Posizione Dove(std::size_t colonna) const;
  Posizione DoveRiga() const { return {NomeFile, Riga, 1}; }

  bool VirgolaDecimale() const { return Delimitatore != ','; }

 private:
  struct CampoLetto {
    std::string_view Valore;
    std::size_t Inizio = 0;  // of the field in the text, blanks left out
  };

  const CampoLetto* CampoDi(std::size_t colonna) const;  // null if the row has it not
  TitoloCsv NomeNoto(std::string_view titolo) const;
  bool LeggiRiga();
  std::size_t LeggiCampo(std::size_t da);
  std::size_t LeggiCampoFraVirgolette(std::size_t da);
  void TrovaDelimitatore();
  bool RigaVuota() const;
  void ErroreVirgolette(std::size_t inizio, Guasto guasto);
  Posizione DoveInizio(std::size_t inizio) const;
  bool FineRiga(std::size_t i) const;
  void ErroreColonna(std::size_t campo, std::string problema);

  std::string_view Testo;
  std::string_view NomeFile;
  std::span<const ColonnaCsv> Colonne;
  Diagnostica& Diario;
  RiconosciTitolo Titoli;
  char Delimitatore = ';';
  std::size_t Posto = 0;       // start of the next line
  std::size_t InizioRiga = 0;  // of the current one
  int Riga = 0;                // number of the current line, from 1
  std::vector<CampoLetto> Campi;
  bool VirgoletteSbagliate = false;     // in the current row
  std::deque<std::string> SenzaDoppie;  // fields of the current row that had doubled quotes
  std::vector<std::optional<std::size_t>> Posti;  // column given -> field, if the file has it
  std::size_t NCampi = 0;                         // columns of the header
};

}  // namespace compensa
