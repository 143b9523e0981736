#pragma once

// Faults of a host: records with fields of any value.

#include "tests/comuni/rete_prova.h"

// Spoils one thing that the random numbers choose: a field, a name, a list of readings.
void Corrompi(ReteProva& rete, Caso& caso);
