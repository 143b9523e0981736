#pragma once

// The string-table loader of the module, with the contract of the platform loader on Windows.

namespace kzt5cmrg {

// Handle by which the loader finds the string table of a loaded module.
using IstanzaModulo = void*;

// Copies the text `id` of the module's table into `buffer` as Windows-1252 bytes, at most
// `limite` - 1 of them and a closing zero. Returns the number of bytes without the zero: 0 when the
// handle is not this module's, the id is unknown or the limit leaves no room.
int CaricaStringa(IstanzaModulo istanza, unsigned id, char* buffer, int limite);

// The handle that the load-time entry stored; null before the module is loaded.
IstanzaModulo IstanzaPropria();

}  // namespace kzt5cmrg
