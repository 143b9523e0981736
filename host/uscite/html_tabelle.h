#pragma once

// The tables of the page, and how each observation is judged.

#include "host/risultati.h"
#include "host/uscite/html_scrittura.h"

// Below this redundancy number an observation counts as not controlled by the others.
inline constexpr double kRidondanzaControllo = 0.1;

bool Sospetta(const Equazione& equazione);  // |w| above kWSospetta
bool NonControllata(const Equazione& equazione);

// The smallest gross error that the test of w would find with a risk of 0.1 % and a power of 80 %,
// in the unit of the equation (W. Baarda, A Testing Procedure for Use in Geodetic Networks, 1968);
// kAssente where the a-priori standard deviation or the redundancy is missing.
double MinimoErroreRilevabile(const Equazione& equazione);

void ScriviTabelle(Pagina& pagina, const Risultati& risultati);
