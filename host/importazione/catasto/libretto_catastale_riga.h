#pragma once

// One row of the booklet of the cadastre, and what its fields look like.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace compensa {

struct CampoLibretto {
  std::string Valore;
  std::size_t InizioLinea = 0;  // of the line on which it begins, in the text
  std::size_t Inizio = 0;
  int Linea = 0;
};

struct RigaLibretto {
  char Genere = '\0';  // '0' to '9'; none = no row
  int Linea = 0;
  bool Chiusa = false;               // by "|"
  std::vector<CampoLibretto> Campi;  // without the kind
};

// The value of a field; empty if the row ends before it.
std::string_view Campo(const RigaLibretto& riga, std::size_t i);

// Whether a row begins on the line: a digit and "|".
bool IniziaRiga(std::string_view linea);

// Whether a field is a number, also one that cannot be used: with a comma, or too large.
bool SembraNumero(std::string_view campo);

// Three numbers with commas between them: geocentric coordinates or a vector.
bool Terna(std::string_view campo);

}  // namespace compensa
