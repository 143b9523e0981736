#pragma once

// Heights spread over a network by trigonometric heighting.

#include "host/approssimate/approssimate.h"

namespace compensa {

// Quota of the unknown points that lack it, from both directions of every sight, outward from the
// heights given; what is found or not is added to the outcome.
void PropagaQuote(Rete& rete, EsitoApprossimate& esito);

}  // namespace compensa
