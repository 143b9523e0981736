#pragma once

// Angles in the notations of field books, turned into gon. Sexagesimal notations are read digit by
// digit: 57.32 as a double is below 57 degrees 32 minutes.

#include <optional>
#include <string_view>

#include "host/importazione/opzioni.h"

namespace compensa {

inline constexpr double kGonPerGrado = 400.0 / 360.0;
inline constexpr double kGonPerMil = 400.0 / 6400.0;

// Degrees as gon.
constexpr double GonDaGradi(double gradi) { return gradi * 10.0 / 9.0; }

// A direction brought within the circle, from 0 to less than 400 [gon].
double NelGiro(double gon);

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
