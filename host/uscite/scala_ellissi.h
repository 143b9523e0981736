#pragma once

// What every drawing of a network needs: its extent, the role a point is drawn with, and error
// ellipses as rings, exaggerated so that they are seen.

#include <array>
#include <string>
#include <string_view>

#include "host/risultati.h"

inline constexpr std::size_t kVerticiEllisse = 72;

struct PuntoPiano {
  double Est, Nord;  // [m]
};

struct Riquadro {
  double EstMin = 0.0, NordMin = 0.0, EstMax = 0.0, NordMax = 0.0;  // [m]
  double Lato() const;                                              // the larger side
};

// Whether a point has both plane coordinates, and thus a place in a drawing.
bool Disegnabile(const RisultatoPunto& punto);
// Whether it has an ellipse that can be drawn.
bool ConEllisse(const RisultatoPunto& punto);

// All points that can be drawn; zeros if there are none.
Riquadro RiquadroPunti(const Risultati& risultati);

// The factor 1, 2 or 5 * 10^n that brings the median semi-major axis of the standard ellipses
// nearest to 4 % of the larger side of the drawing; 1 without ellipses or extent.
double EsagerazioneEllissi(const Risultati& risultati);
std::string TestoEsagerazione(double esagerazione);  // "20000", "0.5"

// The ellipse of a point as an open ring that begins at the end of its semi-major axis and turns
// clockwise; fattore multiplies the standard semi-axes.
std::array<PuntoPiano, kVerticiEllisse> AnelloEllisse(const RisultatoPunto& punto, double fattore);

// The role in plan, or that in height of a network whose plan was not to be adjusted.
int RuoloDisegno(const Risultati& risultati, const RisultatoPunto& punto);

// "fisso", "incognito", "escluso", "compensato".
std::string_view NomeRuolo(int ruolo);
