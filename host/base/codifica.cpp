// Character encodings: UTF-8 and Windows-1252, there and back.

#include "host/base/codifica.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace compensa {

namespace {

// Characters of the bytes 0x80 to 0x9F; the others have the code of their byte.
constexpr unsigned kPrimoSpeciale = 0x80;
constexpr std::array<char16_t, 32> kSpeciali = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr std::string_view kSegnoUtf8 = "\xEF\xBB\xBF";
constexpr std::string_view kSegnoUtf16Le = "\xFF\xFE";
constexpr std::string_view kSegnoUtf16Be = "\xFE\xFF";

constexpr unsigned Byte(char c) { return static_cast<unsigned char>(c); }
constexpr bool Seguito(char c) { return (Byte(c) & 0xC0u) == 0x80u; }

std::optional<char> ByteDi(char32_t codice) {
  const auto speciale = std::find(kSpeciali.begin(), kSpeciali.end(), codice);
  if (speciale != kSpeciali.end()) {
    return static_cast<char>(kPrimoSpeciale + static_cast<unsigned>(speciale - kSpeciali.begin()));
  }
  if (codice > 0xFFu || (codice >= kPrimoSpeciale && codice < kPrimoSpeciale + kSpeciali.size())) {
    return std::nullopt;
  }
  return static_cast<char>(codice);
}

}  // namespace

Carattere PrimoCarattere(std::string_view utf8) {
  if (utf8.empty()) return {};
  const unsigned primo = Byte(utf8[0]);
  if (primo < 0x80u) return {primo, 1};
  const std::size_t lunghezza = primo >= 0xF0u ? 4 : primo >= 0xE0u ? 3 : 2;
  constexpr std::array<char32_t, 5> kMinimo = {0, 0, 0x80, 0x800, 0x10000};
  if (primo < 0xC2u || primo > 0xF4u || utf8.size() < lunghezza) return {primo, 0};
  char32_t codice = primo & (0xFFu >> (lunghezza + 1));
  for (std::size_t i = 1; i < lunghezza; ++i) {
    if (!Seguito(utf8[i])) return {primo, 0};
    codice = (codice << 6) | (Byte(utf8[i]) & 0x3Fu);
  }
  const bool surrogato = codice >= 0xD800 && codice <= 0xDFFF;
  if (codice < kMinimo[lunghezza] || codice > 0x10FFFF || surrogato) return {primo, 0};
  return {codice, lunghezza};
}

bool AmmessoInXml(char32_t codice) {
  return codice >= U' ' ? codice != 0xFFFE && codice != 0xFFFF
                        : codice == U'\t' || codice == U'\n' || codice == U'\r';
}

std::string PerXml(std::string_view utf8) {
  constexpr std::string_view kSostituto = "?";
  std::string lecito;
  while (!utf8.empty()) {
    const Carattere c = PrimoCarattere(utf8);
    const bool ammesso = c.Lunghezza > 0 && AmmessoInXml(c.Codice);
    lecito += ammesso ? utf8.substr(0, c.Lunghezza) : kSostituto;
    utf8.remove_prefix(std::max<std::size_t>(c.Lunghezza, 1));
  }
  return lecito;
}

void AggiungiUtf8(std::string& testo, char32_t codice) {
  if (codice < 0x80u) {
    testo += static_cast<char>(codice);
    return;
  }
  const int seguiti = codice < 0x800u ? 1 : codice < 0x10000u ? 2 : 3;
  const unsigned segno = seguiti == 1 ? 0xC0u : seguiti == 2 ? 0xE0u : 0xF0u;
  testo += static_cast<char>(segno | (codice >> (6 * seguiti)));
  for (int k = seguiti - 1; k >= 0; --k)
    testo += static_cast<char>(0x80u | ((codice >> (6 * k)) & 0x3Fu));
}

bool Utf8Valido(std::string_view byte) {
  while (!byte.empty()) {
    const std::size_t lunghezza = PrimoCarattere(byte).Lunghezza;
    if (lunghezza == 0) return false;
    byte.remove_prefix(lunghezza);
  }
  return true;
}

std::string DaWindows1252(std::string_view byte) {
  std::string utf8;
  utf8.reserve(byte.size() + byte.size() / 8);
  for (const char c : byte) {
    const unsigned codice = Byte(c);
    const bool speciale = codice >= kPrimoSpeciale && codice < kPrimoSpeciale + kSpeciali.size();
    AggiungiUtf8(utf8, speciale ? kSpeciali[codice - kPrimoSpeciale] : codice);
  }
  return utf8;
}

std::optional<std::string> InWindows1252(std::string_view utf8, std::string_view* mancante) {
  std::string ansi;
  ansi.reserve(utf8.size());
  while (!utf8.empty()) {
    const Carattere c = PrimoCarattere(utf8);
    const std::optional<char> byte = c.Lunghezza > 0 ? ByteDi(c.Codice) : std::nullopt;
    const std::size_t lunghezza = std::max<std::size_t>(c.Lunghezza, 1);
    if (!byte) {
      if (mancante != nullptr) *mancante = utf8.substr(0, lunghezza);
      return std::nullopt;
    }
    ansi += *byte;
    utf8.remove_prefix(lunghezza);
  }
  return ansi;
}

std::optional<std::string> InUtf8(std::string byte) {
  if (byte.starts_with(kSegnoUtf16Le) || byte.starts_with(kSegnoUtf16Be)) return std::nullopt;
  if (byte.starts_with(kSegnoUtf8)) byte.erase(0, kSegnoUtf8.size());
  if (Utf8Valido(byte)) return byte;
  return DaWindows1252(byte);
}

int ContaCaratteri(std::string_view utf8) {
  return static_cast<int>(
      std::count_if(utf8.begin(), utf8.end(), [](char c) { return !Seguito(c); }));
}

std::string CodiceUnicode(char32_t codice) {
  constexpr std::string_view kCifre = "0123456789ABCDEF";
  constexpr std::size_t kCifreMinime = 4;
  std::string testo;
  for (; codice > 0 || testo.size() < kCifreMinime; codice >>= 4) {
    testo.insert(testo.begin(), kCifre[codice & 0xFu]);
  }
  return "U+" + testo;
}

}  // namespace compensa
