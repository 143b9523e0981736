// To be written.

#include "host/approssimate/approssimate.h"

EsitoApprossimate CalcolaApprossimate(Rete& /*rete*/) { return {}; }
