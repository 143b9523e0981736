#pragma once

// Fields of the current row of a CSV table as values, with a message for each that breaks its rule.

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "host/base/diagnostica.h"
#include "host/base/numeri.h"
#include "host/file_rete/csv.h"
#include "host/rete/campi.h"

namespace compensa {

// The fault of a field that should hold a number within the rule and does not. consiglioVirgola is
// the advice if a decimal comma is what is wrong with it.
Guasto GuastoCampo(std::string record, const RegolaNumero& regola, std::string_view campo,
                   const NumeroLetto& letto, std::string_view consiglioVirgola);

// What the tables share. A record is worded only when a message needs it.
class RigaCsv {
 public:
  // Both references must outlive the row.
  RigaCsv(LettoreCsv& lettore, Diagnostica& diagnostica, std::function<std::string()> record)
      : Lettore(lettore), Diario(diagnostica), Record(std::move(record)) {}

  // Whether no value is given: nothing, or "-".
  bool Vuoto(std::size_t colonna) const;

  // kValoreMancante if there is no value, or a wrong one, which is then reported.
  double Numero(std::size_t colonna, const RegolaNumero& regola);

  // kIncognito if there is no role, or a wrong one, which is then reported under the name.
  int Ruolo(std::size_t colonna, std::string_view nome);

  // Nothing if the word is wrong, which is then reported under the name.
  std::optional<bool> SiNo(std::size_t colonna, std::string_view nome);

  // Kind of a distance by its word or code; ilVuoto if there is none, or a wrong one, which is then
  // reported.
  int Tipo(std::size_t colonna, int ilVuoto = kOrizzontale);

 private:
  LettoreCsv& Lettore;
  Diagnostica& Diario;
  std::function<std::string()> Record;
};

}  // namespace compensa
