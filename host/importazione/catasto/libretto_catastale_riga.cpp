// The looks of a row of the booklet: where one begins, which fields are numbers and which are the
// triples of satellite surveys.

#include "host/importazione/catasto/libretto_catastale_riga.h"

#include <algorithm>

#include "host/base/numeri.h"

namespace compensa {

std::string_view Campo(const RigaLibretto& riga, std::size_t i) {
  return i < riga.Campi.size() ? std::string_view(riga.Campi[i].Valore) : std::string_view();
}

bool IniziaRiga(std::string_view linea) {
  return linea.size() > 1 && linea[0] >= '0' && linea[0] <= '9' && linea[1] == '|';
}

bool SembraNumero(std::string_view campo) {
  return LeggiNumero(campo, true).Esito != EsitoNumero::NonNumero;
}

bool Terna(std::string_view campo) {
  const auto virgole = std::count(campo.begin(), campo.end(), ',');
  return virgole >= 2 && campo.find_first_not_of("+-.,0123456789 ") == std::string_view::npos;
}

}  // namespace compensa
