#pragma once

// Findings on a network that was not adjusted: each check looks at one subject and returns what it
// finds, in no special order.

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include "host/base/diagnostica.h"
#include "host/rete/modello.h"

namespace compensa {

// Something that looks wrong: Problema says what was seen, Suggerimento what it could be.
struct Rilievo {
  Posizione Dove;
  Guasto Cosa;
};
using Rilievi = std::vector<Rilievo>;

inline void Accoda(Rilievi& tutti, Rilievi altri) {
  std::move(altri.begin(), altri.end(), std::back_inserter(tutti));
}

// Same target twice in a set-up with different readings; names that look alike.
Rilievi ControllaRipetizioni(const Rete& rete);

// Points in the same place.
Rilievi ControllaPosti(const Rete& rete);

// What closes by itself, without coordinates: distances and height differences measured from both
// ends, angles of triangles. Controllate, if given, counts what was closed.
struct ChiusureControllate {
  int Distanze = 0, Dislivelli = 0, Triangoli = 0;
  double Ferrero = 0.0;  // standard deviation of an angle from the triangles [gon]
};
struct TolleranzaChiusure {
  // Of what only heights or only plane coordinates come from, nothing is closed unless these are
  // asked for here, whatever the options say.
  int Calcolo = kCalcoloPlanimetria | kCalcoloAltimetria;
  double Margine = 1.0;  // times the limit that good readings hardly reach
};
Rilievi ControllaChiusure(const Rete& rete, ChiusureControllate* controllate = nullptr,
                          TolleranzaChiusure tolleranza = {});

// Readings against the coordinates of their ends, and points whose coordinates fit none of their
// readings. Between fixed points by the standard deviations of the options; where an end is only
// approximate by what the approximations of the network are generally worth.
Rilievi ControllaScarti(const Rete& rete);

// Values that were hardly read that way: vertical for zenith angles, heights in centimetres.
Rilievi ControllaLetture(const Rete& rete);

// Whether most of the zenith angles of the network, at least two, look like vertical ones: then
// every slope distance is reduced wrongly and every height difference is wrong.
bool ZenitVerticali(const Rete& rete);

// Sights that the heights lack something of, or that were read on the second face.
Rilievi ControllaMancanze(const Rete& rete);

}  // namespace compensa
