// Lines and blanks of texts.

#include "host/base/testi.h"

#include <algorithm>

namespace compensa {

std::string_view SenzaBianchi(std::string_view testo, std::string_view bianchi) {
  const std::size_t primo = testo.find_first_not_of(bianchi);
  if (primo == std::string_view::npos) return {};
  return testo.substr(primo, testo.find_last_not_of(bianchi) - primo + 1);
}

std::string Minuscole(std::string_view testo) {
  std::string minuscole(testo);
  std::transform(minuscole.begin(), minuscole.end(), minuscole.begin(), Minuscola);
  return minuscole;
}

bool TutteCifre(std::string_view testo) {
  return !testo.empty() &&
         std::all_of(testo.begin(), testo.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string EAltri(std::size_t quanti, Genere genere) {
  const bool maschile = genere == Genere::Maschile;
  if (quanti == 1) return maschile ? "e un altro" : "e un'altra";
  return (maschile ? "e altri " : "e altre ") + std::to_string(quanti);
}

bool Righe::Prossima(RigaTesto& riga) {
  while (!Resto.empty()) {
    const std::size_t fine = std::min(Resto.find_first_of("\r\n"), Resto.size());
    riga.Testo = Resto.substr(0, fine);
    riga.Numero = ++Numero;
    Resto.remove_prefix(fine);
    if (!Resto.empty()) Resto.remove_prefix(Resto.starts_with("\r\n") ? 2 : 1);
    if (riga.Testo.find_first_not_of(" \t\x1A") != std::string_view::npos) return true;
  }
  return false;
}

}  // namespace compensa
