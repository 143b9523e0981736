// To be written.

#include "host/importazione/importa.h"

Stato Importa(const OpzioniImporta& /*opzioni*/) { return kStatoRiuscito; }
