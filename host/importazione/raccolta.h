#pragma once

// What the readers of instrument memories share: columns that count characters, and the set-ups and
// points that go into the book.

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "host/base/diagnostica.h"
#include "host/base/testi.h"
#include "host/importazione/libretto.h"

namespace compensa {

// International foot [m].
inline constexpr double kPiede = 0.3048;

// Bytes of the first characters of a UTF-8 text, at most of all.
std::size_t ByteDiCaratteri(std::string_view testo, int caratteri);

// Characters from column da to column a, both counted from 1 and included; what lies beyond the end
// of the line is left out.
std::string_view Tratto(std::string_view riga, int da, int a);

// Est, Nord and Quota [m].
using Terna = std::array<std::optional<double>, 3>;

// Whether no value is given, or none but zeros.
bool Nulla(const Terna& terna);

// Puts what one file says into the book.
class Raccolta {
 public:
  // All arguments must outlive the object; file lies in libretto.NomiFile.
  Raccolta(std::string_view file, Libretto& libretto, Diagnostica& diagnostica)
      : File(file), Libro(libretto), Diario(diagnostica) {}

  Posizione Dove(int riga, int colonna) const { return {File, riga, colonna}; }

  // The set-up that the file is at, null before the first. Valid until the next Apri.
  PostazioneLibretto* Corrente() { return Aperta ? &Libro.Postazioni.back() : nullptr; }
  // Begins a set-up; one at the same point that has no shots yet is completed instead. An instrument
  // height of zero [m] is carried over with a warning: instruments write it when nobody typed one.
  PostazioneLibretto& Apri(const std::string& nome, std::optional<double> altezza,
                           const Posizione& dove);

  // Adds approximate coordinates. Three zeros are what memories hold where there are none: they are
  // counted and left out, at a station with a warning.
  void Coordinate(const std::string& nome, const Terna& terna, const Posizione& dove,
                  bool stazione);

 private:
  std::string_view File;
  Libretto& Libro;
  Diagnostica& Diario;
  bool Aperta = false;
};

}  // namespace compensa
