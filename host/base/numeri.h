#pragma once

// Numbers from and to text, the same in every locale: the only place of the program that does it.

#include <optional>
#include <string>
#include <string_view>

namespace compensa {

enum class EsitoNumero {
  Valido,
  NonNumero,  // not a number, or something follows it
  Migliaia,   // a number with separators of the thousands
  Virgola,    // a decimal comma where only the point is accepted
  NonFinito,  // infinity, NaN, or too large for a double
};

struct NumeroLetto {
  double Valore = 0.0;  // meaningful only when Esito is Valido
  EsitoNumero Esito = EsitoNumero::NonNumero;
};

// Reads the whole of a text as a decimal number, with a point or, if virgolaDecimale, also a comma
// before the decimals. The text has no blanks around it.
NumeroLetto LeggiNumero(std::string_view testo, bool virgolaDecimale = false);

// Reads the whole of a text as an integer; nothing if it is not one or does not fit.
std::optional<int> LeggiIntero(std::string_view testo);

// The value with exactly that many decimals (0 to 17).
std::string NumeroFisso(double valore, int decimali);

// The value with at most that many decimals, without zeros at the end.
std::string NumeroCorto(double valore, int decimali);

// The shortest text that gives the same value back.
std::string NumeroBreve(double valore);

}  // namespace compensa
