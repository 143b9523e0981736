// Date and time as the outputs show them.

#include "host/base/data_ora.h"

#include <charconv>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string_view>

#include "host/base/diagnostica.h"
#include "host/base/errori.h"
#include "host/base/piattaforma/piattaforma.h"

namespace compensa {

namespace {

constexpr int kPrimoAnno = 1900;  // of struct tm

[[noreturn]] void Rifiuta(std::string_view valore) {
  throw ErroreUso("la variabile SOURCE_DATE_EPOCH vale " + Cita(valore) +
                  ": serve un intero, i secondi dal 1970");
}

std::optional<std::time_t> MomentoFissato() {
  const char* testo = std::getenv("SOURCE_DATE_EPOCH");
  if (testo == nullptr || *testo == '\0') return std::nullopt;
  const std::string_view cifre(testo);
  std::time_t momento = 0;
  const auto [dove, errore] = std::from_chars(cifre.begin(), cifre.end(), momento);
  if (errore != std::errc{} || dove != cifre.end()) Rifiuta(testo);
  return momento;
}

std::string DueCifre(int numero) { return (numero < 10 ? "0" : "") + std::to_string(numero); }

}  // namespace

std::string DataOraCorrente() {
  std::tm t{};
  const std::optional<std::time_t> fissato = MomentoFissato();
  // A moment may lie beyond every calendar.
  if (fissato && !OraUniversale(*fissato, t)) Rifiuta(std::to_string(*fissato));
  if (!fissato && !OraLocale(std::time(nullptr), t)) return {};
  return DueCifre(t.tm_mday) + "/" + DueCifre(t.tm_mon + 1) + "/" +
         std::to_string(t.tm_year + kPrimoAnno) + " " + DueCifre(t.tm_hour) + ":" +
         DueCifre(t.tm_min);
}

}  // namespace compensa
