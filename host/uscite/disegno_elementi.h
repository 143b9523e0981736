#pragma once

// What the drawing of a network shows, and where: the frame, the points, the sights.

#include <vector>

#include "host/risultati.h"

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

enum class SegnoPunto { Fisso, Compensato, Incognito, NonUsato };

struct PuntoDisegnato {
  int Punto = kNessuno;
  double X = 0.0, Y = 0.0;
  SegnoPunto Segno = SegnoPunto::Incognito;
  bool Stazione = false;
};

// All that was observed between two points, both ways together.
struct VisualeDisegnata {
  int Da = kNessuno, A = kNessuno;  // points, Da < A
  bool Direzione = false, Distanza = false, Quota = false;
  bool Andata = false, Ritorno = false;
  bool Usata = false;          // in some equation; true for all if nothing was adjusted
  double WMassimo = kAssente;  // of its equations
};

struct ElementiDisegno {
  Inquadratura Quadro;
  std::vector<PuntoDisegnato> Punti;
  std::vector<VisualeDisegnata> Visuali;  // between points of the drawing
  double Riduzione = 1.0;                 // of the symbols, where the points are dense
  int Lontani = 0;                        // unused points that lie far outside, left out
  double Esagerazione = kAssente;         // of the ellipses; kAssente = there is none to draw
};

// The drawing of a network. No points: no point has plane coordinates.
ElementiDisegno PreparaDisegno(const Risultati& risultati);

// The numbers 1, 2 and 5 times a power of ten: the nearest (by ratio), and the largest not above.
double TondoVicino(double valore);
double TondoInferiore(double valore);
