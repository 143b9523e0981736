#pragma once

// The top of the page: what was adjusted, how, and how it ended.

#include "host/uscite/documento.h"
#include "host/uscite/html/html_scrittura.h"

namespace compensa {

// What the page is titled: the project's name, or that of the file.
std::string TitoloDocumento(const Documento& documento);

void ScriviTestata(Pagina& pagina, const Documento& documento);
void ScriviEsito(Pagina& pagina, const Documento& documento);

}  // namespace compensa
