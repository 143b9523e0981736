// The report writer of the program: texts and numbers laid into columns, in Windows-1252, where
// every character is one byte and widths can be counted in bytes.
//
// A number that rounds to zero has no sign: of a residual of 1e-17 it would only tell how the machine
// rounds. A zero that is negative keeps it: it is the sign of an angle of less than one degree.

#include "host/calcolo/rapporto.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "host/base/codifica.h"
#include "kzt5cmrg/record.h"

namespace compensa {

namespace {

constexpr int kDecimaliMassimi = 60;
constexpr std::size_t kCifre =  // sign, point, and a margin
    std::numeric_limits<double>::max_exponent10 + kDecimaliMassimi + 4;
constexpr std::size_t kPezzo = std::size_t{1} << 20;  // bytes passed on at a time

constexpr std::size_t Quanti(int n) { return n > 0 ? static_cast<std::size_t>(n) : 0; }

// Whether the digits are those of a zero.
bool Nullo(std::string_view cifre) {
  return cifre.find_first_not_of("-0.") == std::string_view::npos;
}

void Allinea(std::string& riga, std::string_view cifre, int larghezza) {
  const std::size_t colonne = Quanti(larghezza);
  if (colonne > cifre.size()) riga.append(colonne - cifre.size(), ' ');
  riga += cifre;
}

}  // namespace

void Rapporto::ScriviStringa(TTestoCr testo, int larghezza) {
  Testo += testo;
  const std::size_t colonne = Quanti(larghezza);
  if (colonne > testo.size()) Testo.append(colonne - testo.size(), ' ');
}

void Rapporto::ScriviStringaLn(TTestoCr testo, int larghezza) {
  ScriviStringa(testo, larghezza);
  Testo += '\n';
}

void Rapporto::ScriviNumero(double valore, int larghezza, int decimali) {
  if (valore > kzt5cmrg::kNonDato) return Allinea(Testo, "-", larghezza);
  if (std::isnan(valore)) return Allinea(Testo, "nan", larghezza);  // never "-nan"
  std::array<char, kCifre> cifre;
  decimali = std::clamp(decimali, 0, kDecimaliMassimi);
  const auto fine = std::to_chars(cifre.data(), cifre.data() + cifre.size(), valore,
                                  std::chars_format::fixed, decimali);
  std::string_view numero(cifre.data(), fine.ptr);
  if (valore < 0.0 && Nullo(numero)) numero.remove_prefix(1);
  Allinea(Testo, numero, larghezza);
}

void Rapporto::ScriviNumeroLn(double valore, int larghezza, int decimali) {
  ScriviNumero(valore, larghezza, decimali);
  Testo += '\n';
}

void Rapporto::ScriviSpazi(int n) { Testo.append(Quanti(n), ' '); }

void Rapporto::SaltaRiga(int n) { Testo.append(Quanti(n), '\n'); }

void Rapporto::Versa(Codifica codifica, const std::function<void(std::string_view)>& scrivi) const {
  for (std::string_view resto = Testo; !resto.empty();) {
    const std::string_view pezzo = resto.substr(0, kPezzo);
    resto.remove_prefix(pezzo.size());
    if (codifica == Codifica::Utf8)
      scrivi(DaWindows1252(pezzo));
    else
      scrivi(pezzo);
  }
}

}  // namespace compensa
