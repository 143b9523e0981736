#pragma once

// Whether the values of a field book can be what they are called.

#include "host/base/diagnostica.h"
#include "host/importazione/libretto.h"

namespace compensa {

// Reports every value outside its range as an error and takes it out of the book, before a mean can
// hide it. Directions are brought within the circle. Returns how many distances were zero: they are
// no measurements, and are taken out without an error.
int ControllaValori(Libretto& libretto, Diagnostica& diagnostica);

}  // namespace compensa
