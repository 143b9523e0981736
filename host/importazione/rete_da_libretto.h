#pragma once

// A completed field book as a network.

#include <optional>

#include "host/base/diagnostica.h"
#include "host/importazione/libretto.h"
#include "host/importazione/sqm_libretto.h"
#include "host/rete/modello.h"

namespace compensa {

// The book as records, with the positions that it has. Its values have been checked, every shot is
// on face I, every name that is used stands among the points. Angles are rounded to 1e-8 gon and
// lengths to 1e-6 m: what conversions and means leave behind these digits is no reading. Points may
// lack coordinates. Nothing is returned if there are errors.
std::optional<Rete> ReteDaLibretto(const Libretto& libretto, const SqmScelti& sqm, bool curvatura,
                                   Diagnostica& diagnostica);

}  // namespace compensa
