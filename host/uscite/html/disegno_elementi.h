#pragma once

// What the drawing of a network shows, and where: the frame, the points, the sights.

#include <vector>

#include "host/rete/risultati.h"
#include "host/uscite/visuali_uniche.h"

namespace compensa {

// The sheet: kFoglio pixels wide, its height as the network needs. Positions are metres from the
// origin, y downwards; the scale is the same both ways.
struct Inquadratura {
  double EstOrigine = 0.0, NordOrigine = 0.0;
  double MetriPerPixel = 1.0;
  double Sinistra = 0.0, Alto = 0.0, Larghezza = 0.0, Altezza = 0.0;  // of the sheet [m]
  int Decimali = 0;  // of a position, for a small part of a pixel

  double X(double est) const { return est - EstOrigine; }
  double Y(double nord) const { return NordOrigine - nord; }
};

inline constexpr double kFoglio = 1000.0;  // width of the sheet [pixel]

struct PuntoDisegnato {
  int Punto = kNessuno;
  double X = 0.0, Y = 0.0;
  int Ruolo = kIncognito;  // that of RuoloDisegno
  bool Stazione = false;
};

struct ElementiDisegno {
  Inquadratura Quadro;
  std::vector<PuntoDisegnato> Punti;
  std::vector<VisualeUnica> Visuali;  // between points of the drawing
  double Riduzione = 1.0;             // of the symbols, where the points are dense
  int Lontani = 0;                    // unused points that lie far outside, left out
  bool Ellissi = false;               // whether there is one to draw
};

// The drawing of a network. No points: no point has plane coordinates.
ElementiDisegno PreparaDisegno(const Risultati& risultati);

}  // namespace compensa
