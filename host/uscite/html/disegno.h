#pragma once

// The network as a drawing in the page: points, sights and ellipses in metres, North up, with its
// layers, its legend and its scale bar.

#include "host/rete/risultati.h"
#include "host/uscite/html/html_scrittura.h"

namespace compensa {

void ScriviDisegno(Pagina& pagina, const Risultati& risultati);

}  // namespace compensa
