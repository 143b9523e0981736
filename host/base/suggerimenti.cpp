// Edit distance with swaps of neighbours (optimal string alignment), on rows of the table.

#include "host/base/suggerimenti.h"

#include <algorithm>
#include <array>

#include "host/base/codifica.h"

namespace compensa {

namespace {

constexpr std::size_t kLunghezzaMassima = 40;  // longer texts are not slips of the pen

// The characters of a text, ASCII letters in lower case.
struct Lettere {
  std::array<char32_t, kLunghezzaMassima> Codici;
  std::size_t Numero = 0;
  bool Intere = false;  // the whole text is there

  explicit Lettere(std::string_view testo) {
    while (!testo.empty() && Numero < Codici.size()) {
      const Carattere c = PrimoCarattere(testo);
      const bool maiuscola = c.Codice >= U'A' && c.Codice <= U'Z';
      Codici[Numero++] = maiuscola ? c.Codice - U'A' + U'a' : c.Codice;
      testo.remove_prefix(std::max<std::size_t>(c.Lunghezza, 1));
    }
    Intere = testo.empty();
  }
};

}  // namespace

std::size_t DistanzaTesti(std::string_view testoA, std::string_view testoB, std::size_t massimo) {
  const Lettere a(testoA);
  const Lettere b(testoB);
  const std::size_t scarto = std::max(a.Numero, b.Numero) - std::min(a.Numero, b.Numero);
  if (scarto > massimo || !a.Intere || !b.Intere) return massimo + 1;
  std::array<std::array<std::size_t, kLunghezzaMassima + 1>, 3> righe;
  for (std::size_t j = 0; j <= b.Numero; ++j) righe[0][j] = j;
  for (std::size_t i = 1; i <= a.Numero; ++i) {
    const auto& sopra = righe[(i - 1) % 3];
    auto& riga = righe[i % 3];
    riga[0] = i;
    std::size_t minimo = i;
    for (std::size_t j = 1; j <= b.Numero; ++j) {
      const std::size_t cambio = a.Codici[i - 1] == b.Codici[j - 1] ? 0 : 1;
      riga[j] = std::min({sopra[j] + 1, riga[j - 1] + 1, sopra[j - 1] + cambio});
      if (i > 1 && j > 1 && a.Codici[i - 1] == b.Codici[j - 2] &&
          a.Codici[i - 2] == b.Codici[j - 1]) {
        riga[j] = std::min(riga[j], righe[(i - 2) % 3][j - 2] + 1);
      }
      minimo = std::min(minimo, riga[j]);
    }
    if (minimo > massimo) return massimo + 1;
  }
  return std::min(righe[a.Numero % 3][b.Numero], massimo + 1);
}

std::size_t DistanzaPlausibile(std::string_view scritto) {
  const auto lettere = static_cast<std::size_t>(ContaCaratteri(scritto));
  return lettere < 3 ? 0 : std::max<std::size_t>(1, lettere / 3);
}

}  // namespace compensa
