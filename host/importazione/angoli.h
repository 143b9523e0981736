#pragma once

// Angles in the notations of field books, turned into gon. Sexagesimal notations are read digit by
// digit: 57.32 as a double is below 57 degrees 32 minutes.

#include <optional>
#include <string_view>

#include "host/importazione/opzioni.h"
#include "host/rete/geometria.h"

namespace compensa {

// Degrees as gon.
constexpr double GonDaGradi(double gradi) { return gradi * 10.0 / 9.0; }

// Degrees, minutes and seconds as gon; nothing if minutes or seconds are 60 or more, or negative.
std::optional<double> GonDaGms(int gradi, int primi, double secondi);

// Whole text as an angle in the notation; nothing if it is not one. A decimal comma is accepted if
// virgola is set. "57-32-28.4" is taken as degrees, minutes and seconds under every notation in
// degrees.
std::optional<double> LeggiAngolo(std::string_view testo, UnitaAngoli unita, bool virgola = false);

// Digits dddmmss with decimali further digits of the second, as total-station memories pack them,
// without a point: "08916180" with one decimal is 89 deg 16' 18.0".
std::optional<double> GonDaCifreCompatte(std::string_view cifre, int decimali);

}  // namespace compensa
