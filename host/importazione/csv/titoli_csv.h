#pragma once

// Titles of CSV columns as surveyors and programs write them, and what spreadsheets do to names.

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>

#include "host/base/diagnostica.h"
#include "host/file_rete/csv.h"
#include "host/importazione/opzioni.h"

namespace compensa {

// A simple title and the column that it stands for.
struct SinonimoCsv {
  std::string_view Titolo;
  std::size_t Colonna;
};

// The text in lower case, without accents, its words joined by "_": "Altezza  Segnàle" and
// "altezza-segnale" are the same. A unit at the end, "(m)" or "[gon]", is left out: it is the one
// that the program expects.
std::string TitoloSemplice(std::string_view titolo);

// Column of a simple title; nothing if it is none of the synonyms.
std::optional<std::size_t> CercaSinonimo(std::string_view semplice,
                                         std::span<const SinonimoCsv> sinonimi);

// What a title of coordinates named X or Y is: the column of Est or of Nord by the axes, a fault
// without them. Nothing if the title is neither X nor Y.
std::optional<TitoloCsv> TitoloXY(std::string_view titolo, std::optional<Assi> assi,
                                  std::size_t colonnaEst, std::size_t colonnaNord);

// Warns, once for each name, of names that a spreadsheet has turned into numbers or dates.
class NomiAlterati {
 public:
  explicit NomiAlterati(Diagnostica& diagnostica) : Diario(diagnostica) {}
  void Controlla(std::string_view nome, const Posizione& dove);

 private:
  Diagnostica& Diario;
  std::unordered_set<std::string> Detti;
};

}  // namespace compensa
