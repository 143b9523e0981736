// Preloaded into the programs under test: takes over the locale of the environment at their start, as
// an application with a graphical interface does before it calls the module. Without this a locale of
// the environment stays without effect, and a test under it proves nothing.

#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <iostream>
#include <locale>
#include <string_view>

namespace {

bool SottoProva(std::string_view programma) {
  return programma == "compensa" || programma == "ospite" || programma.starts_with("prove_");
}

[[gnu::constructor]] void ImpostaLocale() {
  if (!SottoProva(program_invocation_short_name)) return;
  const bool trovato = std::setlocale(LC_ALL, "") != nullptr;
  if (!trovato || std::string_view(std::localeconv()->decimal_point) != ",") {
    std::cerr << "the locale of the environment is missing or has no decimal comma\n";
    std::abort();
  }
  std::locale::global(std::locale(""));
}

}  // namespace
