// To be written.

#include "host/uscite/gkf.h"

void ScriviGkf(const Documento& /*documento*/, const std::function<void(std::string_view)>& /*scrivi*/) {}
