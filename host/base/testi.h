#pragma once

// Small things that every reader and every account does with texts: lines, blanks, counts in words.

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

namespace compensa {

inline constexpr std::string_view kBianchi = " \t";
inline constexpr std::string_view kBianchiEFini = " \t\r\n";  // with the ends of lines

// Without the characters of bianchi at both ends.
std::string_view SenzaBianchi(std::string_view testo, std::string_view bianchi = kBianchi);

// Of an ASCII letter; any other byte stays.
constexpr char Minuscola(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
std::string Minuscole(std::string_view testo);

// Whether a text is made of digits alone, one at least.
bool TutteCifre(std::string_view testo);

// With control characters and bytes that are not UTF-8, which would act on the terminal, as \xNN; cut
// after so many characters, -1 = whole.
std::string Visibile(std::string_view testo, int massimo = -1);

// A text of the file between quotes, cut to a readable length, likewise.
std::string Cita(std::string_view testo);

// "1 punto", "3 punti"
std::string Conta(std::integral auto quanti, std::string_view uno, std::string_view molti) {
  return std::to_string(quanti) + " " + std::string(quanti == 1 ? uno : molti);
}

// What ends a list that is cut: "e un altro", "e altri 3"; of things of feminine gender
// "e un'altra", "e altre 3".
enum class Genere { Maschile, Femminile };
std::string EAltri(std::size_t quanti, Genere genere = Genere::Maschile);

// A list cut to what one reads, `"A", "B" e altri 3`: what testo makes of the first of the things, and
// how many others there are.
inline constexpr std::size_t kElencati = 8;
template <class Cose, class Testo>
std::string Elenca(const Cose& cose, Testo testo, std::size_t massimo = kElencati,
                   Genere genere = Genere::Maschile) {
  std::string elenco;
  std::size_t n = 0;
  for (const auto& cosa : cose) {
    if (n == massimo) return elenco + " " + EAltri(std::size(cose) - n, genere);
    elenco += (n++ == 0 ? "" : ", ") + std::string(testo(cosa));
  }
  return elenco;
}

struct RigaTesto {
  std::string_view Testo;  // without its end
  int Numero = 0;          // from 1
};

// The lines of a text that hold more than blanks and the Ctrl-Z of old programs; they end with LF,
// CRLF or CR.
class Righe {
 public:
  explicit Righe(std::string_view testo) : Resto(testo) {}
  // Goes on to the next line; false at the end.
  bool Prossima(RigaTesto& riga);

 private:
  std::string_view Resto;
  int Numero = 0;
};

}  // namespace compensa
