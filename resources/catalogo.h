#pragma once

// The message catalogue: the names of the report's texts and the texts themselves, written as UTF-8
// in testi.inc and turned into Windows-1252, the code page of the report, at compile time.

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace kzt5cmrg {

// Names of the texts; the value is the id in the string table.
enum Testo : unsigned {
#define KZT5CMRG_TESTO(nome, id, testo) nome = id,
#include "resources/testi.inc"
#undef KZT5CMRG_TESTO
};

// A text of the report in Windows-1252. The characters in use above ASCII lie between U+00A0 and
// U+00FF, where that code page and Unicode agree; any other does not compile.
class TestoAnsi {
 public:
  consteval TestoAnsi(std::string_view utf8) {
    for (std::size_t i = 0; i < utf8.size(); ++i) {
      const auto primo = static_cast<unsigned char>(utf8[i]);
      unsigned punto = primo;
      if (primo >= 0x80) {
        if (primo != 0xC2 && primo != 0xC3) throw "not a character of the report's code page";
        punto = ((primo & 0x03U) << 6U) | (static_cast<unsigned char>(utf8[++i]) & 0x3FU);
      }
      Byte.at(Lunghezza++) = static_cast<char>(punto);
    }
  }
  constexpr operator std::string_view() const { return {Byte.data(), Lunghezza}; }

 private:
  static constexpr std::size_t kLunghezzaMassima = 96;
  std::array<char, kLunghezzaMassima> Byte{};
  std::size_t Lunghezza = 0;
};

// Short pieces that stand between numbers and belong to no table.
inline constexpr TestoAnsi kPiuMenoCoordinate{"   ±"};
inline constexpr TestoAnsi kPiuMenoQuota{"      ± "};
inline constexpr TestoAnsi kPiuMenoAltezza{"  ± "};
inline constexpr TestoAnsi kMetri{"    m"};
inline constexpr TestoAnsi kMetriParentesi{" (m)"};
inline constexpr TestoAnsi kMeno{" -"};
inline constexpr TestoAnsi kUguale{" ="};
inline constexpr TestoAnsi kSegnoGradi{"°"};
inline constexpr TestoAnsi kSegnoPrimi{"'"};
inline constexpr TestoAnsi kSegnoSecondi{"\""};

// One entry of the catalogue.
struct VoceCatalogo {
  unsigned Id;
  TestoAnsi Contenuto;
};

inline constexpr auto kCatalogo = std::to_array<VoceCatalogo>({
#define KZT5CMRG_TESTO(nome, id, testo) {nome, TestoAnsi{testo}},
#include "resources/testi.inc"
#undef KZT5CMRG_TESTO
});
static_assert(std::ranges::is_sorted(kCatalogo, std::ranges::less_equal{}, &VoceCatalogo::Id));

// The text of an entry in Windows-1252; empty for an id that the catalogue does not hold.
constexpr std::string_view TestoCatalogo(unsigned id) {
  const auto voce = std::ranges::lower_bound(kCatalogo, id, {}, &VoceCatalogo::Id);
  if (voce == kCatalogo.end() || voce->Id != id) return {};
  return voce->Contenuto;
}

}  // namespace kzt5cmrg
