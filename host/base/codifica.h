#pragma once

// Character encodings of the files: UTF-8 inside the program, Windows-1252 in the module's texts.

#include <optional>
#include <string>
#include <string_view>

namespace compensa {

// Whether the bytes are well-formed UTF-8: no overlong form, no surrogate, nothing above U+10FFFF.
bool Utf8Valido(std::string_view byte);

// Every byte has a character: the five that Windows-1252 leaves empty become control characters.
std::string DaWindows1252(std::string_view byte);

// Nothing if a character does not exist in Windows-1252 or the text is not UTF-8; then *mancante,
// if given, is the first such character as it stands in utf8.
std::optional<std::string> InWindows1252(std::string_view utf8,
                                         std::string_view* mancante = nullptr);

// The bytes of a text file as UTF-8 without byte order mark: UTF-8 if they are well-formed, else
// Windows-1252. Nothing if the mark says UTF-16.
std::optional<std::string> InUtf8(std::string byte);

// Code point of the first character of a UTF-8 text, and its length in bytes; a byte that begins no
// well-formed character stands for itself and has length 0.
struct Carattere {
  char32_t Codice = 0;
  std::size_t Lunghezza = 0;
};
Carattere PrimoCarattere(std::string_view utf8);

// Whether an XML document may hold the character: no control character but tab and ends of lines, not
// U+FFFE, U+FFFF.
bool AmmessoInXml(char32_t codice);
// The text with "?" in the place of what an XML document may not hold.
std::string PerXml(std::string_view utf8);

// Appends a character, up to U+10FFFF.
void AggiungiUtf8(std::string& testo, char32_t codice);

// The usual name of a code point: "U+00E0".
std::string CodiceUnicode(char32_t codice);

// Number of characters of a UTF-8 text.
int ContaCaratteri(std::string_view utf8);

}  // namespace compensa
