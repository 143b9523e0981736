// To be written.

#include "host/uscite/dxf.h"

void ScriviDxf(const Documento& /*documento*/, const std::function<void(std::string_view)>& /*scrivi*/) {}
