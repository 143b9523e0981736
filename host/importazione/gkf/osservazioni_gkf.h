#pragma once

// The observations of a .gkf file.

#include <optional>

#include "host/importazione/elementi_xml.h"

namespace compensa::gkf {

// Standard deviations that hold for the observations that state none. Those of angles are in cc, for
// values in degrees in arc seconds; that of a distance is A + B D, in mm with D in km.
struct Predefiniti {
  struct ScartoDistanza {
    double A, B;
  };
  std::optional<double> Direzione, Angolo;
  std::optional<ScartoDistanza> Distanza;
};

// What the file and the call say of all observations.
struct Convenzioni {
  bool Orario = true;   // directions count clockwise
  bool Ignora = false;  // what the network has no place for is left out, not refused
};

// How messages call the record of an element.
std::string RecordDi(const pugi::xml_node& nodo);

// Observations that the network has no place for: counted as left out, or refused.
void NonSupportato(const pugi::xml_node& nodo, const std::string& genere, int quanti, bool ignora,
                   ElementiXml& xml);

// Adds the set-ups of an <obs> to the book.
void LeggiObs(const pugi::xml_node& obs, const Predefiniti& predefiniti,
              const Convenzioni& convenzioni, ElementiXml& xml);

}  // namespace compensa::gkf
