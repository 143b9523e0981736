#pragma once

// What is said of the points that approximate coordinates were sought for.

#include <string>
#include <vector>

#include "host/approssimate/propagazione.h"
#include "host/base/diagnostica.h"

namespace compensa {

// The first three names of points that something rests on, and how many others.
std::string Elenco(const Rete& rete, const std::vector<int>& punti);

// How the point was found: punto "P7": coordinate approssimate da ...
std::string NotaPunto(const Rete& rete, int punto, const Determinazione& determinazione);

// Why the point was not found and what would help.
Guasto MotivoPunto(const Rete& rete, const Visuali& visuali, const Propagazione& propagazione,
                   int punto);

}  // namespace compensa
