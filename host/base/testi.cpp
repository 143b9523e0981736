// Lines and blanks of texts, and what of a file is shown of them.

#include "host/base/testi.h"

#include <algorithm>

#include "host/base/codifica.h"

namespace compensa {

namespace {

constexpr int kCaratteriCitati = 60;
constexpr std::string_view kEsadecimali = "0123456789ABCDEF";

// Control characters and stray bytes would act on the terminal that shows the message.
void AggiungiVisibile(std::string& testo, std::string_view carattere, const Carattere& c) {
  const bool controllo = c.Codice < 0x20 || (c.Codice >= 0x7F && c.Codice < 0xA0);
  const bool inverte = (c.Codice >= 0x202A && c.Codice <= 0x202E) ||
                       (c.Codice >= 0x2066 && c.Codice <= 0x2069);  // reorders what follows it
  if (c.Lunghezza > 0 && !controllo && !inverte) {
    testo += carattere;
    return;
  }
  for (const char byte : carattere) {
    const unsigned valore = static_cast<unsigned char>(byte);
    testo += "\\x";
    testo += kEsadecimali[valore >> 4];
    testo += kEsadecimali[valore & 0xFu];
  }
}

}  // namespace

std::string Visibile(std::string_view testo, int massimo) {
  std::string visibile;
  for (int n = 0; !testo.empty(); ++n) {
    if (n == massimo) return visibile + "…";
    const Carattere c = PrimoCarattere(testo);
    const std::size_t lunghezza = std::max<std::size_t>(c.Lunghezza, 1);
    AggiungiVisibile(visibile, testo.substr(0, lunghezza), c);
    testo.remove_prefix(lunghezza);
  }
  return visibile;
}

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

std::string Cita(std::string_view testo) {
  const bool virgolette = testo.find('"') != std::string_view::npos;
  return (virgolette ? "«" : "\"") + Visibile(testo, kCaratteriCitati) + (virgolette ? "»" : "\"");
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
