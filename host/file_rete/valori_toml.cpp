// Values of TOML 1.0: which bytes are a number, a date, a truth, and what numbers and texts stand for.
// Dates are known by their shape, since no field takes one.

#include "host/file_rete/valori_toml.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "host/base/codifica.h"
#include "host/base/numeri.h"
#include "host/base/testi.h"

namespace compensa {

namespace {

constexpr std::string_view kSciolte = "\b\t\n\f\r\"\\";

constexpr bool Cifra(char c) { return c >= '0' && c <= '9'; }
constexpr bool Esadecimale(char c) {
  return Cifra(c) || (Minuscola(c) >= 'a' && Minuscola(c) <= 'f');
}

// Length of the digits at the beginning, 0 if there are none or '_' does not stand between two.
std::size_t Cifre(std::string_view t, char base = 'd') {
  const auto cifra = [base](char c) {
    return base == 'x' ? Esadecimale(c)
                       : Cifra(c) && c < (base == 'o'   ? '8'
                                          : base == 'b' ? '2'
                                                        : ':');
  };
  std::size_t n = 0;
  while (n < t.size() && (cifra(t[n]) || (t[n] == '_' && n > 0 && t[n - 1] != '_'))) ++n;
  return n > 0 && t[n - 1] == '_' ? 0 : n;
}

// A line end at the beginning of the text: its length, 0 if there is none.
std::size_t FineRigaQui(std::string_view t) {
  return t.starts_with("\r\n") ? 2 : t.starts_with('\n') || t.starts_with('\r') ? 1 : 0;
}

std::string SenzaTrattini(std::string_view numero) {
  std::string semplice(numero);
  std::erase(semplice, '_');
  if (semplice[0] == '+') semplice.erase(0, 1);
  return semplice;
}

}  // namespace

std::optional<GenereToml> GenereScalare(std::string_view t) {
  if (t == "true" || t == "false") return GenereToml::Vero;
  if (t.size() > 2 && t[0] == '0' && std::string_view("xob").find(t[1]) != std::string_view::npos)
    return Cifre(t.substr(2), t[1]) == t.size() - 2 ? std::optional(GenereToml::Intero)
                                                    : std::nullopt;
  if (SembraData(t)) return GenereToml::Data;
  if (!t.empty() && (t[0] == '+' || t[0] == '-')) t.remove_prefix(1);
  if (t == "inf" || t == "nan") return GenereToml::Reale;
  const std::size_t intere = Cifre(t);
  if (intere == 0 || (intere > 1 && t[0] == '0')) return std::nullopt;
  t.remove_prefix(intere);
  if (t.empty()) return GenereToml::Intero;
  if (t[0] == '.') {
    const std::size_t decimali = Cifre(t.substr(1));
    if (decimali == 0) return std::nullopt;
    t.remove_prefix(decimali + 1);
  }
  if (!t.empty() && Minuscola(t[0]) == 'e') {
    t.remove_prefix(1);
    if (!t.empty() && (t[0] == '+' || t[0] == '-')) t.remove_prefix(1);
    t.remove_prefix(Cifre(t) == t.size() && !t.empty() ? t.size() : 0);
    return t.empty() ? std::optional(GenereToml::Reale) : std::nullopt;
  }
  return t.empty() ? std::optional(GenereToml::Reale) : std::nullopt;
}

bool SembraData(std::string_view t) {
  if (t.size() < 8 || (t[2] != ':' && t[4] != '-')) return false;
  return Cifra(t[0]) && Cifra(t[1]) && std::all_of(t.begin(), t.end(), [](char c) {
           return Cifra(c) || std::string_view("-:.+TtZz ").find(c) != std::string_view::npos;
         });
}

std::optional<char32_t> CodiceDaCifre(std::string_view cifre) {
  std::uint32_t codice = 0;
  const auto [dove, errore] =
      std::from_chars(cifre.data(), cifre.data() + cifre.size(), codice, 16);
  const bool surrogato = codice >= 0xD800 && codice <= 0xDFFF;
  if (errore != std::errc{} || dove != cifre.data() + cifre.size() || surrogato ||
      codice > 0x10FFFF)
    return std::nullopt;
  return codice;
}

std::string Sciogli(std::string_view t) {
  const char virgolette = t[0];
  const bool righe = t.size() >= 6 && t[1] == virgolette;
  t = t.substr(righe ? 3 : 1, t.size() - (righe ? 6 : 2));
  if (righe) t.remove_prefix(FineRigaQui(t));
  std::string testo;
  testo.reserve(t.size());
  while (!t.empty()) {
    const std::size_t fine = FineRigaQui(t);
    if (fine > 0 || t[0] != '\\' || virgolette == '\'') {
      testo += fine > 0 ? '\n' : t[0];
      t.remove_prefix(std::max<std::size_t>(fine, 1));
    } else if (const std::size_t quale = kFuggiteToml.find(t[1]); quale != std::string_view::npos) {
      testo += kSciolte[quale];
      t.remove_prefix(2);
    } else if (t[1] == 'u' || t[1] == 'U') {
      const std::size_t cifre = t[1] == 'u' ? 4 : 8;
      AggiungiUtf8(testo, CodiceDaCifre(t.substr(2, cifre)).value_or(0));
      t.remove_prefix(2 + cifre);
    } else {  // the end of the line, and all blanks up to the next text
      t.remove_prefix(std::min(t.find_first_not_of(kBianchiEFini, 1), t.size()));
    }
  }
  return testo;
}

std::optional<std::int64_t> LeggiIntero64(std::string_view scritto) {
  const std::string cifre = SenzaTrattini(scritto);
  const char segno = cifre.size() > 2 && cifre[0] == '0' ? cifre[1] : 'd';
  const int base = segno == 'x' ? 16 : segno == 'o' ? 8 : segno == 'b' ? 2 : 10;
  std::int64_t valore = 0;
  const auto [dove, errore] = std::from_chars(cifre.data() + (base == 10 ? 0 : 2),
                                              cifre.data() + cifre.size(), valore, base);
  return errore == std::errc{} ? std::optional(valore) : std::nullopt;
}

double LeggiRealeToml(std::string_view scritto) {
  const bool trattini = scritto.find('_') != std::string_view::npos;
  const NumeroLetto letto = LeggiNumero(trattini ? SenzaTrattini(scritto) : scritto);
  return letto.Esito == EsitoNumero::Valido ? letto.Valore : HUGE_VAL;
}

}  // namespace compensa
