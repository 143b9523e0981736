#pragma once

// The tables of the page.

#include "host/rete/risultati.h"
#include "host/uscite/html/html_scrittura.h"

namespace compensa {

void ScriviTabelle(Pagina& pagina, const Risultati& risultati);

}  // namespace compensa
