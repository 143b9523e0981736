#pragma once

// Names beside the points of a drawing, placed so that they cover neither each other nor a point.

#include <span>
#include <string_view>
#include <vector>

namespace compensa {

// A point of the drawing, in pixels, y downwards.
struct PuntoEtichettato {
  double X = 0.0, Y = 0.0;
  double Raggio = 0.0;     // of its symbol
  double Larghezza = 0.0;  // of its name; 0 = has none, but is in the way of others
  int Priorita = 0;        // the highest is placed first
};

struct Segmento {
  double X1, Y1, X2, Y2;
};

enum class Ancora { Inizio, Mezzo, Fine };  // the part of the text that X belongs to

// A rectangle that a name may take, relative to its point.
struct Rettangolo {
  double Sinistra, Alto, Destra, Basso;
};

// Where a name goes.
struct Collocazione {
  int Livello = 0;  // shown where the drawing is enlarged at least 2^Livello times; 0 = always
  Rettangolo Posto{};
  Ancora Verso = Ancora::Inizio;
  bool Guida = false;                 // so far away that a line leads to the point,
  double GuidaX = 0.0, GuidaY = 0.0;  // from here, relative to the point
};

inline constexpr double kAltezzaEtichetta = 15.0;  // of a name [pixel]
inline constexpr int kLivelliEtichette = 6;        // the last one shows what had no room before

// Width that a name takes at most, UTF-8 [pixel].
double LarghezzaEtichetta(std::string_view nome);

// Places the names on a drawing of that size. Of the free positions around a point the first one
// that crosses the fewest segments is taken. No two names of level 0 overlap, nor a name a symbol.
std::vector<Collocazione> CollocaEtichette(std::span<const PuntoEtichettato> punti,
                                           std::span<const Segmento> segmenti, double larghezza,
                                           double altezza);

}  // namespace compensa
