// To be written.

#include "host/verifica/verifica.h"

Stato Verifica(const OpzioniVerifica& /*opzioni*/) { return kStatoRiuscito; }
