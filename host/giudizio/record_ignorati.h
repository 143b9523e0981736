#pragma once

// Warnings on the records that the adjustment will pass over.

#include "host/base/diagnostica.h"
#include "host/rete/modello.h"

namespace compensa {

// Names each point, set-up and observation that a job passes over, wholly or in one of the
// adjustments asked for, with the reason: one warning a record. Call it once the job is constructed,
// which lowers the roles of points that cannot take part, and before it runs: coordinates in metres.
void AvvisaRecordIgnorati(const Rete& rete, Diagnostica& diagnostica);

}  // namespace compensa
