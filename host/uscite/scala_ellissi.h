#pragma once

// What every drawing of a network needs: its extent, round numbers for its scale, and error ellipses
// as rings, exaggerated so that they are seen.

#include <cmath>
#include <string>
#include <vector>

#include "host/rete/risultati.h"

namespace compensa {

struct PuntoPiano {
  double Est, Nord;  // [m]
};

// The extent of points; without any its limits are infinite.
struct Riquadro {
  double EstMin = HUGE_VAL, NordMin = HUGE_VAL, EstMax = -HUGE_VAL, NordMax = -HUGE_VAL;  // [m]

  void Comprendi(const RisultatoPunto& punto);
  bool Vuoto() const { return EstMin > EstMax; }
  double Lato() const;  // the larger side
};

// Whether a point has both plane coordinates, and thus a place in a drawing.
bool Disegnabile(const RisultatoPunto& punto);
// Whether it has an ellipse that can be drawn.
bool ConEllisse(const RisultatoPunto& punto);

// All points that can be drawn; zeros if there are none.
Riquadro RiquadroPunti(const Risultati& risultati);

// The numbers 1, 2 and 5 times a power of ten: the nearest (by ratio), and the largest not above.
double TondoVicino(double valore);
double TondoInferiore(double valore);
std::string TestoTondo(double tondo);  // "20000", "0.5"

// The round factor that brings the median semi-major axis of the standard ellipses nearest to 4 % of
// the larger side of the points in use, or to 30 % of their mean distance if that is less; 1 without
// ellipses or extent.
double EsagerazioneEllissi(const Risultati& risultati);

// Vertices that an ellipse is drawn with, a multiple of four: 72, fewer where there are thousands of
// ellipses, so that a drawing does not get hundreds of megabytes; 16 at least, which is 2 % of a
// semi-axis off at most.
int VerticiEllisse(const Risultati& risultati);

// The ellipse of a point as an open ring of that many vertices that begins at the end of its
// semi-major axis and turns clockwise; fattore multiplies the standard semi-axes.
std::vector<PuntoPiano> AnelloEllisse(const RisultatoPunto& punto, double fattore, int vertici);

}  // namespace compensa
