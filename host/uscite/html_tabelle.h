#pragma once

// The tables of the page.

#include "host/risultati.h"
#include "host/uscite/html_scrittura.h"

void ScriviTabelle(Pagina& pagina, const Risultati& risultati);
