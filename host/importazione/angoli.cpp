// Sexagesimal notations by their digits.
//   gon = (degrees + minutes / 60 + seconds / 3600) * 10 / 9, from one sum of seconds, so that a
//   whole number of them loses nothing before the last division.

#include "host/importazione/angoli.h"

#include <algorithm>
#include <string>
#include <utility>

#include "host/base/numeri.h"
#include "host/base/testi.h"
#include "host/base/unita.h"

namespace compensa {

namespace {

constexpr int kSessanta = 60;

// Takes a sign off the front; true if it is negative.
bool Segno(std::string_view& testo) {
  const bool negativo = testo.starts_with('-');
  if (negativo || testo.starts_with('+')) testo.remove_prefix(1);
  return negativo;
}

std::optional<double> ConSegno(std::optional<double> gon, bool negativo) {
  if (gon && negativo) return -*gon;
  return gon;
}

// dd-mm-ss.s
std::optional<double> DaTrattini(std::string_view testo, bool virgola) {
  const std::size_t primo = testo.find('-');
  if (primo == std::string_view::npos) return std::nullopt;
  const std::size_t secondo = testo.find('-', primo + 1);
  if (secondo == std::string_view::npos) return std::nullopt;
  const std::string_view gradi = testo.substr(0, primo);
  const std::string_view primi = testo.substr(primo + 1, secondo - primo - 1);
  const std::string_view secondi = testo.substr(secondo + 1);
  if (!TutteCifre(gradi) || !TutteCifre(primi) || secondi.empty() || secondi.front() == '-' ||
      secondi.front() == '+')
    return std::nullopt;
  const auto g = LeggiIntero(gradi);
  const auto p = LeggiIntero(primi);
  const NumeroLetto s = LeggiNumero(secondi, virgola);
  if (!g || !p || s.Esito != EsitoNumero::Valido) return std::nullopt;
  return GonDaGms(*g, *p, s.Valore);
}

// ddd.mmssss: two digits of minutes, two of seconds, the rest decimals of the second.
std::optional<double> DaCompatto(std::string_view testo, bool virgola) {
  const std::size_t punto = testo.find_first_of(virgola ? ".," : ".");
  const std::string_view gradi = testo.substr(0, punto);
  std::string coda(punto == std::string_view::npos ? std::string_view() : testo.substr(punto + 1));
  if (!TutteCifre(gradi) || (!coda.empty() && !TutteCifre(coda))) return std::nullopt;
  constexpr std::size_t kCifrePrimiSecondi = 4;
  const std::size_t decimali = std::max(coda.size(), kCifrePrimiSecondi) - kCifrePrimiSecondi;
  coda.resize(kCifrePrimiSecondi + decimali, '0');
  return GonDaCifreCompatte(std::string(gradi) + coda, static_cast<int>(decimali));
}

}  // namespace

std::optional<double> GonDaGms(int gradi, int primi, double secondi) {
  if (gradi < 0 || primi < 0 || primi >= kSessanta || !(secondi >= 0.0) || secondi >= kSessanta)
    return std::nullopt;
  return ((static_cast<double>(gradi) * kSessanta + primi) * kSessanta + secondi) / kSecondiPerGon;
}

std::optional<double> LeggiAngolo(std::string_view testo, UnitaAngoli unita, bool virgola) {
  if (unita == UnitaAngoli::Gon) {
    const NumeroLetto gon = LeggiNumero(testo, virgola);
    return gon.Esito == EsitoNumero::Valido ? std::optional(gon.Valore) : std::nullopt;
  }
  std::string_view resto = testo;
  const bool negativo = Segno(resto);
  if (resto.find('-') != std::string_view::npos)
    return ConSegno(DaTrattini(resto, virgola), negativo);
  if (unita == UnitaAngoli::GradiPrimi) return std::nullopt;
  if (unita == UnitaAngoli::GradiCompatti) return ConSegno(DaCompatto(resto, virgola), negativo);
  const NumeroLetto gradi = LeggiNumero(testo, virgola);
  if (gradi.Esito != EsitoNumero::Valido) return std::nullopt;
  return GonDaGradi(gradi.Valore);
}

std::optional<double> GonDaCifreCompatte(std::string_view cifre, int decimali) {
  constexpr std::size_t kDueCifre = 2;
  const auto coda = static_cast<std::size_t>(std::max(decimali, 0));
  if (!TutteCifre(cifre) || cifre.size() < coda + 2 * kDueCifre) return std::nullopt;
  const std::size_t inizioSecondi = cifre.size() - coda - kDueCifre;
  const std::size_t inizioPrimi = inizioSecondi - kDueCifre;
  const auto gradi =
      inizioPrimi == 0 ? std::optional(0) : LeggiIntero(cifre.substr(0, inizioPrimi));
  const auto primi = LeggiIntero(cifre.substr(inizioPrimi, kDueCifre));
  const NumeroLetto secondi =
      LeggiNumero(std::string(cifre.substr(inizioSecondi, kDueCifre)) + "." +
                  std::string(cifre.substr(inizioSecondi + kDueCifre)) + "0");
  if (!gradi || !primi || secondi.Esito != EsitoNumero::Valido) return std::nullopt;
  return GonDaGms(*gradi, *primi, secondi.Valore);
}

}  // namespace compensa
