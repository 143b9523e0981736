// Numbers from and to text, by way of std::from_chars and std::to_chars alone.

#include "host/base/numeri.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace compensa {

namespace {

constexpr std::size_t kCifreMassime = 400;  // no written coordinate comes near it
constexpr int kDecimaliMassimi = 17;
constexpr std::size_t kSpazioNumero =
    std::numeric_limits<double>::max_exponent10 + kDecimaliMassimi + 8;

constexpr bool Cifra(char c) { return c >= '0' && c <= '9'; }

// Digits parted by points, commas, apostrophes or blanks, more of them than one decimal separator.
bool ConMigliaia(std::string_view testo) {
  if (!testo.empty() && (testo.front() == '-' || testo.front() == '+')) testo.remove_prefix(1);
  if (testo.empty() || !Cifra(testo.front()) || !Cifra(testo.back())) return false;
  constexpr std::string_view kSeparatori = ".,' \xC2\xA0\xE2\x80\xAF\x99";
  const bool ammessi = std::all_of(testo.begin(), testo.end(), [&](char c) {
    return Cifra(c) || kSeparatori.find(c) != std::string_view::npos;
  });
  const auto decimali =
      std::count_if(testo.begin(), testo.end(), [](char c) { return c == '.' || c == ','; });
  const bool altri = std::any_of(testo.begin(), testo.end(),
                                 [](char c) { return !Cifra(c) && c != '.' && c != ','; });
  return ammessi && (decimali > 1 || altri);
}

EsitoNumero Rifiuto(std::string_view testo) {
  if (ConMigliaia(testo)) return EsitoNumero::Migliaia;
  if (std::count(testo.begin(), testo.end(), ',') == 1 &&
      LeggiNumero(testo, true).Esito == EsitoNumero::Valido) {
    return EsitoNumero::Virgola;
  }
  return EsitoNumero::NonNumero;
}

}  // namespace

NumeroLetto LeggiNumero(std::string_view testo, bool virgolaDecimale) {
  const std::string_view intero = testo;
  if (testo.size() > 1 && testo.front() == '+' && testo[1] != '-') testo.remove_prefix(1);
  std::array<char, kCifreMassime> conPunto;
  if (virgolaDecimale && testo.size() <= conPunto.size()) {
    const std::size_t virgola = testo.find(',');
    if (virgola != std::string_view::npos && testo.find('.') == std::string_view::npos) {
      testo.copy(conPunto.data(), testo.size());
      conPunto[virgola] = '.';
      testo = std::string_view(conPunto.data(), testo.size());
    }
  }
  NumeroLetto letto;
  const char* fine = testo.data() + testo.size();
  const auto [dove, errore] = std::from_chars(testo.data(), fine, letto.Valore);
  if (errore == std::errc::invalid_argument || dove != fine) {
    letto.Esito =
        virgolaDecimale && !ConMigliaia(intero) ? EsitoNumero::NonNumero : Rifiuto(intero);
  } else if (errore == std::errc::result_out_of_range || !std::isfinite(letto.Valore)) {
    letto.Esito = EsitoNumero::NonFinito;
  } else {
    letto.Esito = EsitoNumero::Valido;
  }
  return letto;
}

std::optional<int> LeggiIntero(std::string_view testo) {
  int valore = 0;
  const char* fine = testo.data() + testo.size();
  const auto [dove, errore] = std::from_chars(testo.data(), fine, valore);
  if (errore != std::errc{} || dove != fine) return std::nullopt;
  return valore;
}

std::string NumeroFisso(double valore, int decimali) {
  std::array<char, kSpazioNumero> spazio;
  const auto esito =
      std::to_chars(spazio.data(), spazio.data() + spazio.size(), valore, std::chars_format::fixed,
                    std::clamp(decimali, 0, kDecimaliMassimi));
  return std::string(spazio.data(), esito.ptr);
}

std::string NumeroCorto(double valore, int decimali) {
  std::string testo = NumeroFisso(valore, decimali);
  if (testo.find('.') == std::string::npos) return testo;
  testo.erase(testo.find_last_not_of('0') + 1);
  if (testo.ends_with('.')) testo.pop_back();
  return testo;
}

std::string NumeroBreve(double valore) {
  std::array<char, kSpazioNumero> spazio;
  const auto esito = std::to_chars(spazio.data(), spazio.data() + spazio.size(), valore);
  return std::string(spazio.data(), esito.ptr);
}

}  // namespace compensa
