#pragma once

// The words of a GSI line: fixed fields that carry their own meaning and unit.

#include <optional>
#include <string>
#include <string_view>

#include "host/base/diagnostica.h"

namespace compensa {

// One word. Its texts point into the line.
struct ParolaGsi {
  std::string_view Indice;  // word index: two digits, or three where the third character is a digit
  char Unita = '.';         // sixth character
  char Segno = '+';
  std::string_view Dati;  // 8 or 16 characters
  int Colonna = 0;        // of the first character of the word, from 1
};

// A fault and the column where it stands.
struct GuastoGsi {
  Guasto Cosa;
  int Colonna = 0;
};

// Cuts a line into its words, by characters. A star before a word makes it and those after it 16
// characters of data wide instead of 8.
class TaglioGsi {
 public:
  explicit TaglioGsi(std::string_view riga) : Resto(riga) {}

  // Goes on to the next word; false at the end. After a fault the cut goes on behind the next blank,
  // and the word is not to be used.
  bool Prossima(ParolaGsi& parola, std::optional<GuastoGsi>& guasto);

 private:
  void Salta(std::size_t byte);
  GuastoGsi Sbagliata(std::string problema, std::string voluto);

  std::string_view Resto;
  int Colonna = 1;
  int CifreDati = 8;
};

// Whether the text begins like a word of the index 11 or 41, with which every block begins.
bool ApreBloccoGsi(std::string_view testo);

// Data of a word as the name of a point, without the zeros that pad it; empty if all are blank.
std::string NomeGsi(const ParolaGsi& parola);

// "WI 21 (direzione)"
std::string CampoGsi(std::string_view indice);

// A number of a word: empty if the data are blank, or if they are wrong, and then there is a fault.
struct ValoreGsi {
  std::optional<double> Valore;
  std::optional<GuastoGsi> Difetto;
};

ValoreGsi LunghezzaGsi(const ParolaGsi& parola);   // by its unit, as metres
ValoreGsi AngoloGsi(const ParolaGsi& parola);      // by its unit, as gon
ValoreGsi MillimetriGsi(const ParolaGsi& parola);  // whole millimetres without a unit, as metres

}  // namespace compensa
