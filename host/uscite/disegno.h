#pragma once

// The network as a drawing in the page: points, sights and ellipses in metres, North up, with its
// layers, its legend and its scale bar.

#include "host/risultati.h"
#include "host/uscite/html_scrittura.h"

// From this |w| on an observation is worth a look, and is suspect: two-sided risk of 5 % and of
// 0.1 % of a standard normal variable (Baarda).
inline constexpr double kWAttenzione = 2.0;
inline constexpr double kWSospetta = 3.29;

void ScriviDisegno(Pagina& pagina, const Risultati& risultati);
