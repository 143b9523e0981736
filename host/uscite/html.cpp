// To be written.

#include "host/uscite/html.h"

void ScriviHtml(const Documento& /*documento*/, const std::function<void(std::string_view)>& /*scrivi*/) {}
