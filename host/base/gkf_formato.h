#pragma once

// What the reader and the writer of .gkf files agree on: names and the register, the
// network's own records in processing instructions that other programs pass over.
//
// The register closes with a fingerprint of all elements and of itself: where it does not match,
// somebody has edited the file and the elements are what counts.

#include <cstdint>
#include <string>
#include <string_view>

namespace compensa::gkf {

inline constexpr std::string_view kRadice = "gama-local";
inline constexpr std::size_t kInizioCercato = 65536;  // the root stands in the first bytes

// Target of the instructions, and the words that their contents begin with.
inline constexpr std::string_view kIstruzione = "compensa";
inline constexpr std::string_view kRegistro = "registro";
inline constexpr std::string_view kFine = "fine";
inline constexpr int kVersioneRegistro = 1;

// FNV-1a of 64 bits (Fowler, Noll, Vo) over elements, attributes and instructions in file order.
class Impronta {
 public:
  void Elemento(std::string_view nome) { Aggiungi('<', nome); }
  void Attributo(std::string_view nome, std::string_view valore) {
    Aggiungi(' ', nome);
    Aggiungi('=', valore);
  }
  void Istruzione(std::string_view contenuto) { Aggiungi('?', contenuto); }

  std::string Esadecimale() const {
    constexpr std::string_view kCifre = "0123456789abcdef";
    constexpr int kBit = 64;
    constexpr int kBitPerCifra = 4;
    std::string testo;
    for (int bit = kBit - kBitPerCifra; bit >= 0; bit -= kBitPerCifra)
      testo += kCifre[(Stato >> bit) & 0xFu];
    return testo;
  }

 private:
  void Aggiungi(char segno, std::string_view testo) {
    Aggiungi(segno);
    for (const char c : testo) Aggiungi(c);
  }
  void Aggiungi(char c) {
    constexpr std::uint64_t kPrimo = 0x100000001B3u;
    Stato = (Stato ^ static_cast<unsigned char>(c)) * kPrimo;
  }

  std::uint64_t Stato = 0xCBF29CE484222325u;
};

}  // namespace compensa::gkf
