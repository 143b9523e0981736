// Load-time entry of the module and its string-table loader. On Windows the table is a resource of
// the module (testi.rc) and the platform loads from it; elsewhere the same list is compiled in.

#include "resources/tabella_testi.h"

#ifdef _WIN32

#include <windows.h>

namespace kzt5cmrg {
namespace {
HINSTANCE istanzaModulo = nullptr;  // written once, when the module is loaded
}  // namespace
}  // namespace kzt5cmrg

extern "C" BOOL WINAPI DllMain(HINSTANCE istanza, DWORD motivo, LPVOID) {
  if (motivo == DLL_PROCESS_ATTACH) kzt5cmrg::istanzaModulo = istanza;
  return TRUE;
}

namespace kzt5cmrg {

IstanzaModulo IstanzaPropria() { return istanzaModulo; }

int CaricaStringa(IstanzaModulo istanza, unsigned id, char* buffer, int limite) {
  return LoadStringA(static_cast<HINSTANCE>(istanza), id, buffer, limite);
}

}  // namespace kzt5cmrg

#else

#include <algorithm>
#include <cstddef>

#include "resources/catalogo.h"

extern "C" void* __dso_handle;  // address that tells this shared object from all others

namespace kzt5cmrg {

namespace {

IstanzaModulo istanzaModulo = nullptr;  // written once, when the module is loaded

[[gnu::constructor]] void AlCaricamento() { istanzaModulo = static_cast<void*>(&__dso_handle); }

}  // namespace

IstanzaModulo IstanzaPropria() { return istanzaModulo; }

int CaricaStringa(IstanzaModulo istanza, unsigned id, char* buffer, int limite) {
  if (buffer == nullptr || limite <= 0) return 0;
  buffer[0] = '\0';
  if (istanza == nullptr || istanza != istanzaModulo) return 0;
  const std::string_view testo = TestoCatalogo(id);
  const std::size_t n = std::min(testo.size(), static_cast<std::size_t>(limite) - 1);
  std::copy_n(testo.data(), n, buffer);
  buffer[n] = '\0';
  return static_cast<int>(n);
}

}  // namespace kzt5cmrg

#endif
